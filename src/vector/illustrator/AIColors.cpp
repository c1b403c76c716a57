#include "vector/illustrator/AIColors.h"

#include <algorithm>
#include <limits>

namespace orvin {

void AIColors::cmykColor(const std::array<float, 4>& ink, Use use) {
    AIColor color{0.0F, 0.0F, 0.0F, 1.0F};
    // Two numbers that are finite may have a sum that isn't.
    constexpr float kLeast = std::numeric_limits<float>::lowest();
    for (std::size_t i = 0; i < 3; ++i)
        color[i] = 1.0F - std::clamp(ink[i] + ink[3], kLeast, 1.0F);
    setColor(color, use);
}

void AIColors::rgbColor(const std::array<float, 3>& rgb, Use use) {
    lastRgb_ = rgb;
    setColor({rgb[0], rgb[1], rgb[2], 1.0F}, use);
}

void AIColors::setColor(const AIColor& color, Use use) {
    (use == Use::kFill ? fill_ : stroke_) = {color, true};
    // The fill is what materials are made of, and listed after strokes too: before the first fill
    // that is the colour of the start.
    const auto [place, isNew] = places_.try_emplace(fill_.color, list_.size());
    if (isNew) list_.push_back({"AIColor " + std::to_string(list_.size() + 1), fill_.color, 0});
    ++list_[place->second].refCount;
}

}  // namespace orvin
