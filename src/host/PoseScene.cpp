// Poses the scene for one moment: camera, Sets and lights from the parameters or from the comp.
#include "host/CompLinks.h"
#include "host/FrameServices.h"
#include "host/HostState.h"
#include "host/LayerMaps.h"
#include "host/OrvinApp.h"
#include "host/SceneDrive.h"
#include "render/LightX.h"
#include "scene/FrameClock.h"

namespace orvin {

namespace {

void setFrameClock(const PF_InData& in) {
    if (in.time_step <= 0) return;
    const int total = in.total_time / in.time_step;
    if (total < 1) return;
    setTotalFrames(total);
    setCurrentFrame(in.current_time / in.time_step);
}

/// What the comp drives in this pose. Where the host can't tell the comp's time, nothing: hosts
/// answer that question in some commands only, and the boxes stay ticked meanwhile.
struct CompLinks {
    bool camera = false;
    bool lights = false;
    A_Time time{};
};

CompLinks compLinks(const OrvinApp& app, const PF_InData& in, SuiteSet& suites) {
    CompLinks links;
    if (!gHostHasCompLinks || !(app.useCompCamera || app.useCompLights)) return links;
    const A_Err error = suites.pfInterface().AEGP_ConvertEffectToCompTime(
        in.effect_ref, in.current_time, in.time_scale, &links.time);
    if (error != A_Err_NONE) return links;
    links.camera = app.useCompCamera;
    links.lights = app.useCompLights;
    return links;
}

void poseCamera(OrvinApp& app, const PF_InData& in, ParamArray params, const CompLinks& links,
                SuiteSet& suites) {
    SceneX& scene = *app.scene();
    CameraX* const camera = sceneCamera(scene);
    if (camera == nullptr) return;
    if (links.camera) {
        if (driveCameraFromComp(suites, in, links.time, *camera)) return;
        // The lens may still be the comp's from another frame: the scene's own comes back.
        if (!app.panelPushed().restoreCamera(scene)) app.setUpPushed().restoreCamera(scene);
    }
    driveCamera(*camera, params);
}

void poseLights(OrvinApp& app, const PF_InData& in, ParamArray params, const CompLinks& links,
                SuiteSet& suites) {
    SceneX& scene = *app.scene();
    if (links.lights) {
        if (driveLightsFromComp(suites, in, links.time, scene, app.renderState())) return;
        // The comp has switched everything off: the scene's own lights come back.
        if (!app.panelPushed().restoreLights(scene)) app.setUpPushed().restoreLights(scene);
    }
    for (int number = 1; number <= param::kLightCount; ++number)
        if (LightX* const light = sceneLight(scene, number)) driveLight(*light, params, number);
}

}  // namespace

PF_Err poseScene(OrvinApp& app, PF_InData& in, PF_OutData&, ParamArray params,
                 const PoseOptions& options) {
    SceneX* const scene = app.scene();
    if (scene == nullptr || params == nullptr) return PF_Err_NONE;
    setFrameClock(in);

    SuiteSet suites(in.pica_basicP);
    const CompLinks links = compLinks(app, in, suites);
    poseCamera(app, in, params, links, suites);
    for (int k = 1; k < gSetCount; ++k)
        if (Group* const set = scene->set(k)) driveSet(*set, params, k);
    poseLights(app, in, params, links, suites);

    if (options.applyLayerMaps) {
        const PF_Err error = listLayerMaps(in, app.layerMaps);
        if (error != PF_Err_NONE) return error;
    }
    if (options.setSize) {
        const PF_LayerDef& layer = params[param::kInput]->u.ld;
        if (layer.width > 0 && layer.height > 0) {
            app.renderState().params.width = layer.width;
            app.renderState().params.height = layer.height;
        }
    }
    return PF_Err_NONE;
}

}  // namespace orvin
