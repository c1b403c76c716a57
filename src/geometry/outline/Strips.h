// Strips: heights sorted into strips, lowest first.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <vector>

namespace orvin {

struct Strips {
    static constexpr int kMost = 4096;

    double low = 0.0;
    double perUnit = 0.0;
    int count = 1;

    struct Range {
        int first;
        int last;
    };

    Strips() = default;

    /// For things that lie between two heights and are so high on the average: about as many strips
    /// as there are things, but none much lower than a thing.
    Strips(double lowest, double highest, double averageHeight, std::size_t things,
           int most = kMost) {
        const double height = highest - lowest;
        if (!(height > 0.0) || !std::isfinite(height)) return;
        const double wanted = std::min(static_cast<double>(things), height / averageHeight);
        count = static_cast<int>(std::clamp(wanted, 1.0, static_cast<double>(most)));
        low = lowest;
        perUnit = count / height;
    }

    /// Never falls as y rises, so that what is in a higher strip lies higher. NaN is in the first.
    int of(double y) const {
        const double strip = (y - low) * perUnit;
        return strip >= count ? count - 1 : strip >= 0.0 ? static_cast<int>(strip) : 0;
    }
    Range of(double bottom, double top) const { return {of(bottom), of(top)}; }
};

/// A list for each strip, in one block of memory. How many things come into a strip in all must be
/// known before the first comes.
template <typename Item>
class StripLists {
  public:
    /// `ranges` are those that will be added.
    template <typename Things, typename RangeOf>
    void reserve(int strips, const Things& things, RangeOf&& rangeOf) {
        lists_.assign(static_cast<std::size_t>(strips), {0, 0});
        for (const auto& thing : things) {
            const Strips::Range range = rangeOf(thing);
            for (int s = range.first; s <= range.last; ++s)
                ++lists_[static_cast<std::size_t>(s)].end;
        }
        std::size_t total = 0;
        for (List& list : lists_) {
            const std::size_t count = list.end;
            list = {total, total};
            total += count;
        }
        items_.resize(total);
    }
    void add(Strips::Range range, const Item& item) {
        for (int s = range.first; s <= range.last; ++s)
            items_[lists_[static_cast<std::size_t>(s)].end++] = item;
    }
    /// Calls keep(item) for those of a strip, and drops where it answers false.
    template <typename Keep>
    void filter(int strip, Keep&& keep) {
        List& list = lists_[static_cast<std::size_t>(strip)];
        std::size_t kept = list.begin;
        for (std::size_t i = list.begin; i < list.end; ++i) {
            if (!keep(items_[i])) continue;
            if (kept != i) items_[kept] = items_[i];
            ++kept;
        }
        list.end = kept;
    }

  private:
    struct List {
        std::size_t begin;
        std::size_t end;
    };
    std::vector<List> lists_;
    std::vector<Item> items_;
};

/// Fills `sorted` with the items that each(visit) shows, `count` of them and the same each time it
/// is called: by of(item), which lies between `lowest` and `highest`, and then by what else
/// `precedes` looks at; equal items stay in order. Dealing them into strips leaves little to sort.
template <typename Item, typename Each, typename Of, typename Precedes>
void sortByStrips(std::vector<Item>& sorted, std::size_t count, double lowest, double highest,
                  Each&& each, Of&& of, Precedes&& precedes) {
    constexpr std::size_t kFew = 16;
    constexpr int kMostStrips = 1 << 16;
    const Strips strips(lowest, highest, 0.0, count, kMostStrips);
    std::vector<std::uint32_t> ends(static_cast<std::size_t>(strips.count) + 1, 0);
    const auto stripOf = [&](const Item& item) {
        return static_cast<std::size_t>(strips.of(of(item)));
    };
    each([&](const Item& item) { ++ends[stripOf(item) + 1]; });
    const bool crowded = *std::max_element(ends.begin(), ends.end()) > kFew;
    std::partial_sum(ends.begin(), ends.end(), ends.begin());
    sorted.resize(count);
    each([&](const Item& item) { sorted[ends[stripOf(item)]++] = item; });
    std::size_t first = 0;
    for (std::size_t strip = 0; crowded && strip < ends.size(); ++strip) {
        if (ends[strip] - first > kFew)
            std::stable_sort(sorted.begin() + static_cast<std::ptrdiff_t>(first),
                             sorted.begin() + static_cast<std::ptrdiff_t>(ends[strip]), precedes);
        first = ends[strip];
    }
    for (std::size_t i = 1; i < sorted.size(); ++i) {
        if (!precedes(sorted[i], sorted[i - 1])) continue;
        const Item item = sorted[i];
        std::size_t k = i;
        for (; k > 0 && precedes(item, sorted[k - 1]); --k)
            sorted[k] = sorted[k - 1];
        sorted[k] = item;
    }
}

}  // namespace orvin
