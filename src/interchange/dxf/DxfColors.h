// The AutoCAD Color Index: the colours that a DXF file names by number.
#pragma once

#include <array>

namespace orvin {

struct DxfColor {
    float red = 0.0F;  // 0 to 1
    float green = 0.0F;
    float blue = 0.0F;

    friend constexpr bool operator==(const DxfColor&, const DxfColor&) = default;
};

inline constexpr int kDxfColorCount = 256;

/// Row n is the colour of index n + 1: the six pure colours and white (1 to 7), two greys, 24 hues
/// of five brightnesses in two saturations (10 to 249), six greys up to white (250 to 255), and
/// white once more.
const std::array<DxfColor, kDxfColorCount>& dxfColors();

/// The index (1 to 256) of the colour nearest to `color`; the first of several that are.
int nearestDxfColor(DxfColor color);

}  // namespace orvin
