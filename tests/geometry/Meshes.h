// Small meshes with known answers.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "geometry/Mesh3.h"

namespace orvin::test {

/// The cube from -1 to 1, corners counter-clockwise from outside, no normals.
inline Mesh3 cube() {
    Mesh3 mesh;
    for (int i = 0; i < 8; ++i)
        mesh.addVertex(
            {(i & 1) != 0 ? 1.0 : -1.0, (i & 2) != 0 ? 1.0 : -1.0, (i & 4) != 0 ? 1.0 : -1.0});
    const std::array<std::array<int, 4>, 6> faces{
        {{0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4}, {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}}};
    for (const auto& face : faces)
        mesh.addFace(ElementKind::kPolygon, 0, face);
    return mesh;
}

/// `count` triangles round the origin as apex; the rim is a wave, so that the faces differ.
inline Mesh3 fan(int count, double height) {
    Mesh3 mesh;
    mesh.addVertex({});
    for (int i = 0; i < count; ++i) {
        const double angle = 2.0 * kPi * i / count;
        mesh.addVertex(
            {std::cos(angle), std::sin(angle), height * (1.0 + 0.3 * std::sin(5 * angle))});
    }
    for (int i = 0; i < count; ++i) {
        const std::array<int, 3> corners{0, 1 + i, 1 + (i + 1) % count};
        mesh.addFace(ElementKind::kPolygon, 0, corners);
    }
    return mesh;
}

inline void expectNear(Vec3 a, Vec3 b, double tolerance = 1e-12) {
    EXPECT_NEAR(a.x, b.x, tolerance);
    EXPECT_NEAR(a.y, b.y, tolerance);
    EXPECT_NEAR(a.z, b.z, tolerance);
}

}  // namespace orvin::test
