// Models in and out of scenes: dispatch by extension, exact OBJ text, sections, and failures that
// leave files as they were.
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <string>

#include "interchange/ModelFormats.h"
#include "interchange/ObjWriter.h"
#include "scene/FrameClock.h"
#include "tests/interchange/ModelFixture.h"

namespace orvin {
namespace {

TEST_F(ModelFiles, ExtensionTellsTheFormat) {
    EXPECT_EQ(modelFormatOf("a/b/Model.OBJ"), ModelFileType::kObj);
    EXPECT_EQ(modelFormatOf("x.C4d"), ModelFileType::kC4d);
    for (const char* name : {"x.objx", "obj", "x.ob", "", "x.obj/y"})
        EXPECT_FALSE(modelFormatOf(name)) << name;

    fs::path path;
    auto format = ModelFileType::kObj;
    questions_.answer = "models/knot.blend";
    EXPECT_EQ(chooseImportFile(path, format), kFailure);
    EXPECT_EQ(format, ModelFileType::kLwo);
    EXPECT_EQ(questions_.lastTitle, "Select File to Import");
    EXPECT_EQ(questions_.messages,
              "Unable to open file with extension: .blend\r\rBe sure to select the correct file "
              "type\rin the import dialog.\r");
    testing::internal::CaptureStderr();
    HeadlessQuestions().showMessage(questions_.messages, false);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Unable to open file with extension: .blend\n\nBe sure to select the correct file "
              "type\nin the import dialog.\n");
    questions_.answer = "models/knot.OBJ";
    EXPECT_EQ(chooseImportFile(path, format), kSuccess);
    EXPECT_EQ(format, ModelFileType::kObj);
}

TEST_F(ModelFiles, Cinema4dIsKnownAndRefused) {
    struct {
        std::string_view head;
        bool known;
    } const cases[] = {{"FORM\1\2\3\4MC50....", true}, {"DOK5", true}, {"o ball", false}};
    for (const auto& c : cases) {
        questions_.messages.clear();
        const fs::path path = file("a.c4d", c.head);
        EXPECT_EQ(importModel(scene_, path), kFailure);
        EXPECT_EQ(questions_.messages.find("is a Cinema 4D file") != std::string::npos, c.known);
        EXPECT_NE(questions_.messages.find("OBJ, DXF, LightWave and FACT files work"),
                  std::string::npos);
    }
    questions_.messages.clear();
    MeshObject* const objects[] = {&triangle("t", {0})};
    const fs::path path = file("b.c4d", "old");
    EXPECT_EQ(exportModel(path, objects), kFailure);
    EXPECT_NE(questions_.messages.find("can't be written"), std::string::npos);
    EXPECT_EQ(contents(path), "old");
}

TEST_F(ModelFiles, ImportMakesAnObjectPerGroupUnderFreshNames) {
    scene_.make<ObjectP>("wing");
    const fs::path path =
        file("plane.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\ng wing\nf 1 3 2\nf 2 3 1\n");
    testing::internal::CaptureStdout();
    std::vector<ObjectP*> made;
    ASSERT_EQ(importModel(scene_, path, &made), kSuccess);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "OBJ import done.\n");
    ASSERT_EQ(made.size(), 2U);
    EXPECT_EQ(made[0]->name(), "OBJ default");
    EXPECT_EQ(made[1]->name(), "wing.1");
    EXPECT_EQ(made[1]->originalName(), "wing");
    EXPECT_EQ(made[1]->fileName(), path.string());
    EXPECT_EQ(made[1]->fileType(), ModelFileType::kObj);
    EXPECT_EQ(made[1]->materialName(0), "defaultMtl");
    std::uint32_t revision = 0;
    const Mesh3* const mesh = made[0]->mesh(1, revision);
    EXPECT_EQ(mesh->normalCount(), 3) << "one at each vertex";
    EXPECT_EQ(importModel(scene_, folder_ / "missing.obj"), kFailure);
    EXPECT_EQ(scene_.count(MemberKind::kObject), 3U);
}

