// OrvinSceneManager: owns the main scene, the light bin scene and the render state of one effect
// instance, and creates, opens and saves projects.
//
// A project (a .twp file, or the flat data inside the host's project) is one word stream: settings,
// the main scene, camera views and bin entries, the light bin scene and its bin entries. The first
// SceneX block that brings cameras is the main scene, the next one the light bin scene.
//
// Everything that must be asked or told goes through questions(). A file is only ever replaced by
// one that was written whole.
#pragma once

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "scene/HandleMemory.h"
#include "scene/OrvinPreferences.h"
#include "scene/Persistent.h"
#include "scene/ProjectSections.h"
#include "scene/RenderState.h"
#include "scene/SceneX.h"

namespace orvin {

inline constexpr std::string_view kLightBinSceneName = "##Orvinex Light Bin Scene##";
inline constexpr std::string_view kStartupProject = "Tarnwick Orvinex Startup";
inline constexpr std::string_view kProjectPattern = "*.twp";
inline constexpr std::string_view kProjectVersion = "Orvinex WIN32-Pro Scene Format 3.0";

class OrvinSceneManager final : public Persistent {
  public:
    /// Both must outlive the manager. There is no scene before the first project.
    OrvinSceneManager(OrvinPreferences& preferences, ProjectSections& sections);
    ~OrvinSceneManager() override;

    Result writeBody(SceneStream& stream) override;
    const CommandRegistry& commandRegistry() const override;
    std::string_view className() const override { return "OrvinSceneManager"; }

    SceneX* mainScene() const { return mainScene_.get(); }          // null before the first project
    SceneX* lightBinScene() const { return lightBinScene_.get(); }  // null before the first project
    RenderState& renderState() { return renderState_; }
    OrvinPreferences& preferences() { return preferences_; }
    ProjectSections& sections() { return sections_; }

    /// The file that saveProject() writes to; empty while there is none.
    const std::filesystem::path& projectPath() const { return projectPath_; }

    /// Why the last operation failed, for programs that show messages of their own; empty where
    /// the questions() were told already.
    const std::string& failure() const { return failure_; }

    // ---- opening

    /// Opens the project at `path`; with an empty path starts a new one, from the startup project
    /// if there is one. Where reading fails the user is told and the default scene stands in. -1
    /// only for a path that can't be opened: the present project then stays. `refresh` ends with
    /// refreshAfterLoad(true).
    Result newProject(const std::filesystem::path& path, bool refresh);

    /// Starts a new project with the default scene, startup project or not. Nobody is refreshed.
    void startDefaultProject();

    /// Opens the project at `path` and nothing else: -1 where it can't be opened, read, or has no
    /// camera "dflt_cam". What was read by then is left in the scenes.
    Result openProject(const std::filesystem::path& path, bool locateImages);

    /// Asks for a file and opens it as newProject() does; true on success, false on cancel too.
    bool openProjectDialog();

    /// Replaces the present project by the one in a file open for reading ("rb") or in a stream
    /// whose stack is empty. -1 at the first command that fails.
    Result readProject(std::FILE* file, bool locateImages);
    Result readProject(SceneStream& stream, bool locateImages);

    /// The same from memory, from `offset` on. Also -1 for a project without "dflt_cam". On success
    /// `refresh` ends with refreshAfterLoad(true).
    Result readProjectHandle(HandleMemory& memory, Handle handle, std::size_t offset,
                             bool locateImages, bool refresh);

    /// Drops both scenes, views and bins. Settings and projectPath() stay.
    void clearProject();

    /// Points everything that shows the project at the new scene.
    void refreshAfterLoad(bool redraw);

    // ---- saving. The main scene's undo is cleared and what nothing refers to is dropped first;
    // a failure leaves the old file as it was.

    /// Asks for a name where none is known or with `forceAsk`. -1 on cancel and on failure, of
    /// which the user is told.
    Result saveProject(bool forceAsk);

    /// Saves without a question; the path becomes projectPath(). See failure() after -1.
    Result saveProjectTo(const std::filesystem::path& path);

    /// Writes settings, bins and lights, but no objects, where new projects find them.
    Result saveStartupProject();

    /// Writes into memory from `offset` on, thumbnails as bytes: the whole project, or the main
    /// scene alone; without its objects where `withObjects` is false. The handle grows as needed
    /// (std::bad_alloc where it can't) and ends trimmed; it may come to be another. -1 on failure.
    Result saveProjectHandle(HandleMemory& memory, Handle& handle, std::size_t offset,
                             bool wholeProject, bool withObjects);

    /// Where the startup project is looked for; platform::moduleFolder() unless set.
    void setDataFolder(std::filesystem::path folder) { dataFolder_ = std::move(folder); }

  private:
    friend struct ProjectCommands;

    void startScenes(std::unique_ptr<SceneX> mainScene);
    std::string nextUntitledName();
    Result checkRead();
    void dropUnused();
    Result writeFile(const std::filesystem::path& path);
    Result writeSettings(SceneStream& stream);

    OrvinPreferences& preferences_;
    ProjectSections& sections_;
    int untitledCount_ = 0;
    std::unique_ptr<SceneX> mainScene_;
    std::unique_ptr<SceneX> lightBinScene_;
    RenderState renderState_;
    std::filesystem::path projectPath_;
    std::filesystem::path dataFolder_;
    std::string failure_;
    bool cutShort_ = false;  // the input of the present read ended within a block
};

}  // namespace orvin
