// Surface tangents: the directions in which the texture coordinates grow.
#pragma once

#include <vector>

#include "geometry/Mesh3.h"

namespace orvin {

/// dP/du and dP/dv, one of each per texture vertex: sums over the triangles around it, normalised.
/// Zero where nothing adds to a sum.
struct SurfaceTangents {
    std::vector<Vec3> tangents;
    std::vector<Vec3> binormals;
};

/// Faces are taken as fans of triangles. Those that are degenerate by `degenerateLimit` (see
/// Mesh3::isDegenerate), triangles without area and triangles without texture extent add nothing.
SurfaceTangents surfaceTangents(const Mesh3& mesh, double degenerateLimit);

}  // namespace orvin
