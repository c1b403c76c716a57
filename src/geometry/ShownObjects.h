// What a frame shows.
#pragma once

#include <vector>

#include "scene/SceneX.h"
#include "toolkit/math/Box3.h"

namespace orvin {

class MeshObject;

/// The scene's enabled objects that may have a mesh, in scene order.
std::vector<MeshObject*> shownObjects(const SceneX& scene);

/// The world box of those that have a mesh of `quality` (0 preview, 1 render); empty for none.
/// Brings those meshes up to date on the way: the box of another quality's mesh would cost a
/// rebuild.
Box3 shownBounds(SceneX& scene, int quality);

}  // namespace orvin
