// Outlines for the tests of the outline kernel, and their areas.
#pragma once

#include <cmath>
#include <vector>

#include "geometry/outline/PolyShape2.h"

namespace orvin::test {

inline void addLoop(PolyShape2& shape, const std::vector<Vec2>& points) {
    shape.addLoop(points, std::vector<Vec2>(points.size(), Vec2{0.0, 1.0}));
}

inline std::vector<Vec2> square(double x, double y, double side) {
    return {{x, y}, {x + side, y}, {x + side, y + side}, {x, y + side}};
}

inline std::vector<Vec2> ring(Vec2 center, double radius, int count, double start = 0.0) {
    std::vector<Vec2> points;
    for (int i = 0; i < count; ++i) {
        const double angle = start + 2.0 * kPi * i / count;
        points.push_back(
            {center.x + radius * std::cos(angle), center.y + radius * std::sin(angle)});
    }
    return points;
}

inline double signedArea(const std::vector<Vec2>& loop) {
    double sum = 0.0;
    for (std::size_t i = 0; i < loop.size(); ++i)
        sum += cross(loop[i], loop[(i + 1) % loop.size()]);
    return sum / 2.0;
}

struct LoopSums {
    int count = 0;
    double area = 0.0;  // counter-clockwise loops count positive
};

inline LoopSums sums(const PolyShape2& shape) {
    std::vector<std::vector<Vec2>> loops;
    shape.collectLoops(loops);
    LoopSums result;
    for (const auto& loop : loops) {
        ++result.count;
        result.area += signedArea(loop);
    }
    return result;
}

}  // namespace orvin::test
