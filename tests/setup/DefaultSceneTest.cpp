#include "setup/DefaultScene.h"

#include <gtest/gtest.h>

#include "geometry/ObjectXStyle.h"
#include "render/CameraX.h"
#include "render/LightX.h"
#include "scene/OrvinPreferences.h"
#include "scene/RenderState.h"
#include "setup/StartUp.h"
#include "vector/edges/ProfileL.h"

namespace orvin {
namespace {

TEST(DefaultScene, HasItsSetsCamerasAndLights) {
    registerMemberClasses();
    const auto scene = buildDefaultScene("fresh", true);
    EXPECT_EQ(scene->count(MemberKind::kGroup), static_cast<std::size_t>(gSetCount));
    for (int number = 0; number < gSetCount; ++number)
        EXPECT_NE(scene->set(number), nullptr) << number;

    auto* const camera = scene->memberAs<CameraX>(MemberKind::kCamera, kDefaultCamera);
    ASSERT_NE(camera, nullptr);
    EXPECT_EQ(camera->world().origin(), (Vec3{0.0, 0.0, 300.0}));
    EXPECT_EQ(camera->world().row(2), (Vec3{0.0, 0.0, 1.0}));  // looks along its negative z
    EXPECT_NEAR(camera->fieldOfView(), 50.0, 1e-9);
    EXPECT_EQ(camera->nearClip(), 0.1);
    EXPECT_EQ(camera->farClip(), 10000.0);
    EXPECT_NE(scene->member(MemberKind::kCamera, kProfileCamera), nullptr);
    EXPECT_NE(scene->member(MemberKind::kCamera, kLightingCamera), nullptr);

    scene->purge(0);
    EXPECT_NE(scene->member(MemberKind::kMaterial, kDefaultMaterial), nullptr);
}

TEST(DefaultScene, ItsStyleHasABevelledEdge) {
    registerMemberClasses();
    const auto bare = buildDefaultScene("bare", false);
    auto* style = bare->memberAs<ObjectXStyle>(MemberKind::kStyle, kDefaultStyle);
    ASSERT_NE(style, nullptr);
    EXPECT_EQ(style->perimProfile(), nullptr);
    EXPECT_EQ(bare->count(MemberKind::kProfile), 0U);

    const auto scene = buildDefaultScene("fresh", true);
    style = scene->memberAs<ObjectXStyle>(MemberKind::kStyle, kDefaultStyle);
    ASSERT_NE(style, nullptr);
    scene->purge(0);
    auto* const edge = dynamic_cast<ProfileL*>(style->perimProfile());
    ASSERT_NE(edge, nullptr);
    EXPECT_EQ(edge->name(), "Bevel, Medium");
    EXPECT_EQ(edge->libIdx(), 8);
    EXPECT_EQ(style->holeProfile(), edge);
    std::uint32_t stamp = 0;
    ASSERT_NE(edge->getShape(0.5, 20.0, stamp), nullptr);
    EXPECT_GT(edge->bounds().xmax, 0.0);
    EXPECT_EQ(useLibraryEdge(*scene, 8), edge);
}

TEST(DefaultScene, LightsAgreeWithTheParametersDefaults) {
    registerMemberClasses();
    const auto scene = buildDefaultScene("fresh", false);
    const auto lights = scene->members(MemberKind::kLight);
    ASSERT_EQ(lights.size(), 4U);
    EXPECT_EQ(dynamic_cast<LightX&>(*lights[0]).type(), LightType::kAmbient);
    // Red, green and blue as bytes; intensity in percent; direction; elevation.
    const double expected[3][6] = {
        {255, 255, 255, 100, -38, -42}, {255, 222, 178, 80, 94, 48}, {255, 181, 161, 30, -170, 11}};
    for (std::size_t i = 0; i < 3; ++i) {
        auto& light = dynamic_cast<LightX&>(*lights[i + 1]);
        EXPECT_EQ(light.type(), LightType::kDirectional);
        for (std::size_t c = 0; c < 3; ++c)
            EXPECT_NEAR(static_cast<double>(light.color()[c]) * 255.0, expected[i][c], 1e-4);
        EXPECT_DOUBLE_EQ(light.intensity() * 100.0, expected[i][3]);
        EXPECT_EQ(light.transform().rotate(), (Vec3{expected[i][5], expected[i][4], 0.0}));
    }
    // The key light comes from above, the front and the left: elevation -42 tips its z axis up,
    // direction -38 turns it to the left.
    auto& key = dynamic_cast<LightX&>(*lights[1]);
    key.prepare();
    EXPECT_NEAR(key.direction().x, std::sin(radians(-38.0)) * std::cos(radians(42.0)), 1e-12);
    EXPECT_NEAR(key.direction().y, std::sin(radians(42.0)), 1e-12);
    EXPECT_NEAR(key.direction().z, std::cos(radians(-38.0)) * std::cos(radians(42.0)), 1e-12);
}

TEST(RenderState, DefaultsAndTheAntiAliasTable) {
    RenderState state;
    EXPECT_EQ(state.renderMethod, 1);
    EXPECT_TRUE(state.keepsAlpha());
    EXPECT_EQ(state.resolution, 0);
    EXPECT_EQ(state.params.dpi, 0.0);
    OrvinPreferences preferences;
    preferences.shadowQuality = 1500;
    state.setNewProjectDefaults(preferences);
    EXPECT_EQ(state.params.width, 640.0);
    EXPECT_EQ(state.params.height, 480.0);
    EXPECT_EQ(state.antiAliasLevel, 7);
    EXPECT_FALSE(state.keepsAlpha());
    EXPECT_TRUE(state.rendersShadows());
    EXPECT_EQ(state.params.shadowQuality, 1500);

    const struct {
        int level, grid, blur;
        float radius;
    } rows[] = {{-1, 1, 0, 0.0F}, {0, 1, 0, 0.0F},  {1, 1, 0, 0.0F},  {2, 2, 0, 0.0F},
                {3, 2, 1, 0.6F},  {4, 2, 1, 1.0F},  {5, 2, 1, 1.5F},  {6, 3, 0, 0.0F},
                {7, 3, 1, 0.6F},  {8, 3, 1, 1.0F},  {9, 3, 1, 1.5F},  {10, 4, 0, 0.0F},
                {13, 4, 1, 1.5F}, {14, 5, 0, 0.0F}, {15, 5, 1, 0.6F}, {17, 5, 1, 1.5F},
                {18, 1, 0, 0.0F}};
    for (const auto& row : rows) {
        state.setAntiAliasLevel(row.level);
        EXPECT_EQ(state.params.antiAliasSize, row.grid) << row.level;
        EXPECT_EQ(state.params.blurOption, row.blur) << row.level;
        EXPECT_EQ(state.params.blurRadius, row.radius) << row.level;
        EXPECT_EQ(state.params.blurContrast, 0.0F);
    }
}

}  // namespace
}  // namespace orvin
