#include "render/shadow/ShadowKernel.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace orvin {

ShadowKernel::ShadowKernel(int softness)
    : size_(2 * std::clamp(softness, 1, kMaxSoftness) - 1),
      side_(static_cast<std::size_t>(size_)),
      sums_(static_cast<std::size_t>(size_) + 1) {
    const int middle = half();
    std::vector<double> bell(side_.size(), 1.0);
    for (int i = 0; i < size_ && middle != 0; ++i) {
        const double x = static_cast<double>(i) / middle - 1.0;
        bell[static_cast<std::size_t>(i)] = std::exp2(-2.0 * x * x);
    }
    const double scale = kSideSum / std::accumulate(bell.begin(), bell.end(), 0.0);
    std::transform(bell.begin(), bell.end(), side_.begin(), [scale](double w) {
        return static_cast<std::uint32_t>(std::llround(w * scale));
    });
    // What rounding left over goes to the middle: the weights sum to 1 exactly.
    side_[static_cast<std::size_t>(middle)] +=
        kSideSum - std::accumulate(side_.begin(), side_.end(), std::uint32_t{0});
    std::partial_sum(side_.begin(), side_.end(), sums_.begin() + 1);
}

}  // namespace orvin
