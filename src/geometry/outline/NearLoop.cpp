#include "geometry/outline/NearLoop.h"

#include <algorithm>
#include <cmath>

namespace orvin {

namespace {

constexpr double kNoEdge = 0.001;            // squared length
constexpr std::size_t kFewEdges = 48;        // a walk is faster
constexpr int kMostCells = 256;              // each way
constexpr std::size_t kEntriesPerEdge = 64;  // a grid that needs more is worse than the walk

}  // namespace

NearLoop::NearLoop(std::span<const Vec2> loop, std::span<const Line2> edges, double distance)
    : loop_(loop), edges_(edges), distance_(distance) {
    if (loop.size() >= kFewEdges) buildGrid();
}

bool NearLoop::isNearEdge(Vec2 x, std::size_t k) const {
    const Vec2 a = loop_[k];
    const Vec2 b = end(k);
    if (!(x.x >= std::min(a.x, b.x) - distance_ && x.x <= std::max(a.x, b.x) + distance_ &&
          x.y >= std::min(a.y, b.y) - distance_ && x.y <= std::max(a.y, b.y) + distance_))
        return false;
    const Line2& edge = edges_[k];
    if (dot(edge.direction(), edge.direction()) < kNoEdge) return false;
    const double t = edge.parameterOf(x);
    if (t < 0.0) return length(x - a) < distance_;
    if (t > 1.0) return length(x - b) < distance_;
    return std::abs(edge.signedDistance(x)) < distance_;
}

std::optional<std::size_t> NearLoop::firstNear(Vec2 x) const {
    if (columns_ == 0) {
        for (std::size_t k = 0; k < loop_.size(); ++k)
            if (isNearEdge(x, k)) return k;
        return std::nullopt;
    }
    if (!bounds_.contains(x)) return std::nullopt;
    const Cells at = cells({x.x, x.x, x.y, x.y});
    const auto cell = static_cast<std::size_t>(at.y0 * columns_ + at.x0);
    for (std::size_t i = starts_[cell]; i < starts_[cell + 1]; ++i)
        if (isNearEdge(x, static_cast<std::size_t>(entries_[i])))
            return static_cast<std::size_t>(entries_[i]);
    return std::nullopt;
}

/// The box of all that can be near edge k, a little wider than what isNearEdge() lets in.
Box2 NearLoop::reach(std::size_t k) const {
    const Vec2 a = loop_[k];
    const Vec2 b = end(k);
    const double d = distance_ * 1.001;
    return {std::min(a.x, b.x) - d, std::max(a.x, b.x) + d, std::min(a.y, b.y) - d,
            std::max(a.y, b.y) + d};
}

NearLoop::Cells NearLoop::cells(const Box2& box) const {
    // A NaN compares false everywhere and ends up in cell 0.
    const auto clamp = [](double cell, int count) {
        return cell >= count ? count - 1 : cell > 0.0 ? static_cast<int>(cell) : 0;
    };
    return {clamp((box.xmin - bounds_.xmin) * cellsPerUnit_, columns_),
            clamp((box.xmax - bounds_.xmin) * cellsPerUnit_, columns_),
            clamp((box.ymin - bounds_.ymin) * cellsPerUnit_, rows_),
            clamp((box.ymax - bounds_.ymin) * cellsPerUnit_, rows_)};
}

void NearLoop::buildGrid() {
    for (std::size_t k = 0; k < loop_.size(); ++k) {
        const Box2 box = reach(k);
        bounds_.add({box.xmin, box.ymin});
        bounds_.add({box.xmax, box.ymax});
    }
    const double side = std::max(bounds_.width(), bounds_.height());
    if (!(side > 0.0) || !std::isfinite(side)) return;
    const double wanted = std::min(std::sqrt(static_cast<double>(loop_.size())), side / distance_);
    const int cellsAlong = std::clamp(static_cast<int>(wanted), 1, kMostCells);
    cellsPerUnit_ = cellsAlong / side;
    const auto count = [&](double extent) { return static_cast<int>(extent * cellsPerUnit_) + 1; };
    columns_ = count(bounds_.width());
    rows_ = count(bounds_.height());

    // Counting, then filling: each cell's edges stand together and in order.
    const auto cellCount = static_cast<std::size_t>(columns_ * rows_);
    starts_.assign(cellCount + 1, 0);
    std::size_t total = 0;
    const auto forEachCell = [&](std::size_t k, auto&& visit) {
        const Cells c = cells(reach(k));
        for (int y = c.y0; y <= c.y1; ++y)
            for (int x = c.x0; x <= c.x1; ++x)
                visit(static_cast<std::size_t>(y * columns_ + x));
    };
    for (std::size_t k = 0; k < loop_.size(); ++k) {
        forEachCell(k, [&](std::size_t cell) {
            ++starts_[cell + 1];
            ++total;
        });
        if (total > kEntriesPerEdge * loop_.size()) {
            columns_ = 0;
            return;
        }
    }
    for (std::size_t c = 0; c < cellCount; ++c)
        starts_[c + 1] += starts_[c];
    entries_.resize(total);
    std::vector<std::size_t> next(starts_.begin(), starts_.end() - 1);
    for (std::size_t k = 0; k < loop_.size(); ++k)
        forEachCell(k, [&](std::size_t cell) { entries_[next[cell]++] = static_cast<int>(k); });
}

}  // namespace orvin
