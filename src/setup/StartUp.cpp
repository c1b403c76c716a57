#include "setup/StartUp.h"

#include "geometry/GeometryClasses.h"
#include "render/RenderClasses.h"
#include "scene/MemberClasses.h"

namespace orvin {

void registerMemberClasses() {
    registerSceneClasses();
    registerGeometryClasses();
    registerRenderClasses();
}

}  // namespace orvin
