// RenderParams: the settings block from the shell and the Set-Up window to all renderers.
#pragma once

#include <array>
#include <cstdint>

namespace orvin {

struct RenderParams {
    static constexpr std::uint32_t kShadows = 1;  // bit of flags

    std::uint32_t flags = 8;
    double width = 320.0;  // pixels
    double height = 240.0;
    double dpi = 72.0;
    std::uint8_t channels = 4;  // of the output; 4 keeps the rendered alpha
    std::uint8_t bitsPerChannel = 8;
    std::uint8_t antiAliasSize = 3;  // n: subpixels along a side of a pixel, 1 to 5
    std::int32_t maxTileArea = 10000;
    std::int32_t passValue = 1;                            // reserved for the caller
    std::array<std::int32_t, 4> cropRect{0, 0, 319, 239};  // left, top, right, bottom
    std::uint8_t bestGeometry = 1;                         // best over draft meshing
    std::int32_t blurOption = 0;  // 0 none, 1 plain blur, 2 only where contrast is high
    float blurRadius = 2.5F;      // pixels
    float blurContrast = 1.0F;
    std::int32_t shadowQuality = 512;  // side of every shadow map in texels
    float pixelAspect = 1.0F;          // pixel width over height
    std::int32_t cullBehindOpaque = 1;
    std::int32_t unpremultiply = 1;  // stored colour is divided by alpha
    double viewAspect = 0.0;         // 0: the camera's aspect

    /// Sets the subpixel grid and the post-filter of an anti-alias level; a level outside 2..17
    /// means none of both.
    void setAntiAliasLevel(int level);
};

}  // namespace orvin
