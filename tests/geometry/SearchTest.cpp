// How the outline kernel finds pairs of edges and points in triangles, against a look at all.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <set>
#include <utility>
#include <vector>

#include "geometry/outline/BoxPairs.h"
#include "geometry/outline/OverlapPairs.h"
#include "geometry/outline/PointGrid.h"
#include "geometry/outline/WindingSweep.h"

namespace orvin {
namespace {

using Pairs = std::vector<std::pair<int, int>>;

double upTo(std::mt19937& random, double most) {
    return std::uniform_real_distribution<double>(0.0, most)(random);
}

std::vector<BoxPairs::Box> randomBoxes(std::mt19937& random, int count) {
    std::vector<BoxPairs::Box> boxes;
    for (int i = 0; i < count; ++i) {
        // Some begin together, some are of all heights.
        const double x = random() % 4 == 0 ? 5.0 : upTo(random, 100);
        const double y = upTo(random, 100);
        const double top = random() % 20 == 0 ? std::nan("") : y + upTo(random, 8);
        boxes.push_back({x, x + upTo(random, 10), y, top, i, false});
    }
    return boxes;
}

// All pairs in the order of the sweep; `grow(pair)` answers which box grows to which height.
template <typename Grow>
Pairs plainly(std::vector<BoxPairs::Box> boxes, Grow&& grow) {
    std::vector<Interval> intervals;
    for (const BoxPairs::Box& box : boxes)
        intervals.push_back({box.left, box.right, box.id});
    Pairs pairs;
    forEachOverlap(intervals, [&](int a, int b) {
        const auto& first = boxes[static_cast<std::size_t>(a)];
        const auto& second = boxes[static_cast<std::size_t>(b)];
        const bool tall = std::isnan(first.top) || std::isnan(second.top);
        if (!tall && (first.top < second.bottom || second.top < first.bottom)) return;
        pairs.emplace_back(a, b);
        if (const int id = grow(a, b); id >= 0) {
            auto& box = boxes[static_cast<std::size_t>(id)];
            box.bottom = std::min(box.bottom, 40.0);
            if (!std::isnan(box.top)) box.top = std::max(box.top, 60.0);
        }
    });
    return pairs;
}

TEST(BoxPairs, VisitsInTheOrderOfTheSweep) {
    std::mt19937 random(3);
    for (int round = 0; round < 40; ++round) {
        const auto boxes = randomBoxes(random, round * 5);
        // Every seventh pair makes one of the two grow, or any other box.
        const auto grow = [&](int a, int b) {
            if (round % 2 == 0 || (a * 31 + b) % 7 != 0) return -1;
            const int which[] = {a, b, (a + 5 * b) % static_cast<int>(boxes.size())};
            return which[a % 3];
        };
        BoxPairs sweep(boxes);
        Pairs pairs;
        EXPECT_TRUE(sweep.forEach([&](int a, int b) {
            pairs.emplace_back(a, b);
            if (const int id = grow(a, b); id >= 0) sweep.grow(id, 40.0, 60.0);
            return true;
        }));
        EXPECT_EQ(pairs, plainly(boxes, grow)) << round;
    }
    BoxPairs stopped(randomBoxes(random, 50));
    int visits = 0;
    EXPECT_FALSE(stopped.forEach([&](int, int) { return ++visits < 3; }));
    EXPECT_EQ(visits, 3);
}

TEST(PointGrid, FindsThePointsInATriangleUntilTheyAreDropped) {
    std::mt19937 random(4);
    for (const int count : {1, 10, 300, 3000}) {
        std::vector<Vec2> points;
        std::vector<int> ids;
        for (int i = 0; i < count; ++i) {
            points.push_back({upTo(random, 100), upTo(random, 10)});
            ids.push_back(3 * i);
        }
        PointGrid grid;
        grid.build(points, ids);
        std::set<int> dropped;
        for (int round = 0; round < 60; ++round) {
            PointGrid::Triangle t;
            for (Vec2& corner : t)
                corner = {upTo(random, 100), upTo(random, round % 3 == 0 ? 1e-4 : 10.0)};
            if (cross(t[1] - t[0], t[2] - t[0]) < 0.0) std::swap(t[1], t[2]);
            std::set<int> found;
            grid.query(t, [&](const PointGrid::Point& point) {
                EXPECT_TRUE(found.insert(point.id).second);
                EXPECT_EQ(dropped.count(point.id), 0U);
                EXPECT_EQ(points[static_cast<std::size_t>(point.id / 3)], point.at);
                if (point.id % 5 != 0) return true;
                dropped.insert(point.id);
                return false;
            });
            for (int i = 0; i < count; ++i) {
                bool inside = dropped.count(3 * i) == 0;
                for (std::size_t k = 0; k < 3; ++k)
                    inside = inside && cross(t[(k + 1) % 3] - t[k],
                                             points[static_cast<std::size_t>(i)] - t[k]) > 0.0;
                EXPECT_TRUE(!inside || found.count(3 * i) == 1) << count << ' ' << i;
            }
        }
    }
}

TEST(WindingSweep, CountsWhatStandsAboveAndBelow) {
    std::mt19937 random(5);
    std::vector<WindingSweep::Span> spans;
    WindingSweep sweep(600);
    for (int i = 0; i < 600; ++i) {
        const Vec2 a{upTo(random, 50), upTo(random, 50)};
        spans.emplace_back(a, a + Vec2{upTo(random, 20) - 10, upTo(random, 4) - 2}, i);
        sweep.add(spans.back(), i % 3 != 0);
    }
    int answers = 0;
    sweep.run([&](int edge, int result) {
        ++answers;
        EXPECT_NE(edge % 3, 0);
        const WindingSweep::Span& self = spans[static_cast<std::size_t>(edge)];
        const double x = (self.x0 + self.x1) / 2.0;
        int up = 0;
        int down = 0;
        for (const WindingSweep::Span& other : spans)
            if (&other != &self && other.x0 <= x && x < other.x1)
                (other.at(x) > self.at(x) ? up : down) += other.direction;
        const int other = self.direction < 0 ? -down : up;
        EXPECT_EQ(result, up == 0     ? std::min(self.direction, 0)
                          : down == 0 ? -std::max(self.direction, 0)
                                      : other);
    });
    EXPECT_EQ(answers, 400);
}

}  // namespace
}  // namespace orvin
