// Rgba: a colour as four floats, red, green, blue, alpha, in 0..1 (lights and sums may exceed 1).
#pragma once

#include <array>

namespace orvin {

using Rgba = std::array<float, 4>;

/// Perceived brightness of a colour as maps use it.
inline float luminance(const Rgba& c) {
    return static_cast<float>(0.299 * static_cast<double>(c[0]) +
                              0.587 * static_cast<double>(c[1]) +
                              0.114 * static_cast<double>(c[2]));
}

}  // namespace orvin
