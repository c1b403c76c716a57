// Reading OBJ text: worked examples, and what becomes of damaged files.
#include <gtest/gtest.h>

#include <string>

#include "interchange/ObjReader.h"
#include "scene/SceneX.h"
#include "toolkit/Progress.h"

namespace orvin {
namespace {

ImportedModel parsed(std::string_view text) {
    ImportedModel model;
    ModelInput input(text);
    EXPECT_EQ(parseObj(input, model), kSuccess);
    return model;
}

std::vector<int> list(std::span<const int> indices) {
    return {indices.begin(), indices.end()};
}

constexpr std::string_view kThree = "v 0 0 0\nv 1 0 0\nv 0 1 0\n";

TEST(ObjReader, CornersInAllTheirForms) {
    struct {
        const char* line;
        std::vector<int> vertices, texture, normals;
    } const cases[] = {
        {"f 1 2 3", {0, 1, 2}, {}, {}},
        {"fo 1 2 3", {0, 1, 2}, {}, {}},
        {"f -1 -2 -3", {2, 1, 0}, {}, {}},
        {"f 1/1 2/1 3/2", {0, 1, 2}, {0, 0, 1}, {}},
        {"f 1/-2/-1 2/1/1 3/2/1", {0, 1, 2}, {0, 0, 1}, {0, 0, 0}},
        {"f 1//1 2//1 3//1", {0, 1, 2}, {}, {0, 0, 0}},
        {"f 1/ 2/ 3/", {0, 1, 2}, {}, {}},
        {"  f\t1  2\t3  \r", {0, 1, 2}, {}, {}},
        {"f 1 2\\\r\n", {0, 1}, {}, {}},  // no token by itself
        {"f 1 \\\n2 \\\r\n \\\n 3", {0, 1, 2}, {}, {}},
        {"f 1 2 3 \\", {0, 1, 2}, {}, {}},
        // Out of range: the corner goes, or the part with its list.
        {"f 1 2 3 4", {0, 1, 2}, {}, {}},
        {"f 0 1 2 3", {0, 1, 2}, {}, {}},
        {"f -4 1 2 3", {0, 1, 2}, {}, {}},
        {"f 1/1 2/3 3/2", {0, 1, 2}, {}, {}},
        {"f 1/1/1 2/1/2 3/2/1", {0, 1, 2}, {0, 0, 1}, {}},
        {"f 1 99999999999999999999 2 -99999999999999999999 3", {0, 1, 2}, {}, {}},
        {"f 1 x 2 \\ 3 //1", {0, 1, 2}, {}, {}},
    };
    for (const auto& c : cases) {
        const ImportedModel model =
            parsed(std::string(kThree) + "vt 0 0\nvt 1 1\nvn 0 0 1\n" + c.line);
        ASSERT_EQ(model.mesh.faceCount(), 1) << c.line;
        const FaceView face = model.mesh.face(0);
        EXPECT_EQ(list(face.vertices), c.vertices) << c.line;
        EXPECT_EQ(list(face.texture), c.texture) << c.line;
        EXPECT_EQ(list(face.normals), c.normals) << c.line;
    }
}

TEST(ObjReader, NamesWhatIsOutOfRange) {
    testing::internal::CaptureStdout();
    parsed(std::string(kThree) + "f 7 1 2/9 3//-2 0");
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "OBJ Import: vertex reference 7 out of range !\n"
              "OBJ Import: texture vertex reference 9 out of range !\n"
              "OBJ Import: normal reference -2 out of range !\n"
              "OBJ Import: vertex reference 0 out of range !\n");
    testing::internal::CaptureStdout();
    std::string many(kThree);
    for (int i = 0; i < 5000; ++i)
        many += "p 4\n";
    EXPECT_EQ(parsed(many).mesh.faceCount(), 0);
    EXPECT_LT(testing::internal::GetCapturedStdout().size(), 6000U);
}

TEST(ObjReader, IndicesCountFromWhatWasReadSoFar) {
    const ImportedModel model = parsed("v 0 0 0\nv 1 0 0\np -1\nv 2 0 0\np -1\nl 1 -1\n");
    ASSERT_EQ(model.mesh.faceCount(), 3);
    EXPECT_EQ(model.mesh.face(0).vertices[0], 1);
    EXPECT_EQ(model.mesh.face(1).vertices[0], 2);
    EXPECT_EQ(model.mesh.face(0).kind, ElementKind::kPointList);
    EXPECT_EQ(model.mesh.face(2).kind, ElementKind::kLine);
    EXPECT_EQ(list(model.mesh.face(2).vertices), (std::vector<int>{0, 2}));
}

TEST(ObjReader, NumbersThatAreNoneAreZero) {
    const ImportedModel model = parsed(
        "v 1.5 -2.5e1 +3 0.1 0.2\nv nan inf -1e999\nv\nv 1\nv a b c\nv 1,5 2 3\n"
        "vt 0.25\nvt 1 2 3\nvx 1 2 3\nvertex 1 2 3\n#v 1 1 1\n");
    ASSERT_EQ(model.mesh.vertexCount(), 6);
    EXPECT_EQ(model.mesh.vertex(0), (Vec3{1.5, -25, 3}));
    for (const int i : {1, 2, 4})
        EXPECT_EQ(model.mesh.vertex(i), Vec3{}) << i;
    EXPECT_EQ(model.mesh.vertex(3), (Vec3{1, 0, 0}));
    EXPECT_EQ(model.mesh.vertex(5), (Vec3{1, 2, 3}));
    EXPECT_EQ(model.mesh.texVertex(0), (Vec3{0.25, 0, 0}));
    EXPECT_EQ(model.mesh.texVertex(1), (Vec3{1, 2, 3}));
}

TEST(ObjReader, LineEndsOfAllSystems) {
    for (const std::string end : {"\n", "\r\n", "\r"}) {
        const ImportedModel model = parsed("# first" + end + "v 1 2 3" + end + "v 4 5 6" + end +
                                           "g a" + end + "l 1 \\" + end + "2" + end + "p 2");
        ASSERT_EQ(model.mesh.vertexCount(), 2);
        EXPECT_EQ(model.mesh.vertex(1), (Vec3{4, 5, 6}));
        ASSERT_EQ(model.mesh.faceCount(), 2);
        EXPECT_EQ(model.mesh.face(0).vertices.size(), 2U);
        EXPECT_EQ(model.groups, std::vector<std::string>{"a"});
    }
}

TEST(ObjReader, GroupsTakeWhatFollows) {
    const ImportedModel model = parsed(std::string(kThree) +
                                       "f 1 2 3\ng a b\nf 1 2 3\ng c\nf 1 2 3\ng a\nf 1 2 3\ng\n"
                                       "f 1 2 3\ns off\n");
    EXPECT_EQ(model.groups, (std::vector<std::string>{"OBJ default", "a", "b", "c"}));
    for (int i = 0; const std::uint32_t group : {0U, 2U, 3U, 1U, 1U})
        EXPECT_EQ(model.groupOf(i++), group);
    const ImportedModel bare = parsed(kThree);
    EXPECT_EQ(bare.groups, std::vector<std::string>{"OBJ default"});
    EXPECT_EQ(bare.mesh.faceCount(), 0);
    std::string many(kThree);
    for (int i = 0; i < 30000; ++i)
        many += "g n" + std::to_string(i) + "\np 1\n";
    const ImportedModel limited = parsed(many);
    EXPECT_EQ(limited.groups.size(), kObjMaxGroups);
    EXPECT_EQ(limited.mesh.faceCount(), 30000);
    EXPECT_EQ(limited.groupOf(29999), kObjMaxGroups - 1);
}

TEST(ObjReader, EachGroupGetsThePointsItUses) {
    ImportedModel model = parsed(
        "v 9 9 9\nv 0 0 0\nv 1 0 0\nv 0 1 0\nv 5 0 0\nvt .5 .5\nvn 0 0 1\n"
        "g left\nf 2/1/1 3/1/1 4/1/1\ng right\nf 5//1 3//1 4//1\nl 4 5\ng empty\n");
    const std::vector<Mesh3> meshes = splitByGroup(std::move(model));
    ASSERT_EQ(meshes.size(), 3U);
    EXPECT_EQ(meshes[0].vertexCount(), 3);
    EXPECT_EQ(meshes[0].vertex(0), (Vec3{0, 0, 0}));
    EXPECT_EQ(meshes[0].texVertexCount(), 1);
    EXPECT_EQ(meshes[1].vertexCount(), 3);
    EXPECT_EQ(meshes[1].vertex(0), (Vec3{5, 0, 0}));
    EXPECT_EQ(meshes[1].texVertexCount(), 0);
    EXPECT_EQ(list(meshes[1].face(1).vertices), (std::vector<int>{2, 0}));
    EXPECT_EQ(meshes[2].vertexCount() + meshes[2].faceCount(), 0);
}

TEST(ObjReader, HugeLinesAndElements) {
    std::string text(kThree);
    text += "# " + std::string(1 << 20, '#') + "\ng " + std::string(1 << 16, 'n') + "\nf";
    for (int i = 0; i < 100000; ++i)
        text += i % 10 == 9 ? " \\\n" : " 1";
    const ImportedModel model = parsed(text);
    ASSERT_EQ(model.mesh.faceCount(), 1);
    EXPECT_EQ(model.mesh.face(0).vertices.size(), 90000U);
    parsed(std::string(1 << 20, '\\'));
    parsed("f " + std::string(1 << 20, '/'));
    parsed(std::string(1 << 20, '\0'));
    parsed("");
}

TEST(ObjReader, AStopAddsNothing) {
    std::string text(kThree);
    for (int i = 0; i < 10000; ++i)
        text += "f 1 2 3\n";
    int polls = 0;
    setProgress([&polls](int, int) { return ++polls == 3 ? 1 : 0; });
    ImportedModel model;
    ModelInput input(text);
    EXPECT_EQ(parseObj(input, model), kFailure);
    EXPECT_EQ(polls, 3);
    setProgress({});
}

}  // namespace
}  // namespace orvin
