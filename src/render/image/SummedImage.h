// SummedImage: the form in which textures are sampled. A table holds, for each pixel, the sums of
// all bytes from the origin to it (F. Crow, "Summed-area tables for texture mapping", 1984), so
// that the average over any box of pixels costs four look-ups.
//
// Texel coordinates: x to the right, y in stored rows (row 0 is t = 0), pixel i covers i to i + 1.
// The sums are 32 bits and wrap around: a box is right as long as it holds no more than 16.8
// million pixels, however large the image is.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "render/image/ImageBuffer.h"
#include "render/image/Lanes.h"
#include "toolkit/Identity.h"

namespace orvin {

class SummedImage {
  public:
    /// Builds the table of an RGB or RGBA picture; the picture isn't needed any more afterwards.
    /// Takes its path over. Throws eBaseError 101 for another kind, an empty picture, or one that
    /// can't be read, std::bad_alloc where memory is short.
    explicit SummedImage(const ImageBuffer& image);

    int width() const { return width_; }
    int height() const { return height_; }
    bool hasAlpha() const { return hasAlpha_; }
    const std::string& path() const { return path_; }
    void setPath(std::string path) { path_ = std::move(path); }

    /// What caches know the picture by: another one may come under its path.
    const Identity& identity() const { return identity_; }

    /// Average bytes R, G, B, A (truncated) of the pixels x0..x1, y0..y1, both ends included. A is
    /// 255 without alpha. Requires 0 <= x0 <= x1 < width and 0 <= y0 <= y1 < height.
    std::array<std::uint8_t, 4> boxQuery(int x0, int y0, int x1, int y1) const;

    /// Filtered colour R, G, B, A in 0..1 over the box (s0, t0)..(s1, t1) in texels; A is 1 without
    /// alpha. Each corner is clamped to 0..size - 1 (NaN counts as 0), corners in the wrong order
    /// are exchanged. Boxes below a texel are bilinear, large ones averages, with a ramp between.
    std::array<float, 4> sampleBox(double s0, double t0, double s1, double t1) const;

    /// The picture back from the table, exact.
    ImageBuffer toImage() const;

  private:
    template <std::size_t kChannels>
    void build(const ImageBuffer& image);
    template <std::size_t kChannels>
    std::array<float, 4> sample(double s0, double t0, double s1, double t1) const;

    // Sums over the box; the fourth is 0 for three channels.
    template <std::size_t kChannels>
    Lanes boxSum(int x0, int y0, int x1, int y1) const;
    // Their truncated means.
    template <std::size_t kChannels>
    RealLanes boxMean(int x0, int y0, int x1, int y1) const;

    int width_ = 0;
    int height_ = 0;
    bool hasAlpha_ = false;
    std::size_t stride_ = 0;  // entries per table row
    // (width + 1) x (height + 1) pixels with a leading row and column of zeros, so that no
    // neighbour is ever missing; one entry more at the end, as three channels are read by fours.
    std::unique_ptr<std::uint32_t[]> table_;
    std::string path_;
    Identity identity_;
};

template <std::size_t kChannels>
inline Lanes SummedImage::boxSum(int x0, int y0, int x1, int y1) const {
    const std::size_t left = static_cast<std::size_t>(x0) * kChannels;
    const std::size_t right = static_cast<std::size_t>(x1 + 1) * kChannels;
    const std::uint32_t* above = table_.get() + static_cast<std::size_t>(y0) * stride_;
    const std::uint32_t* below = table_.get() + static_cast<std::size_t>(y1 + 1) * stride_;
    const Lanes sums = loadLanes(below + right) - loadLanes(below + left) -
                       loadLanes(above + right) + loadLanes(above + left);
    constexpr Lanes kColour = {~0U, ~0U, ~0U, kChannels == 4 ? ~0U : 0U};
    return sums & kColour;
}

template <std::size_t kChannels>
inline RealLanes SummedImage::boxMean(int x0, int y0, int x1, int y1) const {
    // (sum + 1/2) / count never touches a whole number, so the rounding of the reciprocal can't
    // change the truncated quotient.
    const double perPixel = 1.0 / (static_cast<double>(x1 - x0 + 1) * (y1 - y0 + 1));
    return truncated((toReal(boxSum<kChannels>(x0, y0, x1, y1)) + 0.5) * perPixel);
}

inline std::array<std::uint8_t, 4> SummedImage::boxQuery(int x0, int y0, int x1, int y1) const {
    const RealLanes mean = hasAlpha_ ? boxMean<4>(x0, y0, x1, y1) : boxMean<3>(x0, y0, x1, y1);
    const auto byte = [](double value) {
        return static_cast<std::uint8_t>(static_cast<int>(value));
    };
    return {byte(mean.low[0]), byte(mean.low[1]), byte(mean.high[0]),
            hasAlpha_ ? byte(mean.high[1]) : std::uint8_t{255}};
}

}  // namespace orvin
