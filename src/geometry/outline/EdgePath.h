// EdgePath: one path of an edge profile, ready to be swept.
#pragma once

#include <span>
#include <vector>

#include "geometry/Mesh3.h"
#include "geometry/ProfileProperty.h"
#include "geometry/outline/CompositeCurve2.h"
#include "toolkit/Result.h"

namespace orvin {

struct EdgePath {
    std::vector<Vec2> points;    // in depths: x sideways, y from the front (0) to the back (1)
    std::vector<double> arcV;    // 1 minus the fraction of arc length, per point
    std::vector<int> materials;  // per point: the slot of the strip that begins there
};

struct EdgePathSettings {
    double depth = 0.0;
    double xScale = 1.0;
    double longestStep = 0.0;  // scene units between points; 0: as drawn
};

/// Path `pathIndex` of a flattened edge (drawn in a box of 0 to 100). Steps longer than wished are
/// divided (into no more than 4096 in all), a path that begins or ends flat on the face gets a
/// small step there, and each boundary between materials gets a point. `intervals` may be null.
/// -1 where the path isn't there or the intervals end before it does.
Result prepareEdgePath(const Mesh2& geometry, const InputProfile2& edge, int pathIndex,
                       const MaterialIntervals* intervals, const EdgePathSettings& settings,
                       EdgePath& path);

}  // namespace orvin
