#include "geometry/outline/FacePeeler.h"

#include <gtest/gtest.h>

#include <random>
#include <span>

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
    peeler.forEachPolygon([&](std::span<const int> ids) {
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

using Polygons = std::vector<std::vector<int>>;

/// Peels as FacePeeler does, but looks at all records at every step.
Polygons peelPlainly(PolyShape2 shape) {
    const int given = static_cast<int>(shape.precs.size());
    const auto prec = [&](int i) -> Prec& { return shape.precs[static_cast<std::size_t>(i)]; };
    const auto count = [&] { return static_cast<int>(shape.precs.size()); };
    Polygons polygons;
    for (int start = 0; start < count() && count() <= 3 * given;) {
        if (prec(start).vertexID < 0) {
            ++start;
            continue;
        }
        const Vec2 first = shape.at(start);
        std::vector<int> piece{start};
        std::vector<Line2> edges;
        int blocking = -1;
        while (prec(piece.back()).next != start && blocking < 0 && piece.size() < 256) {
            const Vec2 before = shape.at(piece.back());
            const int following = prec(piece.back()).next;
            const Vec2 newest = shape.at(following);
            const auto isRight = [&](const Line2& e) { return e.signedDistance(newest) < 0.0; };
            if (std::any_of(edges.begin(), edges.end(), isRight) ||
                (piece.size() > 1 && cross(before - newest, first - newest) == 0.0))
                break;
            const Line2 sides[] = {{before, newest}, {first, before}, {newest, first}};
            double best = 1e20;
            for (int i = 0; piece.size() > 1 && i < given; ++i) {
                if (prec(i).vertexID < 0) continue;
                const Vec2 p = shape.at(i);
                bool inside = true;
                for (const Line2& side : sides)
                    inside = inside && side.isLeftOrOn(p) &&
                             dot(p - side.point(), p - side.point()) >= 0.001;
                if (!inside || !(edges.back().signedDistance(p) < best)) continue;
                best = edges.back().signedDistance(p);
                blocking = i;
            }
            if (blocking < 0) {
                piece.push_back(following);
                edges.push_back(sides[0]);
            }
        }
        if (blocking >= 0) {
            int previous = 0;
            while (!prec(previous).live() || prec(previous).next != blocking)
                ++previous;
            const Prec r1 = prec(piece.back());
            prec(piece.back()).next = blocking;
            prec(previous).next = count() + 1;
            shape.precs.push_back(r1);
            shape.precs.push_back({prec(blocking).vertexID, count() - 1});
            continue;
        }
        const bool whole = prec(piece.back()).next == start;
        if (piece.size() == 2 && !whole) {
            ++start;
            continue;
        }
        std::vector<int> ids;
        for (const int i : piece)
            ids.push_back(prec(i).vertexID);
        for (const int i : piece)
            if (whole || (i != start && i != piece.back())) prec(i).vertexID = -1;
        if (piece.size() != 2) polygons.push_back(ids);
        if (!whole) prec(start).next = piece.back();
        start = piece.size() == 2 ? start + 1 : 0;
    }
    return polygons;
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
        Polygons pieces;
        FacePeeler stepwise(shape);
        for (std::vector<int> ids; stepwise.extractPolygon(ids);)
            pieces.push_back(ids);
        EXPECT_EQ(pieces, peelPlainly(shape)) << k;
        FacePeeler peeler(shape);
        double filled = 0.0;
        peeler.forEachPolygon([&](std::span<const int> ids) {
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
    peeler.forEachPolygon([&](std::span<const int> ids) {
        std::vector<Vec2> points;
        for (const int id : ids)
            points.push_back(peeler.shape().vertices[static_cast<std::size_t>(id)]);
        area += test::signedArea(points);
    });
    EXPECT_NEAR(area, 800, 1e-9);
}

}  // namespace
}  // namespace orvin
