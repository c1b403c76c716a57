// The services of FrameServices.h that aren't written yet: each fails with the host's number for a
// callback that isn't there, so that nobody takes silence for success.
#include "host/FrameServices.h"

#include "host/HostState.h"

namespace orvin {

PF_Err addParameters(PF_InData&, PF_OutData&) {
    return PF_Err_INVALID_CALLBACK;
}

void applyUserChange(OrvinApp&, PF_InData&, PF_OutData&, ParamArray, int) {
    checkHost(PF_Err_INVALID_CALLBACK);
}

void applyUseCompSwitches(OrvinApp&, PF_InData&, ParamArray) {
    checkHost(PF_Err_INVALID_CALLBACK);
}

void writeSceneToParameters(OrvinApp&, PF_InData&, ParamArray, SceneGroup) {
    checkHost(PF_Err_INVALID_CALLBACK);
}

PF_Err poseScene(OrvinApp&, PF_InData&, PF_OutData&, ParamArray, const PoseOptions&) {
    return PF_Err_INVALID_CALLBACK;
}

PF_Err renderFrame(OrvinApp&, PF_InData&, PF_OutData&, ParamArray, PF_EffectWorld&) {
    return PF_Err_INVALID_CALLBACK;
}

}  // namespace orvin
