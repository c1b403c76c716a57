// ObjectP and the GeometryCmd block as text, and what an object computes from its mesh and pose.
#include <gtest/gtest.h>

#include <string>

#include "geometry/GeometryClasses.h"
#include "geometry/ModelHooks.h"
#include "geometry/ObjectP.h"
#include "geometry/SmoothNormals.h"
#include "geometry/Surface.h"
#include "scene/MemberClasses.h"
#include "scene/MemoryStream.h"
#include "scene/SceneX.h"
#include "tests/geometry/Meshes.h"

namespace orvin {
namespace {

using test::cube;
using test::expectNear;

std::string written(Persistent& object) {
    MemoryStream stream(nullptr);
    EXPECT_EQ(stream.writeObject(object), kSuccess);
    return stream.text();
}

Result readInto(Mesh3& mesh, std::string_view body) {
    GeometryCmd block(mesh);
    MemoryStream stream(nullptr, body);
    return loadBlock(stream, block);
}

Mesh3 texturedTriangle() {
    Mesh3 mesh;
    for (const Vec3 p : {Vec3{9, 9, 9}, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {8, 8, 8}})
        mesh.addVertex(p);
    for (const Vec3 t : {Vec3{0.25, 0.125, 0.5}, {7, 7, 7}})
        mesh.addTexVertex(t);
    mesh.addNormal({0, 0, 1});
    const std::array<int, 3> zeros{0, 0, 0};
    mesh.addFace(ElementKind::kPolygon, 2, std::array<int, 3>{3, 1, 2}, zeros, zeros);
    mesh.addFace(ElementKind::kPolygon, 0, std::array<int, 3>{1, 2, 3}, std::array<int, 2>{0, 0},
                 zeros);
    return mesh;
}

TEST(GeometryCmd, WritesWhatFacesUseInOrderOfFirstUse) {
    Mesh3 mesh = texturedTriangle();
    GeometryCmd block(mesh);
    EXPECT_EQ(written(block),
              "begin GeometryCmd\n"
              " v 0.000000 1.000000 0.000000\n"
              " v 0.000000 0.000000 0.000000\n"
              " v 1.000000 0.000000 0.000000\n"
              " vt 0.250000 0.125000 0.500000\n"
              " vn 0.000000 0.000000 1.000000\n"
              " # 3 vertices  1 texture vertices  1 normals\n"
              " f3 2 0/0/0 1/0/0 2/0/0\n"
              " f3 0 1//0 2//0 0//0\n"
              " # 2 elements\n"
              "end GeometryCmd\n");
}

TEST(GeometryCmd, ReadingTurnsTextureVerticesAQuarter) {
    Mesh3 mesh;
    ASSERT_EQ(readInto(mesh, "vt 0.25 0.125 0.5 end GeometryCmd"), kSuccess);
    EXPECT_EQ(mesh.texVertex(0), (Vec3{0.125, 0.75, 0.5}));
}

TEST(GeometryCmd, EveryElementSurvivesWritingAndReading) {
    Mesh3 mesh;
    for (int i = 0; i < 3000; ++i)
        mesh.addVertex({i * 0.5, i % 7 * 1.0, -i * 0.25});
    mesh.addNormal({0, 1, 0});
    for (const int count : {1, 2, 3, 4, 5, 3000})
        for (const auto kind :
             {ElementKind::kPolygon, ElementKind::kLine, ElementKind::kPointList}) {
            std::vector<int> corners;
            for (int i = 0; i < count; ++i)
                corners.push_back(2999 - i);
            mesh.addFace(kind, count, corners, {}, std::vector<int>(corners.size(), 0));
        }
    GeometryCmd block(mesh);
    const std::string text = written(block);
    for (std::size_t start = 0, end = 0; end != std::string::npos; start = end + 1) {
        end = text.find('\n', start);
        ASSERT_LE(std::min(end, text.size()) - start, kLineCapacity);
    }
    Mesh3 copy;
    ASSERT_EQ(readInto(copy, std::string_view(text).substr(text.find('\n'))), kSuccess);
    ASSERT_EQ(copy.faceCount(), mesh.faceCount());
    for (int i = 0; i < mesh.faceCount(); ++i) {
        const FaceView a = mesh.face(i);
        const FaceView b = copy.face(i);
        EXPECT_EQ(a.kind, b.kind);
        EXPECT_EQ(a.material, b.material);
        ASSERT_EQ(a.vertices.size(), b.vertices.size());
        EXPECT_TRUE(b.texture.empty());
        for (std::size_t c = 0; c < a.vertices.size(); ++c)
            EXPECT_EQ(mesh.vertex(a.vertices[c]), copy.vertex(b.vertices[c]));
    }
}

TEST(GeometryCmd, DamageStopsWithWhatWasRead) {
    constexpr std::string_view kHead = "v 0 0 0 v 1 0 0 v 0 1 0 vn 0 0 1 ";
    struct {
        const char* body;
        Result result;
        int faces;
    } const cases[] = {
        {"f3 0 0//0 1//0 2//0 end GeometryCmd", 0, 1},
        {"f3 0 0//0 1//0 2//0", 0, 1},  // the end of the input is an end
        {"f3 0 0//0 1//0 2//0 f3 0 0//0 1//0 3//0", -1, 1},
        {"f3 0 0//0 1//0 2//1", -1, 0},
        {"f3 0 0/0 1/0 2/0", -1, 0},  // texture vertices that aren't there
        {"f3 0 0//0 1//0 -1//0", -1, 0},
        {"f3 0 0 1 2", -1, 0},
        {"f3 0 0/ 1/ 2/ end GeometryCmd", 0, 1},
        {"f3 0 99999999999//0 1//0 2//0", -1, 0},
        {"f3 0 0//99999999999 1//0 2//0", -1, 0},
        {"fn 2000000000 0 0//0 1//0 2//0", -1, 0},
        {"fn 0 0", -1, 0},
        {"fn -3 0 0//0 1//0 2//0", -1, 0},
        {"v 0 0", -1, 0},
        {"end ObjectP", -1, 0},
    };
    for (const auto& c : cases) {
        Mesh3 mesh;
        EXPECT_EQ(readInto(mesh, std::string(kHead) + c.body), c.result) << c.body;
        EXPECT_EQ(mesh.faceCount(), c.faces) << c.body;
    }
    Mesh3 mesh;
    EXPECT_EQ(readInto(mesh, "v nan inf -1e999 end GeometryCmd"), kSuccess);
    EXPECT_EQ(mesh.vertex(0), Vec3{});
}

class ObjectPTest : public testing::Test {
  protected:
    void SetUp() override {
        registerSceneClasses();
        registerGeometryClasses();
    }
    static Result load(SceneX& scene, std::string_view text) {
        MemoryStream stream(nullptr, text);
        return loadBlock(stream, scene);
    }
    SceneX scene_;
};

TEST_F(ObjectPTest, TextForm) {
    auto& object = scene_.make<ObjectP>("knot");
    object.setFileName("C:\\models\\knot.obj");
    object.setFileType(ModelFileType::k3ds);
    object.setOriginalName("the \"knot\"");
    object.setMaterial(5, "gold");
    object.setHardShadingAngle(-3, true);
    Mapping mapping;
    mapping.type = Mapping::Type::kCubic;
    mapping.mirrorY = true;
    object.setMapping(mapping);
    scene_.addSelect(&object);
    const std::string text = written(object);
    const auto from = text.find(" hardShadingAngle");
    EXPECT_EQ(text.substr(from),
              " hardShadingAngle -1.0\n"
              " mapAutoFit 1\n"
              " mapType \"MAP_TYPE_CUBIC\"\n"
              " mapScale 1.000000 1.000000 1.000000\n"
              " mapPosition 0.000000 0.000000 0.000000\n"
              " mapRotation 0.000000 0.000000 0.000000\n"
              " mapRepeatX 0\n"
              " mapRepeatY 0\n"
              " mapMirrorX 0\n"
              " mapMirrorY 1\n"
              " mapProportional 1\n"
              " filename \"C:\\models\\knot.obj\"\n"
              " fileType \"3DS\"\n"
              " origName \"the \\\"knot\\\"\"\n"
              " selected 1\n"
              " material 0 \"defaultMtl\"\n"
              " material 1 \"defaultMtl\"\n"
              " material 2 \"defaultMtl\"\n"
              " material 3 \"defaultMtl\"\n"
              " material 4 \"defaultMtl\"\n"
              " material 5 \"gold\"\n"
              " begin GeometryCmd\n"
              "  # 0 vertices  0 texture vertices  0 normals\n"
              "  # 0 elements\n"
              " end GeometryCmd\n"
              "end ObjectP\n");

    SceneX copyScene;
    ASSERT_EQ(load(copyScene, text), kSuccess);
    auto* const copy = copyScene.memberAs<ObjectP>(MemberKind::kObject, "knot");
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->fileName(), "C:\\models\\knot.obj");
    EXPECT_EQ(copy->fileType(), ModelFileType::k3ds);
    EXPECT_EQ(copy->originalName(), "the \"knot\"");
    EXPECT_EQ(copy->materialName(5), "gold");
    EXPECT_EQ(copyScene.selection().size(), 1U);
    EXPECT_EQ(copy->mapping().type, Mapping::Type::kUv) << "mapping is written, never read";
    EXPECT_FALSE(copy->mapping().mirrorY);
    EXPECT_LT(copy->hardShadingAngle(), 0.0);
}

TEST_F(ObjectPTest, OddValuesAreSkipped) {
    ASSERT_EQ(load(scene_,
                   "begin ObjectP name a fileType XYZ material 6 gold material -1 gold "
                   "mapTypeCmd \"MAP_TYPE_CUBIC\" mapScaleCmd 2 2 2 mapAutoFitCmd off "
                   "mapMirrorX 1 mapScale 3 3 3 origName b end ObjectP"),
              kSuccess);
    auto* const object = scene_.memberAs<ObjectP>(MemberKind::kObject, "a");
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(object->fileType(), ModelFileType::kObj);
    EXPECT_EQ(object->originalName(), "b");
    EXPECT_EQ(object->mapping().scale, (Vec3{1, 1, 1}));
    EXPECT_TRUE(object->mapping().autoFit);
    EXPECT_EQ(modelFileTypeWord(static_cast<ModelFileType>(9)), "Unknown");
}

TEST_F(ObjectPTest, BlockWithoutNormalsIsShadedByItsAngle) {
    const char* const roof =
        "begin ObjectP hardShadingAngle %s begin GeometryCmd v 0 0 0 v 0 1 0 v 1 0 -0.2 v -1 0 "
        "-0.2 "
        "f3 0 0/ 2/ 1/ f3 0 0/ 1/ 3/ end GeometryCmd end ObjectP";
    for (const bool smooth : {true, false}) {
        SceneX scene;
        std::string text = roof;
        text.replace(text.find("%s"), 2, smooth ? "30" : "10");
        ASSERT_EQ(load(scene, text), kSuccess);
        auto* const object = dynamic_cast<ObjectP*>(scene.members(MemberKind::kObject)[0]);
        std::uint32_t revision = 0;
        const Mesh3* const mesh = object->mesh(1, revision);
        EXPECT_EQ(mesh->normalCount(), smooth ? 4 : 6);
        EXPECT_NE(written(*object).find("vn"), std::string::npos);
    }
}

TEST_F(ObjectPTest, NormalsInTheBlockStay) {
    ASSERT_EQ(load(scene_,
                   "begin ObjectP name n begin GeometryCmd v 0 0 0 v 1 0 0 v 0 1 0 vn 1 0 0 "
                   "f3 0 0//0 1//0 2//0 end GeometryCmd end ObjectP"),
              kSuccess);
    auto* const object = scene_.memberAs<ObjectP>(MemberKind::kObject, "n");
    std::uint32_t revision = 0;
    EXPECT_EQ(object->mesh(1, revision)->normal(0), (Vec3{1, 0, 0}));
    object->setHardShadingAngle(20, true);
    std::uint32_t later = 0;
    EXPECT_EQ(object->mesh(1, later)->normal(0), (Vec3{0, 0, 1}));
    EXPECT_NE(revision, later);
}

TEST_F(ObjectPTest, TexturedObjectTurnsWithEachReload) {
    auto& object = scene_.make<ObjectP>("t");
    object.setMesh(texturedTriangle());
    SceneX second;
    ASSERT_EQ(load(second, written(object)), kSuccess);
    std::uint32_t revision = 0;
    auto* const copy = second.memberAs<ObjectP>(MemberKind::kObject, "t");
    EXPECT_EQ(copy->mesh(1, revision)->texVertex(0), (Vec3{0.125, 0.75, 0.5}));
}

TEST_F(ObjectPTest, WorldListsFollowThePose) {
    auto& group = scene_.make<Group>("set");
    auto& object = scene_.make<ObjectP>("o");
    object.setMesh(cube());
    object.transform().setScale({2, 1, 1});
    expectNear(object.worldPositions()[1], {2, -1, -1});
    group.transform().setTranslate({0, 0, 5});
    object.attachTo(group.ref());
    expectNear(object.worldPositions()[1], {2, -1, 4});
    expectNear(object.worldBounds().max, {2, 1, 6});

    // A slanted plane under a stretch: its normal leans the other way.
    Mesh3 slope;
    for (const Vec3 p : {Vec3{0, 0, 0}, {1, 0, 1}, {0, 1, 0}})
        slope.addVertex(p);
    slope.addFace(ElementKind::kPolygon, 0, std::array<int, 3>{0, 1, 2});
    object.setMesh(slope);
    const Vec3 normal = normalize(object.worldNormals()[0]);
    EXPECT_NEAR(dot(normal, object.worldPositions()[1] - object.worldPositions()[0]), 0.0, 1e-12);
    expectNear(normal, normalize({-1, 0, 2}));
    object.transform().setScale({0, 1, 1});
    for (const Vec3 n : object.worldNormals())
        EXPECT_TRUE(std::isfinite(length(n)));
}

TEST_F(ObjectPTest, CopiesAndDefaults) {
    setDefaultHardShadingAngle(35);
    auto& later = scene_.make<ObjectP>("later");
    setDefaultHardShadingAngle(20);
    EXPECT_EQ(later.hardShadingAngle(), 35);
    EXPECT_EQ(scene_.make<ObjectP>("now").hardShadingAngle(), 20);
    later.setMesh(cube());
    later.setMaterial(2, "red");
    SceneX other;
    auto* const copy = dynamic_cast<ObjectP*>(other.cloneMember(later, "copy"));
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->hardShadingAngle(), 35);
    EXPECT_EQ(copy->materialName(2), "red");
    std::uint32_t revision = 0;
    EXPECT_EQ(copy->mesh(1, revision)->normalCount(), 24);
    EXPECT_EQ(copy->load("nowhere.obj"), kFailure) << "no reader is installed here";
}

