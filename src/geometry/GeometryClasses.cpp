#include "geometry/GeometryClasses.h"

#include "geometry/ObjectP.h"
#include "geometry/ObjectX.h"
#include "geometry/ObjectXStyle.h"
#include "scene/MemberClasses.h"

namespace orvin {

void registerGeometryClasses() {
    registerMemberClass<ObjectP>("ObjectP", "object");
}

void registerExtrusionClasses() {
    registerMemberClass<ObjectXStyle>("ObjectXStyle", "objectstyle");
    registerMemberClass<ObjectX>("ObjectX", "object");
}

}  // namespace orvin
