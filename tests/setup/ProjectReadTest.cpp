// Reading projects: every key, the version table, which scene a block belongs to, and what can be
// wrong with a file.
#include <gtest/gtest.h>

#include "render/CameraX.h"
#include "scene/FileFlags.h"
#include "tests/setup/ProjectFixture.h"

namespace orvin {
namespace {

constexpr std::string_view kScenes =
    "begin SceneX name \"A\" begin CameraX name \"dflt_cam\" end CameraX end SceneX\n"
    "begin SceneX name \"B\" begin LightX name \"lamp\" end LightX end SceneX\n";

class ProjectRead : public ProjectFixture {};

TEST_F(ProjectRead, EverySettingComesBackAsItsLineSaid) {
    const std::string settings =
        " Version \"Orvinex WIN32-Pro Scene Format 3.0\"\n"
        " ViewerMode \"LIGHT\"\n"
        " ViewerTool \"SCALE\"\n"
        " ObjectAxisMode \"1\"\n"
        " RenderSize 1920.000000 1080.500000\n"
        " RenderResolution 3\n"
        " RenderDPI 72.250000\n"
        " AntiAliasLevel \"16\"\n"
        " RenderMethod \"2\"\n"
        " UseAlphaMask \"0\"\n"
        " RenderShadows \"1\"\n"
        " HardShadingAngle \"33.000000\"\n"
        " BackgroundColor 0.250000 0.500000 1.000000\n"
        " DefaultGroup \"4\"\n"
        " ShadowQuality \"2000\"\n"
        " DuplicationOffset 1.500000 -2.000000 3.250000\n"
        " GroundPlane 0 -17\n"
        " NumberUndos 9\n"
        " AdvancedGLLighting 1\n"
        " HideGLRenderWindows 0\n"
        " ShowTexturesECW 1\n"
        " ShowTexturesComp 1\n"
        " ShowTexturesSetup 1\n"
        " SaveMode 1\n";
    ASSERT_EQ(read(settings + std::string(kScenes)), kSuccess);
    EXPECT_TRUE(user.messages.empty());

    EXPECT_EQ(sections.viewerSettings().mode, 2);
    EXPECT_EQ(sections.viewerSettings().tool, 6);
    const RenderState& state = manager.renderState();
    EXPECT_EQ(state.params.height, 1080.5);
    EXPECT_EQ(state.params.antiAliasSize, 5);
    EXPECT_EQ(state.params.blurRadius, 1.0F);
    EXPECT_EQ(state.params.channels, 3);
    EXPECT_EQ(state.params.shadowQuality, 2000);
    EXPECT_EQ(state.viewer.shadowQuality, 2000);
    EXPECT_EQ(state.viewer.groundPlaneLevel, -17);
    EXPECT_FALSE(preferences.groundPlaneOn);
    EXPECT_FALSE(preferences.hideGLRenderWindows);

    EXPECT_EQ(text().substr(0, settings.size()), settings);
    gSaveThumbnailsAscii = false;
}

TEST_F(ProjectRead, VersionsTellThePlatform) {
    const struct {
        const char* text;
        bool known, other;
    } cases[] = {
        {"Orvinex Kliomiofliko WIN32 Version 2.0", true, false},
        {"Orvinex Kliomiofliko WIN32 Version 2.1", true, false},
        {"Orvinex WIN32 Scene Format 2.5", true, false},
        {"Orvinex WIN32-Pro Scene Format 3.0", true, false},
        {"Orvinex WIN32 Scene Format 3.0", true, false},
        {"Orvinex Version 1.0", true, true},
        {"Orvinex Kliomiofliko Mac Version 2.0", true, true},
        {"Orvinex Kliomiofliko Mac Version 2.1", true, true},
        {"Orvinex Mac Scene Format 2.5", true, true},
        {"Orvinex Mac-Pro Scene Format 3.0", true, true},
        {"Orvinex Mac Scene Format 3.0", true, true},
        {"Orvinex WIN32 Scene Format 4.0", false, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        preferences.advancedGLLighting = false;
        const std::string head = "Version \"" + std::string(c.text) + "\"\nAdvancedGLLighting 1\n";
        EXPECT_EQ(read(head + std::string(kScenes)), c.known ? kSuccess : kFailure);
        // The one setting that speaks of the machine isn't taken from the other platform's files.
        EXPECT_EQ(preferences.advancedGLLighting, c.known && !c.other);
        EXPECT_FALSE(gFileFromOtherPlatform);  // the next file starts without
    }
    ASSERT_EQ(user.messages.size(), 1U);
    EXPECT_EQ(user.messages[0].find("Error processing scene command <<Version>> for class "
                                    "<<OrvinSceneManager>> at byte "),
              0U);
}

TEST_F(ProjectRead, OddValues) {
    const struct {
        const char* line;
        Result result;
    } cases[] = {
        {"RenderMethod \"0\"", kSuccess},
        {"RenderMethod \"-7\"", kSuccess},
        {"BlurOption 2 BlurRadius 2.5 BlurContrast \"x\"", kSuccess},
        {"ViewerTool \"HAMMER\"", kFailure},
        {"ViewerMode \"NIGHT\"", kSuccess},
        {"RenderSize nan 1e300", kSuccess},
        {"ShadowQuality 2000000000", kSuccess},
        {"HardShadingAngle -5", kSuccess},
        {"RenderSize many", kFailure},
        {"GroundPlane 1", kFailure},
        {"begin OrvinMaterialStyle", kFailure},
        {"begin OrvinLightingStyle", kFailure},
        {"begin OrvinSceneManager", kFailure},
        {"begin", kFailure},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.line);
        user.messages.clear();
        EXPECT_EQ(read(std::string(c.line) + "\n" + std::string(kScenes)), c.result);
        EXPECT_EQ(user.messages.empty(), c.result == kSuccess);
        EXPECT_EQ(manager.renderState().renderMethod, 1);
        EXPECT_EQ(manager.renderState().params.width, 320.0);
        EXPECT_EQ(manager.renderState().params.height, 240.0);
        EXPECT_EQ(preferences.shadowQuality, 512);
        EXPECT_EQ(preferences.hardShadingAngle, 20.0);
    }
}

TEST_F(ProjectRead, TheSecondSceneGoesToTheLightBin) {
    ASSERT_EQ(read(kScenes), kSuccess);
    EXPECT_EQ(manager.mainScene()->name(), "A");
    EXPECT_NE(manager.mainScene()->memberByName("dflt_cam"), nullptr);
    EXPECT_EQ(manager.lightBinScene()->name(), "B");
    EXPECT_NE(manager.lightBinScene()->memberByName("lamp"), nullptr);

    // Only a scene with cameras fills the first place.
    ASSERT_EQ(read("begin SceneX name \"empty\" end SceneX " + std::string(kScenes)), kSuccess);
    EXPECT_EQ(manager.mainScene()->name(), "A");
}

TEST_F(ProjectRead, SettingsOfOneFileDontStayForTheNext) {
    ASSERT_EQ(read("RenderShadows 1 UseAlphaMask 0 RenderSize 5 5 " + std::string(kScenes)),
              kSuccess);
    ASSERT_EQ(read(kScenes), kSuccess);
    EXPECT_FALSE(manager.renderState().rendersShadows());
    EXPECT_TRUE(manager.renderState().keepsAlpha());
    EXPECT_EQ(manager.renderState().params.width, 320.0);
}

TEST_F(ProjectRead, ATruncatedProjectIsSaidToBe) {
    const std::string whole(kScenes);
    const struct {
        std::size_t size;
        bool warned;
    } cases[] = {{whole.size(), false},
                 {whole.find("end SceneX"), true},
                 {whole.find("end CameraX"), true},
                 {whole.rfind("end SceneX"), true}};
    for (const auto& c : cases) {
        user.messages.clear();
        EXPECT_EQ(read(whole.substr(0, c.size)), kSuccess);
        EXPECT_EQ(!user.messages.empty(), c.warned) << c.size;
        EXPECT_NE(manager.mainScene()->memberByName("dflt_cam"), nullptr);
    }
    user.messages.clear();
    EXPECT_EQ(read(whole + "begin OrvinCameraView Name \"v\""), kSuccess);
    EXPECT_EQ(user.messages.size(), 1U);
}

TEST_F(ProjectRead, WhatNobodyWroteEndsInTheDefaultScene) {
    const char* const contents[] = {
        "",
        "Version \"Word 97\"",
        "begin SceneX begin CameraX name \"cam\" end CameraX end SceneX",  // not dflt_cam
        "begin SceneX begin Elephant end Elephant end SceneX",
        "begin SceneX begin LightX name \"dflt_cam\" end LightX end SceneX",
    };
    const auto path = folder / "p.twp";
    for (const char* content : contents) {
        SCOPED_TRACE(content);
        user.messages.clear();
        writeText(path, content);
        EXPECT_EQ(manager.newProject(path, false), kSuccess);
        EXPECT_FALSE(user.messages.empty());
        EXPECT_EQ(manager.mainScene()->count(MemberKind::kCamera), 3U);
        EXPECT_EQ(manager.mainScene()->name().find("Untitled"), 0U);
        EXPECT_EQ(manager.renderState().params.width, 640.0);
        // Saving must ask for a name: the unreadable file is still the user's.
        EXPECT_TRUE(manager.projectPath().empty());
    }
}

TEST_F(ProjectRead, AMissingParentLeavesAUsableScene) {
    const auto path = folder / "p.twp";
    writeText(path, "begin SceneX begin CameraX name \"dflt_cam\" parent \"nobody\"");
    EXPECT_THROW(manager.newProject(path, false), std::bad_alloc);
    ASSERT_NE(manager.mainScene(), nullptr);
    EXPECT_EQ(manager.mainScene()->count(MemberKind::kCamera), 3U);
}

TEST_F(ProjectRead, AFileThatIsntThereLeavesTheProject) {
    ASSERT_EQ(read(kScenes), kSuccess);
    EXPECT_EQ(manager.newProject(folder / "none.twp", true), kFailure);
    EXPECT_EQ(manager.mainScene()->name(), "A");
    EXPECT_NE(manager.failure().find("none.twp"), std::string::npos);
    EXPECT_EQ(manager.newProject(folder, true), kFailure);  // a folder
}

TEST_F(ProjectRead, OpeningAsks) {
    EXPECT_FALSE(manager.openProjectDialog());
    EXPECT_EQ(manager.mainScene(), nullptr);
    ASSERT_EQ(user.asked.size(), 1U);
    EXPECT_EQ(user.asked[0], "Select 3D Orvinex Scene file or click Cancel to create an Object");
    writeText(folder / "p.twp", kScenes);
    user.fileToOpen = folder / "p.twp";
    int refreshed = 0;
    sections.setRefreshCallback([&](SceneX& scene, const RenderState&, bool redraw) {
        EXPECT_EQ(scene.name(), "A");
        EXPECT_TRUE(redraw);
        ++refreshed;
    });
    EXPECT_TRUE(manager.openProjectDialog());
    EXPECT_EQ(refreshed, 1);
    EXPECT_EQ(manager.projectPath(), folder / "p.twp");
}

TEST_F(ProjectRead, FlatDataInAHandle) {
    ASSERT_EQ(read(kScenes), kSuccess);
    const std::string before = text();
    PlainHandleMemory memory;
    Handle handle = memory.allocate(64);  // grows many times
    ASSERT_EQ(manager.saveProjectHandle(memory, handle, 8, true, true), kSuccess);
    EXPECT_EQ(memory.lockCount(handle), 0);
    const std::string flat(static_cast<const char*>(memory.lock(handle)), memory.size(handle));
    memory.unlock(handle);
    EXPECT_EQ(flat.substr(8), before + "**EndOfStream**\n" + '\0');

    OrvinPreferences otherPreferences;
    OrvinProjectSections otherSections;
    OrvinSceneManager other(otherPreferences, otherSections);
    ASSERT_EQ(other.readProjectHandle(memory, handle, 8, false, true), kSuccess);
    MemoryStream stream(&other);
    ASSERT_EQ(other.writeBody(stream), kSuccess);
    EXPECT_EQ(stream.text(), before);

    EXPECT_EQ(other.readProjectHandle(memory, handle, memory.size(handle) + 1, false, true),
              kFailure);
    EXPECT_NE(other.mainScene(), nullptr);
    EXPECT_EQ(other.readProjectHandle(memory, handle, memory.size(handle), false, true), kFailure);
    EXPECT_EQ(memory.lockCount(handle), 0);
    memory.dispose(handle);
}

}  // namespace
}  // namespace orvin
