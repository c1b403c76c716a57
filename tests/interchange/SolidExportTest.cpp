// Extruded objects go through the formats and come back whole: the same volume, closed, in
// sections by their materials.
#include <gtest/gtest.h>

#include <utility>

#include "geometry/SmoothNormals.h"
#include "interchange/ModelFormats.h"
#include "scene/FrameClock.h"
#include "tests/geometry/Extrusions.h"
#include "tests/interchange/ModelFixture.h"

namespace orvin {
namespace {

struct FormatCase {
    const char* extension;
    const char* name;  // of groups, before the number of the section
};

class SolidExport : public ModelFiles, public testing::WithParamInterface<FormatCase> {};

TEST_P(SolidExport, KeepsVolumeAndSections) {
    test::Extrusion solid;
    solid.outline.addCircle({0, 0}, 100);
    solid.outline.addCircle({20, 0}, -50);
    solid.outline.addLines({{-200, -50}, {-120, -50}, {-120, 0}, {-160, 0}, {-160, 50}, {-200, 50}},
                           true);  // an L: its face is concave
    solid.bevelEdge();
    solid.style.setFrontMtl(2);
    solid.style.setBackMtl(4);
    solid.object.transform().setScale({1, 1, -2});
    const Mesh3* const mesh = solid.build();
    ASSERT_NE(mesh, nullptr);
    const test::Solid before = test::examine(*mesh);
    ASSERT_EQ(before.openEdges, 0);

    const fs::path path = folder_ / (std::string("solid") + GetParam().extension);
    MeshObject* const objects[] = {&solid.object};
    ASSERT_EQ(exportModel(path, objects), kSuccess);
    SceneX second;
    std::vector<ObjectP*> made;
    ASSERT_EQ(importModel(second, path, &made), kSuccess);
    const std::string name = GetParam().name;
    if (name.empty()) {  // OBJ divides names at blanks: the first half names a group of nothing
        EXPECT_EQ(made.at(0)->name(), "object-Section");
        made.erase(made.begin());
    }
    ASSERT_EQ(made.size(), 3U);
    EXPECT_EQ(made[0]->name(), name + "1");
    EXPECT_EQ(made[1]->name(), name + "3");
    EXPECT_EQ(made[2]->name(), name + "5");
    Mesh3 whole;
    for (ObjectP* const object : made) {
        std::uint32_t revision = 0;
        const Mesh3& part = *object->mesh(1, revision);
        const int first = whole.vertexCount();
        for (const Vec3 p : part.vertices())
            whole.addVertex(p);
        for (int i = 0; i < part.faceCount(); ++i) {
            const FaceView face = part.face(i);
            std::vector<int> corners(face.vertices.begin(), face.vertices.end());
            for (int& v : corners)
                v += first;
            whole.addFace(face.kind, 0, corners);
            for (const int n : face.normals)
                EXPECT_GT(dot(part.normal(n), part.facePlane(i).normal), 0.95);
        }
    }
    smoothNormals(whole, 20.0);
    const test::Solid after = test::examine(whole);
    EXPECT_EQ(after.openEdges, 0);
    EXPECT_NEAR(after.volume, 2.0 * before.volume, 1e-6 * before.volume)
        << "mirrored, not inside out";
    // The face that looked to the front looks the other way.
    std::uint32_t revision = 0;
    const Mesh3& front = *made[1]->mesh(1, revision);
    double area = 0.0;
    for (int i = 0; i < front.faceCount(); ++i) {
        EXPECT_LT(front.facePlane(i).normal.z, -0.999);
        area += length(test::newell(front, i));
    }
    EXPECT_NEAR(area, before.frontArea, 1e-6 * before.frontArea);
}

INSTANTIATE_TEST_SUITE_P(Formats, SolidExport,
                         testing::Values(FormatCase{".obj", ""}, FormatCase{".dxf", "object-Sec_"},
                                         FormatCase{".lwo", "object-Section "},
                                         FormatCase{".fac", "object-Section "}),
                         [](const auto& tested) {
                             return std::string(tested.param.extension + 1);
                         });

}  // namespace
}  // namespace orvin
