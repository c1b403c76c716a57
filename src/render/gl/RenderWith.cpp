#include "render/gl/RenderWith.h"

#include <cstdio>

namespace orvin {

std::unique_ptr<ImageBuffer> renderWith(OrvinGLRender& renderer, SceneX& scene,
                                        const RenderParams& params, const GlFrameOptions& gl,
                                        const SoftwareRenderOptions& software) {
    if (drawsWithOpenGl(gl.style)) {
        auto picture = std::make_unique<ImageBuffer>();
        if (renderer.renderFrame(scene, params, gl, *picture) == kSuccess) return picture;
        if (renderer.failure().empty()) return nullptr;
        std::fprintf(stderr, "OpenGL is not available (%s): using the Orvinex Renderer.\n",
                     renderer.failure().c_str());
    }
    return renderSoftware(scene, params, software);
}

}  // namespace orvin
