// Shading normals from the faces of a mesh.
#pragma once

#include <vector>

#include "geometry/Mesh3.h"

namespace orvin {

/// Replaces all normals of `mesh`: at each vertex, corners whose faces meet at less than the angle
/// share a normal, the mean of theirs. A corner is always compared with the one that opened the
/// group, so a long smooth fan breaks where it has turned by the angle. A negative angle keeps
/// every corner to itself.
///
/// Time grows with the number of corners, whatever the valence of a vertex. Faces without area have
/// a zero normal, never NaN.
void smoothNormals(Mesh3& mesh, double angleDegrees);

/// The same for a mesh of which some faces have normals: those keep them, the others get smooth
/// ones. True if there were any to make.
bool completeNormals(Mesh3& mesh, double angleDegrees);

}  // namespace orvin
