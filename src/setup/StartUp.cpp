#include "setup/StartUp.h"

#include "geometry/GeometryClasses.h"
#include "interchange/ModelFormats.h"
#include "render/RenderClasses.h"
#include "scene/MemberClasses.h"
#include "vector/VectorClasses.h"
#include "vector/edges/EdgeLibrary.h"

namespace orvin {

void registerMemberClasses() {
    registerSceneClasses();
    registerGeometryClasses();
    registerExtrusionClasses();
    registerVectorClasses();
    registerRenderClasses();
    installModelHooks();
    loadEdgeLibrary();  // of members of the classes above; does nothing the next time
}

}  // namespace orvin
