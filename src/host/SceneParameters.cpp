// Between parameters and scene while the artist works: a changed parameter moves the scene, a
// change in the viewer is written back.
#include "host/FrameServices.h"
#include "host/HostState.h"
#include "host/OrvinApp.h"
#include "host/SceneDrive.h"
#include "host/SuiteSet.h"
#include "render/LightX.h"

namespace orvin {

namespace {

// ---- the Use Comp boxes

/// Greys or frees the parameters `first` to `last`. The host works on a copy; that it may refuse is
/// of no consequence.
void greyOut(PF_InData& in, ParamArray params, int first, int last, bool grey) {
    SuiteSet suites(in.pica_basicP);
    for (int i = first; i <= last; ++i) {
        PF_ParamDef copy = *params[i];
        if (grey) {
            copy.ui_flags |= PF_PUI_DISABLED;
            copy.flags |= PF_ParamFlag_COLLAPSE_TWIRLY;
        } else {
            copy.ui_flags &= ~PF_PUI_DISABLED;
        }
        suites.paramUtils().PF_UpdateParamUI(in.effect_ref, i, &copy);
    }
}

void applyCameraSwitch(OrvinApp& app, PF_InData& in, ParamArray params) {
    app.useCompCamera = checkboxValue(params, param::kUseCompCamera);
    greyOut(in, params, param::kCameraFirst, param::kCameraLast, app.useCompCamera);
}

void applyLightsSwitch(OrvinApp& app, PF_InData& in, ParamArray params) {
    app.useCompLights = checkboxValue(params, param::kUseCompLights);
    greyOut(in, params, param::kLightsFirst, param::kLightsLast, app.useCompLights);
}

// A frame may have taken a box over before its change arrives: what the comp drives by then isn't
// the scene's own, and isn't kept as such.
void changeCameraSwitch(OrvinApp& app, PF_InData& in, PF_OutData& out, ParamArray params) {
    const bool wasOn = app.useCompCamera;
    applyCameraSwitch(app, in, params);
    SceneX& scene = *app.scene();
    if (app.useCompCamera) {
        if (!wasOn) app.panelPushed().storeCamera(scene);
        // Without the layer maps: the host lends no layers while it waits for its parameters.
        poseScene(app, in, out, params, {});
    } else {
        app.panelPushed().restoreCamera(scene);
    }
}

void changeLightsSwitch(OrvinApp& app, PF_InData& in, PF_OutData& out, ParamArray params) {
    const bool wasOn = app.useCompLights;
    applyLightsSwitch(app, in, params);
    SceneX& scene = *app.scene();
    if (app.useCompLights) {
        if (!wasOn) app.panelPushed().storeLights(scene);
        poseScene(app, in, out, params, {});
    } else {
        app.panelPushed().restoreLights(scene);
    }
}

// ---- parameters to scene

void changeCamera(CameraX& camera, ParamArray params, int index) {
    // What the camera shows now, with one value replaced: a slider of another mode than the present
    // one then starts from the picture.
    const CameraPose view = camera.pose();
    const double value = index == param::kCameraType ? 0.0 : sliderValue(params, index);
    if (index == param::kCameraType) {
        if (const auto mode = cameraModeOf(params[index]->u.pd.value)) camera.setMode(*mode);
    } else if (index < param::kCameraTarget) {
        Vec3 eye = view.eye;
        eye[index - param::kCameraEye] = value;
        camera.setEye(eye);
    } else if (index < param::kCameraDistance) {
        Vec3 target = view.target;
        target[index - param::kCameraTarget] = value;
        camera.setTarget(target);
    } else if (index == param::kCameraDistance) {
        camera.setDistance(value);
    } else if (index == param::kCameraTumbleLeft || index == param::kCameraTumbleUp) {
        camera.setTumble(sliderValue(params, param::kCameraTumbleLeft),
                         sliderValue(params, param::kCameraTumbleUp));
    } else if (index == param::kCameraRoll) {
        camera.setRoll(value);
    } else {
        camera.setOrthoSize(value);
    }
}

void changeLight(LightX& light, ParamArray params, int base, int offset) {
    switch (offset) {
        case 0:
            light.setColor(lightColor(params[base]->u.cd.value));
            break;
        case 1:
            light.setIntensity(sliderValue(params, base + 1) * 0.01);
            break;
        default:
            light.transform().setRotate({sliderValue(params, base + 3),
                                         sliderValue(params, base + 2),
                                         light.transform().rotate().z});
            break;
    }
}

}  // namespace

void applyUseCompSwitches(OrvinApp& app, PF_InData& in, ParamArray params) {
    if (!gHostHasCompLinks || params == nullptr) return;
    applyCameraSwitch(app, in, params);
    applyLightsSwitch(app, in, params);
}

void applyUserChange(OrvinApp& app, PF_InData& in, PF_OutData& out, ParamArray params, int index) {
    SceneX* const scene = app.scene();
    if (scene == nullptr || params == nullptr) return;
    if (index == param::kUseCompCamera) {
        changeCameraSwitch(app, in, out, params);
    } else if (index == param::kUseCompLights) {
        changeLightsSwitch(app, in, out, params);
    } else if (index >= param::kCameraFirst && index <= param::kCameraLast) {
        if (CameraX* const camera = sceneCamera(*scene)) changeCamera(*camera, params, index);
    } else if (index >= param::kSetsFirst && index <= param::kSetsLast) {
        const int number = param::setOf(index);
        if (Group* const set = scene->set(number)) driveSet(*set, params, number);
    } else {
        for (int number = 1; number <= param::kLightCount; ++number) {
            const int offset = index - param::lightBase(number);
            LightX* const light = sceneLight(*scene, number);
            if (offset >= 0 && offset <= 3 && light != nullptr)
                changeLight(*light, params, param::lightBase(number), offset);
        }
    }
}

void writeSceneToParameters(OrvinApp& app, PF_InData&, ParamArray params, SceneGroup group) {
    if (app.scene() == nullptr || params == nullptr) return;
    for (const SceneGroup part : {SceneGroup::kSets, SceneGroup::kCamera, SceneGroup::kLights}) {
        // What the comp drives isn't the artist's: greyed parameters keep their values.
        const bool driven = (part == SceneGroup::kCamera && app.useCompCamera) ||
                            (part == SceneGroup::kLights && app.useCompLights);
        if (!driven && (group == part || group == SceneGroup::kAll))
            showScene(*app.scene(), params, part);
    }
}

}  // namespace orvin
