#include "render/SoftwareRenderer.h"

#include <algorithm>
#include <cstdio>
#include <utility>
#include <vector>

#include "render/Blur.h"
#include "render/CameraX.h"
#include "render/LightX.h"
#include "render/PixelTree.h"
#include "render/PixelWriter.h"
#include "render/TilePainter.h"
#include "render/VisibilityBuffer.h"
#include "scene/SceneX.h"
#include "toolkit/Progress.h"
#include "toolkit/platform/Platform.h"

namespace orvin {

namespace {

constexpr double kMaxSide = 32767.0;

/// Runs a function at the end of the scope, however that is reached.
template <typename Leave>
class AtExit {
  public:
    explicit AtExit(Leave leave) : leave_(std::move(leave)) {}
    ~AtExit() { leave_(); }
    AtExit(const AtExit&) = delete;
    AtExit& operator=(const AtExit&) = delete;

  private:
    Leave leave_;
};

/// The work of a frame in rows of pixels, as the progress callback hears of it.
class RowProgress {
  public:
    explicit RowProgress(int total) : total_(std::max(total, 1)) {}
    bool poll() const { return pollProgress(std::min(done_, total_), total_) == 0; }
    bool rowDone() {
        ++done_;
        return poll();
    }

  private:
    int done_ = 0;
    int total_;
};

std::vector<LightX*> enabledLights(const SceneX& scene) {
    std::vector<LightX*> lights;
    for (SceneMember* member : scene.members(MemberKind::kLight)) {
        auto* light = dynamic_cast<LightX*>(member);
        if (light != nullptr && light->isEnabled()) lights.push_back(light);
    }
    return lights;
}

// False when the frame is to stop.
bool prepareLights(SceneX& scene, const std::vector<LightX*>& lights, const RenderParams& params,
                   const ShadowMapBuilder& buildShadowMap) {
    RenderParams shadowParams = params;
    shadowParams.pixelAspect = 1.0F;
    const bool shadows = (params.flags & RenderParams::kShadows) != 0 && buildShadowMap;
    for (LightX* light : lights) {
        light->prepare();
        light->setShadowMap(shadows && light->castsShadow()
                                ? buildShadowMap(scene, *light, shadowParams)
                                : nullptr);
        if (pollProgress(0, 1) != 0) return false;
    }
    return true;
}

ImageBuffer makeImage(const RenderParams& params, std::uint64_t budget) {
    if (budget == 0) {
        const std::uint64_t free = platform::freePhysicalMemory();
        // A budget of 0 would mean "no limit".
        budget = free > ImageBuffer::kBudgetReserve ? free - ImageBuffer::kBudgetReserve : 1;
    }
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

int rowsOf(const VisibilityBuffer& visibility) {
    int rows = 0;
    for (std::size_t k = 0; k < visibility.tileCount(); ++k)
        rows += (visibility.tileRect(k).height() - 1) / visibility.subpixels() + 1;
    return rows;
}

// False when the frame is to stop.
bool paintTiles(const VisibilityBuffer& visibility, const FrameShading& shading,
                PixelWriter& writer, const ImageBuffer& image, RowProgress& progress) {
    VisibilityTile tile;
    TilePainter painter(shading);
    PixelTree tree;
    for (std::size_t k = 0; k < visibility.tileCount(); ++k) {
        visibility.getTile(k, tile);
        painter.begin(tile);
        const GridRect pixels = pixelsIn(image, tile);
        for (int y = pixels.top; y <= pixels.bottom; ++y) {
            if (!progress.rowDone()) return false;
            for (int x = pixels.left; x <= pixels.right; ++x)
                if (tree.build(tile, x, y)) writer.write(x, y, painter.paint(tree));
        }
        if (!progress.poll()) return false;
    }
    return true;
}

// False when the frame is to stop.
bool blur(ImageBuffer& image, const RenderParams& params, RowProgress& progress) {
    BlurSettings settings;
    settings.onlyContrast = params.blurOption == 2;
    settings.radius = static_cast<double>(params.blurRadius);
    settings.contrast = static_cast<double>(params.blurContrast);
    const Result result =
        blurImage(image, settings, [&progress](int) { return progress.rowDone() ? 0 : 1; });
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
    if (!prepareLights(scene, lights, params, options.buildShadowMap)) return nullptr;

    const VisibilityBuffer visibility(scene, options.camera, params);
    if (visibility.camera() == nullptr)
        std::fprintf(stderr, "There is no camera \"%s\" in the scene.\n", kDefaultCamera.data());
    auto image = std::make_unique<ImageBuffer>(makeImage(params, options.memoryBudget));
    const FrameShading shading(visibility, scene);
    PixelWriter writer(*image, params.unpremultiply != 0);
    RowProgress progress(rowsOf(visibility) + (params.blurOption != 0 ? image->height() : 0));
    if (!paintTiles(visibility, shading, writer, *image, progress)) return nullptr;
    if (params.blurOption != 0 && !blur(*image, params, progress)) return nullptr;
    return image;
}

}  // namespace orvin
