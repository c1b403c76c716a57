// Pairs of boxes that overlap, in the order of a sweep in x: each box, by its left end, with the
// earlier ones that still reach it, by theirs. A pair that overlaps in x alone isn't visited, but
// what is comes in the order of forEachOverlap() over the boxes' x intervals.
//
// Boxes may grow in y while they are visited; the sweep goes on as if all pairs were asked about at
// their place in the order. In x they stay as they were.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "geometry/outline/Strips.h"

namespace orvin {

class BoxPairs {
  public:
    struct Box {
        double left = 0.0;  // finite
        double right = 0.0;
        double bottom = 0.0;  // a box whose heights aren't finite overlaps all others in y
        double top = 0.0;
        int id = 0;  // 0 or more, each once
        bool grown = false;
    };

    explicit BoxPairs(std::vector<Box> boxes);

    /// Calls visit(earlierId, laterId), which may call grow(), until it answers false. True when
    /// all pairs were visited.
    template <typename Visit>
    bool forEach(Visit&& visit) {
        for (current_ = 0; current_ < boxes_.size(); ++current_) {
            collect(0);
            for (std::size_t k = 0; k < found_.size(); ++k) {
                const std::uint32_t earlier = found_[k];
                if (!visit(boxes_[earlier].id, boxes_[current_].id)) return false;
                if (!grown_) continue;
                collect(earlier + 1);
                k = static_cast<std::size_t>(-1);
            }
            enter(current_);
        }
        return true;
    }

    /// The box of `id`, if there is one, reaches from `bottom` to `top` as well.
    void grow(int id, double bottom, double top);

  private:
    static bool isTall(const Box& box);
    static void makeTall(Box& box);

    void enter(std::uint32_t i);
    void collect(std::uint32_t from);
    bool meets(std::uint32_t i, std::uint32_t from);
    void collectFrom(std::vector<std::uint32_t>& list, std::uint32_t from);

    static constexpr std::uint32_t kNone = 0xffffffff;

    std::vector<Box> boxes_;              // by their left ends
    std::vector<std::uint32_t> placeOf_;  // of an id in boxes_; filled when one grows
    Strips strips_;
    std::uint32_t current_ = 0;

    // Boxes that were entered. Those that end before the current one begins go when a list is
    // looked at.
    StripLists<std::uint32_t> inStrip_;
    std::vector<std::uint32_t> everywhere_;  // those that grew, and those of all heights
    std::vector<std::uint32_t> all_;

    std::vector<std::uint32_t> found_;
    std::vector<std::uint32_t> foundBy_;  // by box: the last collection that came upon it
    std::uint32_t collection_ = 0;
    bool grown_ = false;  // since the collection
};

}  // namespace orvin
