// The box of all that a frame shows.
#pragma once

#include "scene/SceneX.h"
#include "toolkit/math/Box3.h"

namespace orvin {

/// The world box of the scene's enabled objects that have a mesh of `quality` (0 preview,
/// 1 render); empty for none. Brings those meshes up to date on the way: the box of another
/// quality's mesh would cost a rebuild.
Box3 shownBounds(SceneX& scene, int quality);

}  // namespace orvin
