// Reader of LightWave objects, "LWOB" and "LWO2": points, polygons, layers, surfaces with their
// colour and transparency, and texture coordinates.
//
// A layer is a group; without layers, or without a name, it is "LWO group". A surface is a material
// slot. Space is turned from left- to right-handed: (x, y, z) is (x, y, -z), and polygons turn
// over. Concave polygons are split. Polygons of two points are lines, of one point points; curves
// are lines; patches and subdivision surfaces come as their cages. The first texture map that gives
// a point coordinates holds for it, unless the polygon has its own.
//
// Not read: envelopes, images, shaders, parts, smoothing groups, weight and morph maps, metaballs,
// bones, pivots. Polygons with an index out of range are dropped, chunks that are cut short read as
// far as they go.
//
// Formats: "LWOB" and "LWO2" object file formats, NewTek.
#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

#include "interchange/ImportedGroups.h"
#include "interchange/ModelInput.h"
#include "toolkit/Result.h"

namespace orvin {

inline constexpr std::string_view kLwoDefaultGroup = "LWO group";

/// Reads a file. -1 where they are no LightWave object, or when the progress callback
/// stopped it.
Result parseLwo(ModelInput& input, ImportedGroups& model);

/// Reads a file. -1, with a line on standard error, where it can't be read or is no LightWave
/// object.
Result readLwo(const std::filesystem::path& path, ImportedGroups& model);

/// Reads a file into a scene, one ObjectP per group; `made` (if not null) gets them. On failure
/// nothing is added.
Result importLwo(SceneX& scene, const std::filesystem::path& path,
                 std::vector<ObjectP*>* made = nullptr);

}  // namespace orvin
