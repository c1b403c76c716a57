// The comp's own camera and lights in the place of the scene's.
#pragma once

#include "host/SuiteSet.h"
#include "host/abi/InData.h"
#include "scene/SceneX.h"

namespace orvin {

struct RenderState;
class CameraX;

/// Comp space (origin top left, y down, z away) to scene space (origin in the centre, y up): makes
/// `camera` a matrix-driven node in the place of a comp layer. `layer` is the layer-to-world
/// matrix.
void applyCompMatrix(CameraX& camera, const A_Matrix4& layer, int compWidth, int compHeight);

/// Poses `camera` as the comp's active camera at `compTime`. False where there is none; throws the
/// host's error as a plain long where a camera can't be read.
bool driveCameraFromComp(SuiteSet& suites, const PF_InData& in, const A_Time& compTime,
                         CameraX& camera);

/// Lights the scene as the comp's active lights do; scene lights left over are switched off, and
/// shadows are turned on in `renderState`. False without any light in the comp: all scene lights
/// are then switched off and dark. Throws the host's error as a plain long.
bool driveLightsFromComp(SuiteSet& suites, const PF_InData& in, const A_Time& compTime,
                         SceneX& scene, RenderState& renderState);

}  // namespace orvin
