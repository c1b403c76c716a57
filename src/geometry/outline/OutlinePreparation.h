// From the polylines of a profile to a clean shape that can be meshed.
#pragma once

#include "geometry/Mesh3.h"
#include "geometry/outline/LoopOffset.h"
#include "geometry/outline/PolyShape2.h"

namespace orvin {

/// Adds every polyline of three or more points, open ones too, as a loop that begins at its lowest
/// point (the leftmost of those): there the texture of the edge has its seam. Polylines with
/// coordinates that aren't finite are told and left out.
void loadLoops(const Mesh2& geometry, PolyShape2& shape);

/// Moves the outline of an oriented shape sideways, outwards for a positive distance, and makes it
/// clean again. Corners sharper than 45 degrees get two records, so that their edges shade hard.
/// What vanishes is gone: the shape may be empty afterwards.
void offsetFrontFace(PolyShape2& shape, double distance, OffsetRepair repair);

/// Blunts the needle tips of fonts and drawings: short edges between two long sides that fold back
/// onto each other within `angle` degrees. Their points step back by `pullBack`.
void removeSpikes(PolyShape2& shape, double angle, double pullBack);

}  // namespace orvin
