// A world as the host hands it over: 8-bit ARGB rows of padded length, with guard bytes around the
// block and in the padding.
#pragma once

#include "common/Png.h"
#include "host/abi/Params.h"

#include <cstdint>
#include <vector>

namespace orvin::stand_in {

class World {
  public:
    World() = default;
    /// Rows are padded by a few pixels; the pixels hold a pattern that tells unwritten ones.
    World(int width, int height);
    /// The picture, halved and so on by `downsample` (box filter, premultiplied) into a world of
    /// the rounded-up size.
    World(const apps::Picture& picture, int downsample);

    int width() const { return width_; }
    int height() const { return height_; }
    bool empty() const { return memory_.empty(); }
    PF_Pixel* row(int y);
    const PF_Pixel* row(int y) const;
    void fill(PF_Pixel pixel);

    /// Fills in what describes the pixels; the rest of `layer` is cleared.
    void describe(PF_LayerDef& layer, bool writeable, PF_RationalScale pixelAspect);

    /// Whether the padding and the bytes around the block are as they were.
    bool guardsIntact() const;
    /// Pixels that still hold the pattern.
    long long unwrittenPixels() const;
    /// A number that changes with any pixel.
    std::uint64_t checksum() const;

    apps::Picture picture() const;

  private:
    std::size_t rowBytes() const;
    void guard();

    int width_ = 0;
    int height_ = 0;
    int padding_ = 0;  // bytes behind each row
    std::vector<std::uint8_t> memory_;
};

}  // namespace orvin::stand_in
