// Reader of ASCII DXF files: the 3DFACE entities of the ENTITIES section, one group per layer.
//
// A face whose corners 2 and 3 are equal is a triangle, any other a quad; a corner or coordinate
// that the file leaves out is 0. Corners at the same point share a vertex within their layer. The
// file's Z is up: (x, y, z) there is (x, z, -y) here. A layer shows the last colour that one of its
// faces names: the material "DXF color " and the index. Layers are told apart by the first 31 bytes
// of their names; faces of a 101st layer go to the last one.
//
// Everything else of the file is skipped. Lines end with LF, CR LF, or CR in files without LF.
// A value that is no number or not finite reads as 0.
#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

#include "interchange/ImportedGroups.h"
#include "interchange/ModelInput.h"
#include "toolkit/Result.h"

namespace orvin {

inline constexpr std::size_t kDxfMaxLayers = 100;
inline constexpr std::size_t kDxfLayerNameLimit = 31;

/// Reads a file, twice: the first time it is counted. -1 when the progress callback stopped it
/// (polled every 5000 pairs of lines).
Result parseDxf(ModelInput& input, ImportedGroups& model);

/// Reads a file. -1, with a line on standard error, where it can't be read or has no 3DFACE.
Result readDxf(const std::filesystem::path& path, ImportedGroups& model);

/// Reads a file into a scene, one ObjectP per layer; `made` (if not null) gets them. On failure
/// nothing is added.
Result importDxf(SceneX& scene, const std::filesystem::path& path,
                 std::vector<ObjectP*>* made = nullptr);

}  // namespace orvin
