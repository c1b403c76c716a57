// Saving projects: round trips, what is left out, and that a failure costs nothing.
#include <gtest/gtest.h>

#include <string>

#include "geometry/ObjectP.h"
#include "render/CameraX.h"
#include "render/LightX.h"
#include "render/MaterialX.h"
#include "scene/FileFlags.h"
#include "setup/Project.h"
#include "tests/setup/ProjectFixture.h"

namespace orvin {
namespace {

class ProjectSave : public ProjectFixture {
  protected:
    /// A scene in which every class has something to say.
    void buildScene() {
        manager.startDefaultProject();
        SceneX& scene = *manager.mainScene();
        scene.setName("My \"best\" scene");
        auto& material = scene.make<MaterialX>("Red");
        material.setDiffuse({0.8F, 0.1F, 0.1F, 1.0F});
        auto& object = scene.make<ObjectP>("Thing");
        object.setMaterial(0, "Red");
        object.transform().setRotate({10.0, 20.0, 30.0});
        scene.moveToSet(2, &object, false);
        auto& camera = *scene.memberAs<CameraX>(MemberKind::kCamera, kDefaultCamera);
        camera.setTumble(33.25, -12.0);
        camera.setLensType("Normal (50mm)");
        sections.cameraViews().add("Side \"A\"").eye = {1.0, 2.0, 3.0};
        manager.lightBinScene()->make<LightX>("bin light");
    }
};

TEST_F(ProjectSave, LoadAndSaveAgainGivesTheSameText) {
    buildScene();
    const auto first = folder / "first.twp";
    const auto second = folder / "second.twp";
    ASSERT_EQ(manager.saveProjectTo(first), kSuccess);
    Project project;
    ASSERT_EQ(project.open(first), kSuccess) << project.failure();
    EXPECT_TRUE(user.messages.empty()) << user.messages[0];
    EXPECT_EQ(project.mainScene().name(), "My \"best\" scene");
    EXPECT_EQ(project.sections().cameraViews().menuNames(), std::vector<std::string>{"Side \"A\""});
    ASSERT_EQ(project.save(second), kSuccess) << project.failure();
    EXPECT_EQ(fileText(second), fileText(first));
    EXPECT_NE(fileText(first).find("  begin ObjectP\n   name \"Thing\"\n"), std::string::npos);
}

TEST_F(ProjectSave, UnusedMaterialsGoAndUndoIsCleared) {
    struct Undo : UndoHook {
        explicit Undo(int& clears) : clears_(clears) {}
        void recordSelection(std::span<SceneMember* const>) override {}
        void membersDeleted() override {}
        void clear() override { ++clears_; }
        void setDepth(int) override {}
        int& clears_;
    };
    buildScene();
    int clears = 0;
    SceneX& scene = *manager.mainScene();
    scene.setUndo(std::make_unique<Undo>(clears));
    scene.make<MaterialX>("Nobody's");
    ASSERT_EQ(manager.saveProjectTo(folder / "p.twp"), kSuccess);
    EXPECT_EQ(clears, 1);
    EXPECT_EQ(scene.memberByName("Nobody's"), nullptr);
    EXPECT_NE(scene.memberByName("Red"), nullptr);
    EXPECT_NE(scene.memberByName(kDefaultMaterial), nullptr);

    // The default material is protected in a scene that was read, too.
    ASSERT_EQ(manager.newProject(folder / "p.twp", false), kSuccess);
    ASSERT_EQ(manager.saveProjectTo(folder / "p.twp"), kSuccess);
    EXPECT_NE(fileText(folder / "p.twp").find(kDefaultMaterial), std::string::npos);
}

TEST_F(ProjectSave, AsksForANameOnce) {
    buildScene();
    EXPECT_EQ(manager.saveProject(false), kFailure);  // cancelled
    user.fileToSave = folder / "scene";
    EXPECT_EQ(manager.saveProject(false), kSuccess);
    EXPECT_EQ(manager.projectPath(), folder / "scene.twp");
    EXPECT_EQ(manager.saveProject(false), kSuccess);
    EXPECT_EQ(user.asked, std::vector<std::string>(2, "Save 3D Orvinex Project"));
    EXPECT_EQ(manager.saveProject(true), kSuccess);
    EXPECT_EQ(user.asked.size(), 3U);
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(ProjectSave, AFailedSaveLeavesTheOldFile) {
    buildScene();
    const auto path = folder / "p.twp";
    ASSERT_EQ(manager.saveProjectTo(path), kSuccess);
    const std::string old = fileText(path);

    // A member that fails late, when most of the text is out.
    struct Broken final : SceneMember {
        explicit Broken(SceneX& scene) : SceneMember(scene, MemberKind::kProfile, "broken") {
            protectedFromSweep = true;
        }
        Result writeBody(SceneStream& stream) override {
            SceneMember::writeBody(stream);
            return kFailure;
        }
        const CommandRegistry& commandRegistry() const override {
            static const CommandRegistry none(1);
            return none;
        }
        std::string_view className() const override { return "ProfileT"; }
    };
    SceneMember& broken = manager.mainScene()->make<Broken>();
    EXPECT_EQ(manager.saveProjectTo(path), kFailure);
    EXPECT_FALSE(manager.failure().empty());
    user.fileToSave = path;
    EXPECT_EQ(manager.saveProject(true), kFailure);
    EXPECT_EQ(user.messages.size(), 1U);
    PlainHandleMemory memory;
    Handle handle = memory.allocate(1000);
    EXPECT_EQ(manager.saveProjectHandle(memory, handle, 8, true, true), kFailure);
    EXPECT_EQ(memory.lockCount(handle), 0);
    manager.mainScene()->destroy(broken);

    // A view with a text that no line holds.
    sections.cameraViews().add("x").lensType.assign(300, '"');
    EXPECT_EQ(manager.saveProjectTo(path), kSuccess);  // texts of views are cut
    writeText(path, old);

    EXPECT_EQ(manager.saveProjectTo(folder / "no such folder" / "p.twp"), kFailure);
    EXPECT_EQ(manager.saveProjectTo(folder), kFailure);
    EXPECT_EQ(fileText(path), old);
    EXPECT_EQ(filesInFolder(), 1U);  // no leftovers
}

TEST_F(ProjectSave, AFullDiskIsAFailure) {
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no such device here";
    buildScene();
    EXPECT_EQ(manager.saveProjectTo("/dev/full"), kFailure);
    EXPECT_NE(manager.failure().find("space"), std::string::npos) << manager.failure();
    EXPECT_TRUE(manager.projectPath().empty());
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
}

TEST_F(ProjectSave, AFolderWithoutPermissionIsAFailure) {
    buildScene();
    const auto path = folder / "p.twp";
    ASSERT_EQ(manager.saveProjectTo(path), kSuccess);
    const std::string old = fileText(path);
    using std::filesystem::perms;
    std::filesystem::permissions(folder, perms::owner_read | perms::owner_exec);
    if (std::ofstream(folder / "probe")) GTEST_SKIP() << "this user may write everywhere";
    manager.mainScene()->setName("changed");
    EXPECT_EQ(manager.saveProjectTo(path), kFailure);
    EXPECT_EQ(fileText(path), old);
}

TEST_F(ProjectSave, MemoryThatCantGrow) {
    buildScene();
    PlainHandleMemory memory;
    memory.setLargestBlock(2000);
    Handle handle = memory.allocate(1000);
    EXPECT_THROW(manager.saveProjectHandle(memory, handle, 8, true, false), std::bad_alloc);
    EXPECT_EQ(memory.lockCount(handle), 0);
    // The objects that were left out are back.
    EXPECT_NE(text().find("begin ObjectP"), std::string::npos);
}

TEST_F(ProjectSave, PartsOfAProject) {
    buildScene();
    PlainHandleMemory memory;
    const auto saved = [&](bool whole, bool withObjects) {
        Handle handle = memory.allocate(500);
        EXPECT_EQ(manager.saveProjectHandle(memory, handle, 0, whole, withObjects), kSuccess);
        std::string result(static_cast<const char*>(memory.lock(handle)), memory.size(handle));
        memory.unlock(handle);
        memory.dispose(handle);
        return result;
    };
    gSaveThumbnailsAscii = true;
    EXPECT_NE(saved(true, true).find("begin ObjectP"), std::string::npos);
    EXPECT_EQ(saved(true, false).find("begin ObjectP"), std::string::npos);
    const std::string scene = saved(false, true);
    EXPECT_EQ(scene.find(" name \"My \\\"best\\\" scene\"\n"), 0U);
    EXPECT_EQ(scene.find("RenderSize"), std::string::npos);
    EXPECT_TRUE(gSaveThumbnailsAscii);
    gSaveThumbnailsAscii = false;
}

TEST_F(ProjectSave, TheStartupProjectIsWhereNewScenesComeFrom) {
    buildScene();
    preferences.numberUndos = 11;
    manager.renderState().params.width = 1234.0;
    ASSERT_EQ(manager.saveStartupProject(), kSuccess);
    EXPECT_EQ(fileText(folder / "Tarnwick Orvinex Startup").find("begin ObjectP"),
              std::string::npos);
    EXPECT_NE(manager.mainScene()->memberByName("Thing"), nullptr);

    OrvinPreferences fresh;
    OrvinSceneManager other(fresh, sections);
    other.setDataFolder(folder);
    const char* const names[] = {"Untitled", "Untitled 2", "Untitled 3"};
    for (const char* name : names) {
        ASSERT_EQ(other.newProject({}, true), kSuccess);
        EXPECT_EQ(other.mainScene()->name(), name);
    }
    EXPECT_EQ(fresh.numberUndos, 11);
    EXPECT_EQ(other.renderState().params.width, 1234.0);
    EXPECT_TRUE(other.projectPath().empty());
    EXPECT_NE(other.lightBinScene()->memberByName("bin light"), nullptr);
    EXPECT_EQ(other.mainScene()->count(MemberKind::kObject), 0U);
}

}  // namespace
}  // namespace orvin
