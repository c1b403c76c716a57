// renderWith: one door to all renderers, for those who have a number of a renderer and want a
// picture.
#pragma once

#include <memory>

#include "render/SoftwareRenderer.h"
#include "render/gl/OrvinGLRender.h"

namespace orvin {

/// Renders one frame with the renderer that `gl.style` names: OpenGL draws as `gl` says, the
/// software renderer as `software` says. Where OpenGL can't, the reason goes to standard error and
/// the software renderer draws in its place. Camera null in both: the scene's "dflt_cam". Null when
/// the progress callback stopped the frame. Throws what renderSoftware() throws.
std::unique_ptr<ImageBuffer> renderWith(OrvinGLRender& renderer, SceneX& scene,
                                        const RenderParams& params, const GlFrameOptions& gl,
                                        const SoftwareRenderOptions& software);

}  // namespace orvin
