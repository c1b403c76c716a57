// Reader of FACT files: groups with their points (32- or 64-bit), texture vertices, normals,
// elements and materials.
//
// Groups without a name are "FACT group" and their number, from 1. Points and elements that stand
// in no group make "FACT default". Groups nest to sixteen levels; what is in a nested one belongs
// to it alone. Chunks of other names are skipped. Chunks of one kind add up in their order, and
// elements may stand before what they index.
//
// Odd files: a chunk that says a larger size than is there ends with what is there. An element with
// a vertex index out of range is left out; one with a wrong texture or normal index is without that
// list. Slots beyond 0 to 5 are the first. Elements without normals get smooth ones.
#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

#include "interchange/ImportedGroups.h"
#include "interchange/ModelInput.h"
#include "toolkit/Result.h"

namespace orvin {

inline constexpr std::string_view kFactDefaultGroup = "FACT default";

/// Reads a file. -1 where they are no FACT file, or when the progress callback stopped
/// it.
Result parseFact(ModelInput& input, ImportedGroups& model);

/// Reads a file. -1, with a line on standard error, where it can't be read or is no FACT file.
Result readFact(const std::filesystem::path& path, ImportedGroups& model);

/// Reads a file into a scene, one ObjectP per group; `made` (if not null) gets them. On failure
/// nothing is added.
Result importFact(SceneX& scene, const std::filesystem::path& path,
                  std::vector<ObjectP*>* made = nullptr);

}  // namespace orvin
