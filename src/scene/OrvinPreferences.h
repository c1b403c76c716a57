// OrvinPreferences: the user's settings. They live in the project, or in the startup project that
// new scenes begin with.
#pragma once

#include "toolkit/math/Vec.h"

namespace orvin {

struct OrvinPreferences {
    int defaultGroup = 1;     // number of the Set that new objects join
    int shadowQuality = 512;  // side of a shadow map in texels
    Vec3 duplicationOffset{50.0, -50.0, 0.0};
    bool groundPlaneOn = true;
    int groundPlaneLevel = 0;  // y of the plane, world units
    int numberUndos = 5;
    bool advancedGLLighting = false;
    bool hideGLRenderWindows = true;
    bool showTexturesECW = false;    // in the effect panel's viewer
    bool showTexturesComp = false;   // in draft frames
    bool showTexturesSetup = false;  // in the Set-Up window
    double hardShadingAngle = 20.0;  // degrees
    int saveMode = 0;                // 0 binary thumbnails, 1 hexadecimal
};

}  // namespace orvin
