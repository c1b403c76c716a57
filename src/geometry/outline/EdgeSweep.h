// Carries a closed loop of the outline along a path of an edge: rings of points, stitched index by
// index.
#pragma once

#include <span>

#include "geometry/Mesh3.h"
#include "geometry/outline/EdgePath.h"
#include "geometry/outline/LoopOffset.h"

namespace orvin {

/// One loop with what the sweep needs at each point.
struct SweepLoop {
    std::vector<Vec2> points;
    std::vector<Vec2> normals;  // unit, to the right of the direction of travel; or zero
    std::vector<double> u;      // texture coordinate
    double closingU = 1.0;      // of the first point when the ring closes
};

struct SweepSettings {
    double depth = 0.0;
    double xScale = 1.0;
    bool everyRing = false;  // offset and repair each ring by itself; else rings are blends of one
    OffsetRepair repair = OffsetRepair::kFans;
};

/// Adds the rings (a vertex and a normal per point, one more texture vertex to close the ring) and
/// the quads between them, triangles where points fell together. Numbers of vertices and normals
/// must be equal in `mesh`, since one index serves both. A point without a normal has a zero one on
/// every ring. A path whose end meets its beginning in the same direction ends on its first ring.
void sweepPath(const EdgePath& path, const SweepLoop& loop, const SweepSettings& settings,
               Mesh3& mesh);

}  // namespace orvin
