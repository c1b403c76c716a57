#include "host/PixelCopy.h"

#include <algorithm>

namespace orvin {

namespace {

constexpr double kPerByte = 1.0 / 255.0;

std::uint8_t clampByte(double value) {
    return static_cast<std::uint8_t>(std::clamp(value, 0.0, 255.0));
}

struct Rendered {
    std::uint8_t red, green, blue, alpha;
};

HostPixel over(const Rendered& p, HostPixel in) {
    if (p.alpha == 0) return in;
    const double f = p.alpha * kPerByte;
    const double weight = in.alpha > 0 ? f : 1.0;
    const auto mix = [f, weight](std::uint8_t below, std::uint8_t above) {
        return clampByte(below * (1.0 - f) + above * weight);
    };
    return {clampByte(in.alpha * (1.0 - f) + p.alpha), mix(in.red, p.red), mix(in.green, p.green),
            mix(in.blue, p.blue)};
}

HostPixel onBackground(const Rendered& p, const std::array<float, 3>& background) {
    const double f = p.alpha * kPerByte;
    const auto mix = [f](std::uint8_t above, float below) {
        return clampByte(above * f + static_cast<double>(below) * (1.0 - f) * 255.0);
    };
    return {255, mix(p.red, background[0]), mix(p.green, background[1]),
            mix(p.blue, background[2])};
}

}  // namespace

void copyRow(std::span<const std::uint8_t> rendered, std::span<const HostPixel> input,
             std::span<HostPixel> output, const CopyRule& rule) {
    for (std::size_t x = 0; x < output.size(); ++x) {
        const std::uint8_t* bytes = &rendered[4 * x];
        const Rendered p{bytes[0], bytes[1], bytes[2], bytes[3]};
        if (rule.compositeOnOriginal)
            output[x] = over(p, input[x]);
        else if (rule.keepAlpha)
            output[x] = {p.alpha, p.red, p.green, p.blue};
        else if (rule.colorAsIs)
            output[x] = {255, p.red, p.green, p.blue};
        else
            output[x] = onBackground(p, rule.background);
    }
}

}  // namespace orvin
