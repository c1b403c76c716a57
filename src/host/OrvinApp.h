// OrvinApp: one instance of the effect while it runs: its project, its windows, and the scratch
// scenes that keep camera and lights while the comp or a window drives them.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/EffectPanel.h"
#include "host/PushedScene.h"
#include "render/gl/OrvinGLRender.h"
#include "scene/HandleMemory.h"
#include "scene/OrvinPreferences.h"
#include "scene/OrvinSceneManager.h"
#include "setup/OrvinProjectSections.h"
#include "toolkit/Result.h"

namespace orvin {

class CameraX;

/// The modal Set-Up window. Systems without windows have none.
class SetUpWindow {
  public:
    virtual ~SetUpWindow() = default;
    /// Runs until the user closes it.
    virtual void runModal() = 0;
};

/// The buttons of the startup dialog, in their order.
enum class StartupChoice {
    kNewScene = 0,
    kOpenScene = 1,
    kVectorShape = 2,
    kLayerCycling = 3,
    kImportModel = 4,
    kCancel = 5,
};

class OrvinApp {
  public:
    /// What Run() returns after a failure that it has told the user about.
    static constexpr int kRunFailed = 100;

    OrvinApp();
    virtual ~OrvinApp();
    OrvinApp(const OrvinApp&) = delete;
    OrvinApp& operator=(const OrvinApp&) = delete;

    /// Makes the app ready for a project. False where it can't work.
    virtual bool Init();
    /// The modal Set-Up window, with all its failures turned into messages: 0 or kRunFailed.
    virtual int Run();
    /// The window's turn: keeps camera and lights aside, runs it, and puts the scene's own camera
    /// and lights back. Without a window it says so, and nothing changes.
    virtual int EventLoop();
    virtual void ShowMessage(std::string_view text, bool fatal);
    /// Closes the windows.
    virtual void Quit();
    /// Asks what a fresh instance starts with, and makes the scene. 0, or 1 where the user chose
    /// "Cancel" and there is no scene. Where nobody can be asked: a new scene. A project that can't
    /// be made throws its result as a plain long.
    virtual int StartupDialog();
    /// Makes the panel in the host's effect window. `window` may be null.
    virtual void AttachPanel(void* window, const PF_Rect& rect);

    // ---- the project

    OrvinSceneManager& manager() { return manager_; }
    OrvinProjectSections& sections() { return sections_; }
    OrvinPreferences& preferences() { return preferences_; }
    /// Draws the frames of this instance that aren't the software renderer's.
    OrvinGLRender& openGl() { return openGl_; }
    RenderState& renderState() { return manager_.renderState(); }
    /// The scene that is rendered; null before a project is there.
    SceneX* scene() { return manager_.mainScene(); }
    /// Its camera "dflt_cam", or null.
    CameraX* camera();

    /// A new scene from the startup project, or the default one. Throws a non-zero result as a
    /// plain long.
    void newScene();

    /// Reads a project out of a handle from `offset` on; the handle must not be locked. kFailure
    /// where no scene that can be used came of it.
    Result readFlat(HandleMemory& memory, Handle handle, std::size_t offset);
    /// Writes the whole project behind `offset`; `handle` follows where the host moves it.
    Result writeFlat(HandleMemory& memory, Handle& handle, std::size_t offset);

    /// Hands the preference to the shading code, cut to a whole number.
    void applyHardShadingAngle();

    /// Set 0 is selected, both scratch scenes hold the present camera and lights, and the layer map
    /// placeholder is there: what follows each load.
    void settleScene();

    // ---- camera and lights kept aside

    PushedScene& panelPushed() { return panelPushed_; }  // "## ECW Pushed stuff ##"
    PushedScene& setUpPushed() { return setUpPushed_; }  // "## SetupWin Pushed stuff ##"

    bool useCompCamera = false;
    bool useCompLights = false;

    /// The Layer Maps (1 to 10) that had a picture at the last frame: what menus offer.
    std::vector<int> layerMaps;

    // ---- windows

    EffectPanel* panel() { return panel_.get(); }
    void setPanel(std::unique_ptr<EffectPanel> panel) { panel_ = std::move(panel); }
    /// What the panel shows now. The panel must be attached.
    PanelPicture panelPicture();

    void setSetUpWindow(std::unique_ptr<SetUpWindow> window) { setUpWindow_ = std::move(window); }

  private:
    void importModels();
    void reportMissing(std::string_view what);

    OrvinPreferences preferences_;
    OrvinGLRender openGl_;
    std::unique_ptr<SetUpWindow> setUpWindow_;
    OrvinProjectSections sections_;
    OrvinSceneManager manager_;
    std::unique_ptr<EffectPanel> panel_;
    PushedScene panelPushed_;
    PushedScene setUpPushed_;
};

}  // namespace orvin
