// The mesh record, planes, shading normals and tangents, against values worked out by hand and
// against a plain quadratic grouping.
#include <gtest/gtest.h>

#include <limits>
#include <set>
#include <vector>

#include "geometry/SmoothNormals.h"
#include "geometry/Tangents.h"
#include "tests/geometry/Meshes.h"

namespace orvin {
namespace {

using test::cube;
using test::expectNear;
using test::fan;

TEST(MeshRecord, KeepsOnlyFacesItCanIndex) {
    Mesh3 mesh = cube();
    const std::array<int, 3> good{0, 1, 2};
    const std::array<int, 3> high{0, 1, 8};
    const std::array<int, 3> negative{0, -1, 2};
    const std::array<int, 2> shorter{0, 0};
    EXPECT_EQ(mesh.addFace(ElementKind::kPolygon, 0, high), -1);
    EXPECT_EQ(mesh.addFace(ElementKind::kPolygon, 0, negative), -1);
    EXPECT_EQ(mesh.addFace(ElementKind::kPolygon, 0, {}), -1);
    EXPECT_EQ(mesh.addFace(ElementKind::kPolygon, 0, good, good), -1) << "no texture vertices yet";
    EXPECT_EQ(mesh.faceCount(), 6);
    EXPECT_EQ(mesh.cornerCount(), 24U);
    mesh.addTexVertex({});
    EXPECT_EQ(mesh.addFace(ElementKind::kLine, 7, good, shorter), 6);
    EXPECT_TRUE(mesh.face(6).texture.empty()) << "two texture references for three corners";
    EXPECT_EQ(mesh.face(6).material, 7);
    EXPECT_EQ(mesh.vertex(8), Vec3{});
    EXPECT_EQ(mesh.vertex(-1), Vec3{});
    mesh.clear();
    EXPECT_EQ(mesh.faceCount() + mesh.vertexCount() + mesh.texVertexCount(), 0);
    EXPECT_EQ(mesh.cornerCount(), 0U);
}

TEST(Plane, NewellOfConcaveAndFarAndBrokenFaces) {
    Mesh3 mesh;
    // An L in the plane z = 2, its first corner reflex as seen by its neighbours, far from the
    // origin.
    const double far = 1e6;
    for (const Vec2 p : {Vec2{1, 1}, {1, 3}, {0, 3}, {0, 0}, {3, 0}, {3, 1}})
        mesh.addVertex({p.x + far, p.y + far, 2});
    const std::array<int, 6> all{0, 1, 2, 3, 4, 5};
    mesh.addFace(ElementKind::kPolygon, 0, all);
    mesh.addFace(ElementKind::kPolygon, 0, std::array<int, 2>{0, 1});
    mesh.addFace(ElementKind::kPolygon, 0, std::array<int, 3>{0, 0, 1});
    const int huge = mesh.addVertex({1e300, 0, 0});
    mesh.addVertex({0, 1e300, 1e300});
    mesh.addFace(ElementKind::kPolygon, 0, std::array<int, 3>{0, huge, huge + 1});
    const Plane plane = mesh.facePlane(0);
    expectNear(plane.normal, {0, 0, 1});
    EXPECT_NEAR(plane.offset, 2.0, 1e-9);
    for (int i = 1; i < 4; ++i)
        EXPECT_EQ(mesh.facePlane(i).normal, Vec3{}) << i;
    EXPECT_FALSE(mesh.isDegenerate(0, 80.9));
    EXPECT_TRUE(mesh.isDegenerate(0, 81.0)) << "the corner of the two sides of length 3";
    EXPECT_TRUE(mesh.isDegenerate(1, 0.0));
    EXPECT_TRUE(mesh.isDegenerate(2, 0.0));
}

TEST(SmoothNormals, CubeIsHardBelowARightAngleAndRoundFromThere) {
    struct {
        double angle;
        int normals;
    } const cases[] = {{-1.0, 24}, {0.0, 24}, {20.0, 24}, {89.9, 24}, {90.0, 8}, {180.0, 8}};
    for (const auto& c : cases) {
        Mesh3 mesh = cube();
        smoothNormals(mesh, c.angle);
        ASSERT_EQ(mesh.normalCount(), c.normals) << c.angle;
        for (int i = 0; i < mesh.faceCount(); ++i) {
            const FaceView face = mesh.face(i);
            for (std::size_t j = 0; j < face.normals.size(); ++j) {
                const Vec3 expected = c.normals == 24 ? mesh.facePlane(i).normal
                                                      : normalize(mesh.vertex(face.vertices[j]));
                expectNear(mesh.normal(face.normals[j]), expected);
            }
        }
    }
}

TEST(SmoothNormals, AFanBreaksWhereItHasTurnedByTheAngle) {
    // Three strips round the y axis, turned by 0, 15 and 30 degrees, that share the edge x = 0.
    Mesh3 mesh;
    mesh.addVertex({0, 0, 0});
    mesh.addVertex({0, 1, 0});
    for (const double degrees : {0.0, 15.0, 30.0}) {
        const int tip =
            mesh.addVertex({std::cos(radians(degrees)), 0.5, -std::sin(radians(degrees))});
        mesh.addFace(ElementKind::kPolygon, 0, std::array<int, 3>{0, tip, 1});
    }
    smoothNormals(mesh, 20.0);
    const auto at = [](double degrees) {
        return Vec3{std::sin(radians(degrees)), 0, std::cos(radians(degrees))};
    };
    expectNear(mesh.normal(mesh.face(0).normals[0]), at(7.5));
    expectNear(mesh.normal(mesh.face(1).normals[0]), at(7.5));
    expectNear(mesh.normal(mesh.face(2).normals[0]), at(30));
}

// Every later corner joins the first group that it is near enough to: quadratic, and plain to see.
std::vector<int> groupsAt(const Mesh3& mesh, double degrees) {
    std::vector<Vec3> openings;
    std::vector<int> result;
    for (int i = 0; i < mesh.faceCount(); ++i) {
        const Vec3 normal = mesh.facePlane(i).normal;
        std::size_t g = 0;
        while (g < openings.size() &&
               dot(openings[g], normal) < std::cos(degrees * 0.01745329278) - 1e-15)
            ++g;
        if (g == openings.size()) openings.push_back(normal);
        result.push_back(static_cast<int>(g));
    }
    return result;
}

TEST(SmoothNormals, ManyGroupsAtAVertexAreFoundAsOneByOne) {
    for (const double degrees : {0.0, 0.01, 0.5, 3.0, 12.0}) {
        Mesh3 mesh = fan(3000, 0.8);
        const std::vector<int> expected = groupsAt(mesh, degrees);
        smoothNormals(mesh, degrees);
        std::vector<int> normalOfGroup(expected.size(), -1);
        std::set<int> used;
        for (int i = 0; i < mesh.faceCount(); ++i) {
            int& normal =
                normalOfGroup[static_cast<std::size_t>(expected[static_cast<std::size_t>(i)])];
            if (normal < 0) {
                normal = mesh.face(i).normals[0];
                EXPECT_TRUE(used.insert(normal).second);
            }
            ASSERT_EQ(mesh.face(i).normals[0], normal) << degrees << " face " << i;
        }
    }
}

TEST(SmoothNormals, OneVertexOfManyFacesTakesNoQuadraticTime) {
    // 300,000 faces at one vertex, each a group by itself: one by one, this would take minutes.
    Mesh3 mesh = fan(300000, 1.0);
    smoothNormals(mesh, 1e-4);
    EXPECT_GT(mesh.normalCount(), 600000);
    for (const Vec3 n : mesh.normals())
        ASSERT_NEAR(length(n), 1.0, 1e-9);
}

TEST(SmoothNormals, OnlyFacesWithoutNormalsGetThem) {
    Mesh3 mesh = cube();
    const int own = mesh.addNormal({0, 1, 0});
    mesh.addFace(ElementKind::kPolygon, 0, std::array<int, 3>{0, 1, 2}, {},
                 std::array<int, 3>{own, own, own});
    mesh.addFace(ElementKind::kLine, 0, std::array<int, 2>{0, 1});
    EXPECT_TRUE(completeNormals(mesh, 20.0));
    expectNear(mesh.normal(mesh.face(6).normals[2]), {0, 1, 0});
    expectNear(mesh.normal(mesh.face(1).normals[2]), {0, 0, 1});
    expectNear(mesh.normal(mesh.face(7).normals[1]), {0, 0, 0});
    EXPECT_FALSE(completeNormals(mesh, 20.0));
}

TEST(Tangents, FollowTheTextureOfAFace) {
    struct {
        const char* caption;
        Vec3 t[4];  // at (0,0), (2,0), (2,2), (0,2)
        Vec3 tangent, binormal;
    } const cases[] = {
        {"upright", {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, {1, 0, 0}, {0, 1, 0}},
        {"quarter turn", {{0, 1, 0}, {0, 0, 0}, {1, 0, 0}, {1, 1, 0}}, {0, 1, 0}, {-1, 0, 0}},
        {"mirrored", {{1, 0, 0}, {0, 0, 0}, {0, 1, 0}, {1, 1, 0}}, {-1, 0, 0}, {0, 1, 0}},
        {"no extent in v", {{0, 3, 0}, {1, 3, 0}, {1, 3, 0}, {0, 3, 0}}, {1, 0, 0}, {0, 0, 0}},
        {"one point", {{5, 5, 0}, {5, 5, 0}, {5, 5, 0}, {5, 5, 0}}, {0, 0, 0}, {0, 0, 0}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.caption);
        Mesh3 mesh;
        for (const Vec3 p : {Vec3{0, 0, 1}, {2, 0, 1}, {2, 2, 1}, {0, 2, 1}})
            mesh.addVertex(p);
        for (const Vec3 t : c.t)
            mesh.addTexVertex(t);
        mesh.addTexVertex({0.5, 0.5, 0});  // of no face
        const std::array<int, 4> corners{0, 1, 2, 3};
        mesh.addFace(ElementKind::kPolygon, 0, corners, corners);
        const SurfaceTangents made = surfaceTangents(mesh, 1e-5);
        ASSERT_EQ(made.tangents.size(), 5U);
        for (std::size_t i = 0; i < 4; ++i) {
            expectNear(made.tangents[i], c.tangent);
            expectNear(made.binormals[i], c.binormal);
        }
        EXPECT_EQ(made.tangents[4], Vec3{});
    }
}

TEST(Tangents, DegenerateAndHugeFacesAddNothing) {
    Mesh3 mesh;
    for (const Vec3 p : {Vec3{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {1e200, 0, 0}, {0, 1e200, 0}})
        mesh.addVertex(p);
    for (const Vec3 t : {Vec3{0, 0, 0}, {1, 0, 0}, {0, 1, 0}})
        mesh.addTexVertex(t);
    const std::array<int, 3> texture{0, 1, 2};
    mesh.addFace(ElementKind::kPolygon, 0, std::array<int, 3>{0, 1, 2}, texture);
    mesh.addFace(ElementKind::kPolygon, 0, std::array<int, 3>{0, 3, 4}, texture);
    for (const Vec3 t : surfaceTangents(mesh, 1e-5).tangents)
        EXPECT_EQ(t, Vec3{});
}

}  // namespace
}  // namespace orvin
