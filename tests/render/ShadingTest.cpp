#include "render/Shading.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/render/TestScene.h"

namespace orvin {
namespace {

using Look = MaterialX::Look;
constexpr double kNear = 1e-4;

class Shading : public testing::Test {
  protected:
    /// Looks along its negative z, as the eye does at the surface point in the origin.
    LightX& light(LightType type = LightType::kDirectional) {
        LightX& l = scene.make<LightX>("light" + std::to_string(lights.size()));
        l.setType(type);
        l.prepare();
        lights.push_back(&l);
        return l;
    }
    Rgba colour(const Look& look, bool premultiplied = true) {
        ShadeMaterial m;
        m.look = look;
        m.maps = maps;
        return shade(m, context, lights, premultiplied);
    }
    static Look plain(std::uint32_t flags = MaterialX::kDiffuse) {
        Look look;
        look.flags = flags;
        look.diffuse = {0.5F, 0.25F, 0.125F, 1.0F};
        return look;
    }
    static void expectColour(const Rgba& actual, const Rgba& expected, const std::string& what) {
        for (std::size_t i = 0; i < 4; ++i)
            EXPECT_NEAR(actual[i], expected[i], kNear) << what << ", channel " << i;
    }

    Shading() {
        context.eye = {0, 0, 100};
        context.normal = {0, 0, 1};
        context.texture = {0.25, 0.25, 0.75, 0.75};
        context.tangentS = {1, 0, 0};
        context.tangentT = {0, 1, 0};
    }

