#include "render/SoftwareRenderer.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <vector>

#include "render/Blur.h"
#include "render/CameraX.h"
#include "render/LightX.h"
#include "render/PixelTree.h"
#include "render/PixelWriter.h"
#include "render/TilePainter.h"
#include "render/VisibilityBuffer.h"
#include "render/shadow/ShadowPass.h"
#include "scene/SceneX.h"
#include "toolkit/AtExit.h"
#include "toolkit/Progress.h"

namespace orvin {

namespace {

constexpr double kMaxSide = 32767.0;

/// The work of a frame in pixels, as the progress callback hears of it.
class PixelProgress {
  public:
    explicit PixelProgress(std::int64_t total)
        : total_(std::clamp<std::int64_t>(total, 1, kMost)) {}
    bool poll() const {
        return pollProgress(static_cast<int>(std::min(done_, total_)), static_cast<int>(total_)) ==
               0;
    }
    bool rowDone(int pixels) {
        done_ += pixels;
        return poll();
    }

  private:
    static constexpr std::int64_t kMost = std::numeric_limits<int>::max();

    std::int64_t done_ = 0;
    std::int64_t total_;
};

// False when the frame is to stop.
bool prepareLights(SceneX& scene, const std::vector<LightX*>& lights, const RenderParams& params) {
    const bool shadows = (params.flags & RenderParams::kShadows) != 0;
    for (LightX* light : lights) {
        light->prepare();
        light->setShadowMap(shadows && light->castsShadow() ? makeShadowMap(scene, *light, params)
                                                            : nullptr);
        if (pollProgress(0, 1) != 0) return false;
    }
    return true;
}

ImageBuffer makeImage(const RenderParams& params, std::uint64_t budget) {
    if (budget == 0) budget = ImageBuffer::freeBudget();
    if (params.blurOption != 0) budget = std::max<std::uint64_t>(budget / 2, 1);
    return ImageBuffer::withBits(static_cast<int>(params.width), static_cast<int>(params.height), 4,
                                 params.bitsPerChannel, budget);
}

// The pixels of a tile that lie in the picture: a width with a fraction leaves a part of one over.
GridRect pixelsIn(const ImageBuffer& image, const VisibilityTile& tile) {
    GridRect pixels = tile.pixelRect();
    pixels.right = std::min(pixels.right, image.width() - 1);
    pixels.bottom = std::min(pixels.bottom, image.height() - 1);
    return pixels;
}

std::int64_t workOf(const VisibilityBuffer& visibility, const RenderParams& params) {
    const int n = visibility.subpixels();
    std::int64_t pixels = 0;
    for (std::size_t k = 0; k < visibility.tileCount(); ++k) {
        const GridRect& rect = visibility.tileRect(k);
        pixels += std::int64_t{rect.width() / n} * (rect.height() / n);
    }
    if (params.blurOption != 0)
        pixels += static_cast<std::int64_t>(params.width) * static_cast<int>(params.height);
    return pixels;
}

// False when the frame is to stop.
bool paintTiles(const VisibilityBuffer& visibility, const FrameShading& shading, ImageBuffer& image,
                bool unpremultiply, PixelProgress& progress) {
    VisibilityTile scratch;
    TilePainter painter(shading);
    PixelTree tree;
    PixelWriter writer(image, unpremultiply);
    const auto paint = [&](const VisibilityTile& tile) {
        painter.begin(tile);
        const GridRect pixels = pixelsIn(image, tile);
        for (int y = pixels.top; y <= pixels.bottom; ++y) {
            if (!progress.rowDone(pixels.width())) return false;
            for (int x = pixels.left; x <= pixels.right; ++x)
                if (tree.build(tile, x, y)) writer.write(x, y, painter.paint(tree));
        }
        return true;
    };
    for (std::size_t k = 0; k < visibility.tileCount(); ++k)
        if (!visibility.visitTile(k, scratch, paint) || !progress.poll()) return false;
    return true;
}

// False when the frame is to stop.
bool blur(ImageBuffer& image, const RenderParams& params, PixelProgress& progress) {
    const Result result = blurImage(image, blurSettings(params),
                                    [&](int) { return progress.rowDone(image.width()) ? 0 : 1; });
    if (result != kSuccess && progressStop() == 0) throw kImageBufferFailed;
    return result == kSuccess;
}

}  // namespace

std::unique_ptr<ImageBuffer> renderSoftware(SceneX& scene, const RenderParams& params,
                                            const SoftwareRenderOptions& options) {
    const bool sizeOk = params.width >= 0.0 && params.width <= kMaxSide && params.height >= 0.0 &&
                        params.height <= kMaxSide;
    if (!sizeOk) throw kImageBufferFailed;
    if (options.busyCursor) options.busyCursor(true);
    const AtExit arrowCursor([&options] {
        if (options.busyCursor) options.busyCursor(false);
    });

    clearProgressStop();
    const std::vector<LightX*> lights = enabledLights(scene);
    const AtExit dropShadowMaps([&lights] {
        for (LightX* light : lights)
            light->setShadowMap(nullptr);
    });
    if (!prepareLights(scene, lights, params)) return nullptr;

    const VisibilityBuffer visibility(scene, options.camera, params);
    if (visibility.camera() == nullptr)
        std::fprintf(stderr, "There is no camera \"%s\" in the scene.\n", kDefaultCamera.data());
    auto image = std::make_unique<ImageBuffer>(makeImage(params, options.memoryBudget));
    const FrameShading shading(visibility, scene);
    PixelProgress progress(workOf(visibility, params));
    if (!paintTiles(visibility, shading, *image, params.unpremultiply != 0, progress))
        return nullptr;
    if (params.blurOption != 0 && !blur(*image, params, progress)) return nullptr;
    return image;
}

}  // namespace orvin
