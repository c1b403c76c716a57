// Meshes with smaller or simpler faces, for formats that can't hold what this system makes.
#pragma once

#include <vector>

#include "geometry/Mesh3.h"

namespace orvin {

/// The mesh with every face cut into a fan of pieces of at most `maxSides` corners (3 at least).
/// Kind, material, texture and normals stay; faces of fewer than three corners go.
Mesh3 quadrangulate(const Mesh3& source, int maxSides);

/// The mesh with every concave polygon cut into convex ones. Faces that are convex, have no area or
/// are no polygons stay as they are.
/// A mesh without concave faces is given back as it is.
Mesh3 splitConcaveFaces(Mesh3 source);

/// The same for faces that come one by one.
class ConvexFaces {
  public:
    /// Adds a face, or its pieces, to a mesh that has what it indexes.
    void add(Mesh3& mesh, const FaceView& face);

    bool isConcave(const Mesh3& mesh, const FaceView& face);

  private:
    std::vector<Vec2> points_;  // of the face, in its plane
};

}  // namespace orvin
