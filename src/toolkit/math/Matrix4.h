// Matrix4: 4 x 4 doubles for points written as rows on the left: p' = p * M.
//
// This is the only place where the convention is said. It follows that
//  - the translation is the last row, m[3][0..2] (linear indices 12, 13, 14);
//  - rows 0, 1, 2 are the images of the x, y and z axes;
//  - the product reads left to right: p * (A * B) applies A first, then B;
//  - a matrix is named destination-from-source, and chains are written source first:
//    worldFromObject = parentFromObject * worldFromParent.
#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "toolkit/math/Vec.h"

namespace orvin {

struct Matrix4 {
    std::array<std::array<double, 4>, 4> m{
        {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};

    static constexpr Matrix4 identity() { return {}; }
    static Matrix4 translation(Vec3 t);
    static Matrix4 scaling(Vec3 s);

    /// Right-handed rotation about one axis (0 x, 1 y, 2 z), in degrees.
    static Matrix4 rotationAbout(int axis, double degrees);

    /// Product of three axis rotations (degrees). `order` is read like factors before a column
    /// point: of "xyz" the last letter acts first on the point, of "zyx" x turns first.
    /// Letters of either case; others are skipped.
    static Matrix4 rotation(Vec3 degrees, std::string_view order);

    constexpr Vec3 row(int i) const {
        const auto& r = m[static_cast<std::size_t>(i)];
        return {r[0], r[1], r[2]};
    }
    constexpr void setRow(int i, Vec3 v) {
        auto& r = m[static_cast<std::size_t>(i)];
        r[0] = v.x;
        r[1] = v.y;
        r[2] = v.z;
    }
    constexpr Vec3 origin() const { return row(3); }

    /// `p` as a point (moved by the translation). The fourth column is taken as 0, 0, 0, 1.
    constexpr Vec3 point(Vec3 p) const {
        return {p.x * m[0][0] + p.y * m[1][0] + p.z * m[2][0] + m[3][0],
                p.x * m[0][1] + p.y * m[1][1] + p.z * m[2][1] + m[3][1],
                p.x * m[0][2] + p.y * m[1][2] + p.z * m[2][2] + m[3][2]};
    }
    /// `d` as a direction (not moved by the translation, not normalised).
    constexpr Vec3 direction(Vec3 d) const {
        return {d.x * m[0][0] + d.y * m[1][0] + d.z * m[2][0],
                d.x * m[0][1] + d.y * m[1][1] + d.z * m[2][1],
                d.x * m[0][2] + d.y * m[1][2] + d.z * m[2][2]};
    }

    /// Inverse of the affine matrix; nothing where the upper 3 x 3 part is singular or not finite.
    std::optional<Matrix4> inverse() const;

    /// Determinant of the upper 3 x 3 part: negative for a mirroring matrix.
    double determinant3() const;

    friend bool operator==(const Matrix4&, const Matrix4&) = default;
};

Matrix4 operator*(const Matrix4& a, const Matrix4& b);

/// The matrix that carries normals when `m` carries points: transposed inverse of the upper 3 x 3
/// part, no translation. A singular `m` yields its own upper part, so that no NaN comes of it.
Matrix4 normalMatrix(const Matrix4& m);

/// Angles (degrees) that give the rotation part of `rotation` in `order` (see Matrix4::rotation).
/// The upper 3 x 3 part must be orthonormal and right-handed. At gimbal lock the angle of the
/// letter that acts first is 0.
Vec3 rotationAngles(const Matrix4& rotation, std::string_view order);

}  // namespace orvin
