// Writer of Wavefront OBJ files: world-space vertices, texture vertices, unit normals, and one
// group for each section of each object and frame. Polygons of an object that its pose mirrors are
// turned over, so that they look outward still.
#pragma once

#include <filesystem>
#include <span>
#include <string>

#include "interchange/ExportWalk.h"

namespace orvin {

/// Writes the objects. The file takes shape beside `path` and takes its place when it is whole: a
/// failure, or a stop by the progress callback, leaves the old file as it was. -1 with a line on
/// standard error where it can't be written or there is nothing to write.
Result writeObj(const std::filesystem::path& path, std::span<MeshObject* const> objects,
                const ExportOptions& options = {});

/// Writes one mesh in its own space, under a group name.
Result writeObjMesh(const std::filesystem::path& path, const Mesh3& mesh, const std::string& name);

}  // namespace orvin
