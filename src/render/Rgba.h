// Rgba: a colour as four floats, red, green, blue, alpha, in 0..1 (lights and sums may exceed 1).
#pragma once

#include <array>
#include <cmath>

namespace orvin {

using Rgba = std::array<float, 4>;

inline bool isFinite(const Rgba& c) {
    return std::isfinite(c[0]) && std::isfinite(c[1]) && std::isfinite(c[2]) && std::isfinite(c[3]);
}

/// For writing.
inline std::array<double, 4> asDoubles(const Rgba& c) {
    return {static_cast<double>(c[0]), static_cast<double>(c[1]), static_cast<double>(c[2]),
            static_cast<double>(c[3])};
}

/// Perceived brightness of a colour as maps use it.
inline float luminance(const Rgba& c) {
    return static_cast<float>(0.299 * static_cast<double>(c[0]) +
                              0.587 * static_cast<double>(c[1]) +
                              0.114 * static_cast<double>(c[2]));
}

}  // namespace orvin
