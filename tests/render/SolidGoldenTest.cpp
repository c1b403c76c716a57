// Hard outlines close up: how their bevels shade, judged by eye before they became the measure.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "tests/geometry/Extrusions.h"
#include "tests/render/TestScene.h"
#include "tests/support/Golden.h"

namespace orvin {
namespace {

using Points = std::vector<Vec2>;

Curve2 line(Points points) {
    return Curve2(Curve2::Type::kLinear, std::move(points));
}
Curve2 bezier(Points points) {
    return Curve2(Curve2::Type::kBezier, std::move(points));
}

/// The outlines are drawn about the origin, some 40 units wide; `scale` makes art of another size,
/// seen from as much farther away.
struct CloseUp {
    TestScene s;
    test::CurveProfile& outline = s.scene.make<test::CurveProfile>("outline");
    test::CurveProfile& edge = s.scene.make<test::CurveProfile>("round");
    ObjectXStyle& style = s.scene.make<ObjectXStyle>("style");
    ObjectX& object = s.scene.make<ObjectX>("object");

    explicit CloseUp(Vec3 eye, Vec3 target, double scale = 1.0) {
        edge.add(
            {bezier({{0, 0}, {11, 0}, {20, 9}, {20, 20}}), line({{20, 20}, {20, 100}, {0, 100}})});
        style.setPerim("round");
        style.setDepth(10.0 * scale);
        style.setMaterial(0, "brass");
        object.setFace("outline");
        object.setStyle("style");
        object.setFlatRender(0.05 * scale);
        MaterialX& brass = s.material("brass", {0.8F, 0.62F, 0.3F, 1.0F});
        brass.setFlag(MaterialX::kSpecular, true);
        brass.setSpecular(50.0, 0.5);
        s.light(LightType::kAmbient, 0.15);
        s.light(LightType::kDirectional, 0.8).transform().setRotate({-35, 40, 0});
        s.light(LightType::kDirectional, 0.25).transform().setRotate({20, -70, 0});
        s.params.width = 160;
        s.params.height = 120;
        s.params.antiAliasSize = 4;
        s.camera().setProjection(Projection::kPerspective);
        s.camera().setEye(eye * scale);
        s.camera().setTarget(target * scale);
        s.camera().setMode(CameraMode::kLookAt);
        s.camera().setClip(0.01 * scale, 1000.0 * scale);
    }

    void expectGolden(const std::string& name) {
        const Picture p = s.render();
        EXPECT_TRUE(test::matchesGolden(name, p.width, p.height, p.bytes));
    }
};

// The foot of a stem: brackets run tangent into thin ends.
TEST(GoldenSolid, Serif) {
    CloseUp c({-14, 10, 42}, {0, 2, -3});
    c.outline.add({line({{-16, 0}, {16, 0}, {16, 2}}), bezier({{16, 2}, {9, 2.5}, {5, 5}, {5, 14}}),
                   line({{5, 14}, {5, 40}, {-5, 40}, {-5, 14}}),
                   bezier({{-5, 14}, {-5, 5}, {-9, 2.5}, {-16, 2}}), line({{-16, 2}, {-16, 0}})});
    c.expectGolden("solid-serif");
}

// Tips of 5 and of 20 degrees.
TEST(GoldenSolid, NeedleTip) {
    CloseUp c({6, 12, 46}, {12, 5, -3});
    c.outline.addLines({{-18, -1.4}, {18, -0.15}, {18, 0.15}, {-18, 4}}, true);
    c.outline.addLines({{-18, 8}, {4, 6}, {18, 12}, {-18, 12}}, true);
    c.expectGolden("solid-needle");
}

TEST(GoldenSolid, DeepConcaveCorner) {
    CloseUp c({-14, 18, 44}, {1, 3, -3});
    c.outline.addLines({{-18, -12}, {18, -12}, {18, 16}, {1.5, -8}, {-1, 16}, {-18, 16}}, true);
    c.expectGolden("solid-concave");
}

// Slots that the bevels just leave open, and just fill up.
TEST(GoldenSolid, ThinSlots) {
    CloseUp c({-12, 12, 40}, {-4, 0, -3});
    c.outline.addLines({{-18, -14}, {14, -14}, {14, 14}, {-18, 14}}, true);
    c.outline.addLines({{-12, -8}, {-12, 9}, {-8, 9}, {-8, -8}}, true);
    c.outline.addLines({{-3, -8}, {-3, 9}, {3, 9}, {3, -8}}, true);
    c.expectGolden("solid-slots");
}

Picture rings(double scale) {
    CloseUp c({-16, 14, 40}, {0, 0, -3}, scale);
    for (const double radius : {17.0, -12.0, 7.0})
        c.outline.addCircle({0, 0}, radius * scale);
    return c.s.render();
}

TEST(GoldenSolid, RingInRing) {
    const Picture p = rings(1.0);
    EXPECT_TRUE(test::matchesGolden("solid-rings", p.width, p.height, p.bytes));
    // Ten times the size and a hundredth of it look the same, but for a few pixels at the rims.
    for (const double scale : {10.0, 0.01}) {
        const Picture other = rings(scale);
        int unlike = 0;
        for (std::size_t i = 0; i < p.bytes.size(); ++i)
            unlike += std::abs(p.bytes[i] - other.bytes[i]) > 16 ? 1 : 0;
        EXPECT_LT(unlike, 20) << scale;
    }
}

}  // namespace
}  // namespace orvin
