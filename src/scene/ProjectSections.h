// ProjectSections: what OrvinSceneManager needs of the Set-Up application above it: the sections of
// a project that aren't scenes, the default scene, and the refresh of what shows a project.
#pragma once

#include <memory>
#include <string_view>

#include "scene/Persistent.h"
#include "scene/SceneX.h"

namespace orvin {

struct RenderState;

/// Mode, tool and axis mode of the viewers, as a project keeps them.
struct ViewerSettings {
    int mode = 0;           // 0 object, 1 camera, 2 light
    int tool = 0;           // 0 tumble, 1 roll, 2 track, 3 dolly, 4 pick, 5 zoom, 6 scale
    bool axisMode = false;  // a selection turns about its own axes
};

class ProjectSections {
  public:
    virtual ~ProjectSections() = default;

    virtual ViewerSettings& viewerSettings() = 0;

    /// Writes the blocks that stand between the main scene and the light bin scene: camera views,
    /// material styles, object styles. 0, or the first failure.
    virtual Result writeSceneSections(SceneStream& stream, SceneX& mainScene) = 0;

    /// Writes the blocks behind the light bin scene: light styles, lighting styles.
    virtual Result writeLightSections(SceneStream& stream, SceneX& lightBinScene) = 0;

    /// Makes the receiver of a block `className`; it lives on in the sections. Null for a class
    /// that is none of theirs.
    virtual Persistent* beginSection(std::string_view className, SceneX& mainScene,
                                     SceneX& lightBinScene) = 0;

    /// Empties bins and camera views: before a project is read, and before its scenes go.
    virtual void clear() = 0;

    /// After a project was read whole, before anybody sees it.
    virtual void projectRead(SceneX& mainScene) = 0;

    /// Loads the scene's images anew; those that aren't where they were are looked for with
    /// locateImage().
    virtual Result reloadImages(SceneX& scene) = 0;

    /// The scene of a new project; with `withObject` its default style has an edge.
    virtual std::unique_ptr<SceneX> buildDefaultScene(std::string_view name, bool withObject) = 0;

    /// The angle of the preferences changed, in degrees: new meshes shade with it, truncated.
    virtual void hardShadingAngleChanged(double degrees) = 0;

    /// Points viewers, lists and menus at the project's scene; with `redraw` bins and tabs repaint.
    virtual void refreshAfterLoad(SceneX& mainScene, const RenderState& renderState,
                                  bool redraw) = 0;
};

}  // namespace orvin
