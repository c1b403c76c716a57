// Writer of ASCII DXF files: a 3DFACE for each polygon of three or four corners, on a layer for
// each section of each object and frame, in the colour index nearest to the section's material. No
// header, tables or blocks.
//
// The file's Z is up: a point (x, y, z) is written as (x, -z, y). The flat faces of extruded
// objects, which may have any number of corners, are cut into quads first; polygons of more than
// four corners of other objects are left out, with a line on standard error.
#pragma once

#include <filesystem>
#include <span>

#include "interchange/ExportWalk.h"

namespace orvin {

/// Writes the objects. The file takes shape beside `path` and takes its place when it is whole: a
/// failure, or a stop by the progress callback, leaves the old file as it was. -1 with a line on
/// standard error where it can't be written or there is nothing to write.
Result writeDxf(const std::filesystem::path& path, std::span<MeshObject* const> objects,
                const ExportOptions& options = {});

/// The name of a layer: `name` with "_" for each blank and each of !./\(), which layers can't have.
std::string dxfLayerName(std::string name);

}  // namespace orvin
