// One frame into the host's output world.
#include <algorithm>
#include <new>
#include <vector>

#include "host/FrameServices.h"
#include "host/HostProgress.h"
#include "host/LayerMaps.h"
#include "host/OrvinApp.h"
#include "host/ParamValues.h"
#include "host/PixelCopy.h"
#include "render/gl/RenderWith.h"
#include "render/image/ImageCache.h"
#include "toolkit/Errors.h"

namespace orvin {

namespace {

static_assert(sizeof(HostPixel) == sizeof(PF_Pixel));

double ratio(const PF_RationalScale& scale) {
    return scale.num > 0 && scale.den > 0 ? static_cast<double>(scale.num) / scale.den : 1.0;
}

/// The layers of a frame go back when it is over, however it ends.
struct LayerLoan {
    LayerLoan() { clearLayerImages(); }
    ~LayerLoan() { clearLayerImages(); }
    LayerLoan(const LayerLoan&) = delete;
    LayerLoan& operator=(const LayerLoan&) = delete;
};

RenderParams frameParams(const RenderState& state, const PF_InData& in,
                         const PF_EffectWorld& output) {
    RenderParams params = state.params;
    params.width = output.width;
    params.height = output.height;
    // A preview that leaves out more columns than rows has pixels that are wider by as much.
    params.pixelAspect *= static_cast<float>(ratio(in.downsample_y) / ratio(in.downsample_x));
    return params;
}

GlFrameOptions openGlOptions(OrvinApp& app, Renderer renderer, bool draft, bool keepAlpha) {
    const OrvinPreferences& preferences = app.preferences();
    GlFrameOptions options;
    options.style = renderer;
    options.textures = !draft || preferences.showTexturesComp;
    options.advancedLighting = preferences.advancedGLLighting;
    // A draft's background is drawn; that of a frame is laid under it when it is copied.
    if (draft && !keepAlpha) options.background = app.renderState().viewer.background;
    // An artist who wants to see the work has it in a window.
    options.targets.pbuffer = preferences.hideGLRenderWindows;
    return options;
}

void copyToWorld(const ImageBuffer& picture, const PF_LayerDef& input, PF_EffectWorld& output,
                 const CopyRule& rule) {
    const int width = std::min(output.width, picture.width());
    const int height = std::min(output.height, picture.height());
    std::vector<std::uint8_t> rendered(picture.rowBytes());
    std::vector<HostPixel> original(static_cast<std::size_t>(width));
    for (int y = height - 1; y >= 0; --y) {
        // Renderer rows count from the bottom, the host's from the top.
        if (picture.readRow(picture.height() - 1 - y, std::span<std::uint8_t>(rendered)) !=
            kSuccess)
            throw kImageBufferFailed;
        std::fill(original.begin(), original.end(), HostPixel{});
        if (rule.compositeOnOriginal && input.data != nullptr && y < input.height) {
            const auto* row = reinterpret_cast<const HostPixel*>(worldRow(input, y));
            std::copy_n(row, std::min(width, input.width), original.begin());
        }
        auto* out = reinterpret_cast<HostPixel*>(worldRow(output, y));
        copyRow(rendered, original, {out, static_cast<std::size_t>(width)}, rule);
    }
}

}  // namespace

PF_Err renderFrame(OrvinApp& app, PF_InData& in, PF_OutData&, ParamArray params,
                   PF_EffectWorld& output) {
    SceneX* const scene = app.scene();
    if (scene == nullptr || params == nullptr || output.width <= 0 || output.height <= 0)
        return PF_Err_NONE;
    RenderState& state = app.renderState();
    const HostProgress progress(in);
    const LayerLoan loan;
    if (const PF_Err error = fillLayerMaps(in, *scene); error != PF_Err_NONE) return error;

    // The viewers show the comp's pixels as well.
    state.setPixelAspect(static_cast<float>(ratio(in.pixel_aspect_ratio)));
    RenderParams frame = frameParams(state, in, output);
    const bool draft = in.quality < PF_Quality_HI;
    CopyRule rule;
    rule.compositeOnOriginal = checkboxValue(params, param::kCompositeOnOriginal);
    rule.keepAlpha = state.keepsAlpha() || (draft && rule.compositeOnOriginal);
    rule.background = state.viewer.background;

    // A draft is always OpenGL's; which of its renderers, says the method where it is one.
    Renderer renderer = rendererFor(state.renderMethod);
    if (draft && !drawsWithOpenGl(renderer)) renderer = Renderer::kHiQualityOpenGl;
    // Where OpenGL can't, a draft must still be quick: one sample a pixel.
    if (draft) frame.setAntiAliasLevel(1);
    const auto picture = renderWith(app.openGl(), *scene, frame,
                                    openGlOptions(app, renderer, draft, rule.keepAlpha), {});
    if (!picture) {
        if (progress.stopped() == PF_Err_NONE) throw std::bad_alloc();
        return progress.stopped();
    }
    if ((output.world_flags & PF_WorldFlag_WRITEABLE) == 0 || output.data == nullptr)
        return progress.stopped();
    rule.colorAsIs = draft && app.openGl().failure().empty();
    copyToWorld(*picture, params[param::kInput]->u.ld, output, rule);
    return progress.stopped();
}

}  // namespace orvin
