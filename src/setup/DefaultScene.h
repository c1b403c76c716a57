// The scene of a new project.
#pragma once

#include <memory>
#include <string_view>

#include "scene/SceneX.h"

namespace orvin {

/// Builds the Sets, the three cameras, the protected default material and style, and the lights: an
/// ambient one first, then three directional ones. The style is there once registerMemberClasses()
/// knows its class. `withObject` asks for a bevelled edge on it; there is none to give yet.
std::unique_ptr<SceneX> buildDefaultScene(std::string_view name, bool withObject);

}  // namespace orvin
