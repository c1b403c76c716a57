#include "render/TileGrid.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace orvin {

TileGrid::TileGrid(int subWidth, int subHeight, int maxTileArea, int subpixels)
    : subWidth_(subWidth), subHeight_(subHeight) {
    int pixels = truncToInt(std::sqrt(std::max(1.0, static_cast<double>(maxTileArea))));
    for (;; pixels *= 2) {
        side_ = pixels * subpixels;
        columns_ = (subWidth - 1) / side_ + 1;
        rows_ = (subHeight - 1) / side_ + 1;
        if (std::int64_t{columns_} * rows_ <= kMaxTiles) return;
    }
}

GridRect TileGrid::rect(std::size_t index) const {
    const int column = static_cast<int>(index) / rows_;
    const int row = static_cast<int>(index) % rows_;
    return {column * side_, row * side_, std::min((column + 1) * side_, subWidth_) - 1,
            std::min((row + 1) * side_, subHeight_) - 1};
}

GridRect TileGrid::overlapped(double xMin, double xMax, double yMin, double yMax) const {
    const int left = std::max(truncToInt(xMin + 0.5), 0);
    const int right = std::min(truncToInt(xMax - 0.5), subWidth_ - 1);
    const int top = std::max(truncToInt(yMin + 0.5), 0);
    const int bottom = std::min(truncToInt(yMax - 0.5), subHeight_ - 1);
    if (left >= subWidth_ || right < 0 || top >= subHeight_ || bottom < 0) return {};
    return {left / side_, top / side_, right / side_, bottom / side_};
}

}  // namespace orvin