TEST_F(ModelFiles, TextOfAnExport) {
    auto& first = triangle("knot", {0, 2, -1});
    auto& second = triangle("gem", {5});
    second.transform().setScale({2, 2, 4});
    second.transform().setTranslate({0, 0, 7});
    MeshObject* const objects[] = {&first, &scene_.make<ObjectP>("nothing"), &second};
    const fs::path path = folder_ / "out.obj";
    testing::internal::CaptureStderr();
    ExportOptions options;
    options.lineEnd = "\r\n";
    ASSERT_EQ(exportModel(path, objects, options), kSuccess);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "write_obj: 1 polygons of 'knot' are in no material section: left out.\n"
              "write_obj: no geometry to export!\n");
    std::string expected =
        "# *** Tarnwick Orvinex generated OBJ file ***\n"
        "#\n# Object 'knot'\n# 3 vertices.\n# 1 texture vertices.\n# 1 normals.\n# 2 polygons.\n"
        "#\nv 0.000000 0.000000 0.000000\nv 1.000000 0.000000 0.000000\n"
        "v 0.000000 1.000000 0.000000\n"
        "#\nvt 0.500000 0.250000 0.000000\n"
        "#\nvn 0.000000 0.000000 1.000000\n"
        "#\ng knot-Section 1\nf 1/1/1 2/1/1 3/1/1\n"
        "#\ng knot-Section 3\nf 1//1 2//1 3//1\n"
        "#\n# Object 'gem'\n# 3 vertices.\n# 1 texture vertices.\n# 1 normals.\n# 1 polygons.\n"
        "#\nv 0.000000 0.000000 7.000000\nv 2.000000 0.000000 7.000000\n"
        "v 0.000000 2.000000 7.000000\n"
        "#\nvt 0.500000 0.250000 0.000000\n"
        "#\nvn 0.000000 0.000000 1.000000\n"
        "#\ng gem\nf 4/2/2 5/2/2 6/2/2\n";
    for (std::size_t at = 0; (at = expected.find('\n', at)) != std::string::npos; at += 2)
        expected.insert(at, "\r");
    EXPECT_EQ(contents(path), expected);
    EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(ModelFiles, FailuresLeaveTheOldFile) {
    const fs::path path = file("keep.obj", "old");
    auto& object = triangle("o", {0});
    MeshObject* const objects[] = {&object};
    testing::internal::CaptureStderr();
    EXPECT_EQ(exportModel(path, {}), kFailure);
    MeshObject* const empty[] = {&scene_.make<ObjectP>("empty")};
    EXPECT_EQ(exportModel(path, empty), kFailure);
    EXPECT_EQ(exportModel(folder_ / "no folder" / "x.obj", objects), kFailure);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "write_obj: no geometry to export!\nwrite_obj: no geometry to export!\n"
              "Cannot open '" +
                  (folder_ / "no folder" / "x.obj").string() + "'.\n");
    EXPECT_EQ(contents(path), "old");
    EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(ModelFiles, StreamKeysReachTheModelFiles) {
    installModelHooks();
    const fs::path path = file("in.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\ng a\nf 1 2 3\ng b\nf 3 2 1\n");
    auto& object = scene_.make<ObjectP>("o");
    const std::uint32_t before = object.meshRevision();
    ASSERT_EQ(object.load(path.string()), kSuccess);
    EXPECT_NE(object.meshRevision(), before);
    std::uint32_t revision = 0;
    EXPECT_EQ(object.mesh(1, revision)->faceCount(), 2);
    EXPECT_EQ(object.localBounds().max, (Vec3{1, 1, 0}));
    const fs::path out = folder_ / "out.obj";
    ASSERT_EQ(object.save(out.string()), kSuccess);
    EXPECT_NE(contents(out).find("\ng o\nf 1//1 2//3 3//5\nf 3//6 2//4 1//2\n"), std::string::npos);
    EXPECT_EQ(object.load((folder_ / "gone.obj").string()), kFailure);
    EXPECT_EQ(object.mesh(1, revision)->faceCount(), 2);
}

}  // namespace
}  // namespace orvin
