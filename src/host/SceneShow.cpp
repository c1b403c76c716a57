// What the scene says in the words of the parameters.
#include <cmath>

#include "host/SceneDrive.h"
#include "render/LightX.h"

namespace orvin {

namespace {

constexpr double kSame = 1e-05;  // sliders nearer than this to the scene are left alone

void flag(ParamArray params, int index) {
    params[index]->uu.change_flags = PF_ChangeFlag_CHANGED_VALUE;
}

bool writeSlider(ParamArray params, int index, double value) {
    if (std::abs(sliderValue(params, index) - value) <= kSame) return false;
    params[index]->u.fd.value = toFixed(value);
    flag(params, index);
    return true;
}

/// Three sliders that the host must take as one: a change of one flags them all.
void writeVector(ParamArray params, int first, Vec3 value) {
    bool changed = false;
    for (int axis = 0; axis < 3; ++axis)
        changed = writeSlider(params, first + axis, value[axis]) || changed;
    if (!changed) return;
    for (int axis = 0; axis < 3; ++axis)
        flag(params, first + axis);
}

void writeSets(SceneX& scene, ParamArray params) {
    for (int k = 1; k < gSetCount; ++k) {
        const Group* const set = scene.set(k);
        if (set == nullptr) continue;
        const int base = param::setBase(k);
        writeVector(params, base, set->transform().translate());
        writeVector(params, base + 3, set->transform().rotate());
        writeSlider(params, base + 6, set->transform().scale().z * 100.0);
    }
}

void writeCamera(const CameraX& camera, ParamArray params) {
    params[param::kCameraType]->u.pd.value = popupChoiceOf(camera.mode());
    flag(params, param::kCameraType);
    const CameraPose view = camera.pose();
    writeVector(params, param::kCameraEye, view.eye);
    writeVector(params, param::kCameraTarget, view.target);
    writeSlider(params, param::kCameraDistance, view.distance);
    writeSlider(params, param::kCameraTumbleLeft, view.tumbleLeftRight);
    writeSlider(params, param::kCameraTumbleUp, view.tumbleUpDown);
    writeSlider(params, param::kCameraRoll, view.roll);
    writeSlider(params, param::kCameraOrthoSize, camera.orthoWidth());
}

void writeLights(SceneX& scene, ParamArray params) {
    for (int number = 1; number <= param::kLightCount; ++number) {
        const LightX* const light = sceneLight(scene, number);
        if (light == nullptr) continue;
        const int base = param::lightBase(number);
        PF_Pixel& shown = params[base]->u.cd.value;
        const auto bytes = colorBytes(light->color());
        if (shown.red != bytes[0] || shown.green != bytes[1] || shown.blue != bytes[2]) {
            shown.red = bytes[0];
            shown.green = bytes[1];
            shown.blue = bytes[2];
            flag(params, base);
        }
        writeSlider(params, base + 1, light->intensity() * 100.0);
        const Vec3 rotate = light->transform().rotate();
        writeSlider(params, base + 2, rotate.y);
        writeSlider(params, base + 3, rotate.x);
    }
}

}  // namespace

void showScene(SceneX& scene, ParamArray params, SceneGroup group) {
    const auto wanted = [group](SceneGroup g) { return group == g || group == SceneGroup::kAll; };
    if (wanted(SceneGroup::kSets)) writeSets(scene, params);
    if (wanted(SceneGroup::kCamera))
        if (const CameraX* const camera = sceneCamera(scene)) writeCamera(*camera, params);
    if (wanted(SceneGroup::kLights)) writeLights(scene, params);
}

}  // namespace orvin
