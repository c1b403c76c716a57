// OrvinGLRender: draws scenes with OpenGL. One for each viewer or render job: it keeps the target
// with its context and, bound to that, the display lists of meshes and the textures, from frame to
// frame. Nothing of a frame's own stays; the context is current only while a frame is drawn. Frames
// may come from different threads, one at a time.
#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "render/RendererChoice.h"
#include "render/gl/GlMeshCache.h"
#include "render/gl/GlTarget.h"
#include "render/gl/GlTextures.h"
#include "render/gl/GlView.h"
#include "render/image/ImageBuffer.h"
#include "scene/RenderParams.h"
#include "toolkit/Result.h"

namespace orvin {

class CameraX;
class SceneX;

/// The depth range of scenes is 0 to this; what is left is for what lies over them.
inline constexpr double kSceneDepth = 0.95;

/// What a drawing over a finished scene works with. The context is current, the matrices of the
/// view are loaded and the depth of the scene is in place.
struct GlOverlay {
    const GlView& view;
    GlMeshCache& meshes;
};

struct GlFrameOptions {
    /// What is drawn: kHiQualityOpenGl, kHiddenline or kVector; kOrvinex counts as the first.
    Renderer style = Renderer::kHiQualityOpenGl;

    /// Null: the scene's member "dflt_cam".
    CameraX* camera = nullptr;

    bool textures = true;           // colour and reflection maps
    bool advancedLighting = false;  // soft cones of spot lights

    /// What shows nothing has this colour (red, green, blue), and alpha 0.
    std::array<float, 3> background{};

    GlTargetChoice targets;

    /// What is drawn besides; depth ends here.
    Box3 overlayBounds;

    std::function<void(const GlOverlay&)> overlay;

    /// Called with true when the frame starts and false when it ends, however it ends.
    std::function<void(bool)> busyCursor;
};

class OrvinGLRender {
  public:
    OrvinGLRender();
    ~OrvinGLRender();
    OrvinGLRender(const OrvinGLRender&) = delete;
    OrvinGLRender& operator=(const OrvinGLRender&) = delete;

    /// Draws a frame of trunc(width) x trunc(height) pixels and puts it into `picture`: RGBA bytes,
    /// row 0 at the bottom, alpha 255 where something shows. Of `params` it takes the size, the
    /// pixels' aspect, bestGeometry and the post-filter.
    ///
    /// -1, with the reason in failure(), for a size below 1, without a camera, and where no target
    /// can be had or the one in use is lost; everything kept is then given back, and the next frame
    /// starts afresh. -1 and an empty failure() where the progress callback (toolkit/Progress.h)
    /// stopped the frame. Throws std::bad_alloc where memory is short, with everything kept given
    /// back as well.
    Result renderFrame(SceneX& scene, const RenderParams& params, const GlFrameOptions& options,
                       ImageBuffer& picture);

    /// Why the last frame failed, as a phrase for messages.
    const std::string& failure() const { return failure_; }

    /// What the last frame was drawn into; nothing before the first.
    std::optional<GlTargetKind> targetKind() const;

    /// Depth (0 to 1) that the last frame left where nothing shows: what a pixel that nothing
    /// covers has.
    float emptyDepth() const { return emptyDepth_; }

    // What had to be made so far; both stand still while the same things are drawn.
    std::size_t meshesCompiled() const { return meshes_.compiled(); }
    std::size_t texturesLoaded() const { return textures_.loaded(); }

    /// Gives the target, its context and all that is bound to it back.
    void reset();

  private:
    Result fail(std::string reason);
    bool openTarget(int width, int height, const GlTargetChoice& choice);
    void draw(SceneX& scene, CameraX& camera, const RenderParams& params,
              const GlFrameOptions& options, int width, int height);
    Result readBack(ImageBuffer& picture, int width, int height);

    std::unique_ptr<GlTarget> target_;
    GlMeshCache meshes_;
    GlTextures textures_;
    std::string failure_;
    float emptyDepth_ = 1.0F;
};

}  // namespace orvin
