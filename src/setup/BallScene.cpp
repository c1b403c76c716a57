#include "setup/BallScene.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "geometry/ObjectP.h"
#include "render/CameraX.h"
#include "render/LightX.h"
#include "render/MaterialX.h"
#include "render/SoftwareRenderer.h"
#include "setup/DefaultScene.h"
#include "vector/edges/EdgeLibrary.h"

namespace orvin {

namespace {

constexpr double kRadius = 115.0;  // nine tenths of what the default camera sees
constexpr int kAntiAliasLevel = 6;

std::unique_ptr<SceneX> ballScene(std::string_view name) {
    auto scene = buildDefaultScene(name, false);
    ObjectP* const sphere = sphereIcon();
    std::uint32_t revision = 0;
    const Mesh3* const mesh = sphere != nullptr ? sphere->mesh(1, revision) : nullptr;
    if (mesh == nullptr) return scene;
    ObjectP& ball = scene->make<ObjectP>("ball");
    ball.setMesh(*mesh);
    const double half = ball.localBounds().size().x / 2.0;
    const double scale = half > 0.0 ? kRadius / half : 1.0;
    ball.transform().setScale({scale, scale, scale});
    return scene;
}

std::unique_ptr<twPicture> thumbnail(SceneX& scene, int width, int height,
                                     const BallBackground& background) {
    auto picture = std::make_unique<twPicture>(width, height);
    if (picture->empty()) return picture;
    RenderParams params;
    params.width = width;
    params.height = height;
    params.setAntiAliasLevel(kAntiAliasLevel);
    const auto image = renderSoftware(scene, params);
    if (!image) return nullptr;
    std::vector<std::uint8_t> rgba(image->rowBytes());
    std::vector<std::uint8_t> rgb(static_cast<std::size_t>(width) * 3);
    for (int y = 0; y < height; ++y) {
        // The renderer's row 0 is the bottom one.
        if (image->readRow(height - 1 - y, std::span<std::uint8_t>(rgba)) != kSuccess)
            return nullptr;
        for (std::size_t x = 0; x < static_cast<std::size_t>(width); ++x) {
            const float alpha = static_cast<float>(rgba[4 * x + 3]) / 255.0F;
            for (std::size_t i = 0; i < 3; ++i) {
                const float under = std::clamp(background[i], 0.0F, 1.0F) * 255.0F;
                const float over = static_cast<float>(rgba[4 * x + i]);
                rgb[3 * x + i] = static_cast<std::uint8_t>(over * alpha + under * (1.0F - alpha));
            }
        }
        picture->writeRgbRow(y, rgb);
    }
    return picture;
}

ObjectP* ballOf(SceneX& scene) {
    return scene.memberAs<ObjectP>(MemberKind::kObject, "ball");
}

}  // namespace

std::unique_ptr<twPicture> renderMaterialBall(const MaterialX& material, int width, int height,
                                              const BallBackground& background) {
    const auto scene = ballScene("renderBalls");
    if (auto* copy = dynamic_cast<MaterialX*>(scene->cloneMember(material, "ballMtl"))) {
        ImportPolicy policy;
        for (const MapUse use :
             {MapUse::kColor, MapUse::kReflection, MapUse::kTransparency, MapUse::kBump}) {
            ImageMap* const map = material.map(use);
            const SceneMember* const placed =
                map != nullptr ? scene->importMember(*map, policy, true) : nullptr;
            copy->setMap(use, placed != nullptr ? placed->name() : kNoMember);
        }
        if (ObjectP* ball = ballOf(*scene)) ball->setMaterial(0, copy->name());
    }
    return thumbnail(*scene, width, height, background);
}

std::unique_ptr<twPicture> renderLightBall(const LightX& light, int width, int height,
                                           const BallBackground& background) {
    const auto scene = ballScene("tempLightScene");
    while (!scene->members(MemberKind::kLight).empty())
        scene->destroy(*scene->members(MemberKind::kLight).front());
    if (auto* copy = dynamic_cast<LightX*>(scene->cloneMember(light, "renderlight"))) {
        copy->setEnabled(true);
        copy->setCastsShadow(false);
    }
    return thumbnail(*scene, width, height, background);
}

}  // namespace orvin
