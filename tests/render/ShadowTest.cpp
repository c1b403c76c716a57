// Shadow maps, against geometry worked out by hand and the filter's plain double sum.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <random>
#include <span>
#include <utility>
#include <vector>

#include "render/shadow/ShadowPass.h"
#include "tests/render/TestScene.h"
#include "toolkit/Progress.h"

namespace orvin {
namespace {

Mesh3 box(Vec3 a, Vec3 b) {
    const int sides[6][4] = {{0, 1, 2, 3}, {4, 7, 6, 5}, {0, 4, 5, 1},
                             {3, 2, 6, 7}, {0, 3, 7, 4}, {1, 5, 6, 2}};
    Mesh3 mesh;
    for (const double z : {b.z, a.z})
        for (const Vec2 p : {Vec2{a.x, a.y}, Vec2{b.x, a.y}, Vec2{b.x, b.y}, Vec2{a.x, b.y}})
            mesh.addVertex({p.x, p.y, z});
    for (const auto& side : sides)
        mesh.addFace(ElementKind::kPolygon, 0, side, {}, {});
    return mesh;
}

Mesh3 floorSheet(double half) {
    return TestScene::quad(
        {{{-half, 0, half}, {half, 0, half}, {half, 0, -half}, {-half, 0, -half}}});
}

/// A closed slab 10 x 2 x 10 at height 10 to 12 over a floor at height 0, and one light.
struct Stage {
    TestScene s;
    LightX& light;

