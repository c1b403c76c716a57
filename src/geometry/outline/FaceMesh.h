// The flat front and back of an extruded object.
#pragma once

#include "geometry/Mesh3.h"
#include "geometry/outline/PolyShape2.h"

namespace orvin {

struct FaceSettings {
    bool front = true;
    bool back = true;
    double depth = 0.0;  // the back is made only for a depth above 0
    int frontMaterial = 0;
    int backMaterial = 0;
};

/// Adds the faces of an oriented, welded shape as convex polygons of up to 256 corners: the front
/// at z 0 with the normal (0, 0, 1), the back at -depth. Texture coordinates run from 0 to 1 over
/// the box of the shape, on the back from right to left. An outline that can't be filled whole
/// leaves a gap.
void meshFaces(const PolyShape2& shape, const FaceSettings& settings, Mesh3& mesh);

}  // namespace orvin
