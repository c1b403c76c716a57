// Standing the scene's camera so that a new scene shows.
#pragma once

#include "common/Options.h"
#include "scene/SceneX.h"

namespace orvin::orvinex {

/// Stands the scene's camera so that all objects just fit its picture, in the direction it looks.
/// Nothing happens without a camera or an object.
void frameObjects(SceneX& scene);

/// "--turn LEFTRIGHT,UPDOWN": the direction for frameObjects(), in degrees.
apps::OptionSpec turnOption();
void turnCamera(SceneX& scene, const apps::ParsedOptions& options);

}  // namespace orvin::orvinex
