// A value over time: constant, or key frames with straight lines or a smooth curve between them.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace orvin::stand_in {

/// Numbers that move together (a slider has one, a colour three or four, a matrix sixteen).
using Values = std::vector<double>;

/// Keys in rising order of their frames (real numbers: a time between frames has its value too).
/// Before the first key its value holds, behind the last one that key's. An empty track has no
/// value.
class Track {
  public:
    struct Key {
        double frame = 0.0;
        Values values;
    };

    Track() = default;
    explicit Track(Values constant) { keys_.push_back({0.0, std::move(constant)}); }
    /// What lies between two keys.
    enum class Between {
        kStraight,  // a line
        kSmooth,    // a curve that never leaves the range of its two keys, flat at the outer keys
                    // and where the values turn round
        kHold       // the earlier key: switches and choices
    };

    /// Sorts by frame; of two keys on one frame the later in the list counts.
    Track(std::vector<Key> keys, Between between) : keys_(std::move(keys)), between_(between) {
        std::stable_sort(keys_.begin(), keys_.end(),
                         [](const Key& a, const Key& b) { return a.frame < b.frame; });
    }

    bool empty() const { return keys_.empty(); }
    bool varies() const { return keys_.size() > 1; }
    const std::vector<Key>& keys() const { return keys_; }
    Between between() const { return between_; }
    void holdKeys() { between_ = Between::kHold; }

    Values at(double frame) const {
        if (keys_.empty()) return {};
        const auto next =
            std::upper_bound(keys_.begin(), keys_.end(), frame,
                             [](double wanted, const Key& key) { return wanted < key.frame; });
        if (next == keys_.begin()) return next->values;
        const Key& before = *(next - 1);
        if (next == keys_.end() || between_ == Between::kHold) return before.values;
        const auto index = static_cast<std::size_t>(next - keys_.begin());
        const double span = next->frame - before.frame;
        const double t = (frame - before.frame) / span;
        Values result = before.values;
        for (std::size_t i = 0; i < result.size(); ++i) {
            const double step = next->values[i] - before.values[i];
            result[i] += step * t;
            if (between_ != Between::kSmooth) continue;
            // Hermite's curve, less the straight line.
            const double start = slope(index - 1, i) * span - step;
            const double end = slope(index, i) * span - step;
            result[i] += t * (1.0 - t) * ((1.0 - t) * start - t * end);
        }
        return result;
    }

  private:
    /// Per frame, at a key: the weighted harmonic mean of the slopes on both sides, which keeps the
    /// curve monotone (Fritsch and Butland 1984).
    double slope(std::size_t key, std::size_t i) const {
        if (key == 0 || key + 1 == keys_.size()) return 0.0;
        const Key& key0 = keys_[key - 1];
        const Key& key1 = keys_[key];
        const Key& key2 = keys_[key + 1];
        const double span0 = key1.frame - key0.frame;
        const double span1 = key2.frame - key1.frame;
        if (!(span0 > 0.0) || !(span1 > 0.0)) return 0.0;
        const double slope0 = (key1.values[i] - key0.values[i]) / span0;
        const double slope1 = (key2.values[i] - key1.values[i]) / span1;
        if (!(slope0 * slope1 > 0.0)) return 0.0;
        const double weight = (span0 + 2.0 * span1) / (3.0 * (span0 + span1));
        return slope0 * slope1 / (weight * slope1 + (1.0 - weight) * slope0);
    }

    std::vector<Key> keys_;
    Between between_ = Between::kStraight;
};

}  // namespace orvin::stand_in
