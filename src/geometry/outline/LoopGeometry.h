// What the outline kernel computes for one closed loop of points.
#pragma once

#include <span>
#include <vector>

#include "geometry/outline/Line2.h"

namespace orvin {

/// The unit vector of a step. One of no more than 0.001 keeps its length, so that it hardly counts
/// beside a real one.
Vec2 stepDirection(Vec2 step);

/// Unit normals to the right of the direction of travel (outwards for a counter-clockwise loop),
/// one per point: across the mean direction of the two edges. Of two points at one place each takes
/// the normal of its own side, so that a doubled corner shades hard. Zero where there is no
/// direction.
std::vector<Vec2> cornerNormals(std::span<const Vec2> loop);

/// The running length at each point as a fraction of the closed loop's. False, with zeros, for a
/// loop without length.
bool loopArc(std::span<const Vec2> loop, std::vector<double>& u);

}  // namespace orvin
