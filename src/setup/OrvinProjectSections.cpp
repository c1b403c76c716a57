#include "setup/OrvinProjectSections.h"

#include "geometry/MeshObject.h"
#include "render/ImageFile.h"
#include "scene/LocateImage.h"
#include "scene/SceneStream.h"
#include "setup/DefaultScene.h"

namespace orvin {

Result OrvinProjectSections::writeSceneSections(SceneStream& stream, SceneX& mainScene) {
    cameraViews_.storeCurrent(mainScene);
    for (const auto& view : cameraViews_.views())
        if (const Result result = stream.writeObject(*view); result != kSuccess) return result;
    return kSuccess;
}

Result OrvinProjectSections::writeLightSections(SceneStream&, SceneX&) {
    return kSuccess;
}

Persistent* OrvinProjectSections::beginSection(std::string_view className, SceneX&, SceneX&) {
    return className == "OrvinCameraView" ? &cameraViews_.add("tempname") : nullptr;
}

void OrvinProjectSections::clear() {
    cameraViews_.clear();
}

void OrvinProjectSections::projectRead(SceneX& mainScene) {
    cameraViews_.restoreCurrent(mainScene);
}

Result OrvinProjectSections::reloadImages(SceneX& scene) {
    return orvin::reloadImages(scene, locateImage);
}

std::unique_ptr<SceneX> OrvinProjectSections::buildDefaultScene(std::string_view name,
                                                                bool withObject) {
    return orvin::buildDefaultScene(name, withObject);
}

void OrvinProjectSections::hardShadingAngleChanged(double degrees) {
    setDefaultHardShadingAngle(degrees);
}

void OrvinProjectSections::refreshAfterLoad(SceneX& mainScene, const RenderState& renderState,
                                            bool redraw) {
    if (refresh_) refresh_(mainScene, renderState, redraw);
}

}  // namespace orvin
