#include "geometry/outline/FacePeeler.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/geometry/OutlineShapes.h"

namespace orvin {
namespace {

using test::addLoop;
using test::ring;
using test::square;

struct Pieces {
    int count = 0;
    int largest = 0;
    int concave = 0;
    double area = 0.0;
};

Pieces peel(PolyShape2 shape) {
    shape.normalizeOrientation();
    FacePeeler peeler(std::move(shape));
    Pieces pieces;
    peeler.forEachPolygon([&](const std::vector<int>& ids) {
        ++pieces.count;
        pieces.largest = std::max(pieces.largest, static_cast<int>(ids.size()));
        std::vector<Vec2> points;
        for (const int id : ids)
            points.push_back(peeler.shape().vertices[static_cast<std::size_t>(id)]);
        pieces.area += test::signedArea(points);
        const std::size_t n = points.size();
        for (std::size_t i = 0; i < n; ++i)
            if (cross(points[(i + 1) % n] - points[i], points[(i + 2) % n] - points[(i + 1) % n]) <
                -1e-9)
                ++pieces.concave;
    });
    return pieces;
}

TEST(FacePeeler, PiecesAreConvexAndCoverTheShapeExactly) {
    PolyShape2 plain, hole, eight, round, collinear;
    addLoop(plain, square(0, 0, 10));
    addLoop(hole, square(0, 0, 30));
    addLoop(hole, square(10, 10, 10));
    addLoop(eight, {{0, 0}, {30, 0}, {30, 60}, {0, 60}});
    addLoop(eight, square(10, 10, 10));
    addLoop(eight, square(10, 40, 10));
    addLoop(round, ring({0, 0}, 100, 300));
    addLoop(collinear, {{0, 0}, {10, 0}, {20, 0}, {20, 10}, {10, 10}, {0, 10}});
    const struct {
        const char* what;
        const PolyShape2& shape;
        double area;
        int atLeast;
    } cases[] = {{"square", plain, 100, 1},
                 {"ring", hole, 800, 4},
                 {"an 8", eight, 1600, 6},
                 {"300 corners", round, test::signedArea(ring({0, 0}, 100, 300)), 2},
                 {"collinear", collinear, 200, 1}};
    for (const auto& c : cases) {
        const Pieces pieces = peel(c.shape);
        EXPECT_NEAR(pieces.area, c.area, 1e-9 * c.area) << c.what;
        EXPECT_EQ(pieces.concave, 0) << c.what;
        EXPECT_GE(pieces.count, c.atLeast) << c.what;
        EXPECT_LE(pieces.largest, FacePeeler::kMaxSides) << c.what;
    }
}

TEST(FacePeeler, UnionsOfStarsAreFilledWhole) {
    // Crossing points lie on one line with the corners around them: among these are shapes in which
    // a piece is bridged to two such points in turns.
    std::mt19937 random(5);
    std::uniform_real_distribution<double> d(0, 100);
    for (int k = 0; k < 120; ++k) {
        PolyShape2 shape;
        for (int j = 0; j < 1 + k % 4; ++j) {
            const Vec2 center{d(random), d(random)};
            const double radius = 10 + d(random) / 3;
            auto star = ring(center, radius, 3 + static_cast<int>(d(random)) % 40);
            for (std::size_t i = 0; i < star.size(); i += 2)
                star[i] = star[i] * (0.8 + 0.004 * d(random));
            addLoop(shape, star);
        }
        shape.resolveOverlaps();
        shape.weld(0.001);
        shape.normalizeOrientation();
        const double area = test::sums(shape).area;
        FacePeeler peeler(shape);
        double filled = 0.0;
        peeler.forEachPolygon([&](const std::vector<int>& ids) {
            std::vector<Vec2> points;
            for (const int id : ids)
                points.push_back(shape.vertices[static_cast<std::size_t>(id)]);
            filled += test::signedArea(points);
        });
        EXPECT_FALSE(peeler.overgrown());
        EXPECT_NEAR(filled, area, 1e-9 * area) << k;
    }
}

TEST(FacePeeler, ManyHolesKeepTheArea) {
    PolyShape2 shape;
    addLoop(shape, ring({0, 0}, 1000, 1000));
    double area = test::signedArea(ring({0, 0}, 1000, 1000));
    for (int y = -5; y <= 5; ++y)
        for (int x = -5; x <= 5; ++x) {
            addLoop(shape, ring({x * 90.0 + 3, y * 90.0 + 1}, 25, 24));
            area -= test::signedArea(ring({0, 0}, 25, 24));
        }
    const Pieces pieces = peel(shape);
    EXPECT_NEAR(pieces.area, area, 1e-9 * area);
    // Points of bridges aren't in the grid, so that now and then a piece isn't convex.
    EXPECT_LT(pieces.concave, pieces.count / 50);
}

TEST(FacePeeler, TiledFacesMeetWithoutLoss) {
    PolyShape2 shape;
    addLoop(shape, square(0, 0, 30));
    addLoop(shape, square(10, 10, 10));
    shape.normalizeOrientation();
    ASSERT_EQ(shape.tile(7, 7, 0, 0, false), kSuccess);
    FacePeeler peeler(shape);
    double area = 0.0;
    peeler.forEachPolygon([&](const std::vector<int>& ids) {
        std::vector<Vec2> points;
        for (const int id : ids)
            points.push_back(peeler.shape().vertices[static_cast<std::size_t>(id)]);
        area += test::signedArea(points);
    });
    EXPECT_NEAR(area, 800, 1e-9);
}

}  // namespace
}  // namespace orvin
