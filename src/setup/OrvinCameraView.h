// OrvinCameraView: a saved pose of the scene camera, and the list of a project's views.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "scene/Persistent.h"
#include "toolkit/math/Vec.h"

namespace orvin {

class CameraX;
class SceneX;

/// The list's entry for the pose that the scene camera has now; menus don't show it.
inline constexpr std::string_view kCurrentCameraView = "##OrvinCurrentCameraView##";

class OrvinCameraView final : public Persistent {
  public:
    explicit OrvinCameraView(std::string_view name = "tempname");

    Result writeBody(SceneStream& stream) override;
    const CommandRegistry& commandRegistry() const override;
    std::string_view className() const override { return "OrvinCameraView"; }

    std::string name;      // at most 255 bytes are kept
    std::string lensType;  // an entry of the lens menu, "Normal (50mm)", or "%d mm"; at most 255
    Vec3 eye;
    Vec3 target;
    double distance = 0.0;
    double tumbleLeftRight = 0.0;  // degrees
    double tumbleUpDown = 0.0;     // degrees
    double roll = 0.0;             // degrees
    double orthoWidth = 0.0;       // world units across an orthographic picture
};

/// Copies what the camera shows into `view`, its name apart: the values that the camera's mode
/// doesn't use are worked out. False without a camera.
bool fillFromCamera(OrvinCameraView& view, const CameraX* camera);

/// Poses the camera by `view`. A lens type that names a focal length, or "Orthographic", sets the
/// lens too. False without a camera, or where a value is no finite number (nothing changes then).
bool applyView(const OrvinCameraView& view, CameraX* camera);

/// The views of one project, in order.
class OrvinCameraViewList {
  public:
    /// Adds a view at the end; the reference holds until it is removed.
    OrvinCameraView& add(std::string_view name);

    /// The first view of that name, or null.
    OrvinCameraView* find(std::string_view name) const;

    /// Takes out the first view of that name; false if there is none.
    bool remove(std::string_view name);

    void clear() { views_.clear(); }

    std::span<const std::unique_ptr<OrvinCameraView>> views() const { return views_; }

    /// What menus list: all names but that of the current pose.
    std::vector<std::string> menuNames() const;

    /// Keeps the pose of the scene's "dflt_cam" under kCurrentCameraView, first in the list.
    void storeCurrent(SceneX& scene);

    /// Poses "dflt_cam" by it. The lens stays. False where there is no such view or camera.
    bool restoreCurrent(SceneX& scene) const;

  private:
    std::vector<std::unique_ptr<OrvinCameraView>> views_;
};

}  // namespace orvin
