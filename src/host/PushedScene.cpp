#include "host/PushedScene.h"

#include <vector>

#include "render/CameraX.h"
#include "render/LightX.h"

namespace orvin {

namespace {

// A copy to walk while the list itself changes.
std::vector<SceneMember*> lightsOf(const SceneX& scene) {
    const auto lights = scene.members(MemberKind::kLight);
    return {lights.begin(), lights.end()};
}

// Copies by fields, not by cloning: a clone stands under the root in the same world pose, and a
// camera with a parent would come back moved.
void copyLights(const SceneX& from, SceneX& to) {
    for (SceneMember* member : lightsOf(from)) {
        const auto* source = dynamic_cast<const LightX*>(member);
        if (source == nullptr) continue;
        auto* light = to.memberAs<LightX>(MemberKind::kLight, source->name());
        if (light == nullptr) light = &to.make<LightX>(to.uniqueName(source->name()));
        light->copyLightFrom(*source);
    }
}

}  // namespace

void PushedScene::storeCamera(SceneX& scene) {
    const auto* camera = scene.memberAs<CameraX>(MemberKind::kCamera, kDefaultCamera);
    if (camera == nullptr) return;
    auto* kept = scratch_.memberAs<CameraX>(MemberKind::kCamera, kDefaultCamera);
    if (kept == nullptr) kept = &scratch_.make<CameraX>(kDefaultCamera);
    kept->copyCameraFrom(*camera);
}

bool PushedScene::restoreCamera(SceneX& scene) const {
    const auto* kept = scratch_.memberAs<CameraX>(MemberKind::kCamera, kDefaultCamera);
    auto* camera = scene.memberAs<CameraX>(MemberKind::kCamera, kDefaultCamera);
    if (kept == nullptr || camera == nullptr) return false;
    camera->copyCameraFrom(*kept);
    return true;
}

void PushedScene::storeLights(SceneX& scene) {
    for (SceneMember* light : lightsOf(scratch_))
        scratch_.destroy(*light);
    copyLights(scene, scratch_);
    lightsKept_ = true;
}

bool PushedScene::restoreLights(SceneX& scene) const {
    if (!lightsKept_) return false;
    for (SceneMember* light : lightsOf(scene))
        if (scratch_.member(MemberKind::kLight, light->name()) == nullptr) scene.destroy(*light);
    copyLights(scratch_, scene);
    return true;
}

}  // namespace orvin
