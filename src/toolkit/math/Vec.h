// Vec2, Vec3: plain doubles. Positions are in world units (the host's pixels), angles elsewhere.
#pragma once

#include <cmath>

namespace orvin {

inline constexpr double kPi = 3.14159265358979323846;

struct Vec2 {
    double x = 0.0;
    double y = 0.0;

    friend constexpr bool operator==(const Vec2&, const Vec2&) = default;
    friend constexpr Vec2 operator+(Vec2 a, Vec2 b) { return {a.x + b.x, a.y + b.y}; }
    friend constexpr Vec2 operator-(Vec2 a, Vec2 b) { return {a.x - b.x, a.y - b.y}; }
    friend constexpr Vec2 operator*(Vec2 a, double s) { return {a.x * s, a.y * s}; }
};

struct Vec3 {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    constexpr double& operator[](int axis) { return axis == 0 ? x : axis == 1 ? y : z; }
    constexpr double operator[](int axis) const { return axis == 0 ? x : axis == 1 ? y : z; }

    friend constexpr bool operator==(const Vec3&, const Vec3&) = default;
    friend constexpr Vec3 operator+(Vec3 a, Vec3 b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
    friend constexpr Vec3 operator-(Vec3 a, Vec3 b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
    friend constexpr Vec3 operator-(Vec3 a) { return {-a.x, -a.y, -a.z}; }
    friend constexpr Vec3 operator*(Vec3 a, double s) { return {a.x * s, a.y * s, a.z * s}; }
    friend constexpr Vec3 operator*(double s, Vec3 a) { return a * s; }
    constexpr Vec3& operator+=(Vec3 b) { return *this = *this + b; }
    constexpr Vec3& operator-=(Vec3 b) { return *this = *this - b; }
};

constexpr double dot(Vec2 a, Vec2 b) {
    return a.x * b.x + a.y * b.y;
}
constexpr double dot(Vec3 a, Vec3 b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
constexpr Vec3 cross(Vec3 a, Vec3 b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double length(Vec2 a) {
    return std::sqrt(dot(a, a));
}
inline double length(Vec3 a) {
    return std::sqrt(dot(a, a));
}

/// The unit vector of `a`; a zero vector stays zero (never NaN).
inline Vec3 normalize(Vec3 a) {
    const double len = length(a);
    return len > 0.0 ? a * (1.0 / len) : a;
}

constexpr double radians(double degrees) {
    return degrees * (kPi / 180.0);
}
constexpr double degrees(double radians) {
    return radians * (180.0 / kPi);
}

}  // namespace orvin
