#include "host/LayerMaps.h"

#include <algorithm>

#include "host/ParamCheckout.h"
#include "host/ParameterTable.h"
#include "render/image/ImageCache.h"

namespace orvin {

namespace {

bool hasTransparency(const PF_EffectWorld& world) {
    for (int y = world.height - 1; y >= 0; --y) {
        const PF_Pixel* row = worldRow(world, y);
        if (std::any_of(row, row + world.width, [](const PF_Pixel& p) { return p.alpha < 255; }))
            return true;
    }
    return false;
}

}  // namespace

std::unique_ptr<SummedImage> imageOfWorld(const PF_EffectWorld& world, std::string name) {
    const bool alpha = hasTransparency(world);
    ImageBuffer image(world.width, world.height, alpha ? PixelKind::kRgba : PixelKind::kRgb);
    std::vector<std::uint8_t> bytes(image.rowBytes());
    for (int y = 0; y < world.height; ++y) {
        const PF_Pixel* row = worldRow(world, world.height - 1 - y);
        std::uint8_t* out = bytes.data();
        for (int x = 0; x < world.width; ++x) {
            *out++ = row[x].red;
            *out++ = row[x].green;
            *out++ = row[x].blue;
            if (alpha) *out++ = row[x].alpha;
        }
        image.writeRow(y, std::span<const std::uint8_t>(bytes));
    }
    image.setPath(std::move(name));
    return std::make_unique<SummedImage>(image);
}

PF_Err fillLayerMaps(PF_InData& in, SceneX& scene) {
    for (int n = 1; n <= param::kLayerMapCount; ++n) {
        if (!scene.usesExtMap(n)) continue;
        const ParamCheckout checkout(in, param::layerMap(n));
        if (checkout.error() != PF_Err_NONE) return checkout.error();
        if (const PF_LayerDef* world = checkout.layer()) {
            scene.ensureExtMap(n);
            addLayerImage(extMapName(n), imageOfWorld(*world, extMapName(n)));
        }
    }
    return PF_Err_NONE;
}

PF_Err listLayerMaps(PF_InData& in, std::vector<int>& numbers) {
    numbers.clear();
    for (int n = 1; n <= param::kLayerMapCount; ++n) {
        const ParamCheckout checkout(in, param::layerMap(n));
        if (checkout.error() != PF_Err_NONE) return checkout.error();
        if (checkout.layer() != nullptr) numbers.push_back(n);
    }
    return PF_Err_NONE;
}

}  // namespace orvin
