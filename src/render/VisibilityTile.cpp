#include "render/VisibilityTile.h"

#include <algorithm>
#include <new>

namespace orvin {

void VisibilityTile::scan(std::span<const ScreenTriangle> all,
                          std::span<const std::uint32_t> triangles, const GridRect& rect,
                          int subpixels, bool perspective) {
    all_ = all;
    triangles_ = triangles;
    rect_ = rect;
    n_ = subpixels;
    perspective_ = perspective;
    stride_ = static_cast<std::size_t>(rect.width());
    heads_.assign(stride_ * static_cast<std::size_t>(rect.height()), SampleNode());
    pool_.clear();
    spans_.resize(static_cast<std::size_t>(rect.height()));
    for (std::uint32_t i = 0; i < triangles.size(); ++i)
        scanTriangle(triangle(i), i);
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
                insert(*head, index, opaque, static_cast<float>(1.0 / w));
            }
        } else {
            for (int x = xs; x <= xe; ++x, ++head)
                insert(*head, index, opaque, static_cast<float>(row + t.depth.a * (x + 0.5)));
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

// A list is sorted by increasing depth. Of equal depths the earlier triangle is in front. An opaque
// fragment ends its list: what would come behind it is dropped or never enters.
inline void VisibilityTile::insert(SampleNode& head, std::uint32_t index, bool opaque,
                                   float depth) {
    if (head.empty()) {
        head = SampleNode(index, opaque, depth, SampleNode::kNone);
    } else if (head.depth() > depth) {
        const std::uint32_t next = opaque ? SampleNode::kNone : newNode(head);
        head = SampleNode(index, opaque, depth, next);
    } else if (head.opaque()) {
        return;
    } else if (head.next() == SampleNode::kNone) {
        head.setNext(newNode(SampleNode(index, opaque, depth, SampleNode::kNone)));
    } else {
        insertBehind(head.next(), index, opaque, depth);
    }
}

void VisibilityTile::insertBehind(std::uint32_t at, std::uint32_t index, bool opaque, float depth) {
    for (;;) {
        const SampleNode current = pool_[at];
        if (current.depth() > depth) {
            const std::uint32_t next = opaque ? SampleNode::kNone : newNode(current);
            pool_[at] = SampleNode(index, opaque, depth, next);
            return;
        }
        if (current.opaque()) return;
        if (current.next() == SampleNode::kNone) {
            const std::uint32_t added =
                newNode(SampleNode(index, opaque, depth, SampleNode::kNone));
            pool_[at].setNext(added);
            return;
        }
        at = current.next();
    }
}

std::uint32_t VisibilityTile::newNode(const SampleNode& node) {
    const std::size_t index = pool_.size();
    if (index >= SampleNode::kNone) throw std::bad_alloc();
    pool_.push_back(node);
    return static_cast<std::uint32_t>(index);
}

}  // namespace orvin
