#include "render/RenderClasses.h"

#include "render/CameraX.h"
#include "render/ImageFile.h"
#include "render/ImageMap.h"
#include "render/LightX.h"
#include "render/MaterialX.h"
#include "scene/MemberClasses.h"

namespace orvin {

void registerRenderClasses() {
    registerMemberClass<CameraX>("CameraX", "camera");
    registerMemberClass<LightX>("LightX", "light");
    registerMemberClass<MaterialX>("MaterialX", "material");
    registerMemberClass<ImageMap>("ImageMap", "imagemap");
    registerMemberClass<ImageFile>("ImageFile", "imagefile");
}

}  // namespace orvin
