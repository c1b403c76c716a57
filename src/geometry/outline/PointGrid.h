// PointGrid: points sorted into cells, so that a box finds its points without looking at all.
#pragma once

#include <algorithm>
#include <cmath>
#include <span>
#include <vector>

#include "geometry/outline/Line2.h"

namespace orvin {

class PointGrid {
  public:
    /// Sorts `points` into columns x rows cells over their box (each at least 1). Points that
    /// aren't finite go to the border cells.
    void build(std::span<const Vec2> points, int columns, int rows) {
        columns_ = std::max(columns, 1);
        rows_ = std::max(rows, 1);
        bounds_ = {};
        for (const Vec2& p : points)
            bounds_.add(p);
        scaleX_ = bounds_.width() > 0.0 ? (columns_ - kInside) / bounds_.width() : 0.0;
        scaleY_ = bounds_.height() > 0.0 ? (rows_ - kInside) / bounds_.height() : 0.0;
        starts_.assign(static_cast<std::size_t>(columns_ * rows_) + 1, 0);
        for (const Vec2& p : points)
            ++starts_[cellOf(p) + 1];
        for (std::size_t c = 1; c < starts_.size(); ++c)
            starts_[c] += starts_[c - 1];
        ends_.assign(starts_.begin(), starts_.end() - 1);
        entries_.resize(points.size());
        for (std::size_t i = 0; i < points.size(); ++i)
            entries_[ends_[cellOf(points[i])]++] = static_cast<int>(i);
    }

    /// Calls visit(pointIndex) for every point in the cells that `box` touches: a superset of the
    /// points inside, cell by cell in row order. Where visit answers false the point is dropped
    /// from the grid for good.
    template <typename Visit>
    void query(const Box2& box, Visit&& visit) {
        const int x0 = column(box.xmin);
        const int x1 = column(box.xmax);
        const int y0 = row(box.ymin);
        const int y1 = row(box.ymax);
        for (int y = y0; y <= y1; ++y) {
            for (int x = x0; x <= x1; ++x) {
                const auto cell = static_cast<std::size_t>(y * columns_ + x);
                std::size_t kept = starts_[cell];
                for (std::size_t k = starts_[cell]; k < ends_[cell]; ++k) {
                    const int entry = entries_[k];
                    if (visit(entry)) entries_[kept++] = entry;
                }
                ends_[cell] = kept;
            }
        }
    }

  private:
    static constexpr double kInside = 0.001;  // keeps the largest point inside the last cell

    static int clampCell(double cell, int count) {
        // A NaN compares false everywhere and ends up in cell 0.
        return cell >= count ? count - 1 : cell >= 0.0 ? static_cast<int>(cell) : 0;
    }
    int column(double x) const { return clampCell((x - bounds_.xmin) * scaleX_, columns_); }
    int row(double y) const { return clampCell((y - bounds_.ymin) * scaleY_, rows_); }
    std::size_t cellOf(Vec2 p) const {
        return static_cast<std::size_t>(row(p.y) * columns_ + column(p.x));
    }

    int columns_ = 1;
    int rows_ = 1;
    Box2 bounds_;
    double scaleX_ = 0.0;
    double scaleY_ = 0.0;
    std::vector<std::size_t> starts_;  // one more than there are cells
    std::vector<std::size_t> ends_;    // entries dropped since stand behind a cell's end
    std::vector<int> entries_;
};

}  // namespace orvin
