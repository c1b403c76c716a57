// The member classes of this folder: CameraX, LightX, MaterialX, ImageMap, ImageFile.
#pragma once

namespace orvin {

/// Makes them known to SceneX. Calling it again changes nothing.
void registerRenderClasses();

}  // namespace orvin
