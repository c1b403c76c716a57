#include "geometry/GeometryClasses.h"

#include "geometry/ObjectP.h"
#include "geometry/ObjectX.h"
#include "geometry/ObjectXStyle.h"
#include "scene/MemberClasses.h"

namespace orvin {

namespace {

template <typename T>
void registerClass(std::string_view className, std::string_view autoNamePrefix) {
    registerMemberClass({className, autoNamePrefix,
                         [](SceneX& scene, std::string_view name) -> std::unique_ptr<SceneMember> {
                             return std::make_unique<T>(scene, name);
                         },
                         [](SceneX& scene, const SceneMember& source,
                            std::string_view name) -> std::unique_ptr<SceneMember> {
                             return std::make_unique<T>(scene, dynamic_cast<const T&>(source),
                                                        name);
                         }});
}

}  // namespace

void registerGeometryClasses() {
    registerClass<ObjectP>("ObjectP", "object");
}

void registerExtrusionClasses() {
    registerClass<ObjectXStyle>("ObjectXStyle", "objectstyle");
    registerClass<ObjectX>("ObjectX", "object");
}

}  // namespace orvin
