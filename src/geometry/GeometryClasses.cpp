#include "geometry/GeometryClasses.h"

#include "geometry/ObjectP.h"
#include "scene/MemberClasses.h"

namespace orvin {

void registerGeometryClasses() {
    registerMemberClass({"ObjectP", "object",
                         [](SceneX& scene, std::string_view name) -> std::unique_ptr<SceneMember> {
                             return std::make_unique<ObjectP>(scene, name);
                         },
                         [](SceneX& scene, const SceneMember& source,
                            std::string_view name) -> std::unique_ptr<SceneMember> {
                             return std::make_unique<ObjectP>(
                                 scene, dynamic_cast<const ObjectP&>(source), name);
                         }});
}

}  // namespace orvin
