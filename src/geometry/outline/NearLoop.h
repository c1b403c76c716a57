// NearLoop: answers whether a point is nearer to a closed loop than a given distance.
//
// Edges are sorted into a grid by their boxes, widened by the distance; a cell lists its edges in
// order, so that the answers are those of a walk over all edges.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "geometry/outline/Line2.h"

namespace orvin {

class NearLoop {
  public:
    /// `edges[k]` runs from point k to the next; both lists must outlive this. The distance is
    /// above 0. Edges shorter than 0.03 don't count: what is near them is near their neighbours.
    NearLoop(std::span<const Vec2> loop, std::span<const Line2> edges, double distance);

    bool isNearEdge(Vec2 x, std::size_t k) const;

    /// The first edge that is near.
    std::optional<std::size_t> firstNear(Vec2 x) const;
    bool isNear(Vec2 x) const { return firstNear(x).has_value(); }

  private:
    struct Cells {
        int x0, x1, y0, y1;  // ends included
    };

    void buildGrid();
    Box2 reach(std::size_t k) const;
    Cells cells(const Box2& box) const;
    Vec2 end(std::size_t k) const { return loop_[k + 1 < loop_.size() ? k + 1 : 0]; }

    std::span<const Vec2> loop_;
    std::span<const Line2> edges_;
    double distance_;

    // No columns: every edge is looked at.
    int columns_ = 0;
    int rows_ = 0;
    Box2 bounds_;
    double cellsPerUnit_ = 0.0;
    std::vector<std::size_t> starts_;  // one more than there are cells
    std::vector<int> entries_;
};

}  // namespace orvin
