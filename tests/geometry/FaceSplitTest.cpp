#include "geometry/FaceSplit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

#include "tests/geometry/Extrusions.h"

namespace orvin {
namespace {

/// One face, turned so that it looks along `normal`; texture and normal indices follow the corners
/// backwards.
Mesh3 faceOf(const std::vector<Vec2>& loop, Vec3 normal) {
    Mesh3 mesh;
    const Vec3 n = normalize(normal);
    const Vec3 x = normalize(std::abs(n.x) < 0.5 ? cross({1, 0, 0}, n) : cross({0, 1, 0}, n));
    const Vec3 y = cross(n, x);
    for (const Vec2 p : loop) {
        mesh.addVertex(x * p.x + y * p.y + Vec3{7, 8, 9});
        mesh.addTexVertex({p.x, p.y, 0});
        mesh.addNormal(n);
    }
    std::vector<int> ids(loop.size());
    std::iota(ids.begin(), ids.end(), 0);
    const std::vector<int> back(ids.rbegin(), ids.rend());
    mesh.addFace(ElementKind::kPolygon, 3, ids, back, back);
    return mesh;
}

double faceArea(const Mesh3& mesh) {
    Vec3 sum;
    for (int f = 0; f < mesh.faceCount(); ++f)
        sum += test::newell(mesh, f);
    return length(sum);
}

TEST(FaceSplit, FansShareOneEdgeAndKeepEverything) {
    const Mesh3 source = faceOf(test::ring({0, 0}, 10, 11), {0, 0, 1});
    const struct {
        int maxSides;
        int pieces;
        std::size_t last;
    } cases[] = {{4, 5, 3}, {3, 9, 3}, {5, 3, 5}, {11, 1, 11}, {99, 1, 11}, {0, 9, 3}};
    for (const auto& c : cases) {
        const Mesh3 mesh = quadrangulate(source, c.maxSides);
        ASSERT_EQ(mesh.faceCount(), c.pieces) << c.maxSides;
        const FaceView last = mesh.face(c.pieces - 1);
        EXPECT_EQ(last.vertices.size(), c.last) << c.maxSides;
        EXPECT_EQ(last.material, 3);
        EXPECT_EQ(last.vertices[0], 0);
        EXPECT_EQ(last.texture[0], 10);
        EXPECT_EQ(last.vertices.back(), 10);
        EXPECT_EQ(last.normals.back(), 0);
        EXPECT_NEAR(faceArea(mesh), faceArea(source), 1e-9);
    }
}

TEST(FaceSplit, ConcaveFacesBecomeConvexInAnyPlane) {
    const std::vector<Vec2> arrow{{0, 0}, {40, 0}, {40, -10}, {60, 5}, {40, 20}, {40, 10}, {0, 10}};
    for (const Vec3 normal : {Vec3{0, 0, 1}, Vec3{0, 0, -1}, Vec3{0, 1, 0}, Vec3{0, -1, 0},
                              Vec3{1, 0, 0}, Vec3{1, 2, 3}, Vec3{-3, 1, 0.1}}) {
        const Mesh3 source = faceOf(arrow, normal);
        const Mesh3 mesh = splitConcaveFaces(source);
        EXPECT_GT(mesh.faceCount(), 1);
        EXPECT_NEAR(faceArea(mesh), 400 + 300, 1e-9);
        for (int f = 0; f < mesh.faceCount(); ++f) {
            EXPECT_GT(dot(test::newell(mesh, f), normal), 0.0);
            const FaceView face = mesh.face(f);
            for (std::size_t i = 0; i < face.vertices.size(); ++i)
                EXPECT_EQ(face.texture[i], 6 - face.vertices[i]);
        }
    }
    EXPECT_EQ(splitConcaveFaces(faceOf(test::square(0, 0, 5), {1, 1, 1})).faceCount(), 1);
    EXPECT_EQ(splitConcaveFaces(faceOf({{0, 0}, {5, 0}, {9, 0}}, {0, 0, 1})).faceCount(), 1);
}

}  // namespace
}  // namespace orvin
