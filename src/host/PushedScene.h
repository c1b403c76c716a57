// PushedScene: a scratch scene that keeps a scene's own camera and lights while something else
// drives them: the comp, or the Set-Up window.
#pragma once

#include <string_view>

#include "scene/SceneX.h"

namespace orvin {

class PushedScene {
  public:
    explicit PushedScene(std::string_view name) : scratch_(name) {}

    /// Keeps the camera "dflt_cam" of `scene` as it is now. Nothing is kept of a scene without one.
    void storeCamera(SceneX& scene);
    /// Puts the kept camera back. False where none was kept, or `scene` has no such camera.
    bool restoreCamera(SceneX& scene) const;

    /// Keeps all lights of `scene`, in their order.
    void storeLights(SceneX& scene);
    /// Puts the kept lights back: those of `scene` with a kept name take the kept values, missing
    /// ones are made again, and lights that weren't there are gone. False where none were kept.
    bool restoreLights(SceneX& scene) const;

    const SceneX& scene() const { return scratch_; }

  private:
    SceneX scratch_;
    bool lightsKept_ = false;
};

}  // namespace orvin
