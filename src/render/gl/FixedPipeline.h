// FixedPipeline: lights and surfaces as the fixed pipeline takes them. Plain arithmetic;
// ScenePasses hands it on.
#pragma once

#include <array>

#include "render/LightX.h"
#include "render/MaterialX.h"
#include "render/Rgba.h"
#include "toolkit/math/Matrix4.h"

namespace orvin {

struct FixedLight {
    Rgba ambient{0.0F, 0.0F, 0.0F, 1.0F};
    Rgba diffuse{0.0F, 0.0F, 0.0F, 1.0F};  // the specular colour too
    std::array<float, 4> position{};       // in the light's own space
    float exponent = 0.0F;
    float cutoff = 180.0F;  // degrees; 180 is no cone
    bool isSpot = false;
};

/// With `advanced` a spot light gets the widest cone, for its shape comes from a texture then; else
/// the pipeline's own cone, which has no inner angle. Falloff is not translated.
FixedLight fixedLight(const LightX& light, bool advanced);

/// The pipeline's exponent that leaves nine tenths of the light half way between the two angles
/// (degrees): 0 to 128.
double spotExponent(double innerDegrees, double outerDegrees);

/// Its cutoff for an outer angle of 0 to 90 degrees: 1 to 90.
double spotCutoff(double outerDegrees);

struct FixedMaterial {
    Rgba ambient;
    Rgba diffuse;
    Rgba specular;
    float shininess = 0.0F;
};

FixedMaterial fixedMaterial(const MaterialX::Look& look);

}  // namespace orvin
