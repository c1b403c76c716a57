// Mesh3: the polygon mesh that all builders write and all consumers read. Mesh2 is its flat twin,
// in which edge and face profiles hand out their polylines.
#pragma once

#include "geometry/MeshRecord.h"
#include "toolkit/math/Box3.h"
#include "toolkit/math/Vec.h"

namespace orvin {

/// The points p with dot(normal, p) == offset.
struct Plane {
    Vec3 normal;  // of unit length, or zero where there is no plane
    double offset = 0.0;
};

/// Texture vertices are (u, v, w); w is kept and not used.
class Mesh3 : public MeshRecord<Vec3> {
  public:
    /// Plane through a face by Newell's method, from all corners: right for any planar polygon and
    /// a good fit for others. The normal points to where the corners run counter-clockwise. Zero
    /// for fewer than three corners, for a face without area and for coordinates that overflow.
    Plane facePlane(int face) const { return planeOf(this->face(face).vertices); }
    /// The same for a polygon of vertices that are there.
    Plane planeOf(std::span<const int> corners) const;

    /// True unless the triangle of some corner and its two neighbours has a cross product whose
    /// squared length is above `epsilon`.
    bool isDegenerate(int face, double epsilon) const;

    Box3 bounds() const;  // of all vertices; empty without any
};

/// Kinds of its faces: kPolygon a closed loop, kPointList an open path.
class Mesh2 : public MeshRecord<Vec2> {};

}  // namespace orvin
