#include "render/LightX.h"

#include <gtest/gtest.h>

#include <cmath>

#include "scene/SceneX.h"

namespace orvin {
namespace {

/// A light at the origin with its node's rotation, prepared.
class LightTest : public testing::Test {
  protected:
    SceneX scene;
    LightX light{scene, "light"};

    void place(Vec3 at, Vec3 rotate = {}) {
        light.transform().setTranslate(at);
        light.transform().setRotate(rotate);
        EXPECT_EQ(light.prepare(), kSuccess);
    }
};

TEST_F(LightTest, PointsFromTheSceneToTheLight) {
    light.setType(LightType::kDirectional);
    place({}, {-90, 0, 0});  // tipped down by a quarter: it shines straight down
    EXPECT_NEAR(light.direction().y, 1.0, 1e-12);
    // Elevation is taken before direction: x turns first.
    place({}, {-30, 90, 0});
    EXPECT_NEAR(light.direction().x, std::sqrt(0.75), 1e-12);
    EXPECT_NEAR(light.direction().y, 0.5, 1e-12);
    EXPECT_NEAR(light.direction().z, 0.0, 1e-12);
    EXPECT_NEAR(light.diffuse({5, 5, 5}, {0, 1, 0}), 0.5, 1e-12);
    EXPECT_EQ(light.diffuse({5, 5, 5}, {0, -1, 0}), 0.0);
    // Groups move their lights.
    Group& group = scene.make<Group>("g");
    group.transform().setTranslate({0, 7, 0});
    light.attachTo(group.ref());
    light.prepare();
    EXPECT_NEAR(light.worldOrigin().y, 7.0, 1e-12);
}

TEST_F(LightTest, FallsOffWithDistance) {
    struct Case {
        Falloff falloff;
        double at, expected;
    };
    light.setIntensity(2.0);
    light.setFalloffDistance(10.0);
    place({});
    for (const Case& c :
         {Case{Falloff::kNone, 1000, 2.0}, Case{Falloff::kAbrupt, 10, 2.0},
          Case{Falloff::kAbrupt, 10.001, 0.0}, Case{Falloff::kLinear, 2.5, 1.5},
          Case{Falloff::kLinear, 11, 0.0}, Case{Falloff::kInverseSquare, 4, 0.125}}) {
        SCOPED_TRACE(falloffName(c.falloff));
        light.setFalloff(c.falloff);
        EXPECT_DOUBLE_EQ(light.attenuation({0, c.at, 0}), c.expected);
        EXPECT_DOUBLE_EQ(light.diffuse({0, -c.at, 0}, {0, 1, 0}), c.expected);
    }
    light.setFalloff(Falloff::kInverseSquare);
    EXPECT_TRUE(std::isinf(light.attenuation({})));
    // At the very light nothing may turn into NaN, with black channels least of all.
    light.setColor({1, 0, 0.5F, 1});
    EXPECT_EQ(light.diffuse({}, {0, 1, 0}), 0.0);
    const Rgba shine = light.specular({0, 5, 0}, {}, {0, 1, 0}, 80);
    EXPECT_TRUE(isFinite(shine));
    EXPECT_GT(shine[0], 1e20F);
    EXPECT_EQ(shine[1], 0.0F);
    light.setFalloff(Falloff::kLinear);
    light.setFalloffDistance(0.0);
    EXPECT_EQ(light.diffuse({}, {0, 1, 0}), 0.0);
    light.setFalloff(Falloff::kNone);
    light.setIntensity(-1.0);
    EXPECT_EQ(light.diffuse({0, -1, 0}, {0, 1, 0}), 0.0);
}

TEST_F(LightTest, SpotEndsSmoothlyBetweenItsAngles) {
    light.setType(LightType::kSpot);
    light.setAngles(0.0, 60.0);
    place({0, 0, 10});  // looks along -z
    const auto at = [&](double degrees) {
        const double angle = radians(degrees);
        const Vec3 p{std::sin(angle), 0.0, 10.0 - std::cos(angle)};
        return light.diffuse(p, normalize(Vec3{0, 0, 10} - p));
    };
    EXPECT_NEAR(at(0.0), 1.0, 1e-9);
    EXPECT_NEAR(at(61.0), 0.0, 1e-9);
    EXPECT_NEAR(at(179.0), 0.0, 1e-9);
    // Half-way between the cosines 1 and 0.5 stands 3/4 - 2/8.
    EXPECT_NEAR(at(degrees(std::acos(0.75))), 0.5, 1e-6);
    // A quarter of the way in from the rim: 3/16 - 2/64.
    EXPECT_NEAR(at(degrees(std::acos(0.625))), 0.15625, 1e-6);

    light.setAngles(30.0, 30.0);
    EXPECT_NEAR(at(29.9), 1.0, 1e-9);
    EXPECT_EQ(at(30.1), 0.0);
}

TEST_F(LightTest, AnglesAreHeldInOrder) {
    EXPECT_NEAR(light.innerAngle(), 15.0, 1e-6);
    EXPECT_NEAR(light.outerAngle(false), 0.5235987834, 1e-12);
    light.setAngles(40, 20);
    EXPECT_NEAR(light.innerAngle(), 40.0, 1e-6);
    EXPECT_NEAR(light.outerAngle(), 40.0, 1e-6);
    light.setType(static_cast<LightType>(4));
    EXPECT_EQ(light.type(), LightType::kPoint);
}

TEST_F(LightTest, HighlightIsTheRationalOne) {
    light.setColor({1.0F, 0.5F, 0.25F, 1.0F});
    light.setIntensity(0.5);
    place({0, 0, 10});
    // Light and eye on the normal: t is 1, and so is the shape, for any exponent.
    Rgba c = light.specular({0, 0, 5}, {0, 0, 0}, {0, 0, 3}, 80);
    EXPECT_FLOAT_EQ(c[0], 0.5F);
    EXPECT_FLOAT_EQ(c[1], 0.25F);
    EXPECT_FLOAT_EQ(c[3], 0.5F);
    // Half-way vector at 60 degrees off the normal: 0.5 / (10 - 5 + 0.5) of the half strength.
    c = light.specular({0, 0, 5}, {0, 0, 0}, {std::sqrt(0.75), 0, 0.5}, 10);
    EXPECT_NEAR(c[0], 0.5 * 0.5 / 5.5, 1e-7);
    // Eye at a right angle, far away: its direction counts, not its distance.
    c = light.specular({500, 0, 0}, {0, 0, 0}, {0, 0, 1}, 10);
    const double t = std::sqrt(0.5);
    EXPECT_NEAR(c[0], 0.5 * t / (10 - 10 * t + t), 1e-7);
    c = light.specular({0, 0, 5}, {0, 0, 0}, {0, 0, -1}, 10);
    EXPECT_EQ(c, (Rgba{0, 0, 0, 0}));
}

}  // namespace
}  // namespace orvin
