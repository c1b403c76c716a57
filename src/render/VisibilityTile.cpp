#include "render/VisibilityTile.h"

#include <algorithm>
#include <new>

namespace orvin {

bool VisibilityTile::scan(std::span<const ScreenTriangle> all,
                          std::span<const std::uint32_t> triangles, const GridRect& rect,
                          int subpixels, bool perspective) {
    all_ = all;
    triangles_ = triangles;
    rect_ = rect;
    n_ = subpixels;
    perspective_ = perspective;
    stride_ = static_cast<std::size_t>(rect.width());
    const std::size_t area = stride_ * static_cast<std::size_t>(rect.height());
    const bool divisible = rect.width() > subpixels || rect.height() > subpixels;
    const std::size_t limit = divisible ? kMaxSamples : SampleNode::kNone;
    if (area > limit) return false;
    heads_.assign(area, SampleNode());
    pool_.clear();
    spans_.resize(static_cast<std::size_t>(rect.height()));
    for (std::uint32_t i = 0; i < triangles.size(); ++i) {
        scanTriangle(triangle(i), i);
        if (pool_.size() > limit) return false;
    }
    if (!pool_.empty()) sortLists();
    return true;
}

void VisibilityTile::scanTriangle(const ScreenTriangle& t, std::uint32_t index) {
    const int first = std::max(truncToInt(t.yMin + 0.5), rect_.top);
    const int last = std::min(truncToInt(t.yMax - 0.5), rect_.bottom);
    if (first > last) return;
    std::fill(spans_.begin() + (first - rect_.top), spans_.begin() + (last - rect_.top + 1),
              Span{1e20, -1e20});
    widenSpans(t.corners[0], t.corners[1], first, last);
    widenSpans(t.corners[0], t.corners[2], first, last);
    widenSpans(t.corners[1], t.corners[2], first, last);

    const bool opaque = (t.id.flags & TriangleId::kOpaque) != 0;
    for (int y = first; y <= last; ++y) {
        const Span& span = spans_[static_cast<std::size_t>(y - rect_.top)];
        const int xs = std::max(truncToInt(span.min + 0.5), rect_.left);
        const int xe = std::min(truncToInt(span.max - 0.5), rect_.right);
        if (xs > xe) continue;
        SampleNode* head = heads_.data() + static_cast<std::size_t>(y - rect_.top) * stride_ +
                           static_cast<std::size_t>(xs - rect_.left);
        // Evaluated at each sample instead of stepped along: a rounding error must not depend on
        // where a tile begins.
        const double row = t.depth.b * (y + 0.5) + t.depth.c;
        if (perspective_) {
            for (int x = xs; x <= xe; ++x, ++head) {
                const double w = row + t.depth.a * (x + 0.5);
                if (w == 0.0) break;  // the plane's horizon ends the row
                insert(*head, {index, opaque, static_cast<float>(1.0 / w), SampleNode::kNone});
            }
        } else {
            for (int x = xs; x <= xe; ++x, ++head)
                insert(*head, {index, opaque, static_cast<float>(row + t.depth.a * (x + 0.5)),
                               SampleNode::kNone});
        }
    }
}

void VisibilityTile::widenSpans(const Vec2& a, const Vec2& b, int first, int last) {
    if (a.y == b.y) return;
    const Vec2& low = a.y < b.y ? a : b;
    const Vec2& high = a.y < b.y ? b : a;
    const double slope = (high.x - low.x) / (high.y - low.y);
    const double intercept = low.x - low.y * slope;
    const int from = std::max(truncToInt(low.y + 0.5), first);
    const int to = std::min(truncToInt(high.y - 0.5), last);
    for (int y = from; y <= to; ++y) {
        Span& span = spans_[static_cast<std::size_t>(y - rect_.top)];
        const double x = (y + 0.5) * slope + intercept;
        span.min = std::min(span.min, x);
        span.max = std::max(span.max, x);
    }
}

// A finished list is sorted, and its first opaque fragment ends it. While triangles come in, only
// its front is in order, so that the cost of a fragment doesn't grow with the layers: the head is
// the nearest fragment, and the first behind it is the nearest opaque one, if there is any.
inline void VisibilityTile::insert(SampleNode& head, const SampleNode& node) {
    if (head.empty()) {
        head = node;
    } else if (head.depth() > node.depth()) {
        const SampleNode before = head;
        head = node;
        if (node.opaque()) return;
        head.setNext(before.next());
        insertBehind(head, before);
    } else if (!head.opaque()) {
        insertBehind(head, node);
    }
}

void VisibilityTile::insertBehind(SampleNode& head, SampleNode node) {
    const std::uint32_t first = head.next();
    if (first == SampleNode::kNone || !pool_[first].opaque()) {
        node.setNext(first);
        head.setNext(newNode(node));
        return;
    }
    if (pool_[first].inFrontOf(node)) return;
    node.setNext(pool_[first].next());
    if (node.opaque()) {
        pool_[first] = node;
        return;
    }
    const std::uint32_t added = newNode(node);  // moves the pool
    pool_[first].setNext(added);
}

void VisibilityTile::sortLists() {
    for (SampleNode& head : heads_)
        if (head.next() != SampleNode::kNone) sortBehind(head);
}

// Puts the sorted fragments into the nodes that the list has, one after the other.
void VisibilityTile::sortBehind(SampleNode& head) {
    sorted_.clear();
    for (std::uint32_t at = head.next(); at != SampleNode::kNone; at = pool_[at].next())
        sorted_.push_back(pool_[at]);
    if (sorted_.size() == 1) return;
    std::sort(sorted_.begin(), sorted_.end(),
              [](const SampleNode& a, const SampleNode& b) { return a.inFrontOf(b); });
    std::uint32_t at = head.next();
    for (SampleNode node : sorted_) {
        const std::uint32_t next = pool_[at].next();
        node.setNext(node.opaque() ? SampleNode::kNone : next);
        pool_[at] = node;
        if (node.opaque()) return;
        at = next;
    }
}

std::uint32_t VisibilityTile::newNode(const SampleNode& node) {
    const std::size_t index = pool_.size();
    if (index >= SampleNode::kNone) throw std::bad_alloc();
    pool_.push_back(node);
    return static_cast<std::uint32_t>(index);
}

}  // namespace orvin
