// The host's layers as textures of one frame.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/abi/InData.h"
#include "render/image/SummedImage.h"
#include "scene/SceneX.h"

namespace orvin {

/// A texture of a host world's pixels under `name`: RGBA where any pixel isn't opaque, RGB
/// otherwise. Row 0 is the world's bottom row. Throws std::bad_alloc.
std::unique_ptr<SummedImage> imageOfWorld(const PF_EffectWorld& world, std::string name);

/// Lends the layers that the scene's materials use to the image cache until clearLayerImages().
/// The host's error at the first layer that can't be had.
PF_Err fillLayerMaps(PF_InData& in, SceneX& scene);

/// The numbers (1 to 10) of the Layer Maps that have a picture now, for menus. Stops at the first
/// one that the host refuses, and returns its error.
PF_Err listLayerMaps(PF_InData& in, std::vector<int>& numbers);

/// One pixel row of a world, counted from the top. The host leaves the low two bits of rowbytes
/// without a meaning.
inline const PF_Pixel* worldRow(const PF_EffectWorld& world, int y) {
    const auto bytes = static_cast<std::ptrdiff_t>(world.rowbytes & ~3);
    return reinterpret_cast<const PF_Pixel*>(reinterpret_cast<const char*>(world.data) + y * bytes);
}
inline PF_Pixel* worldRow(PF_EffectWorld& world, int y) {
    return const_cast<PF_Pixel*>(worldRow(static_cast<const PF_EffectWorld&>(world), y));
}

}  // namespace orvin
