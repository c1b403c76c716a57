#include "scene/RenderParams.h"

namespace orvin {

void RenderParams::setAntiAliasLevel(int level) {
    antiAliasSize = 1;
    blurOption = 0;
    blurRadius = 0.0F;
    blurContrast = 0.0F;
    if (level < 2 || level > 17) return;
    // Four levels a grid: without a filter, and with its three radii.
    constexpr float kRadii[] = {0.0F, 0.6F, 1.0F, 1.5F};
    const int filter = (level - 2) % 4;
    antiAliasSize = static_cast<std::uint8_t>(2 + (level - 2) / 4);
    blurOption = filter != 0 ? 1 : 0;
    blurRadius = kRadii[filter];
}

}  // namespace orvin
