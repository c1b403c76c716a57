// The sections of the library, edge by edge: form, cleanness, that no two are alike, and the solids
// that come of them.
#include <gtest/gtest.h>

#include <bitset>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "geometry/ObjectX.h"
#include "geometry/outline/EdgePath.h"
#include "setup/StartUp.h"
#include "tests/geometry/Extrusions.h"
#include "vector/edges/EdgeLibrary.h"
#include "vector/edges/ProfileL.h"
#include "vector/illustrator/ProfileI.h"

namespace orvin {
namespace {

class EdgeShapes : public testing::Test {
  protected:
    EdgeShapes() { registerMemberClasses(); }
};

std::vector<Vec2> section(int index, double tolerance = 0.05) {
    Mesh2 shape;
    std::vector<Vec2> points;
    if (edgeAt(index)->inputProfile()->emitAll(tolerance, 20.0, shape) == kSuccess)
        points.assign(shape.vertices().begin(), shape.vertices().end());
    return points;
}

TEST_F(EdgeShapes, TheTextHasItsForm) {
    int lines = 0;
    for (const char* const* line = builtInEdgeTexts().edges; *line != nullptr; ++line)
        ++lines;
    EXPECT_EQ(lines, 4661);
    int bezier = 0;
    int linear = 0;
    for (int i = 0; i < edgeCount(); ++i) {
        SCOPED_TRACE(edgeName(i));
        EXPECT_EQ(edgeAt(i)->fileSpec(), ",0,0");
        EXPECT_EQ(edgeAt(i)->layerName(), "");
        const auto& paths = edgeAt(i)->inputProfile()->paths;
        ASSERT_EQ(paths.size(), 1U);
        EXPECT_FALSE(paths[0].closed);
        const auto& curves = paths[0].curves;
        for (std::size_t c = 0; c < curves.size(); ++c) {
            const std::size_t count = curves[c].points().size();
            if (curves[c].type() == Curve2::Type::kBezier) {
                ++bezier;
                EXPECT_EQ(count, 4U);
            } else {
                ++linear;
                EXPECT_GE(count, 2U);
            }
            EXPECT_FALSE(curves[c].closed);
            EXPECT_EQ(curves[c].attachedHead, c > 0);
            EXPECT_EQ(curves[c].attachedTail, c + 1 < curves.size());
            if (c == 0) continue;
            const Vec2 gap = curves[c].points().front() - curves[c - 1].points().back();
            EXPECT_LT(length(gap), 1e-4);
        }
    }
    EXPECT_EQ(bezier, 189);
    EXPECT_EQ(linear, 121);
}

TEST_F(EdgeShapes, TheyRunFromTheFrontFaceToTheBackOne) {
    for (int i = 0; i < edgeCount(); ++i) {
        SCOPED_TRACE(edgeName(i));
        const auto points = section(i);
        ASSERT_GE(points.size(), 2U);
        EXPECT_EQ(points.front(), (Vec2{0.0, 0.0}));
        EXPECT_EQ(points.back(), (Vec2{0.0, 100.0}));
        for (const Vec2 p : points) {
            // Out of the outline, and no rim higher than this.
            EXPECT_TRUE(p.x >= 0.0 && p.x <= 100.0) << p.x;
            EXPECT_TRUE(p.y > -13.5 && p.y < 113.5) << p.y;
        }
    }
}

bool crosses(Vec2 a, Vec2 b, Vec2 c, Vec2 d) {
    const auto side = [](Vec2 p, Vec2 q, Vec2 r) { return cross(q - p, r - p); };
    return side(a, b, c) * side(a, b, d) < -1e-12 && side(c, d, a) * side(c, d, b) < -1e-12;
}

TEST_F(EdgeShapes, NoneCrossesItself) {
    for (int i = 0; i < edgeCount(); ++i) {
        const auto p = section(i);
        int crossings = 0;
        for (std::size_t a = 1; a < p.size(); ++a)
            for (std::size_t b = a + 2; b < p.size(); ++b)
                crossings += crosses(p[a - 1], p[a], p[b - 1], p[b]) ? 1 : 0;
        EXPECT_EQ(crossings, 0) << edgeName(i);
    }
}

/// Which places of a raster, two to a unit, the solid covers.
constexpr int kLeft = -60, kTop = -60, kSide = 440;
using Raster = std::bitset<kSide * kSide>;

Raster raster(std::vector<Vec2> loop) {
    loop.push_back({kLeft - 1.0, 100.0});
    loop.push_back({kLeft - 1.0, 0.0});
    Raster bits;
    for (int row = 0; row < kSide; ++row) {
        const double y = kTop + (row + 0.5) / 2.0;
        for (std::size_t i = 0; i < loop.size(); ++i) {
            const Vec2 a = loop[i];
            const Vec2 b = loop[(i + 1) % loop.size()];
            if ((a.y <= y) == (b.y <= y)) continue;
            // Turns everything to the left of the crossing around.
            const double x = a.x + (b.x - a.x) * (y - a.y) / (b.y - a.y);
            for (int column = 0; column < kSide && kLeft + (column + 0.5) / 2.0 < x; ++column)
                bits.flip(static_cast<std::size_t>(row * kSide + column));
        }
    }
    return bits;
}

TEST_F(EdgeShapes, NoTwoAreAlike) {
    std::vector<std::unique_ptr<Raster>> rasters;
    for (int i = 0; i < edgeCount(); ++i)
        rasters.push_back(std::make_unique<Raster>(raster(section(i))));
    for (std::size_t a = 0; a < rasters.size(); ++a)
        for (std::size_t b = a + 1; b < rasters.size(); ++b) {
            const double area = static_cast<double>((*rasters[a] ^ *rasters[b]).count()) / 4.0;
            EXPECT_GT(area, 12.0) << edgeName(static_cast<int>(a)) << " and "
                                  << edgeName(static_cast<int>(b));
        }
}

// ---- solids

bool isFinite(const Mesh3& mesh) {
    double sum = 0.0;
    for (int v = 0; v < mesh.vertexCount(); ++v)
        sum += length(mesh.vertex(v));
    for (int n = 0; n < mesh.normalCount(); ++n)
        sum += length(mesh.normal(n));
    for (int t = 0; t < mesh.texVertexCount(); ++t)
        sum += length(mesh.texVertex(t));
    return std::isfinite(sum);
}

struct EdgedLetter : test::Extrusion {
    EdgedLetter() {
        style.setMitreMethod(ObjectXStyle::Mitre::kComplex);
        style.setPerim("library edge");
    }
    /// With that edge; without holes, and with finite numbers alone.
    test::Solid closedSolid(int index) {
        edge.setLibIdx(index);
        EXPECT_EQ(edge.load(), kSuccess);
        const Mesh3* const mesh = build();
        EXPECT_NE(mesh, nullptr);
        if (mesh == nullptr) return {};
        EXPECT_TRUE(isFinite(*mesh));
        const test::Solid solid = test::examine(*mesh);
        EXPECT_EQ(solid.openEdges, 0);
        EXPECT_EQ(solid.oddNormals, 0);
        return solid;
    }
    ProfileL& edge = scene.make<ProfileL>("library edge");
};

std::vector<Vec2> polygon(double apothem, int corners) {
    return test::ring({}, apothem / std::cos(kPi / corners), corners);
}

/// What a regular polygon encloses as its apothem r + depth x follows the section: the integral of
/// its area over z, exact for each straight piece, undercuts included.
double turnedVolume(const std::vector<Vec2>& section, double r, double depth, int corners) {
    double sum = 0.0;
    for (std::size_t i = 1; i < section.size(); ++i) {
        const double a = r + depth * section[i - 1].x;
        const double b = r + depth * section[i].x;
        sum += (a * a + a * b + b * b) / 3.0 * (section[i].y - section[i - 1].y);
    }
    return sum * std::abs(depth) * corners * std::tan(kPi / corners);
}

TEST_F(EdgeShapes, AnOIsClosedAndEnclosesWhatTheSectionSays) {
    constexpr int kCorners = 12;
    constexpr double kOuter = 80.0, kInner = 40.0, kDepth = 20.0;
    EdgedLetter letter;
    letter.outline.addLines(polygon(kOuter, kCorners), true);
    letter.outline.addLines(polygon(kInner, kCorners), true);
    letter.style.setDepth(kDepth);
    for (int i = 0; i < edgeCount(); ++i) {
        SCOPED_TRACE(edgeName(i));
        const test::Solid solid = letter.closedSolid(i);
        std::uint32_t stamp = 0;
        const Mesh2* const shape = letter.edge.getShape(letter.object.flatRender(),
                                                        letter.object.hardShadingAngle(), stamp);
        EdgePath path;
        ASSERT_EQ(prepareEdgePath(*shape, *letter.edge.inputProfile(), 0, nullptr, {kDepth}, path),
                  kSuccess);
        const double expected = turnedVolume(path.points, kOuter, kDepth, kCorners) -
                                turnedVolume(path.points, kInner, -kDepth, kCorners);
        EXPECT_NEAR(solid.volume, expected, 1e-7 * expected);
    }
}

TEST_F(EdgeShapes, AnSIsClosed) {
    // Two three-quarter turns, 20 wide.
    std::vector<Vec2> left;
    std::vector<Vec2> right;
    const auto turn = [&](Vec2 center, double from, double to, double side) {
        for (int i = 0; i <= 16; ++i) {
            const double angle = radians(from + (to - from) * i / 16.0);
            const Vec2 out{std::cos(angle), std::sin(angle)};
            left.push_back(center + out * (25.0 + 10.0 * side));
            right.push_back(center + out * (25.0 - 10.0 * side));
        }
    };
    turn({0.0, 25.0}, 20.0, 268.0, -1.0);
    turn({0.0, -25.0}, 90.0, -160.0, 1.0);
    left.insert(left.end(), right.rbegin(), right.rend());
    EdgedLetter letter;
    letter.outline.addLines(left, true);
    letter.style.setDepth(12.0);
    for (int i = 0; i < edgeCount(); ++i) {
        SCOPED_TRACE(edgeName(i));
        EXPECT_GT(letter.closedSolid(i).volume, 0.0);
    }
}

}  // namespace
}  // namespace orvin
