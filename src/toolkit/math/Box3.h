// Box3: an axis-aligned box that starts empty and grows. Empty while any minimum exceeds its
// maximum.
#pragma once

#include <algorithm>
#include <limits>

#include "toolkit/math/Matrix4.h"

namespace orvin {

struct Box3 {
    Vec3 min{std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity(),
             std::numeric_limits<double>::infinity()};
    Vec3 max{-std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
             -std::numeric_limits<double>::infinity()};

    constexpr bool empty() const { return min.x > max.x || min.y > max.y || min.z > max.z; }
    constexpr Vec3 center() const { return (min + max) * 0.5; }
    constexpr Vec3 size() const { return max - min; }
    constexpr void add(Vec3 p) {
        min = {std::min(min.x, p.x), std::min(min.y, p.y), std::min(min.z, p.z)};
        max = {std::max(max.x, p.x), std::max(max.y, p.y), std::max(max.z, p.z)};
    }
    constexpr void merge(const Box3& other) {
        if (other.empty()) return;
        add(other.min);
        add(other.max);
    }
    /// Corner 0..7: x from the maximum when bit 0 is set, y by bit 1, z by bit 2.
    constexpr Vec3 corner(int i) const {
        return {(i & 1) ? max.x : min.x, (i & 2) ? max.y : min.y, (i & 4) ? max.z : min.z};
    }
    /// The box around the eight corners under `matrix`; an empty box stays empty.
    Box3 under(const Matrix4& matrix) const {
        Box3 r;
        if (empty()) return r;
        for (int i = 0; i < 8; ++i)
            r.add(matrix.point(corner(i)));
        return r;
    }
};

}  // namespace orvin
