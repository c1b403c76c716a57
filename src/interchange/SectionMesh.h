// The mesh of one section of an export, for formats in which a group holds its own points.
#pragma once

#include "interchange/ExportWalk.h"

namespace orvin {

/// The faces of a part that are in `section`, in slot 0, with the points that they use: vertices in
/// world space, normals of unit length there. Polygons of a part that its pose mirrors are turned
/// over, so that they look outward still.
Mesh3 sectionMesh(const ExportPart& part, int section);

}  // namespace orvin
