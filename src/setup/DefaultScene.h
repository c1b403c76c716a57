// The scene of a new project.
#pragma once

#include <memory>
#include <string_view>

#include "scene/SceneX.h"

namespace orvin {

/// Builds the Sets, the three cameras, the protected default material and style, and the lights: an
/// ambient one first, then three directional ones. The style is there once registerMemberClasses()
/// knows its class. `withObject` gives it the library's "Bevel, Medium" as its edge.
std::unique_ptr<SceneX> buildDefaultScene(std::string_view name, bool withObject);

}  // namespace orvin
