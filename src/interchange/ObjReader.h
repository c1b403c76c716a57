// Reader of Wavefront OBJ files.
//
// Read: v, vt, vn, f (and its old name fo), l, p, g; an element goes on in the next line where its
// last token is a single backslash. Everything else is skipped. Lines end with LF or CR LF, or with
// CR in files that have no LF. Indices from the front, or from the end of what was read so far.
//
// Odd files: an index out of range drops its corner (a texture or normal index: that list of its
// face) with a line on standard output, a hundred lines at most. A coordinate that is missing, no
// number or not finite is 0.
//
// Format: "Object Files (.obj)", appendix B1 of the Advanced Visualizer manual.
#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

#include "interchange/ImportedModel.h"
#include "interchange/ModelInput.h"
#include "toolkit/Result.h"

namespace orvin {

/// The group of elements that stand before any `g` line, and of files without one.
inline constexpr std::string_view kObjDefaultGroup = "OBJ default";

/// Groups beyond this many have their elements in the last one, so that a file of nothing but group
/// names doesn't fill the scene.
inline constexpr std::size_t kObjMaxGroups = 10000;

/// Reads a file, twice: the first time it is counted. A line with several group names gives the
/// elements that follow to the last of them; a name that was there before goes on with its group.
/// -1 when the progress callback stopped it (polled every 2000 lines).
Result parseObj(ModelInput& input, ImportedModel& model);

/// Reads a file. In a model of several groups, which may share points, or with some normals,
/// elements without normals get smooth ones with the default hard shading angle; in any other that
/// is left to its object. -1, with a line on standard error, where it can't be read.
Result readObj(const std::filesystem::path& path, ImportedModel& model);

/// Reads a file into a scene, one ObjectP per group; `made` (if not null) gets them. On failure
/// nothing is added.
Result importObj(SceneX& scene, const std::filesystem::path& path,
                 std::vector<ObjectP*>* made = nullptr);

}  // namespace orvin