    TestScene stage;
    SceneX& scene = stage.scene;
    std::vector<const LightX*> lights;
    MaterialMaps maps;
    ShadeContext context;
};

TEST_F(Shading, LitPlaneOfKnownValue) {
    light().setColor({1.0F, 1.0F, 0.5F, 1.0F});
    context.normal = {0.0, std::sin(kPi / 3), 0.5};  // 60 degrees from the light
    expectColour(colour(plain()), {0.25F, 0.125F, 0.03125F, 1.0F}, "cosine");
    context.normal = {0, 0, -1};
    expectColour(colour(plain()), {0, 0, 0, 1}, "away from the light");
    context.normal = {};
    expectColour(colour(plain()), {0, 0, 0, 1}, "without a normal");
}

TEST_F(Shading, AmbientLightTakesTheAmbientColourOrTheSurface) {
    LightX& l = light(LightType::kAmbient);
    l.setIntensity(0.5);
    Look look = plain(MaterialX::kDiffuse);
    look.ambient = {0.2F, 0.4F, 0.6F, 1.0F};
    expectColour(colour(look), {0.25F, 0.125F, 0.0625F, 1.0F}, "surface");
    look.flags = MaterialX::kDiffuse | MaterialX::kAmbient;
    expectColour(colour(look), {0.1F, 0.2F, 0.3F, 1.0F}, "own");
    look.flags = MaterialX::kSpecular;
    expectColour(colour(look), {0, 0, 0, 1}, "neither");
}

TEST_F(Shading, HighlightsLieOnTopOfOpacity) {
    light();
    Look look = plain(MaterialX::kSpecular | MaterialX::kTransparency);
    look.specularAmount = 0.5;
    look.transparency = 1.0;
    // Straight reflection: t = 1, so the whole amount, and the alpha of white is the amount.
    expectColour(colour(look), {0.5F, 0.5F, 0.5F, 0.5F}, "clear glass");
    look.transparency = 0.75;
    look.flags |= MaterialX::kDiffuse;
    look.specularAmount = 0.0;
    expectColour(colour(look), {0.125F, 0.0625F, 0.03125F, 0.25F}, "premultiplied");
    expectColour(colour(look, false), {0.5F, 0.25F, 0.125F, 0.25F}, "straight");
    look.flags = MaterialX::kDiffuse;
    expectColour(colour(look), {0.5F, 0.25F, 0.125F, 1.0F}, "flag off");
}

TEST_F(Shading, IsCutAtOneAndNeverNaN) {
    LightX& l = light(LightType::kPoint);
    l.setFalloff(Falloff::kInverseSquare);  // and the point is right at the light
    Look look = plain(MaterialX::kDiffuse | MaterialX::kSpecular);
    look.diffuse = {0.0F, 1.0F, 1.0F, 1.0F};
    for (const float channel : colour(look)) {
        EXPECT_GE(channel, 0.0F);
        EXPECT_LE(channel, 1.0F);
    }
    context.position = {std::nan(""), 0, 0};
    for (const float channel : colour(look))
        EXPECT_FALSE(std::isnan(channel));
}

TEST_F(Shading, ColourMapMixesByItsAlpha) {
    light();
    struct Case {
        std::uint8_t alpha;
        Rgba expected;
    };
    const float half = 102.0F / 255.0F;
    const Case cases[] = {
        {0, {0.5F, 0.25F, 0.125F, 1.0F}},
        {255, {1.0F, 0.0F, 0.2F, 1.0F}},
        {102,
         {(1 - half) * 0.5F + half, (1 - half) * 0.25F, (1 - half) * 0.125F + half * 0.2F, 1.0F}}};
    for (const Case& c : cases) {
        stage.map(1, 4, 4, [&](int, int) {
            return std::array<std::uint8_t, 4>{255, 0, 51, c.alpha};
        });
        MaterialX& m = scene.make<MaterialX>(scene.uniqueName("m"));
        m.setLook(plain(MaterialX::kDiffuse | MaterialX::kColorMap));
        m.setMap(MapUse::kColor, extMapName(1));
        maps = m.resolveMaps();
        expectColour(colour(m.look()), c.expected, "alpha " + std::to_string(c.alpha));
    }
    maps = {};
    expectColour(colour(plain(MaterialX::kDiffuse | MaterialX::kColorMap)),
                 {0.5F, 0.25F, 0.125F, 1.0F}, "no map");
}

TEST_F(Shading, TransparencyMapScalesOpacityAndHighlights) {
    light();
    stage.map(1, 4, 4, [](int, int) { return std::array<std::uint8_t, 4>{0, 0, 0, 51}; });
    MaterialX& m = scene.make<MaterialX>("m");
    Look look = plain(MaterialX::kDiffuse | MaterialX::kSpecular | MaterialX::kTransparencyMap);
    look.transparency = 0.5;
    look.specularAmount = 0.5;
    m.setLook(look);
    m.setMap(MapUse::kTransparency, extMapName(1));
    maps = m.resolveMaps();
    // Alpha (1 - 0.5) * 0.2; highlight 0.5 * 0.2 on top of colour and alpha.
    expectColour(colour(look), {0.15F, 0.125F, 0.1125F, 0.2F}, "map");
    maps = {};
    look.flags |= MaterialX::kTransparency;
    look.specularAmount = 0.0;
    expectColour(colour(look), {0.25F, 0.125F, 0.0625F, 0.5F}, "map missing");
}

TEST_F(Shading, BumpLeansTheNormalAgainstTheSlope) {
    // Brightness rises by 1/4 over each box width in s: the surface rises to +x, so its normal
    // leans to -x by 3 * scale * slope. A light from -x sees more of it.
    stage.map(1, 256, 4, [](int x, int) {
        return std::array<std::uint8_t, 4>{0, 0, 0, static_cast<std::uint8_t>(x)};
    });
    MaterialX& m = scene.make<MaterialX>("m");
    Look look = plain(MaterialX::kDiffuse | MaterialX::kBumpMap);
    look.bumpScale = 0.5;
    m.setLook(look);
    m.setMap(MapUse::kBump, extMapName(1));
    maps = m.resolveMaps();
    context.texture = {0.5, 0.0, 0.75, 1.0};
    light();
    const double lean = 3.0 * 0.5 * 0.25;
    const double cosine = 1.0 / std::sqrt(1.0 + lean * lean);
    EXPECT_NEAR(colour(look)[0], 0.5 * cosine, 0.003);

    lights.clear();
    LightX& fromLeft = light();
    fromLeft.transform().setRotate({0, -90, 0});
    fromLeft.prepare();
    ASSERT_NEAR(fromLeft.direction().x, -1.0, 1e-9);
    EXPECT_NEAR(colour(look)[0], 0.5 * lean * cosine, 0.003);
}

TEST_F(Shading, ReflectionOverTheSeamTakesBothEnds) {
    // The left half of the environment is red, the right half green; its seam lies behind the
    // surface, at -z. Grazing normals along x see it.
    stage.map(1, 64, 32, [](int x, int) {
        return x < 32 ? std::array<std::uint8_t, 4>{255, 0, 0, 255}
                      : std::array<std::uint8_t, 4>{0, 255, 0, 255};
    });
    MaterialX& m = scene.make<MaterialX>("m");
    Look look = plain(MaterialX::kReflectionMap);
    look.reflectivity = 0.5;
    m.setLook(look);
    m.setMap(MapUse::kReflection, extMapName(1));
    maps = m.resolveMaps();
    const auto graze = [](double turn, double tilt) {
        return Vec3{std::cos(turn) * std::cos(tilt), std::sin(tilt), std::sin(turn)};
    };
    const auto corners = [&](double from, double to) {
        context.normal = graze((from + to) / 2, 0.0);
        context.cornerNormals = {graze(from, -0.02), graze(from, 0.02), graze(to, 0.02),
                                 graze(to, -0.02)};
    };
    // A normal turned by e mirrors to longitude -2 e: negative turns give the left end.
    corners(-0.2, -0.1);
    expectColour(colour(look), {0.5F, 0.0F, 0.0F, 1.0F}, "left end");
    corners(0.1, 0.2);
    expectColour(colour(look), {0.0F, 0.5F, 0.0F, 1.0F}, "right end");
    corners(-0.1, 0.1);
    const Rgba both = colour(look);
    EXPECT_NEAR(both[0], 0.25, 0.01);
    EXPECT_NEAR(both[1], 0.25, 0.01);
    corners(-0.3, 0.1);
    const Rgba uneven = colour(look);
    EXPECT_NEAR(uneven[0], 0.375, 0.015);
    EXPECT_NEAR(uneven[1], 0.125, 0.015);

    // Without a map that resolves there is none, and an opaque surface stays opaque.
    maps = {};
    expectColour(colour(look), {0, 0, 0, 1}, "no map");
}

}  // namespace
}  // namespace orvin
