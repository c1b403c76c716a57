// ViewerDrawing: a scene with furniture, drawn off-screen for whoever shows it.
#pragma once

#include <array>

#include "render/gl/OrvinGLRender.h"
#include "render/gl/viewer/Furniture.h"

namespace orvin {

struct ViewerOptions {
    /// Null: the scene's member "dflt_cam".
    CameraX* camera = nullptr;

    Renderer style = Renderer::kHiQualityOpenGl;
    bool textures = false;
    bool advancedLighting = false;
    std::array<float, 3> background{};
    double pixelAspect = 1.0;
    int quality = 0;  // of meshes: 0 preview, 1 render
    FurnitureOptions furniture;
};

/// Draws width x height pixels into `picture`: RGBA bytes, row 0 at the bottom; alpha is 255 where
/// something shows, furniture included, and means nothing else. Results and failures are those of
/// OrvinGLRender::renderFrame(); keep the renderer from picture to picture.
Result drawViewer(OrvinGLRender& renderer, SceneX& scene, int width, int height,
                  const ViewerOptions& options, ImageBuffer& picture);

}  // namespace orvin