class Paint final : public Surface {
  public:
    Paint(SceneX& scene, std::string_view name) : Surface(scene, MemberKind::kMaterial, name) {}
    const CommandRegistry& commandRegistry() const override {
        static const CommandRegistry none(1);
        return none;
    }
    std::string_view className() const override { return "Paint"; }
    bool isTransparent() const override { return false; }
};

TEST_F(ObjectPTest, FacesFindTheirMaterial) {
    auto& object = scene_.make<ObjectP>("o");
    Mesh3 mesh = cube();
    mesh.setMaterial(1, 3);
    mesh.setMaterial(2, -1);
    mesh.setMaterial(3, 1000000);
    object.setMesh(std::move(mesh));
    EXPECT_EQ(object.faceMaterial(0), nullptr) << "not even a default";
    auto& fallback = scene_.make<Paint>("defaultMtl");
    auto& red = scene_.make<Paint>("red");
    object.setMaterial(3, "red");
    object.setMaterial(0, "set");  // a name that is no material's
    scene_.make<Group>("set");
    EXPECT_EQ(object.faceMaterial(1), &red);
    for (const int face : {0, 2, 3, 4, -1, 99})
        EXPECT_EQ(object.faceMaterial(face), &fallback) << face;
    red.setName("crimson");
    EXPECT_EQ(object.materialName(3), "crimson");
}

TEST(ObjectP, WritesNoFilesWhileAProjectIsRead) {
    static int saves = 0;
    const ModelHooks before = modelHooks();
    setModelHooks({nullptr, [](const std::string&, const Mesh3&, const std::string&) -> Result {
                       ++saves;
                       return kSuccess;
                   }});
    SceneX scene;
    ObjectP& object = scene.make<ObjectP>("model");
    for (const bool allowed : {true, false}) {
        MemoryStream stream(&object, "save \"elsewhere.obj\"\n");
        stream.mayWriteFiles = allowed;
        EXPECT_EQ(stream.runTopCommand(), allowed ? kSuccess : kFailure);
        EXPECT_EQ(saves, 1);
    }
    setModelHooks(before);
}

}  // namespace
}  // namespace orvin
