// LightX: a light of the scene. It is posed as a camera is and looks along its negative z; its
// direction points the other way, from the scene to the light.
//
// Once a frame, prepare() takes the light's place from the scene; attenuation(), diffuse(),
// specular() and shadowFactor() then answer for world points as often as needed, without touching
// the scene. AMBIENT lights take no part in these: the shader uses colour times intensity.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "render/CameraX.h"
#include "render/Rgba.h"
#include "render/ShadowLookup.h"

namespace orvin {

enum class LightType : int { kPoint = 0, kDirectional = 1, kSpot = 2, kAmbient = 3 };
enum class Falloff : int { kAbrupt = 0, kLinear = 1, kInverseSquare = 2, kNone = 3 };

class LightX final : public CameraX {
  public:
    LightX(SceneX& scene, std::string_view name);

    /// All settings, in the same pose under the scene's root; never the shadow map.
    LightX(SceneX& scene, const LightX& source, std::string_view name);

    /// Everything but the name, the parent and the shadow map.
    void copyLightFrom(const LightX& other);

    const CommandRegistry& commandRegistry() const override;
    std::string_view className() const override { return "LightX"; }
    Result writeBody(SceneStream& stream) override;

    // ---- settings

    LightType type() const { return type_; }
    void setType(LightType type);  // a number outside 0..3 is ignored

    Falloff falloff() const { return falloff_; }
    void setFalloff(Falloff falloff);  // a number outside 0..3 is ignored

    const Rgba& color() const { return color_; }
    void setColor(const Rgba& color) { color_ = color; }

    /// Factor of the colour; a light of 0 or less gives nothing, but AMBIENT subtracts.
    double intensity() const { return intensity_; }
    void setIntensity(double intensity) { intensity_ = intensity; }

    /// World units at which ABRUPT and LINEAR light ends. CameraX::distance() is another thing.
    double falloffDistance() const { return falloffDistance_; }
    void setFalloffDistance(double distance) { falloffDistance_ = distance; }

    /// Half angles of the SPOT cone in degrees, each at most 90. The outer one is never narrower
    /// than the inner one.
    void setAngles(double innerDegrees, double outerDegrees);
    double innerAngle(bool inDegrees = true) const;
    double outerAngle(bool inDegrees = true) const;
    double cosInner() const { return cosInner_; }
    double cosOuter() const { return cosOuter_; }

    bool castsShadow() const { return (lightFlags_ & kShadowOn) != 0; }
    void setCastsShadow(bool on) {
        lightFlags_ = on ? lightFlags_ | kShadowOn : lightFlags_ & ~kShadowOn;
    }

    /// Width of the shadow's soft edge: the filter is 2 softness - 1 texels wide.
    int softness() const { return softness_; }
    void setSoftness(int softness) { softness_ = softness; }

    /// 1 lets no light into the full shadow, 0 makes shadows invisible.
    double darkness() const { return darkness_; }
    void setDarkness(double darkness) { darkness_ = darkness; }

    /// Texels of the shadow map, as the file or the user has them: not checked.
    int shadowMapXres() const { return xres_; }
    int shadowMapYres() const { return yres_; }
    void setShadowMapXres(int texels) { xres_ = texels; }
    void setShadowMapYres(int texels) { yres_ = texels; }

    /// The map of the frame being rendered; null for none.
    void setShadowMap(std::unique_ptr<ShadowLookup> map) { shadowMap_ = std::move(map); }
    const ShadowLookup* shadowMap() const { return shadowMap_.get(); }

    // ---- shading

    /// Takes place and direction from the scene, parents included. Always succeeds.
    Result prepare();

    Vec3 direction() const { return direction_; }  // unit, of DIRECTIONAL and SPOT after prepare()
    Vec3 worldOrigin() const { return origin_; }   // after prepare()

    /// Intensity at a world point by the falloff alone; infinite for INVERSE_SQUARE at the light.
    double attenuation(Vec3 point) const;

    /// What arrives at a point, for shaders that ask for both terms.
    struct Incidence {
        Vec3 toLight;           // unit
        double strength = 0.0;  // by falloff and cone; positive
    };
    /// False where no light arrives; `out` then means nothing.
    bool incidence(Vec3 point, Incidence& out) const;

    /// Strength of the diffuse term at a world point with unit normal; never negative or NaN.
    double diffuse(Vec3 point, Vec3 normal) const;
    static double diffuseTerm(const Incidence& light, Vec3 normal);

    /// Colour of the highlight at a world point, alpha included; all zero where there is none. Not
    /// cut where the light stands behind the surface.
    Rgba specular(Vec3 eye, Vec3 point, Vec3 normal, double exponent) const;
    /// The same from unit vectors to the eye and along the normal.
    Rgba specularTerm(const Incidence& light, Vec3 toEye, Vec3 normal, double exponent) const;

    /// 1 in full light. 1 without a map; 0 for points outside the map.
    double shadowFactor(Vec3 point) const;

  private:
    void copySettingsFrom(const LightX& other);

