// The last step of a frame: one row of rendered pixels into one row of the host's world.
#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace orvin {

/// The host's 8-bit pixel: alpha, red, green, blue bytes.
struct HostPixel {
    std::uint8_t alpha = 0;
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    friend bool operator==(const HostPixel&, const HostPixel&) = default;
};

/// How a rendered pixel meets the output.
struct CopyRule {
    bool compositeOnOriginal = false;   // over the input layer
    bool keepAlpha = true;              // without composite: pass the rendered pixel through
    bool colorAsIs = false;             // without both: the background is in the picture already
    std::array<float, 3> background{};  // without all of these: red, green, blue, 0..1
};

/// Copies `rendered` (R, G, B, A bytes, colour not premultiplied) into `output`; `input` is only
/// read under compositeOnOriginal. All three have the same length in pixels (`rendered` four bytes
/// each). Sums above 255 become 255, fractions are cut off.
///
/// Composite has two cases by design: over a transparent input the rendered colour counts as
/// premultiplied, over any other it is weighted by its alpha.
void copyRow(std::span<const std::uint8_t> rendered, std::span<const HostPixel> input,
             std::span<HostPixel> output, const CopyRule& rule);

}  // namespace orvin
