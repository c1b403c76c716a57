// ScreenTriangle: a triangle as the scan converter takes it: corners and planes over the grid of
// subpixels. The centre of subpixel (x, y) is (x + 0.5, y + 0.5).
#pragma once

#include <array>
#include <cstdint>

#include "toolkit/math/Vec.h"

namespace orvin {

/// A quantity that changes linearly over the grid.
struct GridPlane {
    double a = 0.0;
    double b = 0.0;
    double c = 0.0;

    constexpr double at(double x, double y) const { return a * x + b * y + c; }
};

/// What follows a triangle through the pipeline.
struct TriangleId {
    // Bits of flags.
    static constexpr std::uint32_t kOpaque = 1;    // hides all that lies behind it
    static constexpr std::uint32_t kFacesEye = 2;  // its winding's normal points to the eye

    std::uint32_t object = 0;   // index into VisibilityBuffer::objects()
    std::uint32_t face = 0;     // of the object's mesh
    std::uint32_t fan = 0;      // corners 0, fan + 1, fan + 2 of the face
    std::uint32_t surface = 0;  // index into VisibilityBuffer::surfaces()
    std::uint32_t flags = 0;
};

struct ScreenTriangle {
    std::array<Vec2, 3> corners;  // near-clipped
    double yMin = 0.0;
    double yMax = 0.0;
    GridPlane depth;  // depth of an orthographic camera, 1/depth of a perspective one
    // Barycentric weights of the first and the second corner of the triangle as it was before it
    // was clipped; divided by depth for a perspective camera.
    GridPlane u;
    GridPlane v;
    TriangleId id;
};

/// Truncation towards zero for values of any size: the far ends are held, NaN counts as far left.
constexpr int truncToInt(double value) {
    constexpr double kFar = 1e9;
    return value > -kFar ? (value < kFar ? static_cast<int>(value) : static_cast<int>(kFar))
                         : -static_cast<int>(kFar);
}

}  // namespace orvin
