// NearLoop: answers whether a point is nearer to a closed loop than a given distance.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "geometry/outline/Line2.h"

namespace orvin {

class NearLoop {
  public:
    /// `edges[k]` runs from point k to the next. Both must outlive this. Edges shorter than 0.03
    /// don't count: what is near them is near their neighbours.
    NearLoop(std::span<const Vec2> loop, std::span<const Line2> edges, double distance)
        : loop_(loop), edges_(edges), distance_(distance) {}

    bool isNearEdge(Vec2 x, std::size_t k) const {
        const Vec2 a = loop_[k];
        const Vec2 b = loop_[k + 1 < loop_.size() ? k + 1 : 0];
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

    /// The first edge that is near.
    std::optional<std::size_t> firstNear(Vec2 x) const {
        for (std::size_t k = 0; k < loop_.size(); ++k)
            if (isNearEdge(x, k)) return k;
        return std::nullopt;
    }
    bool isNear(Vec2 x) const { return firstNear(x).has_value(); }

  private:
    static constexpr double kNoEdge = 0.001;  // squared length

    std::span<const Vec2> loop_;
    std::span<const Line2> edges_;
    double distance_;
};

}  // namespace orvin
