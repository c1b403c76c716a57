// GuideLabels: the small pictures that name a viewer's guides.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace orvin {

enum class GuideLabel { kLeftEdge, kVerticalAxis, kFront, kGround };

/// R, G, B bytes without gaps, bottom row first, as OpenGL draws pixels.
struct LabelPicture {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rgb;
};

/// "Left Edge" (10 x 57 pixels) and "Vertical Axis" (10 x 81), read upwards; "Front" (35 x 9) and
/// "Ground" (46 x 9). Letters of `ink` on `paper`.
LabelPicture labelPicture(GuideLabel label, const std::array<std::uint8_t, 3>& ink,
                          const std::array<std::uint8_t, 3>& paper);

}  // namespace orvin
