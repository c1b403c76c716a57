// A value over time: constant, or key frames with straight lines between them.
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
    /// Sorts by frame; of two keys on one frame the later in the list counts.
    Track(std::vector<Key> keys, bool hold) : keys_(std::move(keys)), hold_(hold) {
        std::stable_sort(keys_.begin(), keys_.end(),
                         [](const Key& a, const Key& b) { return a.frame < b.frame; });
    }

    bool empty() const { return keys_.empty(); }
    bool varies() const { return keys_.size() > 1; }
    const std::vector<Key>& keys() const { return keys_; }
    void holdKeys() { hold_ = true; }

    Values at(double frame) const {
        if (keys_.empty()) return {};
        const auto next =
            std::upper_bound(keys_.begin(), keys_.end(), frame,
                             [](double wanted, const Key& key) { return wanted < key.frame; });
        if (next == keys_.begin()) return next->values;
        const Key& before = *(next - 1);
        if (next == keys_.end() || hold_) return before.values;
        const double part = (frame - before.frame) / (next->frame - before.frame);
        Values result = before.values;
        for (std::size_t i = 0; i < result.size(); ++i)
            result[i] += (next->values[i] - before.values[i]) * part;
        return result;
    }

  private:
    std::vector<Key> keys_;
    bool hold_ = false;  // no in-between values: switches and choices
};

}  // namespace orvin::stand_in
