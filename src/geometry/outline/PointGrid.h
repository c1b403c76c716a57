// PointGrid: points sorted into cells, so that a triangle finds the points in it without looking at
// all.
//
// Two grids in one. The coarse one, of 50 x 50 cells, says which points a triangle may find (those
// of the cells that its box touches) and which comes first (cell by cell in row order, then as they
// were given): results rest on both. The fine one, rows of narrow cells, is only how they are
// found.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "geometry/outline/Line2.h"

namespace orvin {

class PointGrid {
  public:
    using Triangle = std::array<Vec2, 3>;

    struct Point {
        Vec2 at;
        int id;               // as given
        std::uint8_t column;  // coarse
        std::uint8_t row;

        /// Whether this one comes before another at the same distance.
        bool precedes(const Point& other) const {
            return row != other.row         ? row < other.row
                   : column != other.column ? column < other.column
                                            : id < other.id;
        }
    };

    /// `ids[i]` names point i, in rising order. Points that aren't finite go to the border cells.
    void build(std::span<const Vec2> points, std::span<const int> ids);

    /// Calls visit(point) for a superset of the points that are in the triangle (its corners
    /// counter-clockwise) or, by rounding, on the lines of its sides, in any order. Where visit
    /// answers false the point is dropped from the grid for good.
    template <typename Visit>
    void query(const Triangle& triangle, Visit&& visit);

  private:
    static constexpr int kCoarseSide = 50;
    static constexpr int kMostRows = 256;
    static constexpr double kPointsPerRow = 2.0;  // of a square of rows x rows cells
    static constexpr int kColumnsPerRow = 8;
    static constexpr double kInside = 0.001;  // keeps the largest point inside the last cell
    static constexpr double kSlack = 1e-7;    // of the largest coordinate: more than rounding does

    struct Axis {
        double low = 0.0;
        double coarse = 0.0;  // cells per unit
        double fine = 0.0;
        int cells = 1;  // of the fine grid

        static int clampCell(double cell, int count) {
            // A NaN compares false everywhere and ends up in cell 0.
            return cell >= count ? count - 1 : cell >= 0.0 ? static_cast<int>(cell) : 0;
        }
        int coarseCell(double x) const { return clampCell((x - low) * coarse, kCoarseSide); }
        int fineCell(double x) const { return clampCell((x - low) * fine, cells); }
        /// Fine cells that touch the coarse cells first..last, and some more.
        int fineBefore(int first) const { return std::max(first * cells / kCoarseSide - 1, 0); }
        int fineBehind(int last) const {
            return std::min((last + 1) * cells / kCoarseSide + 1, cells - 1);
        }
    };

    /// A triangle, to turn away what is clearly outside without a root.
    class Sieve {
      public:
        Sieve(const Triangle& triangle, double slack);

        /// Rounding decides what is in a triangle as thin as this.
        bool thin() const { return thin_; }

        bool mayHold(Vec2 p) const {
            const auto inside = [p](const Side& side) -> unsigned {
                return side.inward.x * p.x + side.inward.y * p.y >= side.least;
            };
            // All three at once: which one turns it away can't be foreseen.
            return (inside(sides_[0]) & inside(sides_[1]) & inside(sides_[2])) != 0;
        }

        /// Narrows from..to to the x that the triangle may have between two heights.
        void narrow(double low, double high, double& from, double& to) const {
            for (const Side& side : sides_) {
                const double x =
                    (side.least - std::max(side.inward.y * low, side.inward.y * high)) *
                    side.perInwardX;
                if (side.inward.x > 0.0) from = std::max(from, x);
                if (side.inward.x < 0.0) to = std::min(to, x);
            }
        }

      private:
        struct Side {
            Vec2 inward;  // as long as the side
            double least;
            double perInwardX;
        };
        std::array<Side, 3> sides_;
        bool thin_;
    };

    static Axis axisOf(double low, double high, int cells);

    Axis x_;
    Axis y_;
    double slack_ = 0.0;
    double rowHeight_ = 0.0;
    std::vector<std::uint32_t> starts_;  // one more than there are cells
    std::vector<Point> entries_;         // dropped ones have no place: NaN
};

template <typename Visit>
void PointGrid::query(const Triangle& t, Visit&& visit) {
    const Box2 box{std::min({t[0].x, t[1].x, t[2].x}), std::max({t[0].x, t[1].x, t[2].x}),
                   std::min({t[0].y, t[1].y, t[2].y}), std::max({t[0].y, t[1].y, t[2].y})};
    const int left = x_.coarseCell(box.xmin);
    const int right = x_.coarseCell(box.xmax);
    const int bottom = y_.coarseCell(box.ymin);
    const int top = y_.coarseCell(box.ymax);
    const Sieve sieve(t, slack_);
    const bool thin = sieve.thin();
    const int lastRow = thin ? y_.fineBehind(top) : y_.fineCell(box.ymax + slack_);
    for (int row = thin ? y_.fineBefore(bottom) : y_.fineCell(box.ymin - slack_); row <= lastRow;
         ++row) {
        int first = x_.fineBefore(left);
        int last = x_.fineBehind(right);
        if (!thin) {
            const double low = y_.low + row * rowHeight_;
            double from = box.xmin;
            double to = box.xmax;
            sieve.narrow(low - slack_, low + rowHeight_ + slack_, from, to);
            first = x_.fineCell(from - slack_);
            last = x_.fineCell(to + slack_);
            if (first > last) continue;
        }
        const auto cell = static_cast<std::size_t>(row * x_.cells);
        Point* const end = entries_.data() + starts_[cell + static_cast<std::size_t>(last) + 1];
        for (Point* point = entries_.data() + starts_[cell + static_cast<std::size_t>(first)];
             point != end; ++point) {
            if (!thin && !sieve.mayHold(point->at)) continue;
            const bool asked = point->column >= left && point->column <= right &&
                               point->row >= bottom && point->row <= top && point->id >= 0;
            if (asked && !visit(*point)) {
                point->at.x = std::numeric_limits<double>::quiet_NaN();
                point->id = -1;
            }
        }
    }
}

}  // namespace orvin
