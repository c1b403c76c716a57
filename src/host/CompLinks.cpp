#include "host/CompLinks.h"

#include <cmath>
#include <optional>

#include "host/HostState.h"
#include "host/SceneDrive.h"
#include "render/LightX.h"
#include "scene/RenderState.h"

namespace orvin {

namespace {

constexpr double kDegreesPerRadian = 57.2957786667;

std::optional<AEGP_StreamVal> layerValue(SuiteSet& suites, AEGP_LayerH layer,
                                         AEGP_LayerStream which, const A_Time& time) {
    AEGP_StreamVal value{};
    const A_Err error = suites.stream().AEGP_GetLayerStreamValue(
        layer, which, AEGP_LTimeMode_CompTime, &time, 0, &value, nullptr);
    if (error != A_Err_NONE) return std::nullopt;
    return value;
}

AEGP_StreamVal neededValue(SuiteSet& suites, AEGP_LayerH layer, AEGP_LayerStream which,
                           const A_Time& time) {
    AEGP_StreamVal value{};
    checkHost(suites.stream().AEGP_GetLayerStreamValue(layer, which, AEGP_LTimeMode_CompTime, &time,
                                                       0, &value, nullptr));
    return value;
}

bool isActive(SuiteSet& suites, AEGP_LayerH layer, const A_Time& time) {
    A_Boolean active = 0;
    checkHost(suites.layer().AEGP_IsVideoActive(layer, AEGP_LTimeMode_CompTime, &time, &active));
    return active != 0;
}

void placeLikeLayer(SuiteSet& suites, const PF_InData& in, AEGP_LayerH layer, const A_Time& time,
                    CameraX& node) {
    A_Matrix4 matrix{};
    checkHost(suites.layer().AEGP_GetLayerToWorldXform(layer, &time, &matrix));
    applyCompMatrix(node, matrix, in.width, in.height);
}

std::optional<LightType> lightTypeOf(AEGP_LightType type) {
    switch (type) {
        case AEGP_LightType_PARALLEL:
            return LightType::kDirectional;
        case AEGP_LightType_SPOT:
            return LightType::kSpot;
        case AEGP_LightType_POINT:
            return LightType::kPoint;
        case AEGP_LightType_AMBIENT:
            return LightType::kAmbient;
        default:  // kinds of newer hosts that have no counterpart here
            return std::nullopt;
    }
}

LightX& makeLight(SceneX& scene) {
    int number = 1;
    while (scene.memberByName("Light " + std::to_string(number)) != nullptr)
        ++number;
    return scene.make<LightX>("Light " + std::to_string(number));
}

void readLight(SuiteSet& suites, AEGP_LayerH layer, const A_Time& time, LightX& light,
               bool addColor) {
    const auto optional = [&](AEGP_LayerStream which) {
        return layerValue(suites, layer, which, time);
    };
    light.setIntensity(neededValue(suites, layer, AEGP_LayerStream_INTENSITY, time).one_d * 0.01);
    const AEGP_ColorVal color = neededValue(suites, layer, AEGP_LayerStream_COLOR, time).color;
    Rgba rgba{static_cast<float>(color.redF), static_cast<float>(color.greenF),
              static_cast<float>(color.blueF), static_cast<float>(color.alphaF)};
    if (addColor)
        for (std::size_t i = 0; i < rgba.size(); ++i)
            rgba[i] += light.color()[i];
    light.setColor(rgba);

    // Only spots have a cone, and ambient lights no shadow: the host refuses what a light hasn't.
    const auto cone = optional(AEGP_LayerStream_CONE_ANGLE);
    const auto feather = optional(AEGP_LayerStream_CONE_FEATHER);
    const double angle = cone ? cone->one_d : 0.0;
    const double soft = feather ? feather->one_d : 0.0;
    if (angle != 0.0 || soft != 0.0)
        light.setAngles((angle - soft * 0.01 * angle) * 0.5, angle * 0.5);
    if (const auto darkness = optional(AEGP_LayerStream_SHADOW_DARKNESS))
        light.setDarkness(darkness->one_d * 0.01);
    if (const auto diffusion = optional(AEGP_LayerStream_SHADOW_DIFFUSION)) {
        const double softness = diffusion->one_d * 0.5 + 1.0;
        if (std::abs(softness) < 1e9) light.setSoftness(static_cast<int>(softness));
    }
    if (const auto casts = optional(AEGP_LayerStream_CASTS_SHADOWS))
        light.setCastsShadow(casts->one_d != 0.0);
}

}  // namespace

void applyCompMatrix(CameraX& camera, const A_Matrix4& layer, int compWidth, int compHeight) {
    Matrix4 m;
    for (std::size_t row = 0; row < 4; ++row)
        for (std::size_t column = 0; column < 4; ++column)
            m.m[row][column] = layer.mat[row][column];
    m.m[3][0] -= compWidth / 2;
    m.m[3][1] = -(m.m[3][1] - compHeight / 2);
    m.m[3][2] = -m.m[3][2];
    // Turns y and z of both spaces: what mixes one of them with x changes its sign.
    for (const auto& [row, column] : {std::pair{0, 1}, {0, 2}, {1, 0}, {2, 0}}) {
        double& value = m.m[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
        value = -value;
    }
    camera.setMode(CameraMode::kTransform);
    camera.transform().setMatrix(m);
    camera.deriveFromNode();
}

bool driveCameraFromComp(SuiteSet& suites, const PF_InData& in, const A_Time& compTime,
                         CameraX& camera) {
    AEGP_LayerH layer = nullptr;
    const A_Err error = suites.pfInterface().AEGP_GetEffectCamera(in.effect_ref, &compTime, &layer);
    if (error != A_Err_NONE || layer == nullptr) return false;
    if (!isActive(suites, layer, compTime)) return false;
    A_Matrix4 matrix{};
    checkHost(suites.layer().AEGP_GetLayerToWorldXform(layer, &compTime, &matrix));
    const double zoom = neededValue(suites, layer, AEGP_LayerStream_ZOOM, compTime).one_d;
    camera.setFieldOfView(2.0 * std::atan2(in.width / 2, zoom) * kDegreesPerRadian);
    applyCompMatrix(camera, matrix, in.width, in.height);
    return true;
}

bool driveLightsFromComp(SuiteSet& suites, const PF_InData& in, const A_Time& compTime,
                         SceneX& scene, RenderState& renderState) {
    for (SceneMember* member : scene.members(MemberKind::kLight)) {
        auto& light = static_cast<LightX&>(*member);
        light.setColor({});
        light.setEnabled(false);
    }
    AEGP_LayerH effectLayer = nullptr;
    checkHost(suites.pfInterface().AEGP_GetEffectLayer(in.effect_ref, &effectLayer));
    AEGP_CompH comp = nullptr;
    checkHost(suites.layer().AEGP_GetLayerParentComp(effectLayer, &comp));
    A_long count = 0;
    checkHost(suites.layer().AEGP_GetCompNumLayers(comp, &count));

    bool found = false;
    int nextLight = 1;
    for (A_long i = 0; i < count; ++i) {
        AEGP_LayerH layer = nullptr;
        checkHost(suites.layer().AEGP_GetCompLayerByIndex(comp, i, &layer));
        AEGP_ObjectType objectType = AEGP_ObjectType_NONE;
        checkHost(suites.layer().AEGP_GetLayerObjectType(layer, &objectType));
        if (objectType != AEGP_ObjectType_LIGHT || !isActive(suites, layer, compTime)) continue;
        AEGP_LightType hostType = AEGP_LightType_NONE;
        checkHost(suites.light().AEGP_GetLightType(layer, &hostType));
        const auto type = lightTypeOf(hostType);
        if (!type) continue;
        // Index 0 belongs to the ambient light, in a scene that has none yet as well.
        if (scene.count(MemberKind::kLight) == 0) makeLight(scene).setEnabled(false);
        const bool ambient = *type == LightType::kAmbient;
        const int number = ambient ? 0 : nextLight++;
        LightX* const existing = sceneLight(scene, number);
        LightX& light = existing != nullptr ? *existing : makeLight(scene);
        light.setType(*type);
        placeLikeLayer(suites, in, layer, compTime, light);
        readLight(suites, layer, compTime, light, ambient);
        light.setEnabled(true);
        found = true;
    }
    if (found) renderState.setRendersShadows(true);
    return found;
}

}  // namespace orvin
