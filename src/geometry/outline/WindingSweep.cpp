#include "geometry/outline/WindingSweep.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orvin {

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr std::size_t kSpansPerStrip = 16;
constexpr double kRounding = 1e-14;  // of the numbers that a height is made from, generously

}  // namespace

WindingSweep::Span::Span(Vec2 a, Vec2 b, int edgeOf)
    : x0(std::min(a.x, b.x)),
      x1(std::max(a.x, b.x)),
      slope((b.y - a.y) / (b.x - a.x)),
      intercept(a.y - slope * a.x),
      direction(a.x < b.x ? -1 : 1),
      edge(edgeOf) {
    const double largest = std::abs(slope) * std::max(std::abs(x0), std::abs(x1)) +
                           std::abs(intercept) + std::abs(a.y) + std::abs(b.y);
    const double margin = 2.0 * kSame + kRounding * largest;
    bottom = std::min(a.y, b.y) - margin;
    top = std::max(a.y, b.y) + margin;
    if (!std::isfinite(bottom) || !std::isfinite(top)) {
        bottom = -kInfinity;
        top = kInfinity;
    }
}

void WindingSweep::add(const Span& span, bool asks) {
    if (asks) asking_.push_back(static_cast<std::uint32_t>(spans_.size()));
    spans_.push_back(span);
}

void WindingSweep::prepare() {
    Box2 box;
    double heights = 0.0;
    for (const Span& span : spans_) {
        const bool high = std::isfinite(span.bottom);
        box.add({span.x0, high ? span.bottom : 0.0});
        box.add({span.x1, high ? span.top : 0.0});
        if (high) heights += span.top - span.bottom;
    }
    const auto eachEvent = [this](auto&& visit) {
        for (std::uint32_t i = 0; i < spans_.size(); ++i) {
            visit(Event{spans_[i].x0, i, EventKind::kStart});
            visit(Event{spans_[i].x1, i, EventKind::kEnd});
        }
        for (const std::uint32_t i : asking_)
            visit(Event{(spans_[i].x0 + spans_[i].x1) / 2.0, i, EventKind::kMiddle});
    };
    sortByStrips(
        events_, 2 * spans_.size() + asking_.size(), box.xmin, box.xmax, eachEvent,
        [](const Event& e) { return e.x; },
        [](const Event& a, const Event& b) { return a.precedes(b); });
    strips_ = Strips(box.ymin, box.ymax, heights / static_cast<double>(spans_.size()),
                     spans_.size() / kSpansPerStrip);
    for (Span& span : spans_)
        span.strips = strips_.of(span.bottom, span.top);
    active_.reserve(strips_.count, spans_, [](const Span& span) { return span.strips; });
    bottoms_.reset(strips_.count);
    tops_.reset(strips_.count);
}

void WindingSweep::turn(std::uint32_t span, EventKind kind) {
    const Span& s = spans_[span];
    const Strips::Range range = s.strips;
    const int sign = kind == EventKind::kStart ? 1 : -1;
    bottoms_.add(range.first, sign * s.direction);
    tops_.add(range.last, sign * s.direction);
    if (kind == EventKind::kStart) active_.add(range, span);
}

int WindingSweep::resultOf(std::uint32_t asking, double x) {
    const Span& self = spans_[asking];
    const double y = self.at(x);
    Sides sides;
    if (std::isnan(y)) {
        // Nothing is above it.
        sides.down = bottoms_.total() - (x < self.x1 ? self.direction : 0);
    } else {
        const int strip = strips_.of(y);
        sides.up = bottoms_.total() - bottoms_.below(strip + 1);
        sides.down = tops_.below(strip);
        look(asking, x, y, sides);
    }
    if (sides.up == 0) return self.direction < 0 ? self.direction : 0;
    if (sides.down == 0) return self.direction > 0 ? -self.direction : 0;
    return self.direction < 0 ? -sides.down : sides.up;
}

void WindingSweep::look(std::uint32_t asking, double x, double y, Sides& sides) {
    const Span& self = spans_[asking];
    active_.filter(strips_.of(y), [&](std::uint32_t span) {
        const Span& other = spans_[span];
        if (other.x1 <= x) return false;
        if (span == asking) return true;
        const double height = other.slope * x + other.intercept;
        const bool same = std::abs(height - y) < kSame &&
                          std::abs(other.slope - self.slope) < kSame &&
                          std::abs(other.intercept - self.intercept) < kSame;
        const int direction = same ? 0 : other.direction;
        const bool above = height > y;
        sides.up += above ? direction : 0;
        sides.down += above ? 0 : direction;
        return true;
    });
}

void WindingSweep::Sums::reset(int count) {
    const auto whole = [](int n) { return static_cast<std::size_t>((n / kBlock + 1) * kBlock); };
    ofStrip_.assign(whole(count), 0);
    ofBlock_.assign(whole(count / kBlock), 0);
    ofLargeBlock_.assign(whole(count / (kBlock * kBlock)), 0);
    total_ = 0;
}

void WindingSweep::Sums::add(int strip, int value) {
    ofStrip_[static_cast<std::size_t>(strip)] += value;
    ofBlock_[static_cast<std::size_t>(strip / kBlock)] += value;
    ofLargeBlock_[static_cast<std::size_t>(strip / (kBlock * kBlock))] += value;
    total_ += value;
}

int WindingSweep::Sums::below(int strip) const {
    return sumBefore(ofLargeBlock_, strip / (kBlock * kBlock)) +
           sumBefore(ofBlock_, strip / kBlock) + sumBefore(ofStrip_, strip);
}

/// Of those in the same block. Always looks at the whole block: where to end can't be foreseen.
int WindingSweep::Sums::sumBefore(const std::vector<int>& values, int end) {
    const int* const block = values.data() + end / kBlock * kBlock;
    const int count = end % kBlock;
    int sum = 0;
    for (int i = 0; i < kBlock; ++i)
        sum += block[i] & -static_cast<int>(i < count);
    return sum;
}

}  // namespace orvin