    static constexpr std::uint32_t kShadowOn = 1;

    /// A light right at the point: more than any picture can show, and still a finite number, so
    /// that a colour of 0 times it is 0.
    static constexpr double kBlinding = 1e30;

    LightType type_ = LightType::kPoint;
    std::uint32_t lightFlags_ = 0;
    Rgba color_{1.0F, 1.0F, 1.0F, 1.0F};
    double intensity_ = 1.0;
    Falloff falloff_ = Falloff::kNone;
    double falloffDistance_ = 5000.0;
    double cosInner_;
    double cosOuter_;
    Vec3 direction_{0.0, 0.0, 1.0};
    Vec3 origin_;
    std::unique_ptr<ShadowLookup> shadowMap_;
    int softness_ = 6;
    double darkness_ = 0.8;
    int xres_ = 512;
    int yres_ = 512;
};

/// The lights of a scene that are on, in scene order.
std::vector<LightX*> enabledLights(const SceneX& scene);

std::string_view lightTypeName(LightType type);
std::optional<LightType> lightTypeNamed(std::string_view word);
std::string_view falloffName(Falloff falloff);
std::optional<Falloff> falloffNamed(std::string_view word);

// ---- shading, inline: the shader calls these for every light and pixel

inline double LightX::attenuation(Vec3 point) const {
    if (falloff_ == Falloff::kNone) return intensity_;
    const double d = length(point - origin_);
    switch (falloff_) {
        case Falloff::kAbrupt:
            return d <= falloffDistance_ ? intensity_ : 0.0;
        case Falloff::kLinear:
            return d <= falloffDistance_ ? (1.0 - d / falloffDistance_) * intensity_ : 0.0;
        default:
            return (1.0 / d) * (1.0 / d) * intensity_;
    }
}

inline bool LightX::incidence(Vec3 point, Incidence& out) const {
    out.strength = attenuation(point);
    if (!(out.strength > 0.0)) return false;
    out.strength = std::min(out.strength, kBlinding);
    if (type_ == LightType::kDirectional) {
        out.toLight = direction_;
        return true;
    }
    out.toLight = normalize(origin_ - point);
    if (type_ != LightType::kSpot) return true;
    const double c = dot(out.toLight, direction_);
    if (c < cosOuter_) return false;
    if (c < cosInner_) {
        const double t = 1.0 - (c - cosInner_) / (cosOuter_ - cosInner_);
        out.strength *= t * t * (3.0 - 2.0 * t);
    }
    return out.strength > 0.0;
}

inline double LightX::diffuseTerm(const Incidence& light, Vec3 normal) {
    const double cosine = dot(light.toLight, normal);
    return cosine > 0.0 ? light.strength * cosine : 0.0;
}

inline double LightX::diffuse(Vec3 point, Vec3 normal) const {
    Incidence light;
    return incidence(point, light) ? diffuseTerm(light, normal) : 0.0;
}

inline Rgba LightX::specularTerm(const Incidence& light, Vec3 toEye, Vec3 normal,
                                 double exponent) const {
    Rgba result{};
    const Vec3 halfway = normalize(light.toLight + toEye);
    const double t = dot(halfway, normal);
    if (!(t > 0.0)) return result;
    // Schlick's rational stand-in for pow(t, exponent).
    const double divisor = exponent - t * exponent + t;
    if (!(divisor > 0.0)) return result;
    const double value = std::min(light.strength * t / divisor, kBlinding);
    for (std::size_t i = 0; i < 4; ++i)
        result[i] = static_cast<float>(static_cast<double>(color_[i]) * value);
    return result;
}

inline Rgba LightX::specular(Vec3 eye, Vec3 point, Vec3 normal, double exponent) const {
    Incidence light;
    if (!incidence(point, light)) return {};
    return specularTerm(light, normalize(eye - point), normalize(normal), exponent);
}

inline double LightX::shadowFactor(Vec3 point) const {
    if (!shadowMap_) return 1.0;
    const ShadowFrame& frame = shadowMap_->frame();
    const Vec3 p = frame.cameraFromWorld.point(point);
    const double depth = -p.z;
    const double res = frame.resolution;
    double x = 0.0;
    double y = 0.0;
    if (type_ == LightType::kDirectional) {
        x = res * (p.x - frame.left) / (frame.right - frame.left) + 0.5;
        y = res * (p.y - frame.bottom) / (frame.top - frame.bottom) + 0.5;
    } else {
        const double scale = depth > 0.001 ? frame.focal / depth : frame.focal;
        x = res * scale * p.x + res / 2.0 + 0.5;
        y = res * scale * p.y + res / 2.0 + 0.5;
    }
    x = std::trunc(x);
    y = std::trunc(y);
    if (!(x >= 0.0 && x < res && y >= 0.0 && y < res)) return 0.0;
    const double lit = shadowMap_->filtered(static_cast<int>(x), static_cast<int>(y), depth);
    return lit < 1.0 ? 1.0 - (1.0 - lit) * darkness_ : lit;
}

}  // namespace orvin