    explicit Stage(LightType type, Vec3 eye, Vec3 target = {}) : light(s.light(type)) {
        s.object(floorSheet(50));
        s.object(box({-5, 10, -5}, {5, 12, 5}));
        light.setEye(eye);
        light.setTarget(target);
        light.setMode(CameraMode::kLookAt);
        light.setAngles(10, 45);
        light.setDarkness(1.0);
        light.setSoftness(1);
        s.params.shadowQuality = 1000;
    }
    const ShadowMap* build(std::uint64_t budget = 0) {
        light.prepare();
        auto map = makeShadowMap(s.scene, light, s.params, budget);
        const ShadowMap* seen = map.get();
        light.setShadowMap(std::move(map));
        return seen;
    }
};

TEST(ShadowKernel, IsABellThatSumsToOne) {
    for (const int softness : {-7, 0, 1, 2, 6, 1000, 2000000000}) {
        const ShadowKernel kernel(softness);
        const int held = std::clamp(softness, 1, ShadowKernel::kMaxSoftness);
        ASSERT_EQ(kernel.size(), 2 * held - 1);
        EXPECT_EQ(kernel.sideSum(0, kernel.size() - 1), ShadowKernel::kSideSum);
        const auto at = [&kernel](int i) { return static_cast<double>(kernel.side()[i]); };
        for (const int i : {0, held / 2, held - 1}) {
            const double x = held == 1 ? 0.0 : static_cast<double>(i) / (held - 1) - 1.0;
            // Rounding leaves at most half a unit per tap for the middle one.
            EXPECT_NEAR(at(i) / at(held - 1), std::exp2(-2.0 * x * x), 1e-3);
            EXPECT_EQ(kernel.side()[i], kernel.side()[kernel.size() - 1 - i]);
        }
    }
}

// The filter as it is written down: every tap, one after the other.
double plainFilter(const std::vector<double>& texels, int res, int softness, int ix, int iy,
                   double depth) {
    const int size = 2 * softness - 1;
    const int half = size / 2;
    double whole = 0.0;
    double dark = 0.0;
    const auto weight = [half](int i, int j) {
        const double x = half == 0 ? 0.0 : static_cast<double>(i) / half - 1.0;
        const double y = half == 0 ? 0.0 : static_cast<double>(j) / half - 1.0;
        return std::exp2(-2.0 * (x * x + y * y));
    };
    for (int i = 0; i < size; ++i)
        for (int j = 0; j < size; ++j)
            whole += weight(i, j);
    for (int i = 0; i < size; ++i)
        for (int j = 0; j < size; ++j) {
            const int x = ix + i - half;
            const int y = iy + j - half;
            if (x < 0 || y < 0 || x >= res || y >= res) {
                dark += 1.0 / (size * size);
                continue;
            }
            const double d = texels[static_cast<std::size_t>(y * res + x)];
            if (d > 1e-05 && d + 0.001 < depth) dark += weight(i, j) / whole;
        }
    return std::max(1.0 - dark, 0.0);
}

ShadowMap mapOf(const std::vector<double>& texels, int res, int softness,
                std::uint64_t budget = 0) {
    ImageBuffer depths(res, res, PixelKind::kDepth, budget);
    const auto side = static_cast<std::size_t>(res);
    for (int y = 0; y < res; ++y)
        depths.writeRow(y, std::span(texels).subspan(static_cast<std::size_t>(y) * side, side));
    EXPECT_EQ(depths.isPaged(), budget != 0);
    ShadowFrame frame;
    frame.resolution = res;
    return {frame, softness, std::move(depths)};
}

TEST(ShadowMap, FiltersLikeThePlainSumAtAnyWidth) {
    struct Case {
        int res, softness;
        bool paged;
    };
    const Case cases[] = {{1, 1, false},   {1, 6, false},    {8, 2, false},    {100, 1, false},
                          {100, 6, false}, {100, 21, false}, {100, 80, false}, {100, 150, false},
                          {400, 6, true},  {400, 40, true},  {600, 90, false}};
    std::mt19937 random(7);
    const auto upTo = [&random](int n) {
        return static_cast<int>(random() % static_cast<unsigned>(n));
    };
    for (const Case& c : cases) {
        // Patches of one depth, without blockers and of noise: full, empty and mixed blocks.
        std::vector<double> texels;
        for (int y = 0; y < c.res; ++y)
            for (int x = 0; x < c.res; ++x) {
                const double patches[] = {0.0, 10.0, 20.0, upTo(1000) / 100.0};
                texels.push_back(patches[(x / 37 + y / 23) % 4]);
            }
        const ShadowMap map =
            mapOf(texels, c.res, c.softness, c.paged ? ImageBuffer::kBudgetReserve : 0);
        for (int i = 0; i < 12; ++i) {
            const int x = upTo(c.res);
            const int y = upTo(c.res);
            const double depth = upTo(250) / 10.0;
            EXPECT_NEAR(map.filtered(x, y, depth),
                        plainFilter(texels, c.res, c.softness, x, y, depth), 1e-6)
                << c.res << ' ' << c.softness << ' ' << x << ' ' << y << ' ' << depth;
        }
    }
}

TEST(ShadowMap, ShadowBeginsBehindTheBias) {
    const ShadowMap map = mapOf({5.0}, 1, 1);
    EXPECT_EQ(map.filtered(0, 0, 5.0 + 0.001), 1.0);
    EXPECT_EQ(map.filtered(0, 0, 5.0 + 0.0011), 0.0);
    EXPECT_EQ(mapOf({0.00001}, 1, 1).filtered(0, 0, 5.0), 1.0);
}

TEST(ShadowMap, TapsBeyondTheEdgeAreDark) {
    Stage stage(LightType::kDirectional, {0, 100, 0});
    stage.light.setSoftness(6);
    const ShadowMap* map = stage.build();
    ASSERT_NE(map, nullptr);
    // Five of eleven columns lie outside, at a corner all but 36 taps.
    EXPECT_NEAR(map->filtered(0, 500, 0.0), 66.0 / 121.0, 1e-12);
    EXPECT_NEAR(map->filtered(999, 999, 0.0), 36.0 / 121.0, 1e-12);
    // Through the light, at the floor's rim and just beyond; a place just before the centre of the
    // first column, or row, still rounds onto it.
    stage.light.setDarkness(0.8);
    for (const Vec3 p : {Vec3{-49.99, 0, 0}, {-50.1, 0, 0}, {0, 0, 50.1}, {49.9, 0, 0}})
        EXPECT_NEAR(stage.light.shadowFactor(p), 1.0 - 55.0 / 121.0 * 0.8, 1e-9) << p.x;
    for (const Vec3 p : {Vec3{50.2, 0, 0}, {0, 0, 50.2}, {0, 0, -50.2}})
        EXPECT_EQ(stage.light.shadowFactor(p), 0.0) << p.x;
    EXPECT_EQ(stage.light.shadowFactor({-50.2, 0, 0}), 0.0);
    stage.light.setDarkness(0.0);
    EXPECT_EQ(stage.light.shadowFactor({0, 0, 0}), 1.0);
    EXPECT_EQ(stage.light.shadowFactor({-50.2, 0, 0}), 0.0);
    const LightX copy(stage.s.scene, stage.light, "copy");
    EXPECT_EQ(copy.shadowMap(), nullptr);
    EXPECT_EQ(copy.shadowFactor({-50.2, 0, 0}), 1.0);
}

// Where the floor is lit: `inside` and `outside` hold points a hair's breadth (three texels) on
// either side of the shadow's corners and sides.
void expectShadow(const Stage& stage, double x0, double z0, double x1, double z1, double hair) {
    for (const double side : {-1.0, 1.0}) {
        const double h = side * hair;
        const Vec3 points[] = {{x0 - h, 0, z0 - h},        {x1 + h, 0, z0 - h},
                               {x1 + h, 0, z1 + h},        {x0 - h, 0, z1 + h},
                               {x0 - h, 0, (z0 + z1) / 2}, {(x0 + x1) / 2, 0, z1 + h}};
        for (const Vec3 p : points)
            EXPECT_EQ(stage.light.shadowFactor(p), side > 0.0 ? 1.0 : 0.0) << p.x << ' ' << p.z;
    }
    EXPECT_EQ(stage.light.shadowFactor({(x0 + x1) / 2, 0, (z0 + z1) / 2}), 0.0);
}

TEST(ShadowPass, ShadowsLieWhereGeometrySays) {
    // Along (-1, -1, 0): the slab's lower left and upper right edges bound the shadow.
    Stage sun(LightType::kDirectional, {40, 40, 0}, {0, 0, 0});
    ASSERT_NE(sun.build(), nullptr);
    expectShadow(sun, -17, -5, -5, 5, 0.4);
    // From a point 30 above the floor the upper face, 18 below it, throws the wider shadow.
    const double spread = 5.0 * 30.0 / 18.0;
    for (const LightType type : {LightType::kSpot, LightType::kPoint}) {
        Stage lamp(type, {0, 30, 0});
        const ShadowMap* map = lamp.build();
        ASSERT_NE(map, nullptr);
        expectShadow(lamp, -spread, -spread, spread, spread, 0.2);
        // Between the slab's faces; the floor alone blocks nothing.
        double texel = 0.0;
        map->depths().readPixel(500, 500, texel);
        EXPECT_FLOAT_EQ(static_cast<float>(texel), 19.0F);
        map->depths().readPixel(900, 500, texel);
        EXPECT_EQ(texel, 0.0);
        // The pyramid of twice 45 degrees, and behind the light.
        EXPECT_EQ(lamp.light.shadowFactor({29.8, 0, 29.8}), 1.0);
        EXPECT_EQ(lamp.light.shadowFactor({30.2, 0, 0}), 0.0);
        EXPECT_EQ(lamp.light.shadowFactor({5, 40, 0}), 0.0);
    }
}

TEST(ShadowPass, NeitherRollNorTheRootMoveShadows) {
    Stage sun(LightType::kDirectional, {40, 40, 0});
    sun.light.setRoll(33.0);
    ASSERT_NE(sun.build(), nullptr);
    expectShadow(sun, -17, -5, -5, 5, 0.4);
    // All stands in the root, which turns and moves; looked at in the root's space.
    Stage moved(LightType::kSpot, {0, 30, 0});
    moved.s.scene.root().transform().setTranslate({100, -20, 7});
    moved.s.scene.root().transform().setScale({2, 2, 2});
    ASSERT_NE(moved.build(), nullptr);
    const double spread = 5.0 * 30.0 / 18.0 * 2.0;
    EXPECT_EQ(moved.light.shadowFactor({100 + spread - 0.4, -20, 7}), 0.0);
    EXPECT_EQ(moved.light.shadowFactor({100 + spread + 0.4, -20, 7}), 1.0);
}

TEST(ShadowPass, WhatCastsAndWhatDoesNot) {
    const auto lit = [](const std::function<void(TestScene&)>& furnish) {
        TestScene s;
        furnish(s);
        LightX& light = s.light(LightType::kDirectional);
        light.transform().setRotate({-90, 0, 0});
        light.setDarkness(1.0);
        light.setSoftness(1);
        light.prepare();
        light.setShadowMap(makeShadowMap(s.scene, light, s.params));
        return light.shadowFactor({0.3, 0, 0.3}) == 1.0;
    };
    const auto sheet = [](TestScene& s, double y, const std::string& material) {
        s.object(floorSheet(5), material).transform().setTranslate({0, y, 0});
    };
    EXPECT_TRUE(lit([&](TestScene& s) { sheet(s, 0, ""); }));
    EXPECT_FALSE(lit([&](TestScene& s) { sheet(s, 0, ""), sheet(s, 3, ""); }));
    EXPECT_FALSE(lit([&](TestScene& s) {
        s.material("glass", {1, 1, 1, 1}, 0.9);
        sheet(s, 0, ""), sheet(s, 3, "glass");
    }));
    EXPECT_TRUE(lit([&](TestScene& s) {
        sheet(s, 0, "");
        s.object(floorSheet(5)).setEnabled(false);
    }));
}

TEST(ShadowPass, ClosedObjectsDoNotShadowThemselves) {
    TestScene s;
    const Mesh3 mesh = TestScene::ball(10, 96, 48);
    s.object(Mesh3(mesh));
    for (const LightType type : {LightType::kDirectional, LightType::kSpot}) {
        LightX& light = s.light(type);
        light.setEye({60, 80, 0});
        light.setMode(CameraMode::kLookAt);
        light.setDarkness(1.0);
        light.prepare();
        for (const int softness : {1, 6}) {
            light.setSoftness(softness);
            light.setShadowMap(makeShadowMap(s.scene, light, s.params));
            int looked = 0;
            for (int f = 0; f < mesh.faceCount(); ++f) {
                Vec3 p;
                for (const int v : mesh.face(f).vertices)
                    p = p + mesh.vertex(v) * 0.25;
                const Vec3 toLight =
                    type == LightType::kSpot ? normalize(Vec3{60, 80, 0} - p) : Vec3{0.6, 0.8, 0};
                // A soft edge reaches a few texels over the terminator.
                if (dot(normalize(p), toLight) < (softness == 1 ? 0.05 : 0.25)) continue;
                ++looked;
                EXPECT_EQ(light.shadowFactor(p), 1.0) << p.x << ' ' << p.y << ' ' << p.z;
            }
            EXPECT_GT(looked, 1000);
        }
    }
}

TEST(ShadowPass, OddLightsAndScenes) {
    for (const double outer : {0.0, 90.0, -400.0})
        for (const int softness : {0, 1000}) {
            Stage lamp(LightType::kSpot, {0, 30, 0});
            lamp.light.setAngles(0, outer);
            lamp.light.setSoftness(softness);
            lamp.s.params.shadowQuality = 64;
            ASSERT_NE(lamp.build(), nullptr);
            const double factor = lamp.light.shadowFactor({0, 0, 0});
            EXPECT_GE(factor, 0.0);
            // In the slab's shadow, or far from the edges of a filter wider than the map. At the
            // widest angle the slab falls between two texels.
            EXPECT_LE(factor, outer == 90.0 && softness == 0 ? 1.0 : 0.1) << outer;
            EXPECT_EQ(lamp.light.shadowFactor({0, 0, 1e9}), 0.0);
            EXPECT_GE(lamp.light.shadowFactor(lamp.light.worldOrigin()), 0.0);
        }
    // In the slab: only its lower face and the floor are in front of the light.
    Stage inside(LightType::kSpot, {0, 11.9, 0});
    ASSERT_NE(inside.build(), nullptr);
    EXPECT_EQ(inside.light.shadowFactor({0, 10, 0}), 1.0);
    EXPECT_EQ(inside.light.shadowFactor({0, 0, 0}), 0.0);

    // An ambient light, no objects, objects that are nowhere, a light that is nowhere.
    EXPECT_EQ(Stage(LightType::kAmbient, {0, 30, 0}).build(), nullptr);
    TestScene empty;
    EXPECT_EQ(makeShadowMap(empty.scene, empty.light(LightType::kDirectional), empty.params),
              nullptr);
    Stage vast(LightType::kDirectional, {0, 30, 0});
    vast.s.object(box({-1e308, 0, 0}, {1e308, 1e308, 1}));
    EXPECT_EQ(vast.build(), nullptr);

    // A sheet seen edge-on has a box without width, its own points still fall on the map; a map of
    // any size that the settings hold.
    TestScene thin;
    thin.object(TestScene::rectangle(-5, -5, 5, 5));
    LightX& side = thin.light(LightType::kDirectional);
    side.transform().setRotate({0, 90, 0});
    side.setSoftness(1);
    for (const int quality : {-5, 0, 1, 300}) {
        thin.params.shadowQuality = quality;
        side.prepare();
        side.setShadowMap(makeShadowMap(thin.scene, side, thin.params));
        ASSERT_NE(side.shadowMap(), nullptr);
        EXPECT_EQ(side.shadowMap()->frame().resolution, std::max(quality, 1));
    }
    EXPECT_EQ(side.shadowFactor({0, 1, 0}), 1.0);
    EXPECT_EQ(thin.scene.count(MemberKind::kCamera), 1U) << "the light's camera is gone";
}

TEST(ShadowPass, StopsOnEveryRowAndPagesLargeMaps) {
    Stage stage(LightType::kDirectional, {40, 40, 0});
    stage.s.params.shadowQuality = 400;
    int polls = 0;
    setProgress([&](int, int) { return ++polls == 250 ? 1 : 0; });
    EXPECT_EQ(stage.build(), nullptr);
    EXPECT_EQ(polls, 250);
    setProgress({});
    ASSERT_NE(stage.build(), nullptr);

    const auto lookAround = [&stage] {
        std::vector<double> factors;
        for (int i = -40; i <= 40; ++i)
            for (int j = -10; j <= 10; ++j)
                factors.push_back(stage.light.shadowFactor({i * 0.5, 0, j * 1.0}));
        return factors;
    };
    stage.light.setSoftness(9);
    stage.build();
    const std::vector<double> kept = lookAround();
    const ShadowMap* paged = stage.build(ImageBuffer::kBudgetReserve);
    EXPECT_TRUE(paged->depths().isPaged());
    EXPECT_EQ(lookAround(), kept);
}

TEST(Frame, DrawsShadowsWhereTheyAreAskedFor) {
    Stage stage(LightType::kDirectional, {0, 100, 0});
    stage.s.material("m", {0.5F, 0.5F, 0.5F, 1.0F});
    for (SceneMember* member : stage.s.scene.members(MemberKind::kObject))
        static_cast<ObjectP*>(member)->setMaterial(0, "m");
    CameraX& camera = stage.s.camera();
    camera.setOrthoWidth(20);
    camera.setEye({0, 5, 0});  // between slab and floor
    camera.setMode(CameraMode::kLookAt);
    stage.light.setDarkness(0.5);
    EXPECT_EQ(stage.s.render().at(5, 5), stage.s.render().at(1, 1));
    stage.light.setCastsShadow(true);
    EXPECT_EQ(stage.s.render().at(5, 5), stage.s.render().at(1, 1));
    stage.s.params.flags |= RenderParams::kShadows;
    EXPECT_EQ(stage.s.render().at(1, 1)[0], 128);
    EXPECT_EQ(stage.s.render().at(5, 5)[0], 64);
    EXPECT_EQ(stage.light.shadowMap(), nullptr) << "maps live for one frame";
    // A map has square pixels, whatever the picture's.
    stage.light.setType(LightType::kSpot);
    const Picture square = stage.s.render();
    stage.s.params.pixelAspect = 1.5F;
    EXPECT_EQ(stage.s.render(), square);
}

}  // namespace
}  // namespace orvin
