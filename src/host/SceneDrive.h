// How parameter values move the scene, and how scene values read as parameters: the camera, the
// Sets and the three lights. The host's structures stay outside.
#pragma once

#include <optional>

#include "host/ParamValues.h"
#include "scene/SceneX.h"

namespace orvin {

class LightX;

/// The camera that the parameters drive; null for a scene without one.
CameraX* sceneCamera(SceneX& scene);

/// Scene light 1 to 3 (0 is the ambient one); null where there is none.
LightX* sceneLight(SceneX& scene, int number);

/// Camera sliders and popup at once. A choice outside 1 to 3 leaves the mode.
void driveCamera(CameraX& camera, ParamArray params);

/// Position, rotation and depth of a Set's group.
void driveSet(Group& set, ParamArray params, int number);

/// Colour, intensity and direction of a light.
void driveLight(LightX& light, ParamArray params, int number);

/// Writes what differs in the scene by more than 1e-05 into `params` and flags it as changed; the
/// three values of a position or rotation are flagged together, the camera's mode always.
void showScene(SceneX& scene, ParamArray params, SceneGroup group);

}  // namespace orvin
