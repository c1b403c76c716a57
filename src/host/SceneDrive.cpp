#include "host/SceneDrive.h"

#include "render/LightX.h"

namespace orvin {

CameraX* sceneCamera(SceneX& scene) {
    return scene.memberAs<CameraX>(MemberKind::kCamera, kDefaultCamera);
}

LightX* sceneLight(SceneX& scene, int number) {
    const auto lights = scene.members(MemberKind::kLight);
    const auto index = static_cast<std::size_t>(number);
    return index < lights.size() ? dynamic_cast<LightX*>(lights[index]) : nullptr;
}

void driveCamera(CameraX& camera, ParamArray params) {
    CameraPose sliders;
    sliders.eye = sliderVector(params, param::kCameraEye);
    sliders.target = sliderVector(params, param::kCameraTarget);
    sliders.distance = sliderValue(params, param::kCameraDistance);
    sliders.tumbleLeftRight = sliderValue(params, param::kCameraTumbleLeft);
    sliders.tumbleUpDown = sliderValue(params, param::kCameraTumbleUp);
    sliders.roll = sliderValue(params, param::kCameraRoll);
    const auto mode = cameraModeOf(params[param::kCameraType]->u.pd.value);
    camera.drive(mode.value_or(camera.mode()), sliders);
    const double orthoSize = sliderValue(params, param::kCameraOrthoSize);
    if (static_cast<float>(orthoSize) != static_cast<float>(camera.orthoWidth()))
        camera.setOrthoSize(orthoSize);
}

void driveSet(Group& set, ParamArray params, int number) {
    const int base = param::setBase(number);
    Transform& transform = set.transform();
    transform.setTranslate(sliderVector(params, base));
    transform.setRotate(sliderVector(params, base + 3));
    const Vec3 scale = transform.scale();
    transform.setScale({scale.x, scale.y, sliderValue(params, base + 6) * 0.01});
}

void driveLight(LightX& light, ParamArray params, int number) {
    const int base = param::lightBase(number);
    light.setColor(lightColor(params[base]->u.cd.value));
    light.setIntensity(sliderValue(params, base + 1) * 0.01);
    const double direction = sliderValue(params, base + 2);
    const double elevation = sliderValue(params, base + 3);
    light.transform().setRotate({elevation, direction, light.transform().rotate().z});
}

}  // namespace orvin
