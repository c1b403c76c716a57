// Writer of LightWave objects, with the sections of each object and frame in world space.
//
// "LWO2" has a layer for each section: its points, polygons, its material as a surface with colour,
// transparency and the hard shading angle of the first object that shows it, and texture
// coordinates as the map "Texture". "LWOB", the form of LightWave 5 and before, has one list of
// points and one of polygons for all sections, which only their surfaces tell apart, and no texture
// coordinates; colours have eight bits.
//
// Space is turned from right- to left-handed, and polygons with it; those of an object that its
// pose mirrors are turned over once more. Polygons of more than 1023 corners are split. Numbers are
// 32-bit floats. Normals aren't written: the format has none.
#pragma once

#include <filesystem>
#include <span>

#include "interchange/ExportWalk.h"

namespace orvin {

/// Writes the objects, as LWO2 or by `options.lwob` as LWOB. The file takes shape beside `path` and
/// takes its place when it is whole: a failure, or a stop by the progress callback, leaves the old
/// file as it was. -1 with a line on standard error where it can't be written or there is nothing
/// to write, and for a layer of more points or polygons than LWO2 can number (2^24), or more points
/// (65535) or surfaces (32767) in all than LWOB can.
Result writeLwo(const std::filesystem::path& path, std::span<MeshObject* const> objects,
                const ExportOptions& options = {});

}  // namespace orvin
