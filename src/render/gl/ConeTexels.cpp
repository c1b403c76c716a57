#include "render/gl/ConeTexels.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "toolkit/math/Vec.h"

namespace orvin {

double coneAngle(double outer) {
    return std::clamp(outer, radians(0.1), radians(89.0));
}

std::vector<unsigned char> coneTexels(double inner, double outer, int side) {
    const double angle = coneAngle(outer);
    const double tangent = std::tan(angle);
    const double cosOuter = std::cos(angle);
    const double cosInner = std::cos(std::min(inner, angle));
    std::vector<unsigned char> texels(static_cast<std::size_t>(side) *
                                      static_cast<std::size_t>(side));
    const auto across = [side](int i) { return (i + 0.5) / side * 2.0 - 1.0; };
    for (int y = 1; y < side - 1; ++y)
        for (int x = 1; x < side - 1; ++x) {
            const double r = tangent * std::hypot(across(x), across(y));
            const double c = 1.0 / std::sqrt(1.0 + r * r);
            double light = c < cosOuter ? 0.0 : 1.0;
            if (light > 0.0 && c < cosInner) {
                const double t = 1.0 - (c - cosInner) / (cosOuter - cosInner);
                light = t * t * (3.0 - 2.0 * t);
            }
            texels[static_cast<std::size_t>(y) * static_cast<std::size_t>(side) +
                   static_cast<std::size_t>(x)] = static_cast<unsigned char>(light * 255.0 + 0.5);
        }
    return texels;
}

}  // namespace orvin
