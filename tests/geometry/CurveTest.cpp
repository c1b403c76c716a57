// Curves, chains of curves and what they flatten to.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "geometry/ModelHooks.h"
#include "geometry/outline/CompositeCurve2.h"
#include "geometry/outline/Line2.h"
#include "scene/MemoryStream.h"

namespace orvin {
namespace {

using Type = Curve2::Type;

CompositeCurve2 chain(std::vector<Curve2> curves) {
    CompositeCurve2 composite;
    composite.curves = std::move(curves);
    composite.linkCurves();
    return composite;
}

Mesh2 emitted(const CompositeCurve2& composite, double tolerance, double hardAngle) {
    Mesh2 mesh;
    EXPECT_EQ(composite.emit(tolerance, hardAngle, mesh), kSuccess);
    return mesh;
}

/// A quarter of a unit circle about (0, 0) from the angle `start` on, times `radius`.
Curve2 quarter(double radius, double start) {
    const double k = 0.5522847498;
    const Vec2 control[] = {{1, 0}, {1, k}, {k, 1}, {0, 1}};
    std::vector<Vec2> points;
    for (const Vec2 p : control)
        points.push_back(Vec2{p.x * std::cos(start) - p.y * std::sin(start),
                              p.x * std::sin(start) + p.y * std::cos(start)} *
                         radius);
    return Curve2(Type::kBezier, std::move(points));
}

// A curve of a few characters may be of any size.
TEST(CompositeCurve2, CurvesOfHugeExtentHaveAnEnd) {
    const Curve2 huge(Type::kBezier, {{1e12, 0}, {1e12, 1e12}, {0, 1e12}, {0, 0}});
    std::vector<Vec2> points;
    std::vector<Vec2> normals;
    ASSERT_EQ(huge.flatten(0.5, points, normals), kSuccess);
    EXPECT_GT(points.size(), 200U);
    EXPECT_LT(points.size(), 4000U);
    CompositeCurve2 path;
    path.curves.assign(20, huge);
    Mesh2 mesh;
    ASSERT_EQ(path.emit(0.5, 20.0, mesh), kSuccess);
    const int perPath = mesh.vertexCount();
    while (static_cast<std::size_t>(mesh.vertexCount() + perPath) <= CompositeCurve2::kMostPoints)
        mesh.addVertex({});
    EXPECT_EQ(path.emit(0.5, 20.0, mesh), kFailure);
    EXPECT_LE(static_cast<std::size_t>(mesh.vertexCount()), CompositeCurve2::kMostPoints);
}

TEST(Curve2, BezierFlattensWithinTolerance) {
    for (const double tolerance : {5.0, 0.5, 0.05}) {
        std::vector<Vec2> points;
        std::vector<Vec2> normals;
        const Curve2 curve = quarter(100.0, 0.0);
        ASSERT_EQ(curve.flatten(tolerance, points, normals), kSuccess);
        ASSERT_EQ(points.size(), normals.size());
        EXPECT_EQ(points.front(), (Vec2{100, 0}));
        EXPECT_NEAR(length(points.back() - Vec2{0, 100}), 0.0, 1e-9);
        for (std::size_t i = 0; i < points.size(); ++i) {
            // The left normal of a counter-clockwise arc points to its centre.
            EXPECT_NEAR(length(normals[i] + normalize(points[i])), 0.0, 0.01);
            if (i == 0) continue;
            const Vec2 middle = (points[i] + points[i - 1]) * 0.5;
            EXPECT_LT(100.0 - length(middle), tolerance);
        }
        EXPECT_LT(points.size(), 4 + 30 / std::sqrt(tolerance));
    }
    EXPECT_NEAR(quarter(100.0, 0.0).length(), 50.0 * kPi, 0.1);
}

TEST(Curve2, StraightAndOddCurvesFlatten) {
    struct Case {
        const char* what;
        Curve2 curve;
        bool closed;
        std::size_t points;
    };
    const double inf = std::numeric_limits<double>::infinity();
    const Case cases[] = {
        {"two control points", Curve2(Type::kBezier, {{0, 0}, {9, 9}}), false, 2},
        {"four in a line", Curve2(Type::kBezier, {{0, 0}, {3, 0}, {6, 0}, {9, 0}}), false, 2},
        {"closed with a gap", Curve2(Type::kBezier, {{0, 0}, {9, 0}}), true, 3},
        {"closed without one", Curve2(Type::kBezier, {{0, 0}, {0.009, 0}}), true, 2},
        {"no control point", Curve2(Type::kBezier, {}), false, 0},
        {"infinite", Curve2(Type::kBezier, {{0, 0}, {inf, 9}, {0, 9}}), false, 3},
        {"one point", Curve2(Type::kLinear, {{3, 4}}), false, 2},
        {"polyline", Curve2(Type::kLinear, {{0, 0}, {5, 0}, {5, 5}}), false, 4},
        {"closed polyline", Curve2(Type::kLinear, {{0, 0}, {5, 0}, {5, 5}}), true, 5},
        {"empty", Curve2(Type::kEmpty, {}), false, 0},
    };
    for (Case c : cases) {
        std::vector<Vec2> points;
        std::vector<Vec2> normals;
        c.curve.closed = c.closed;
        EXPECT_EQ(c.curve.flatten(0.1, points, normals), kSuccess) << c.what;
        EXPECT_EQ(points.size(), c.points) << c.what;
        EXPECT_EQ(normals.size(), c.points) << c.what;
    }
    std::vector<Vec2> points;
    std::vector<Vec2> normals;
    const Curve2 absurd(Type::kBezier, std::vector<Vec2>(100000, Vec2{1, 2}));
    EXPECT_EQ(absurd.flatten(0.1, points, normals), kFailure);
}

TEST(Curve2, EvaluatesByArcLength) {
    const Curve2 line(Type::kLinear, {{0, 0}, {0, 0}, {6, 0}, {6, 2}});
    Vec2 normal;
    EXPECT_EQ(line.evaluate(0.5, &normal), (Vec2{4, 0}));
    EXPECT_EQ(normal, (Vec2{0, 1}));
    EXPECT_EQ(line.evaluate(1.0, &normal), (Vec2{6, 2}));
    EXPECT_EQ(normal, (Vec2{-1, 0}));
    EXPECT_EQ(line.evaluate(1.5, &normal), Vec2{});
    EXPECT_EQ(normal, (Vec2{-1, 0}));
    EXPECT_EQ(Curve2(Type::kLinear, {{3, 4}}).evaluate(0.0, nullptr), Vec2{});

    const Curve2 arch(Type::kBezier, {{0, 0}, {0, 8}, {8, 8}, {8, 0}});
    EXPECT_EQ(arch.evaluate(0.5, &normal), (Vec2{4, 6}));
    EXPECT_EQ(normal, (Vec2{0, 1}));
}

TEST(Curve2, ShortPiecesGoFromTheEnd) {
    Curve2 line(Type::kLinear, {{0, 0}, {5, 0}, {5.04, 0}, {5.08, 0}, {9, 0}});
    EXPECT_EQ(line.removeShort(), 2);
    ASSERT_EQ(line.points().size(), 3U);
    EXPECT_EQ(line.points()[1], (Vec2{5.08, 0}));
    Curve2 dot(Type::kLinear, {{0, 0}, {0.05, 0}});
    EXPECT_EQ(dot.removeShort(), 2);
    EXPECT_EQ(dot.type(), Type::kEmpty);
    Curve2 loop(Type::kBezier, {{0, 0}, {9, 9}, {-9, 9}, {0.01, 0}});
    EXPECT_EQ(loop.removeShort(), 0);
}

TEST(CompositeCurve2, JointsAreSmoothBelowTheHardAngle) {
    // Two straight curves that meet at an angle.
    const auto joint = [](double degrees) {
        const double a = radians(degrees);
        return chain({Curve2(Type::kBezier, {{0, 0}, {10, 0}}),
                      Curve2(Type::kBezier, {{10, 0}, {10 + std::cos(a), std::sin(a)}})});
    };
    EXPECT_EQ(emitted(joint(10), 0.1, 20).vertexCount(), 3);
    const Mesh2 hard = emitted(joint(30), 0.1, 20);
    ASSERT_EQ(hard.vertexCount(), 4);
    EXPECT_EQ(hard.vertex(1), hard.vertex(2));
    EXPECT_NE(hard.normal(1), hard.normal(2));
    EXPECT_EQ(hard.faceCount(), 1);
    EXPECT_EQ(hard.face(0).kind, ElementKind::kPointList);
    EXPECT_EQ(emitted(joint(0), 0.1, -1).vertexCount(), 4);
}

TEST(CompositeCurve2, ACircleClosesSmoothlyAndItsTextureRunsDown) {
    std::vector<Curve2> quarters;
    for (int i = 0; i < 4; ++i)
        quarters.push_back(quarter(50, i * kPi / 2));
    const CompositeCurve2 circle = chain(quarters);
    EXPECT_TRUE(circle.closed);
    const Mesh2 mesh = emitted(circle, 0.1, 20);
    ASSERT_EQ(mesh.faceCount(), 1);
    EXPECT_EQ(mesh.face(0).kind, ElementKind::kPolygon);
    for (int i = 1; i < mesh.vertexCount(); ++i) {
        EXPECT_GT(length(mesh.vertex(i) - mesh.vertex(i - 1)), 1.0);
        EXPECT_LT(mesh.texVertex(i).x, mesh.texVertex(i - 1).x);
    }
    EXPECT_GT(length(mesh.vertex(0) - mesh.vertex(mesh.vertexCount() - 1)), 1.0);
    EXPECT_EQ(mesh.texVertex(0).x, 1.0);
    EXPECT_EQ(mesh.texVertex(mesh.vertexCount() - 1).x, 0.0);
    EXPECT_EQ(emitted(circle, 0.1, -1).vertexCount(), mesh.vertexCount() + 4);
}

TEST(CompositeCurve2, LinksByPlace) {
    const Curve2 a(Type::kLinear, {{0, 0}, {5, 0}});
    const Curve2 b(Type::kLinear, {{5.00005, 0}, {5, 5}});
    const Curve2 back(Type::kLinear, {{5, 5}, {0, 0}});
    const Curve2 away(Type::kLinear, {{7, 7}, {0, 0}});
    CompositeCurve2 closed = chain({a, b, back});
    EXPECT_TRUE(closed.closed);
    const CompositeCurve2 broken = chain({a, b, away});
    EXPECT_FALSE(broken.closed);
    EXPECT_TRUE(broken.curves[0].attachedTail && broken.curves[1].attachedHead);
    EXPECT_FALSE(broken.curves[1].attachedTail || broken.curves[2].attachedHead);
    EXPECT_TRUE(broken.curves[2].attachedTail && broken.curves[0].attachedHead);
    EXPECT_EQ(emitted(broken, 0.1, 20).faceCount(), 2);

    closed.reverse();
    EXPECT_EQ(closed.curves.front().points().front(), (Vec2{0, 0}));
    EXPECT_EQ(closed.curves.front().points().back(), (Vec2{5, 5}));

    CompositeCurve2 untidy = chain({a, Curve2(Type::kLinear, {{5, 0}, {5.02, 0}}),
                                    Curve2(Type::kLinear, {{5.02, 0}, {0, 0.05}})});
    untidy.cleanup();
    ASSERT_EQ(untidy.curves.size(), 2U);
    EXPECT_EQ(untidy.curves[0].points().back(), (Vec2{5.02, 0}));
    EXPECT_EQ(untidy.curves[1].points().back(), (Vec2{0, 0}));
    EXPECT_EQ(untidy.evaluate(1.0, nullptr), (Vec2{0, 0}));
}

TEST(CompositeCurve2, KnotsAndPlacesAreArcFractions) {
    const CompositeCurve2 path = chain(
        {Curve2(Type::kLinear, {{0, 0}, {2, 0}, {2, 2}}), Curve2(Type::kBezier, {{2, 2}, {2, 6}})});
    std::vector<double> knots;
    path.appendKnots(knots);
    EXPECT_EQ(knots, (std::vector<double>{0, 0.25, 0.5, 1}));
    Vec2 point{2.05, 1.95};
    double t = -1;
    EXPECT_TRUE(path.locate(point, 0.1, t));
    EXPECT_EQ(point, (Vec2{2, 2}));
    EXPECT_EQ(t, 0.5);
    EXPECT_EQ(path.evaluate(0.75, nullptr), (Vec2{2, 4}));
    point = {9, 9};
    EXPECT_FALSE(path.locate(point, 0.1, t));
}

TEST(InputProfile2, EdgesAreTurnedAndSnapped) {
    InputProfile2 edge;
    edge.paths.push_back(chain({Curve2(Type::kLinear, {{0.3, 99.96}, {20, 50}}),
                                Curve2(Type::kLinear, {{20, 50}, {0.4, 0.0049}})}));
    edge.orientEdgePath();
    const auto& curves = edge.paths[0].curves;
    EXPECT_EQ(curves.front().points().front(), (Vec2{0, 0}));
    EXPECT_EQ(curves.back().points().back(), (Vec2{0, 100}));
    EXPECT_NEAR(curves[0].length(), std::hypot(20, 50), 1e-9);
}

TEST(InputProfile2, StreamRoundTripKeepsEverything) {
    InputProfile2 profile;
    profile.paths.push_back(chain(
        {quarter(50, 0), Curve2(Type::kLinear, {{0, 50}, {-3.5, 2}}), Curve2(Type::kEmpty, {})}));
    profile.paths[0].curves[1].closed = true;
    profile.paths[0].closed = true;
    MemoryStream out(nullptr);
    ASSERT_EQ(out.writeObject(profile), kSuccess);
    const std::string text = out.takeText();
    EXPECT_NE(text.find("  begin Curve2\n   type Bezier\n   p 50.000000 0.000000\n"),
              std::string::npos)
        << text;

    InputProfile2 read;
    MemoryStream in(nullptr, std::string_view(text).substr(text.find('\n')));
    ASSERT_EQ(loadBlock(in, read), kSuccess);
    ASSERT_EQ(read.paths.size(), 1U);
    EXPECT_TRUE(read.paths[0].closed);
    ASSERT_EQ(read.paths[0].curves.size(), 3U);
    EXPECT_NEAR(read.paths[0].curves[0].length(), 25 * kPi, 0.1);
    EXPECT_TRUE(read.paths[0].curves[0].attachedTail);
    EXPECT_TRUE(read.paths[0].curves[1].closed);
    EXPECT_EQ(read.paths[0].curves[1].points()[1], (Vec2{-3.5, 2}));
    EXPECT_EQ(read.paths[0].curves[2].type(), Type::kEmpty);
}

TEST(InputProfile2, DamagedStreamsFail) {
    const char* const texts[] = {
        "begin Curve2 end Curve2 end InputProfile2",
        "begin CompositeCurve2 begin Curve2 type Quadric end Curve2",
        "begin CompositeCurve2 begin Curve2 p 1",
        "begin CompositeCurve2 begin Curve2 end CompositeCurve2",
        "infileIllustrator \"a.ai\" end InputProfile2",
        "infileObj \"missing.obj\" end InputProfile2",
    };
    for (const char* text : texts) {
        InputProfile2 profile;
        MemoryStream in(&profile, text);
        Result result = kSuccess;
        while (result == kSuccess && in.depth() > 0 && in.hasMore())
            result = in.runTopCommand();
        EXPECT_NE(result, kSuccess) << text;
    }
}

TEST(InputProfile2, ModelsComeInAsClosedPaths) {
    const ModelHooks before = modelHooks();
    setModelHooks({[](const std::string&, Mesh3& mesh) -> Result {
                       for (const Vec3 p : {Vec3{0, 0, 9}, Vec3{4, 0, 9}, Vec3{4, 3, 9}})
                           mesh.addVertex(p);
                       const int corners[] = {0, 1, 2};
                       mesh.addFace(ElementKind::kPolygon, 0, corners);
                       return kSuccess;
                   },
                   nullptr});
    InputProfile2 profile;
    MemoryStream in(nullptr, "infileObj \"triangle.obj\" end InputProfile2");
    EXPECT_EQ(loadBlock(in, profile), kSuccess);
    setModelHooks(before);
    ASSERT_EQ(profile.paths.size(), 1U);
    Mesh2 flat;
    EXPECT_EQ(profile.emitAll(0.1, 20, flat), kSuccess);
    EXPECT_EQ(flat.face(0).kind, ElementKind::kPolygon);
    EXPECT_EQ(flat.vertex(4), (Vec2{0, 0}));  // 0; 1, 1; 2; and the first again
}

}  // namespace
}  // namespace orvin
