#include "toolkit/math/Matrix4.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace orvin {

namespace {

constexpr int axisOf(char letter) {
    switch (letter) {
        case 'x':
        case 'X':
            return 0;
        case 'y':
        case 'Y':
            return 1;
        case 'z':
        case 'Z':
            return 2;
        default:
            return -1;
    }
}

}  // namespace

Matrix4 Matrix4::translation(Vec3 t) {
    Matrix4 r;
    r.setRow(3, t);
    return r;
}

Matrix4 Matrix4::scaling(Vec3 s) {
    Matrix4 r;
    r.m[0][0] = s.x;
    r.m[1][1] = s.y;
    r.m[2][2] = s.z;
    return r;
}

Matrix4 Matrix4::rotationAbout(int axis, double degrees) {
    // Quarter turns come out exact: a front view must not lean by 1e-17.
    double c = std::cos(radians(degrees));
    double s = std::sin(radians(degrees));
    if (std::fmod(degrees, 90.0) == 0.0) {
        c = std::round(c);
        s = std::round(s);
    }
    const auto u = static_cast<std::size_t>((axis + 1) % 3);
    const auto v = static_cast<std::size_t>((axis + 2) % 3);
    Matrix4 r;
    r.m[u][u] = c;
    r.m[u][v] = s;
    r.m[v][u] = -s;
    r.m[v][v] = c;
    return r;
}

Matrix4 Matrix4::rotation(Vec3 degrees, std::string_view order) {
    Matrix4 r;
    for (const char letter : order) {
        const int axis = axisOf(letter);
        if (axis >= 0) r = rotationAbout(axis, degrees[axis]) * r;
    }
    return r;
}

Matrix4 operator*(const Matrix4& a, const Matrix4& b) {
    Matrix4 r;
    for (std::size_t i = 0; i < 4; ++i)
        for (std::size_t j = 0; j < 4; ++j)
            r.m[i][j] = a.m[i][0] * b.m[0][j] + a.m[i][1] * b.m[1][j] + a.m[i][2] * b.m[2][j] +
                        a.m[i][3] * b.m[3][j];
    return r;
}

double Matrix4::determinant3() const {
    return dot(row(0), cross(row(1), row(2)));
}

std::optional<Matrix4> Matrix4::inverse() const {
    const Vec3 x = row(0);
    const Vec3 y = row(1);
    const Vec3 z = row(2);
    const double det = determinant3();
    if (det == 0.0 || !std::isfinite(det) || !std::isfinite(1.0 / det)) return std::nullopt;
    const double k = 1.0 / det;
    const Vec3 columns[3] = {cross(y, z) * k, cross(z, x) * k, cross(x, y) * k};
    Matrix4 r;
    for (std::size_t j = 0; j < 3; ++j) {
        r.m[0][j] = columns[j].x;
        r.m[1][j] = columns[j].y;
        r.m[2][j] = columns[j].z;
    }
    r.setRow(3, -r.direction(origin()));
    return r;
}

Matrix4 normalMatrix(const Matrix4& m) {
    Matrix4 r = m;
    r.setRow(3, {});
    const auto inverse = r.inverse();
    if (!inverse) return r;
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t j = 0; j < 3; ++j)
            r.m[i][j] = inverse->m[j][i];
    return r;
}

Vec3 rotationAngles(const Matrix4& rotation, std::string_view order) {
    int axes[3] = {0, 1, 2};
    for (std::size_t i = 0; i < 3 && i < order.size(); ++i)
        if (axisOf(order[i]) >= 0) axes[i] = axisOf(order[i]);
    // Column-notation matrix R = Ra Rb Rc, so R[r][c] is the row-notation entry m[c][r].
    const auto a = static_cast<std::size_t>(axes[0]);
    const auto b = static_cast<std::size_t>(axes[1]);
    const auto c = static_cast<std::size_t>(axes[2]);
    const bool cyclic = (axes[0] + 1) % 3 == axes[1];
    const double sign = cyclic ? 1.0 : -1.0;
    const auto entry = [&](std::size_t row, std::size_t column) { return rotation.m[column][row]; };
    const double sinB = std::clamp(sign * entry(a, c), -1.0, 1.0);
    Vec3 angles;
    angles[axes[1]] = degrees(std::asin(sinB));
    if (std::abs(sinB) < 1.0 - 1e-12) {
        angles[axes[0]] = degrees(std::atan2(-sign * entry(b, c), entry(c, c)));
        angles[axes[2]] = degrees(std::atan2(-sign * entry(a, b), entry(a, a)));
    } else {
        angles[axes[0]] = degrees(std::atan2(sign * entry(c, b), entry(b, b)));
        angles[axes[2]] = 0.0;
    }
    return angles;
}

}  // namespace orvin
