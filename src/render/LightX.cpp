#include "render/LightX.h"

#include <array>

#include "scene/SceneStream.h"
#include "scene/SceneX.h"

namespace orvin {

namespace {

constexpr double kRadiansPerDegree = 0.01745329277777778;
constexpr double kDegreesPerRadian = 57.2957786667;
constexpr double kDefaultInner = 0.2617993917;  // 15 degrees
constexpr double kDefaultOuter = 0.5235987834;  // 30 degrees
constexpr double kWidestHalfAngle = 90.0;

constexpr std::array<std::string_view, 4> kTypeNames{"POINT", "DIRECTIONAL", "SPOT", "AMBIENT"};
constexpr std::array<std::string_view, 4> kFalloffNames{"ABRUPT", "LINEAR", "INVERSE_SQUARE",
                                                        "NONE"};

template <typename Enum>
std::optional<Enum> named(const std::array<std::string_view, 4>& names, std::string_view word) {
    for (std::size_t i = 0; i < names.size(); ++i)
        if (word == names[i]) return static_cast<Enum>(i);
    return std::nullopt;
}

LightX& light(Persistent& self) {
    return static_cast<LightX&>(self);
}

template <void (LightX::*Set)(double)>
Result readNumber(SceneStream& stream, Persistent& self) {
    double value = 0.0;
    if (stream.readDouble(value) != kSuccess) return kFailure;
    if (std::isfinite(value)) (light(self).*Set)(value);
    return kSuccess;
}

Result readType(SceneStream& stream, Persistent& self) {
    std::string word;
    if (stream.readText(word) != kSuccess) return kFailure;
    if (const auto type = lightTypeNamed(word)) light(self).setType(*type);
    return kSuccess;
}

Result readFalloff(SceneStream& stream, Persistent& self) {
    std::string word;
    if (stream.readText(word) != kSuccess) return kFailure;
    if (const auto falloff = falloffNamed(word)) light(self).setFalloff(*falloff);
    return kSuccess;
}

Result readShadow(SceneStream& stream, Persistent& self) {
    bool on = false;
    if (stream.readBool(on) != kSuccess) return kFailure;
    light(self).setCastsShadow(on);
    return kSuccess;
}

Result readLightColor(SceneStream& stream, Persistent& self) {
    Rgba color;
    if (stream.readColor(color) != kSuccess) return kFailure;
    if (isFinite(color)) light(self).setColor(color);
    return kSuccess;
}

Result readAngles(SceneStream& stream, Persistent& self) {
    double inner = 0.0;
    double outer = 0.0;
    if (stream.readDouble(inner) != kSuccess || stream.readDouble(outer) != kSuccess)
        return kFailure;
    light(self).setAngles(inner, outer);
    return kSuccess;
}

template <void (LightX::*Set)(int)>
Result readWhole(SceneStream& stream, Persistent& self) {
    int value = 0;
    if (stream.readInt(value) != kSuccess) return kFailure;
    (light(self).*Set)(value);
    return kSuccess;
}

}  // namespace

LightX::LightX(SceneX& scene, std::string_view name)
    : CameraX(scene, MemberKind::kLight, name),
      cosInner_(std::cos(kDefaultInner)),
      cosOuter_(std::cos(kDefaultOuter)) {}

LightX::LightX(SceneX& scene, const LightX& source, std::string_view name)
    : CameraX(scene, source, name), cosInner_(source.cosInner_), cosOuter_(source.cosOuter_) {
    copySettingsFrom(source);
}

void LightX::copyLightFrom(const LightX& other) {
    copyCameraFrom(other);
    copySettingsFrom(other);
}

void LightX::copySettingsFrom(const LightX& other) {
    type_ = other.type_;
    lightFlags_ = other.lightFlags_;
    color_ = other.color_;
    intensity_ = other.intensity_;
    falloff_ = other.falloff_;
    falloffDistance_ = other.falloffDistance_;
    cosInner_ = other.cosInner_;
    cosOuter_ = other.cosOuter_;
    direction_ = other.direction_;
    origin_ = other.origin_;
    softness_ = other.softness_;
    darkness_ = other.darkness_;
    xres_ = other.xres_;
    yres_ = other.yres_;
}

void LightX::setType(LightType type) {
    if (static_cast<int>(type) >= 0 && static_cast<int>(type) <= 3) type_ = type;
}

void LightX::setFalloff(Falloff falloff) {
    if (static_cast<int>(falloff) >= 0 && static_cast<int>(falloff) <= 3) falloff_ = falloff;
}

void LightX::setAngles(double innerDegrees, double outerDegrees) {
    if (!std::isfinite(innerDegrees) || !std::isfinite(outerDegrees)) return;
    cosInner_ = std::cos(std::min(innerDegrees, kWidestHalfAngle) * kRadiansPerDegree);
    cosOuter_ = std::cos(std::min(outerDegrees, kWidestHalfAngle) * kRadiansPerDegree);
    cosOuter_ = std::min(cosOuter_, cosInner_);
}

double LightX::innerAngle(bool inDegrees) const {
    return std::acos(cosInner_) * (inDegrees ? kDegreesPerRadian : 1.0);
}

double LightX::outerAngle(bool inDegrees) const {
    return std::acos(cosOuter_) * (inDegrees ? kDegreesPerRadian : 1.0);
}

Result LightX::prepare() {
    const Matrix4& worldFromLight = world();
    origin_ = worldFromLight.origin();
    if (type_ == LightType::kDirectional || type_ == LightType::kSpot)
        direction_ = normalize(worldFromLight.direction({0.0, 0.0, 1.0}));
    return kSuccess;
}

// ---- stream

const CommandRegistry& LightX::commandRegistry() const {
    struct Commands : CommandRegistry {
        Commands() : CommandRegistry(64) {
            registerCameraCommands(*this);
            lookupOrInsert("type", readType);
            lookupOrInsert("shadow", readShadow);
            lookupOrInsert("color", readLightColor);
            lookupOrInsert("intensity", readNumber<&LightX::setIntensity>);
            lookupOrInsert("falloff", readFalloff);
            // Written twice, as the camera's and as the falloff's: this one takes both when
            // reading, and the falloff's stands last.
            lookupOrInsert("distance", readNumber<&LightX::setFalloffDistance>);
            lookupOrInsert("angles", readAngles);
            lookupOrInsert("shadow-softness", readWhole<&LightX::setSoftness>);
            lookupOrInsert("shadow-darkness", readNumber<&LightX::setDarkness>);
            lookupOrInsert("shadowmap-xres", readWhole<&LightX::setShadowMapXres>);
            lookupOrInsert("shadowmap-yres", readWhole<&LightX::setShadowMapYres>);
        }
    };
    static const Commands commands;
    return commands;
}

Result LightX::writeBody(SceneStream& stream) {
    const std::array angles{innerAngle(), outerAngle()};
    const bool failed =
        CameraX::writeBody(stream) || stream.putWord("type", lightTypeName(type_)) ||
        stream.putInt("shadow", castsShadow() ? 1 : 0) ||
        stream.putDoubles("color", asDoubles(color_)) ||
        stream.putDouble("intensity", intensity_) ||
        stream.putWord("falloff", falloffName(falloff_)) ||
        stream.putDouble("distance", falloffDistance_) || stream.putDoubles("angles", angles) ||
        stream.putInt("shadow-softness", softness_) ||
        stream.putDouble("shadow-darkness", darkness_) || stream.putInt("shadowmap-xres", xres_) ||
        stream.putInt("shadowmap-yres", yres_);
    return failed ? kFailure : kSuccess;
}

std::vector<LightX*> enabledLights(const SceneX& scene) {
    std::vector<LightX*> lights;
    for (SceneMember* member : scene.members(MemberKind::kLight)) {
        auto* light = dynamic_cast<LightX*>(member);
        if (light != nullptr && light->isEnabled()) lights.push_back(light);
    }
    return lights;
}

std::string_view lightTypeName(LightType type) {
    return kTypeNames[static_cast<std::size_t>(type)];
}

std::optional<LightType> lightTypeNamed(std::string_view word) {
    return named<LightType>(kTypeNames, word);
}

std::string_view falloffName(Falloff falloff) {
    return kFalloffNames[static_cast<std::size_t>(falloff)];
}

std::optional<Falloff> falloffNamed(std::string_view word) {
    return named<Falloff>(kFalloffNames, word);
}

}  // namespace orvin
