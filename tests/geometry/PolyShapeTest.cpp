#include "geometry/outline/PolyShape2.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "tests/geometry/OutlineShapes.h"

namespace orvin {
namespace {

using test::addLoop;
using test::square;
using test::sums;

TEST(PolyShape2, NestedLoopsAlternateTheirTurn) {
    PolyShape2 shape;
    addLoop(shape, square(0, 0, 30));
    addLoop(shape, square(5, 5, 20));  // a hole wound the wrong way
    addLoop(shape, square(10, 10, 5));
    const auto loops = shape.classifyLoops();
    ASSERT_EQ(loops.size(), 3U);
    EXPECT_EQ(loops[0].depth, 2);  // smallest first
    EXPECT_EQ(loops[1].depth, 1);
    EXPECT_EQ(loops[2].depth, 0);
    EXPECT_FALSE(shape.loopIsClockwise(loops[0].head));
    EXPECT_TRUE(shape.loopIsClockwise(loops[1].head));
    EXPECT_FALSE(shape.loopIsClockwise(loops[2].head));
    EXPECT_NEAR(sums(shape).area, 900 - 400 + 25, 1e-9);
}

TEST(PolyShape2, WeldSharesIdsButKeepsLoopsAndDropsRepeats) {
    PolyShape2 shape;
    addLoop(shape, square(0, 0, 10));
    addLoop(shape, square(10.0005, 10, 5));                    // its corner touches
    addLoop(shape, {{50, 50}, {50, 50.0001}, {50.0002, 50}});  // collapses into one point
    shape.weld(0.001);
    EXPECT_EQ(shape.precs[4].vertexID, shape.precs[2].vertexID);
    for (int i = 8; i < 11; ++i)
        EXPECT_LT(shape.precs[static_cast<std::size_t>(i)].vertexID, 0);
    EXPECT_EQ(sums(shape).count, 2);
}

TEST(PolyShape2, CutsKeepTheAreaAndShareVertices) {
    PolyShape2 shape;
    addLoop(shape, square(0, 0, 30));
    addLoop(shape, square(10, 10, 10));
    shape.normalizeOrientation();
    EXPECT_EQ(shape.cutByLine(Line2({15, 0}, {15, 1})), kSuccess);
    EXPECT_EQ(sums(shape).count, 2);
    EXPECT_EQ(shape.vertices.size(), 8U + 4U);
    EXPECT_EQ(shape.cutByLine(Line2({99, 0}, {99, 1})), kSuccess);
    EXPECT_EQ(sums(shape).count, 2);
    EXPECT_EQ(shape.tile(0, 0, 0, 0, false), kSuccess);
    EXPECT_EQ(sums(shape).count, 2);
    EXPECT_EQ(shape.tile(7, 7, 0, 0, false), kSuccess);
    EXPECT_GT(sums(shape).count, 20);
    EXPECT_NEAR(sums(shape).area, 800, 1e-9);
}

TEST(PolyShape2, SplitAddsVerticesOnly) {
    PolyShape2 shape;
    addLoop(shape, square(0, 0, 30));
    EXPECT_EQ(shape.tile(10, 0, 0, 0, true), kSuccess);
    EXPECT_EQ(sums(shape).count, 1);
    EXPECT_EQ(shape.vertices.size(), 4U + 4U);  // lines at 10 and 20; those at 0 and 30 are edges
    EXPECT_NEAR(sums(shape).area, 900, 1e-9);
}

// A grid looks at few edges for each line; a single cut looks at all.
TEST(PolyShape2, AGridCutsAsItsLinesDoOneByOne) {
    std::mt19937 random(11);
    std::uniform_int_distribution<int> place(0, 30);
    const auto ids = [](const PolyShape2& shape) {
        std::vector<int> list;
        for (const Prec& p : shape.precs)
            list.insert(list.end(), {p.vertexID, p.next});
        return list;
    };
    for (int trial = 0; trial < 60; ++trial) {
        PolyShape2 grid;
        for (int k = 0; k < 3; ++k) {
            std::vector<Vec2> loop;
            for (int i = 0; i < 3 + trial % 9; ++i)
                loop.push_back({1.0 * place(random), 0.5 * place(random)});
            addLoop(grid, loop);
        }
        if (trial % 2 == 0) grid.weld(0.001);
        PolyShape2 single = grid;
        const Box2 box = single.bounds();
        const double step = 1.0 + trial % 5;
        Result result = kSuccess;
        for (double x = std::trunc(box.xmin / step) * step; x <= box.xmax && result >= 0; x += step)
            result = single.cutByLine(Line2({x, 0}, {x, 1}));
        for (double y = std::trunc(box.ymin / step) * step; y <= box.ymax && result >= 0; y += step)
            result = single.cutByLine(Line2({0, y}, {1, y}));
        EXPECT_EQ(grid.tile(step, step, 0, 0, false), result);
        EXPECT_EQ(ids(grid), ids(single)) << "trial " << trial;
        EXPECT_EQ(grid.vertices, single.vertices) << "trial " << trial;
    }
}

TEST(PolyShape2, OverlapsKeepTheBorderOfPositiveWinding) {
    struct Case {
        const char* what;
        std::vector<std::vector<Vec2>> loops;
        int count;
        double area;
    };
    const Case cases[] = {
        {"two overlapping squares", {square(0, 0, 10), square(5, 5, 10)}, 1, 175},
        {"a clockwise square vanishes", {{{0, 0}, {0, 10}, {10, 10}, {10, 0}}}, 0, 0},
        {"a figure eight keeps its counter-clockwise half",
         {{{0, 0}, {10, 10}, {10, 0}, {0, 10}}},
         1,
         25},
        {"a ring stays", {square(0, 0, 30), {{10, 10}, {10, 20}, {20, 20}, {20, 10}}}, 2, 800},
        {"apart", {square(0, 0, 10), square(20, 0, 10)}, 2, 200},
    };
    for (const Case& c : cases) {
        PolyShape2 shape;
        for (const auto& loop : c.loops)
            addLoop(shape, loop);
        shape.resolveOverlaps();
        EXPECT_EQ(sums(shape).count, c.count) << c.what;
        EXPECT_NEAR(sums(shape).area, c.area, 1e-6) << c.what;
    }
}

// By the first two numbers of a generator that many know, 41 and 18467.
TEST(PolyShape2, APointOnAnotherEdgeIsThrownFar) {
    PolyShape2 shape;
    addLoop(shape, square(0, 0, 10));
    addLoop(shape, {{10, 5}, {20, 0}, {20, 10}});
    shape.resolveOverlaps();
    EXPECT_EQ(sums(shape).count, 2);
    EXPECT_NEAR(shape.bounds().ymax, 5 + 36.933, 1e-9);
    EXPECT_NEAR(sums(shape).area, 100 + (20 - 10.081) * 10 / 2, 1e-9);
}

TEST(PolyShape2, UnionOfRandomPolygonsHasTheSampledArea) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> place(0, 100);
    std::uniform_real_distribution<double> size(8, 40);
    constexpr double kStep = 1.7;
    for (int trial = 0; trial < 40; ++trial) {
        PolyShape2 shape;
        for (int k = 0; k < 5; ++k)
            addLoop(shape,
                    test::ring({place(random), place(random)}, size(random), 8, place(random)));
        PolyShape2 original = shape;
        original.vertices.push_back({});
        const int probe = static_cast<int>(original.vertices.size()) - 1;
        int inside = 0;
        for (double y = -45; y < 145; y += kStep)
            for (double x = -45; x < 145; x += kStep) {
                original.vertices.back() = {x + 0.123, y + 0.456};
                for (int k = 0; k < 5; ++k)
                    if (original.loopContainsPoint(8 * k, probe)) {
                        ++inside;
                        break;
                    }
            }
        const double sampled = inside * kStep * kStep;
        shape.resolveOverlaps();
        EXPECT_NEAR(sums(shape).area, sampled, 0.02 * sampled + 40) << "trial " << trial;
    }
}

TEST(PolyShape2, OddInputEnds) {
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    const std::vector<std::vector<Vec2>> shapes[] = {
        {{{0, 0}, {0, 0}, {0, 0}}},
        {{{0, 0}, {5, 0}}},
        {{{kNan, 0}, {5, kNan}, {5, 5}}, square(0, 0, 3)},
        {square(1e12, 1e12, 1e12), square(1.5e12, 1.5e12, 1e12)},
        {square(0, 0, 1e-12), square(0, 0, 1e-12)},
        {square(1e18, 0, 1e3), square(1e18, 0, 1e3)},
    };
    for (const auto& loops : shapes) {
        PolyShape2 shape;
        for (const auto& loop : loops)
            addLoop(shape, loop);
        shape.weld(0.001);
        shape.normalizeOrientation();
        shape.tile(3, 3, 0, 0, false);
        shape.resolveOverlaps();
        for (const Prec& p : shape.precs)
            EXPECT_TRUE(p.live());
    }
}

}  // namespace
}  // namespace orvin
