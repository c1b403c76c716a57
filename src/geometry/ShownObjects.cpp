#include "geometry/ShownObjects.h"

#include "geometry/MeshObject.h"

namespace orvin {

std::vector<MeshObject*> shownObjects(const SceneX& scene) {
    std::vector<MeshObject*> objects;
    for (SceneMember* member : scene.members(MemberKind::kObject)) {
        auto* object = dynamic_cast<MeshObject*>(member);
        if (object != nullptr && object->isEnabled()) objects.push_back(object);
    }
    return objects;
}

Box3 shownBounds(SceneX& scene, int quality) {
    Box3 bounds;
    for (MeshObject* object : shownObjects(scene)) {
        std::uint32_t revision = 0;
        if (object->mesh(quality, revision) != nullptr) bounds.merge(object->worldBounds());
    }
    return bounds;
}

}  // namespace orvin
