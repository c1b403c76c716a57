// Writer of FACT files: a group for each section of each object and frame, with its points in world
// space, texture vertices, unit normals, elements and material.
//
// Points are 32-bit floats where these hold every coordinate to a millionth of the group's size,
// 64-bit ones otherwise (small objects far from the origin). Polygons of an object that its pose
// mirrors are turned over.
#pragma once

#include <filesystem>
#include <span>

#include "interchange/ExportWalk.h"

namespace orvin {

/// Writes the objects. The file takes shape beside `path` and takes its place when it is whole: a
/// failure, or a stop by the progress callback, leaves the old file as it was. -1 with a line on
/// standard error where it can't be written, is larger than 4 GiB, or there is nothing to write.
Result writeFact(const std::filesystem::path& path, std::span<MeshObject* const> objects,
                 const ExportOptions& options = {});

}  // namespace orvin
