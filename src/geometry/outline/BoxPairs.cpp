#include "geometry/outline/BoxPairs.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "geometry/outline/Line2.h"

namespace orvin {

BoxPairs::BoxPairs(std::vector<Box> boxes) {
    Box2 all;
    double heights = 0.0;
    for (Box& box : boxes) {
        if (isTall(box)) makeTall(box);
        all.add({box.left, isTall(box) ? 0.0 : box.bottom});
        all.add({box.right, isTall(box) ? 0.0 : box.top});
        if (!isTall(box)) heights += box.top - box.bottom;
    }
    const auto eachBox = [&](auto&& visit) {
        for (const Box& box : boxes)
            visit(box);
    };
    sortByStrips(
        boxes_, boxes.size(), all.xmin, all.xmax, eachBox, [](const Box& box) { return box.left; },
        [](const Box& a, const Box& b) { return a.left < b.left; });
    strips_ =
        Strips(all.ymin, all.ymax, heights / static_cast<double>(boxes_.size()), boxes_.size());
    inStrip_.reserve(strips_.count, boxes_, [this](const Box& box) {
        return isTall(box) ? Strips::Range{0, -1} : strips_.of(box.bottom, box.top);
    });
    foundBy_.assign(boxes_.size(), 0);
}

bool BoxPairs::isTall(const Box& box) {
    return !std::isfinite(box.bottom) || !std::isfinite(box.top);
}

void BoxPairs::makeTall(Box& box) {
    box.bottom = -std::numeric_limits<double>::infinity();
    box.top = std::numeric_limits<double>::infinity();
}

void BoxPairs::grow(int id, double bottom, double top) {
    if (placeOf_.empty()) {
        for (std::uint32_t i = 0; i < boxes_.size(); ++i) {
            const auto at = static_cast<std::size_t>(boxes_[i].id);
            if (at >= placeOf_.size()) placeOf_.resize(at + 1, kNone);
            placeOf_[at] = i;
        }
    }
    const auto at = static_cast<std::size_t>(id);
    if (at >= placeOf_.size() || placeOf_[at] == kNone) return;
    const std::uint32_t place = placeOf_[at];
    Box& box = boxes_[place];
    if (box.bottom <= bottom && box.top >= top) return;
    // A NaN makes the box tall.
    if (!(box.bottom <= bottom)) box.bottom = bottom;
    if (!(box.top >= top)) box.top = top;
    if (isTall(box)) makeTall(box);
    box.grown = true;
    if (place <= current_) grown_ = true;
    if (place < current_) everywhere_.push_back(place);
}

void BoxPairs::enter(std::uint32_t i) {
    const Box& box = boxes_[i];
    all_.push_back(i);
    if (isTall(box) || box.grown)
        everywhere_.push_back(i);
    else
        inStrip_.add(strips_.of(box.bottom, box.top), i);
}

/// Finds the earlier boxes that the current one overlaps, from box `from` on, in order.
void BoxPairs::collect(std::uint32_t from) {
    found_.clear();
    grown_ = false;
    ++collection_;
    const Box& box = boxes_[current_];
    if (isTall(box)) {
        collectFrom(all_, from);
    } else {
        collectFrom(everywhere_, from);
        const Strips::Range range = strips_.of(box.bottom, box.top);
        for (int s = range.first; s <= range.last; ++s)
            inStrip_.filter(s, [&](std::uint32_t i) { return meets(i, from); });
    }
    std::sort(found_.begin(), found_.end());
}

void BoxPairs::collectFrom(std::vector<std::uint32_t>& list, std::uint32_t from) {
    list.erase(
        std::remove_if(list.begin(), list.end(), [&](std::uint32_t i) { return !meets(i, from); }),
        list.end());
}

/// False where the box ends before the current one begins, so that nothing meets it any more.
bool BoxPairs::meets(std::uint32_t i, std::uint32_t from) {
    const Box& box = boxes_[current_];
    const Box& other = boxes_[i];
    if (other.right < box.left) return false;
    if (i >= from && foundBy_[i] != collection_ && other.top >= box.bottom &&
        other.bottom <= box.top) {
        foundBy_[i] = collection_;
        found_.push_back(i);
    }
    return true;
}

}  // namespace orvin
