// SoftwareRenderer: a posed scene in, a finished picture out, without any graphics hardware.
//
// The picture is RGBA bytes; row 0 is the bottom row. Colour is divided by alpha unless
// RenderParams::unpremultiply is 0. Pixels that show nothing are 0 in all four channels.
//
// Reading order: VisibilityBuffer (projection, triangles sorted into tiles), VisibilityTile (lists
// of fragments per subpixel), PixelTree (groups of subpixels that show one triangle), Shading (the
// colour of a group), Blur (the post-filter).
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "render/image/ImageBuffer.h"
#include "scene/RenderParams.h"

namespace orvin {

class CameraX;
class LightX;
class SceneX;

struct SoftwareRenderOptions {
    /// Null: the scene's member "dflt_cam".
    CameraX* camera = nullptr;

    /// Bytes for the picture, of which the post-filter gets half; a picture that needs more spills
    /// to a temporary file. 0: what the machine has free.
    std::uint64_t memoryBudget = 0;

    /// Called with true when the frame starts and false when it ends, however it ends.
    std::function<void(bool)> busyCursor;
};

/// Renders one frame of trunc(width) x trunc(height) pixels. Null when the progress callback
/// (toolkit/Progress.h; polled after each light, tile and row of pixels) stopped it. Meshes and
/// textures that aren't there yet are built or loaded on the way.
///
/// A scene without the camera gives an empty picture and a line on standard error. Throws
/// std::bad_alloc where memory is short, eBaseError 101 for a picture that can't be made: a size
/// that is negative, not a number or above 32767 pixels, or a bit depth other than 8.
std::unique_ptr<ImageBuffer> renderSoftware(SceneX& scene, const RenderParams& params,
                                            const SoftwareRenderOptions& options = {});

}  // namespace orvin
