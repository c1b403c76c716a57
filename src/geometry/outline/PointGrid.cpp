#include "geometry/outline/PointGrid.h"

#include <cmath>

namespace orvin {

namespace {

constexpr double kThin = 1e-6;  // area over squared longest side

}  // namespace

PointGrid::Axis PointGrid::axisOf(double low, double high, int cells) {
    Axis axis;
    axis.low = low;
    axis.cells = cells;
    if (high > low) {
        axis.coarse = (kCoarseSide - kInside) / (high - low);
        axis.fine = (cells - kInside) / (high - low);
    }
    return axis;
}

void PointGrid::build(std::span<const Vec2> points, std::span<const int> ids) {
    Box2 bounds;
    for (const Vec2& p : points)
        bounds.add(p);
    const double wanted = std::sqrt(static_cast<double>(points.size()) / kPointsPerRow);
    const int rows = std::clamp(static_cast<int>(wanted), 1, kMostRows);
    x_ = axisOf(bounds.xmin, bounds.xmax, rows * kColumnsPerRow);
    y_ = axisOf(bounds.ymin, bounds.ymax, rows);
    rowHeight_ = 1.0 / y_.fine;
    slack_ = kSlack * std::max({std::abs(bounds.xmin), std::abs(bounds.xmax), std::abs(bounds.ymin),
                                std::abs(bounds.ymax)});

    // Counts, then fills from behind: a cell's entries stand together, cells row after row.
    starts_.assign(static_cast<std::size_t>(x_.cells * y_.cells) + 1, 0);
    const auto cellOf = [&](Vec2 p) {
        return static_cast<std::size_t>(y_.fineCell(p.y) * x_.cells + x_.fineCell(p.x));
    };
    for (const Vec2& p : points)
        ++starts_[cellOf(p)];
    std::uint32_t total = 0;
    for (std::uint32_t& start : starts_)
        start = total += start;
    entries_.resize(points.size());
    for (std::size_t i = points.size(); i-- > 0;)
        entries_[--starts_[cellOf(points[i])]] = {
            points[i], ids[i], static_cast<std::uint8_t>(x_.coarseCell(points[i].x)),
            static_cast<std::uint8_t>(y_.coarseCell(points[i].y))};
}

PointGrid::Sieve::Sieve(const Triangle& t, double slack) {
    double longest = 0.0;
    double shortest = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < 3; ++i) {
        const Vec2 along = t[(i + 1) % 3] - t[i];
        const Vec2 inward = leftNormal(along);
        sides_[i] = {inward, dot(inward, t[i]) - (std::abs(along.x) + std::abs(along.y)) * slack,
                     1.0 / inward.x};
        const double squared = dot(along, along);
        longest = std::max(longest, squared);
        shortest = std::min(shortest, squared);
    }
    // Also where a side counts as none, where the corners run clockwise, and where numbers run out.
    thin_ = !(shortest > Line2::kNoDirection && cross(t[1] - t[0], t[2] - t[0]) > kThin * longest &&
              longest < std::numeric_limits<double>::max());
}

}  // namespace orvin
