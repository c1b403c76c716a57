// ShadowKernel: the weights of the filter over a shadow map.
//
// The filter is a bell, 2^(-2 (x^2 + y^2)) over -1..1 along each side, and so the product of one
// weight per column and one per row. These are whole numbers: sums of weights are exact, whichever
// way they are added up, and the weights of any rectangle cost two subtractions and a product.
#pragma once

#include <cstdint>
#include <vector>

namespace orvin {

class ShadowKernel {
  public:
    /// As soft as it gets: such a filter is wider than the largest map on each side of a texel.
    static constexpr int kMaxSoftness = 16384;

    /// The sum of one side's weights. The whole kernel's is the square of it.
    static constexpr std::uint32_t kSideSum = std::uint32_t{1} << 31;

    /// 2 softness - 1 taps along each side; softness is held in 1 to kMaxSoftness.
    explicit ShadowKernel(int softness);

    int size() const { return size_; }
    /// Taps on each side of the middle one.
    int half() const { return size_ / 2; }

    /// The weights of one side, size() of them.
    const std::uint32_t* side() const { return side_.data(); }

    /// The sum of the taps first..last of one side.
    std::uint32_t sideSum(int first, int last) const {
        return sums_[static_cast<std::size_t>(last) + 1] - sums_[static_cast<std::size_t>(first)];
    }

    /// A product of two sides' sums as a part of the whole kernel.
    static double part(std::uint64_t weights) {
        return static_cast<double>(weights) / (static_cast<double>(kSideSum) * kSideSum);
    }

  private:
    int size_;
    std::vector<std::uint32_t> side_;
    std::vector<std::uint32_t> sums_;  // of the weights in front of each one, and of all
};

}  // namespace orvin
