#include "geometry/ShownBounds.h"

#include "geometry/MeshObject.h"

namespace orvin {

Box3 shownBounds(SceneX& scene, int quality) {
    Box3 bounds;
    for (SceneMember* member : scene.members(MemberKind::kObject)) {
        auto* object = dynamic_cast<MeshObject*>(member);
        std::uint32_t revision = 0;
        if (object != nullptr && object->isEnabled() && object->mesh(quality, revision) != nullptr)
            bounds.merge(object->worldBounds());
    }
    return bounds;
}

}  // namespace orvin
