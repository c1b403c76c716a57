#include "render/gl/FixedPipeline.h"

#include <algorithm>
#include <cmath>

namespace orvin {

namespace {

constexpr double kMostExponent = 128.0;

Rgba times(const Rgba& color, double intensity, float alpha) {
    const float k = static_cast<float>(intensity);
    return {color[0] * k, color[1] * k, color[2] * k, alpha};
}

}  // namespace

double spotExponent(double innerDegrees, double outerDegrees) {
    const double middle = std::cos(radians((innerDegrees + outerDegrees) / 2.0));
    if (middle >= 1.0) return kMostExponent;
    if (middle <= 0.0) return 0.0;
    return std::clamp(std::log(0.9) / std::log(middle), 0.0, kMostExponent);
}

double spotCutoff(double outerDegrees) {
    return std::min(outerDegrees, 89.0) + 1.0;
}

FixedLight fixedLight(const LightX& light, bool advanced) {
    FixedLight fixed;
    if (light.type() == LightType::kAmbient) {
        fixed.ambient = times(light.color(), light.intensity(), 1.0F);
        return fixed;
    }
    // A light that takes light away is none, as the software renderer has it.
    fixed.diffuse = times(light.color(), std::max(light.intensity(), 0.0), 1.0F);
    fixed.position = {0.0F, 0.0F, 0.0F, 1.0F};
    if (light.type() == LightType::kDirectional) fixed.position = {0.0F, 0.0F, 1.0F, 0.0F};
    if (light.type() != LightType::kSpot) return fixed;
    fixed.isSpot = true;
    if (advanced) {
        fixed.cutoff = 89.5F;
    } else {
        fixed.exponent = static_cast<float>(spotExponent(light.innerAngle(), light.outerAngle()));
        fixed.cutoff = static_cast<float>(spotCutoff(light.outerAngle()));
    }
    return fixed;
}

FixedMaterial fixedMaterial(const MaterialX::Look& look) {
    FixedMaterial fixed;
    fixed.ambient = look.has(MaterialX::kAmbient) ? look.ambient : look.diffuse;
    fixed.ambient[3] = static_cast<float>(1.0 - look.transparency);
    fixed.diffuse = {1.0F, 1.0F, 1.0F, 1.0F};
    if (look.has(MaterialX::kDiffuse)) {
        fixed.diffuse = look.diffuse;
        fixed.diffuse[3] = 1.0F;
    }
    fixed.specular = {0.0F, 0.0F, 0.0F, 1.0F};
    if (look.has(MaterialX::kSpecular)) {
        const float amount = static_cast<float>(look.specularAmount);
        fixed.specular = {amount, amount, amount, 1.0F};
        if (look.specularExponent > 0.0)
            fixed.shininess = static_cast<float>(std::min(kMostExponent, look.specularExponent));
    }
    return fixed;
}

}  // namespace orvin
