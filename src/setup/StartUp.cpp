#include "setup/StartUp.h"

#include "geometry/GeometryClasses.h"
#include "interchange/ModelFormats.h"
#include "render/RenderClasses.h"
#include "scene/MemberClasses.h"
#include "vector/VectorClasses.h"

namespace orvin {

void registerMemberClasses() {
    registerSceneClasses();
    registerGeometryClasses();
    registerExtrusionClasses();
    registerVectorClasses();
    registerRenderClasses();
    installModelHooks();
}

}  // namespace orvin
