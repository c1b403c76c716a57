#include "geometry/outline/LoopOffset.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <random>

#include "geometry/outline/NearLoop.h"
#include "tests/geometry/OutlineShapes.h"

namespace orvin {
namespace {

using test::signedArea;
using Loop = std::vector<Vec2>;

/// Each corner twice, as hard corners come from the flattening.
Loop doubled(const Loop& loop) {
    Loop result;
    for (const Vec2 p : loop)
        result.insert(result.end(), {p, p});
    return result;
}

Loop reversed(Loop loop) {
    return Loop(loop.rbegin(), loop.rend());
}

const Loop kRectangle{{0, 0}, {100, 0}, {100, 60}, {0, 60}};
const Loop kL{{0, 0}, {100, 0}, {100, 50}, {50, 50}, {50, 100}, {0, 100}};

void expectLoop(const Loop& actual, const Loop& expected, double tolerance) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < actual.size(); ++i)
        EXPECT_NEAR(length(actual[i] - expected[i]), 0.0, tolerance)
            << "point " << i << ": " << actual[i].x << ", " << actual[i].y;
}

TEST(LoopOffset, CornersGoToTheirMitres) {
    expectLoop(offsetLoop(kRectangle, -5, OffsetRepair::kFans),
               {{5, 5}, {95, 5}, {95, 55}, {5, 55}}, 1e-12);
    expectLoop(offsetLoop(kRectangle, 5, OffsetRepair::kFans),
               {{-5, -5}, {105, -5}, {105, 65}, {-5, 65}}, 1e-12);
    expectLoop(offsetLoop(kRectangle, 0, OffsetRepair::kFans), kRectangle, 1e-12);
    expectLoop(offsetLoop(kL, 5, OffsetRepair::kFans),
               {{-5, -5}, {105, -5}, {105, 55}, {55, 55}, {55, 105}, {-5, 105}}, 1e-12);
    // Both copies of a doubled convex corner take the same mitre.
    expectLoop(offsetLoop(doubled(kRectangle), 5, OffsetRepair::kFans),
               doubled({{-5, -5}, {105, -5}, {105, 65}, {-5, 65}}), 1e-12);
}

TEST(LoopOffset, AHardConcaveCornerCollapsesOntoOnePoint) {
    // Within a thousandth of the ten units by which the two offset sides overlap.
    expectLoop(offsetLoop(doubled({{0, 0}, {100, 0}, {100, 40}, {40, 40}, {40, 100}, {0, 100}}), 5,
                          OffsetRepair::kFans),
               doubled({{-5, -5}, {105, -5}, {105, 45}, {45.0146, 45}, {45, 105}, {-5, 105}}),
               1e-4);
}

TEST(LoopOffset, AShortEdgeAtACornerDoesNotThrowTheMitreOut) {
    // The corner (100, 60) is cut by less than a hundredth: its two points go straight inwards,
    // each from its own long side, and cross.
    const Loop cut{{0, 0}, {100, 0}, {100, 59.995}, {99.995, 60}, {0, 60}};
    expectLoop(offsetLoopSigned(cut, -5, OffsetRepair::kFans),
               {{5, 5}, {95, 5}, {95, 59.995}, {99.995, 55}, {5, 55}}, 1e-9);
}

TEST(LoopOffset, HolesThatCloseBecomeAPointAndSlotsALine) {
    const Loop square = reversed(test::square(0, 0, 10));
    for (const Vec2 p : offsetLoop(square, 6, OffsetRepair::kFans))
        EXPECT_NEAR(length(p - Vec2{5, 5}), 0.0, 1e-9);
    const Loop slot = reversed({{0, 0}, {100, 0}, {100, 4}, {0, 4}});
    const Loop ring = offsetLoop(slot, 2.2, OffsetRepair::kFans);
    EXPECT_NEAR(signedArea(ring), 0.0, 3.0);
    // Of a smooth hole nothing remains either.
    for (const Vec2 p : offsetLoop(reversed(test::ring({3, 4}, 10, 40)), 11, OffsetRepair::kFans))
        EXPECT_NEAR(length(p - Vec2{3, 4}), 0.0, 1e-9);
}

TEST(LoopOffset, RepairKeepsTheRingOutOfANarrowGap) {
    // A gap of 4 in the top of a block: at a distance of 3 its sides meet in the middle.
    const Loop block =
        doubled({{0, 0}, {100, 0}, {100, 60}, {52, 60}, {52, 20}, {48, 20}, {48, 60}, {0, 60}});
    const Loop plain = offsetLoop(block, 3, OffsetRepair::kNone);
    const Loop ring = offsetLoop(block, 3, OffsetRepair::kFans);
    EXPECT_LT(plain[9].y, 61.0);
    for (const Vec2 p : ring)
        EXPECT_TRUE(p.x < -2.9 || p.x > 102.9 || p.y < -2.9 || p.y > 62.0) << p.x << ", " << p.y;
    EXPECT_NEAR(signedArea(ring), 106.0 * 66.0, 3.0);
    EXPECT_EQ(offsetLoop(block, -3, OffsetRepair::kFans),
              offsetLoop(block, -3, OffsetRepair::kNone));
}

TEST(NearLoop, AnswersAreThoseOfAWalkOverAllEdges) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> place(-30.0, 130.0);
    for (int trial = 0; trial < 60; ++trial) {
        Loop loop = test::ring({50, 50}, 40, 50 + 7 * trial);
        for (std::size_t i = 0; i < loop.size(); i += 3)
            loop[i] = {place(random), place(random)};
        std::vector<Line2> edges;
        for (std::size_t k = 0; k < loop.size(); ++k)
            edges.emplace_back(loop[k], loop[(k + 1) % loop.size()]);
        const NearLoop near(loop, edges, std::pow(10.0, trial % 4 - 2));
        for (int probe = 0; probe < 200; ++probe) {
            const Vec2 x{place(random), place(random)};
            std::optional<std::size_t> first;
            for (std::size_t k = 0; k < loop.size() && !first; ++k)
                if (near.isNearEdge(x, k)) first = k;
            ASSERT_EQ(near.firstNear(x), first);
        }
    }
}

TEST(LoopOffset, OddInputEnds) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const Loop loops[] = {
        {},
        {{1, 2}},
        {{1, 2}, {1, 2}, {1, 2}},
        {{0, 0}, {10, 0}},
        {{0, 0}, {nan, 0}, {5, 5}},
        {{0, 0}, {1e12, 0}, {1e12, 1e12}, {0, 1e12}},
        {{0, 0}, {1e-12, 0}, {1e-12, 1e-12}},
        {{0, 0}, {10, 10}, {10, 0}, {0, 10}},
    };
    for (const Loop& loop : loops)
        for (const double distance : {-1e6, -1.0, 0.0, 1.0, 1e6})
            for (const OffsetRepair repair :
                 {OffsetRepair::kNone, OffsetRepair::kAlways, OffsetRepair::kFans}) {
                EXPECT_EQ(offsetLoop(loop, distance, repair).size(), loop.size());
                EXPECT_EQ(offsetLoopSigned(loop, distance, repair).size(), loop.size());
            }
    EXPECT_EQ(offsetLoop(loops[2], 1.0, OffsetRepair::kFans), loops[2]);
}

}  // namespace
}  // namespace orvin
