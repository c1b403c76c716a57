// Writer of LightWave objects ("LWO2"): a layer for each section of each object and frame, with its
// points in world space, polygons, its material as a surface with colour, transparency and the hard
// shading angle of the first object that shows it, and texture coordinates as the map "Texture".
//
// Space is turned from right- to left-handed, and polygons with it; those of an object that its
// pose mirrors are turned over once more. Polygons of more than 1023 corners are split. Numbers are
// 32-bit floats. Normals aren't written: the format has none.
#pragma once

#include <filesystem>
#include <span>

#include "interchange/ExportWalk.h"

namespace orvin {

/// Writes the objects. The file takes shape beside `path` and takes its place when it is whole: a
/// failure, or a stop by the progress callback, leaves the old file as it was. -1 with a line on
/// standard error where it can't be written or there is nothing to write, and for a layer of more
/// points or polygons than the format can number (2^24).
Result writeLwo(const std::filesystem::path& path, std::span<MeshObject* const> objects,
                const ExportOptions& options = {});

}  // namespace orvin
