#include "setup/DefaultScene.h"

#include "geometry/ObjectXStyle.h"
#include "render/CameraX.h"
#include "render/LightX.h"
#include "render/MaterialX.h"
#include "scene/MemberClasses.h"
#include "vector/edges/EdgeLibrary.h"
#include "vector/edges/ProfileL.h"

namespace orvin {

namespace {

constexpr std::string_view kDefaultEdge = "Bevel, Medium";

constexpr double kEyeDistance = 300.0;
constexpr double kFieldOfView = 50.0;  // degrees
constexpr double kNearClip = 0.1;
constexpr double kFarClip = 10000.0;

// Enough to see into the shade; the lights of the parameters do the modelling.
constexpr double kAmbientIntensity = 0.15;

/// The three lights that the effect's parameters drive, as their defaults have them.
struct DirectionalLight {
    std::string_view name;
    int red, green, blue;
    double intensity;
    double direction, elevation;  // degrees about y and x
};
constexpr DirectionalLight kDirectionalLights[] = {
    {"Light 1", 255, 255, 255, 1.0, -38.0, -42.0},
    {"Light 2", 255, 222, 178, 0.8, 94.0, 48.0},
    {"Light 3", 255, 181, 161, 0.3, -170.0, 11.0},
};

float fraction(int byte) {
    return static_cast<float>(byte / 255.0);
}

CameraX& addCamera(SceneX& scene, std::string_view name) {
    CameraX& camera = scene.make<CameraX>(name);
    camera.setMode(CameraMode::kOrbit);
    camera.setPose({.eye = {0.0, 0.0, kEyeDistance}, .target = {}, .distance = kEyeDistance});
    camera.setFieldOfView(kFieldOfView);
    camera.setClip(kNearClip, kFarClip);
    return camera;
}

void addLights(SceneX& scene) {
    LightX& ambient = scene.make<LightX>("Ambient Light");
    ambient.setType(LightType::kAmbient);
    ambient.setIntensity(kAmbientIntensity);
    for (const DirectionalLight& settings : kDirectionalLights) {
        LightX& light = scene.make<LightX>(settings.name);
        light.setType(LightType::kDirectional);
        // No alpha: so the parameters set it.
        light.setColor(
            {fraction(settings.red), fraction(settings.green), fraction(settings.blue), 0.0F});
        light.setIntensity(settings.intensity);
        light.transform().setRotate({settings.elevation, settings.direction, 0.0});
    }
}

/// Null where no subsystem has such a class.
SceneMember* addByClass(SceneX& scene, std::string_view className, std::string_view name) {
    const MemberClass* const memberClass = findMemberClass(className);
    return memberClass != nullptr ? &scene.adopt(memberClass->create(scene, name)) : nullptr;
}

void giveEdge(ObjectXStyle& style) {
    if (const ProfileL* const edge = useLibraryEdge(style.scene(), findEdge(kDefaultEdge)))
        style.setPerim(edge->name());
}

}  // namespace

std::unique_ptr<SceneX> buildDefaultScene(std::string_view name, bool withObject) {
    auto scene = std::make_unique<SceneX>(name);
    for (int number = 0; number < gSetCount; ++number)
        scene->make<Group>(setName(number));
    addCamera(*scene, kDefaultCamera);
    // Profiles are flat: their thumbnails want no perspective.
    addCamera(*scene, kProfileCamera).setProjection(Projection::kOrthographic);
    addCamera(*scene, kLightingCamera);
    scene->make<MaterialX>(kDefaultMaterial).protectedFromSweep = true;
    if (SceneMember* style = addByClass(*scene, "ObjectXStyle", kDefaultStyle)) {
        style->protectedFromSweep = true;
        if (withObject) giveEdge(static_cast<ObjectXStyle&>(*style));
    }
    addLights(*scene);
    return scene;
}

}  // namespace orvin
