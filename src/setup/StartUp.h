// The one start-up step that every program and the effect module take first.
#pragma once

namespace orvin {

/// Makes the member classes of all subsystems known to SceneX, in a fixed order, and builds
/// the edge library. Calling it again changes nothing.
void registerMemberClasses();

}  // namespace orvin
