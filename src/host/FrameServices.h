// What the command table calls for parameters and frames: Parameters.cpp, SceneParameters.cpp,
// PoseScene.cpp and RenderFrame.cpp.
#pragma once

#include "host/abi/InData.h"
#include "host/abi/OutData.h"

namespace orvin {

class OrvinApp;

/// The parameters of one command: the host's array, params[0] the input layer. Which commands give
/// one is the host's business; null elsewhere.
using ParamArray = PF_ParamDef* const*;

// ---- parameters

/// PF_Cmd_PARAMS_SETUP: adds all parameters, sets out.num_params and gSetCount, registers the
/// panel's custom UI. The host's error at the first one that fails.
PF_Err addParameters(PF_InData& in, PF_OutData& out);

/// Brings a change that the user made in parameter `index` into the scene. Indices without a
/// meaning for the scene do nothing.
void applyUserChange(OrvinApp& app, PF_InData& in, PF_OutData& out, ParamArray params, int index);

/// Takes the two Use Comp boxes over into the app and greys the parameters that they replace.
void applyUseCompSwitches(OrvinApp& app, PF_InData& in, ParamArray params);

enum class SceneGroup { kCamera = 0, kLights = 1, kSets = 2, kAll = 3 };

/// Writes what differs in the scene back into `params` and flags it as changed. Camera and lights
/// are left out while the comp drives them.
void writeSceneToParameters(OrvinApp& app, PF_InData& in, ParamArray params, SceneGroup group);

// ---- frames

struct PoseOptions {
    bool applyLayerMaps = false;  // ask for the layer maps: render only
    bool setSize = false;         // take the render size from the input layer
};

/// Puts camera, Sets and lights where the parameters (or the comp) have them at in.current_time.
/// The host's error where a check-out fails.
PF_Err poseScene(OrvinApp& app, PF_InData& in, PF_OutData& out, ParamArray params,
                 const PoseOptions& options);

/// Draws the posed scene into `output`. The host's error, or its answer where it stopped the work.
/// Throws what the renderer throws.
PF_Err renderFrame(OrvinApp& app, PF_InData& in, PF_OutData& out, ParamArray params,
                   PF_EffectWorld& output);

}  // namespace orvin
