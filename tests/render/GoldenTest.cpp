// Pictures that were judged by eye before they became the measure.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/geometry/Extrusions.h"
#include "tests/render/TestScene.h"
#include "tests/support/Golden.h"

namespace orvin {
namespace {

using Pixel = std::array<std::uint8_t, 4>;

std::uint8_t byte(double value) {
    return static_cast<std::uint8_t>(std::clamp(value, 0.0, 1.0) * 255.0);
}

void expectGolden(TestScene& s, const std::string& name) {
    const Picture p = s.render();
    EXPECT_TRUE(test::matchesGolden(name, p.width, p.height, p.bytes));
}

/// A perspective camera that looks down a little on a floor at y = -12.
void setStage(TestScene& s) {
    s.params.width = 160;
    s.params.height = 120;
    s.params.antiAliasSize = 3;
    s.camera().setProjection(Projection::kPerspective);
    s.camera().setEye({0, 25, 110});
    s.camera().setTarget({0, -2, 0});
    s.camera().setMode(CameraMode::kLookAt);
}

void addFloor(TestScene& s, const std::string& material) {
    s.object(TestScene::quad({{{-90, -12, 60}, {90, -12, 60}, {90, -12, -120}, {-90, -12, -120}}}),
             material);
}

MaterialX& withMap(MaterialX& m, std::uint32_t flag, MapUse use, const std::string& map) {
    m.setFlag(flag, true);
    m.setMap(use, map);
    return m;
}

TEST(Golden, Materials) {
    TestScene s;
    setStage(s);
    s.light(LightType::kAmbient, 0.25);
    s.light(LightType::kDirectional, 0.9).transform().setRotate({-40, 35, 0});
    const std::string checker = s.map(1, 64, 64, [](int x, int y) {
        return ((x / 8 + y / 8) & 1) == 0 ? Pixel{230, 220, 200, 255} : Pixel{60, 70, 90, 255};
    });
    const std::string sky = s.map(2, 128, 64, [](int x, int y) {
        if (y < 32) return Pixel{90, 70, 50, 255};
        const double sun = std::exp(-((x - 20) * (x - 20) + (y - 50) * (y - 50)) / 30.0);
        return Pixel{byte(0.3 + sun), byte(0.5 + sun), byte(0.5 + y / 128.0), 255};
    });
    const std::string bumps = s.map(3, 128, 128, [](int x, int y) {
        return Pixel{0, 0, 0, byte(0.5 + 0.5 * std::sin(x * 0.6) * std::sin(y * 0.6))};
    });
    const std::string holes = s.map(4, 64, 64, [](int x, int y) {
        const int dx = x % 16 - 8;
        const int dy = y % 16 - 8;
        return Pixel{255, 255, 255, byte(dx * dx + dy * dy < 25 ? 0.0 : 1.0)};
    });
    const auto shiny = [&s](const std::string& name, const Rgba& diffuse, double transparency) {
        MaterialX& m = s.material(name, diffuse, transparency);
        m.setFlag(MaterialX::kSpecular, true);
        m.setSpecular(60.0, 0.6);
        return &m;
    };
    addFloor(
        s, withMap(s.material("floor", {1, 1, 1, 1}), MaterialX::kColorMap, MapUse::kColor, checker)
               .name());
    shiny("plain", {0.8F, 0.25F, 0.15F, 1.0F}, 0.0);
    withMap(*shiny("bumpy", {0.3F, 0.6F, 0.3F, 1.0F}, 0.0), MaterialX::kBumpMap, MapUse::kBump,
            bumps)
        .setBumpScale(0.35);
    withMap(*shiny("mirror", {0.05F, 0.05F, 0.05F, 1.0F}, 0.0), MaterialX::kReflectionMap,
            MapUse::kReflection, sky)
        .setReflectivity(0.8);
    shiny("glass", {0.4F, 0.6F, 0.9F, 1.0F}, 0.7);
    withMap(*shiny("holed", {0.9F, 0.7F, 0.2F, 1.0F}, 0.0), MaterialX::kTransparencyMap,
            MapUse::kTransparency, holes);
    struct Ball {
        const char* material;
        Vec3 at;
        double radius;
    };
    const Ball balls[] = {{"plain", {-26, 0, -4}, 11},
                          {"bumpy", {0, 0, -14}, 11},
                          {"mirror", {26, 0, -4}, 11},
                          {"glass", {-11, -5, 22}, 7},
                          {"holed", {13, -5, 22}, 7}};
    for (const Ball& b : balls) {
        ObjectP& ball = s.object(TestScene::ball(b.radius, 48, 24), b.material);
        ball.transform().setTranslate(b.at);
        ball.transform().setRotate({20, 160, 0});  // the texture's seam to the back
    }
    expectGolden(s, "materials");
}

TEST(Golden, Lights) {
    TestScene s;
    setStage(s);
    s.material("grey", {0.8F, 0.8F, 0.8F, 1.0F});
    addFloor(s, "grey");
    s.object(TestScene::rectangle(-90, -12, 90, 60, -40), "grey");
    s.object(TestScene::ball(9, 40, 20), "grey").transform().setTranslate({0, -3, 0});
    LightX& spot = s.light(LightType::kSpot);
    spot.setColor({1.0F, 0.9F, 0.6F, 1.0F});
    spot.setEye({-45, 45, 40});
    spot.setTarget({-5, -8, 0});
    spot.setMode(CameraMode::kLookAt);
    spot.setAngles(10, 22);
    LightX& lamp = s.light(LightType::kPoint, 1.5);
    lamp.setColor({0.3F, 0.5F, 1.0F, 1.0F});
    lamp.setFalloff(Falloff::kLinear);
    lamp.setFalloffDistance(60.0);
    lamp.transform().setTranslate({45, 5, -15});
    LightX& glow = s.light(LightType::kPoint, 150.0);
    glow.setColor({1.0F, 0.2F, 0.1F, 1.0F});
    glow.setFalloff(Falloff::kInverseSquare);
    glow.transform().setTranslate({-50, -4, -30});
    LightX& disc = s.light(LightType::kPoint, 0.4);
    disc.setFalloff(Falloff::kAbrupt);
    disc.setFalloffDistance(45.0);
    disc.transform().setTranslate({25, 10, 40});
    expectGolden(s, "lights");
}

TEST(Golden, SoftenedSheets) {
    TestScene s(40.0);
    s.params.width = 96;
    s.params.height = 72;
    s.params.setAntiAliasLevel(9);
    s.light(LightType::kAmbient, 0.4);
    s.light(LightType::kDirectional, 0.7).transform().setRotate({-20, -30, 0});
    const Rgba colours[] = {
        {1.0F, 0.3F, 0.2F, 1.0F}, {0.2F, 0.8F, 0.4F, 1.0F}, {0.3F, 0.4F, 1.0F, 1.0F}};
    for (int i = 0; i < 3; ++i) {
        const std::string name = "sheet" + std::to_string(i);
        s.material(name, colours[i], i == 0 ? 0.0 : 0.45);
        ObjectP& o = s.object(TestScene::rectangle(-12, -2, 12, 2), name);
        o.transform().setRotate({15.0 * i, 35, 60.0 * i + 10});
        o.transform().setTranslate({0, 0, 3.0 * i});
    }
    expectGolden(s, "softened-sheets");
}

/// An O and an R with a round bevel that lie on the floor, under a spot light from the left.
void layLetters(TestScene& s) {
    auto& outline = s.scene.make<test::CurveProfile>("letters");
    outline.addCircle({-14, 0}, 11);
    outline.addCircle({-14, 0}, -6);
    using Lines = std::vector<Vec2>;
    outline.add({Curve2(Curve2::Type::kLinear, Lines{{15, 11},
                                                     {5, 11},
                                                     {5, -11},
                                                     {10, -11},
                                                     {10, -3},
                                                     {13, -3},
                                                     {18, -11},
                                                     {24, -11},
                                                     {18, -2}}),
                 Curve2(Curve2::Type::kBezier, Lines{{18, -2}, {25, 1}, {24, 11}, {15, 11}})});
    outline.add({Curve2(Curve2::Type::kLinear, Lines{{14, 2}, {10, 2}, {10, 7}, {14, 7}}),
                 Curve2(Curve2::Type::kBezier, Lines{{14, 7}, {18, 7}, {18, 2}, {14, 2}})});
    auto& edge = s.scene.make<test::CurveProfile>("round");
    edge.add({Curve2(Curve2::Type::kBezier, Lines{{0, 0}, {6, 0}, {10, 4}, {10, 10}}),
              Curve2(Curve2::Type::kLinear, Lines{{10, 10}, {10, 100}, {0, 100}})});
    auto& style = s.scene.make<ObjectXStyle>("style");
    style.setPerim("round");
    style.setDepth(13);
    style.setMaterial(0, "orange");
    s.material("orange", {0.85F, 0.35F, 0.15F, 1.0F});
    auto& word = s.scene.make<ObjectX>("word");
    word.setFace("letters");
    word.setStyle("style");
    word.setFlatRender(0.05);
    word.transform().setRotate({-90, 0, 0});
    word.transform().setTranslate({-2, 1, 0});
    s.material("grey", {0.85F, 0.85F, 0.85F, 1.0F});
    addFloor(s, "grey");
    s.light(LightType::kAmbient, 0.2);
    s.params.flags |= RenderParams::kShadows;
    s.camera().setEye({6, 62, 62});
    s.camera().setTarget({3, -8, 3});
}

LightX& lampFor(TestScene& s, LightType type, int softness) {
    LightX& lamp = s.light(type, 0.9);
    lamp.setEye({-48, 64, -30});
    lamp.setTarget({0, -12, 0});
    lamp.setMode(CameraMode::kLookAt);
    lamp.setAngles(20, 30);
    lamp.setCastsShadow(true);
    lamp.setSoftness(softness);
    return lamp;
}

TEST(Golden, HardShadows) {
    TestScene s;
    setStage(s);
    layLetters(s);
    lampFor(s, LightType::kSpot, 1);
    s.params.shadowQuality = 2000;
    expectGolden(s, "hard-shadows");
}

TEST(Golden, SoftShadows) {
    TestScene s;
    setStage(s);
    layLetters(s);
    lampFor(s, LightType::kDirectional, 12).setDarkness(0.9);
    expectGolden(s, "soft-shadows");
}

}  // namespace
}  // namespace orvin
