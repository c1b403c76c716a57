// Line2: the line through two points, with its unit left normal; Box2: an extent in the plane.
#pragma once

#include <algorithm>
#include <limits>
#include <optional>

#include "toolkit/math/Vec.h"

namespace orvin {

constexpr double cross(Vec2 a, Vec2 b) {
    return a.x * b.y - a.y * b.x;
}

/// The unit vector of `a`; a zero vector stays zero (never NaN).
inline Vec2 normalize(Vec2 a) {
    const double len = length(a);
    return len > 0.0 ? a * (1.0 / len) : a;
}

/// `a` turned left by a quarter.
constexpr Vec2 leftNormal(Vec2 a) {
    return {-a.y, a.x};
}

class Line2 {
  public:
    /// Below this (squared) length the direction counts as none and the normal is (1, 0).
    static constexpr double kNoDirection = 1e-5;

    Line2() = default;
    Line2(Vec2 from, Vec2 to) : point_(from), direction_(to - from) {
        const double squared = dot(direction_, direction_);
        if (squared > kNoDirection) normal_ = leftNormal(direction_) * (1.0 / std::sqrt(squared));
        constant_ = -dot(normal_, point_);
    }

    Vec2 point() const { return point_; }
    Vec2 direction() const { return direction_; }  // not normalised
    Vec2 normal() const { return normal_; }

    /// Positive to the left of the line.
    double signedDistance(Vec2 x) const { return dot(normal_, x) + constant_; }
    bool isLeftOrOn(Vec2 x) const { return signedDistance(x) >= 0.0; }

    /// 0 at the first point, 1 at the second; 0 where there is no direction.
    double parameterOf(Vec2 x) const {
        const double squared = dot(direction_, direction_);
        return squared == 0.0 ? 0.0 : dot(x - point_, direction_) / squared;
    }
    Vec2 pointAt(double t) const { return point_ + direction_ * t; }

    /// The same line moved to the left by `distance`.
    Line2 offset(double distance) const {
        Line2 moved = *this;
        moved.point_ = point_ + normal_ * distance;
        moved.constant_ = -dot(moved.normal_, moved.point_);
        return moved;
    }

    /// Where this line meets `other`; nothing where they are (nearly) parallel.
    std::optional<Vec2> intersect(const Line2& other) const {
        const double a = other.signedDistance(point_);
        const double b = other.signedDistance(point_ + direction_);
        if (std::abs(a - b) < 1e-5) return std::nullopt;
        return point_ + direction_ * (a / (a - b));
    }

    /// Where the two segments meet, ends included, as the parameter along `other`.
    std::optional<double> segmentIntersect(const Line2& other) const {
        const double a = other.signedDistance(point_);
        const double b = other.signedDistance(point_ + direction_);
        if (a == b) return std::nullopt;
        const double onThis = a / (a - b);
        if (!(onThis >= 0.0 && onThis <= 1.0)) return std::nullopt;
        const double c = signedDistance(other.point_);
        const double d = signedDistance(other.point_ + other.direction_);
        if (std::abs(c - d) < 1e-5) return std::nullopt;
        const double onOther = c / (c - d);
        if (!(onOther >= 0.0 && onOther <= 1.0)) return std::nullopt;
        return onOther;
    }

  private:
    Vec2 point_;
    Vec2 direction_;
    Vec2 normal_{1.0, 0.0};
    double constant_ = 0.0;
};

/// Starts empty and grows.
struct Box2 {
    double xmin = std::numeric_limits<double>::infinity();
    double xmax = -std::numeric_limits<double>::infinity();
    double ymin = std::numeric_limits<double>::infinity();
    double ymax = -std::numeric_limits<double>::infinity();

    constexpr bool empty() const { return xmin > xmax || ymin > ymax; }
    constexpr double width() const { return xmax - xmin; }
    constexpr double height() const { return ymax - ymin; }
    constexpr double area() const { return empty() ? 0.0 : width() * height(); }
    constexpr void add(Vec2 p) {
        xmin = std::min(xmin, p.x);
        xmax = std::max(xmax, p.x);
        ymin = std::min(ymin, p.y);
        ymax = std::max(ymax, p.y);
    }
    constexpr bool contains(Vec2 p) const {
        return p.x >= xmin && p.x <= xmax && p.y >= ymin && p.y <= ymax;
    }
    constexpr bool contains(const Box2& b) const {
        return b.xmin >= xmin && b.xmax <= xmax && b.ymin >= ymin && b.ymax <= ymax;
    }
};

}  // namespace orvin
