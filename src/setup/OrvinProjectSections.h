// OrvinProjectSections: the Set-Up application's part of a project: camera views and viewer
// settings. A project with bin entries (material, object, light and lighting styles) isn't read
// yet: their blocks are refused.
#pragma once

#include <functional>

#include "scene/ProjectSections.h"
#include "setup/OrvinCameraView.h"

namespace orvin {

class OrvinProjectSections final : public ProjectSections {
  public:
    /// Called at the end of refreshAfterLoad(): whoever shows the project follows.
    using RefreshCallback =
        std::function<void(SceneX& mainScene, const RenderState& renderState, bool redraw)>;

    OrvinCameraViewList& cameraViews() { return cameraViews_; }
    void setRefreshCallback(RefreshCallback callback) { refresh_ = std::move(callback); }

    ViewerSettings& viewerSettings() override { return viewer_; }
    Result writeSceneSections(SceneStream& stream, SceneX& mainScene) override;
    Result writeLightSections(SceneStream& stream, SceneX& lightBinScene) override;
    Persistent* beginSection(std::string_view className, SceneX& mainScene,
                             SceneX& lightBinScene) override;
    void clear() override;
    void projectRead(SceneX& mainScene) override;
    Result reloadImages(SceneX& scene) override;
    std::unique_ptr<SceneX> buildDefaultScene(std::string_view name, bool withObject) override;
    void hardShadingAngleChanged(double degrees) override;
    void refreshAfterLoad(SceneX& mainScene, const RenderState& renderState, bool redraw) override;

  private:
    OrvinCameraViewList cameraViews_;
    ViewerSettings viewer_;
    RefreshCallback refresh_;
};

}  // namespace orvin
