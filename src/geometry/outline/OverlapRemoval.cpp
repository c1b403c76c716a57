// Clean outlines from loops that cross: jitter away near misses, split at crossings, find the
// winding on both sides of every edge by a sweep in x (and one in y for the steep ones), keep the
// border of the places with positive winding.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <utility>

#include "geometry/outline/OverlapPairs.h"
#include "geometry/outline/PolyShape2.h"

namespace orvin {

namespace {

constexpr double kTolerance = 0.001;
constexpr double kCollinear = 0.01;
constexpr int kNoResult = -999;
// The jitter ends by itself on art; this ends it on coordinates so large that a step is lost.
constexpr int kMaxJitterRounds = 64;

/// The generator of a C library of old; its own state, so that a shape comes out the same each
/// time.
class Jitter {
  public:
    int next() {
        state_ = state_ * 214013u + 2531011u;
        return static_cast<int>((state_ >> 16) & 0x7fffu);
    }
    // The number isn't scaled to 0..1: a step can reach 65 units, and art relies on it by now.
    double step() { return (next() - 0.5) * 2.0 * kTolerance; }

  private:
    std::uint32_t state_ = 1;
};

struct Crossing {
    double parameter = 0.0;
    int vertex = -1;
};

struct Span {
    double x0 = 0.0;
    double x1 = 0.0;
    double slope = 0.0;
    double intercept = 0.0;
    int direction = 0;  // -1 from left to right, +1 from right to left
    int prec = -1;

    double at(double x) const { return slope * x + intercept; }
};

enum class EventKind { kStart = 0, kMiddle = 1, kEnd = 2 };

struct Event {
    double x = 0.0;
    EventKind kind = EventKind::kStart;
    int span = -1;
};

class OverlapRemoval {
  public:
    explicit OverlapRemoval(PolyShape2& shape) : shape_(shape) {}

    void jitter() {
        Jitter random;
        for (int round = 0; round < kMaxJitterRounds && jitterOnce(random); ++round) {
        }
    }

    void splitAtCrossings() {
        std::vector<std::vector<Crossing>> crossings(shape_.precs.size());
        auto intervals = edgeIntervals();
        forEachOverlap(intervals, [&](int first, int second) {
            if (neighbours(first, second)) return;
            const Line2 a = edge(first);
            const Line2 b = edge(second);
            const auto onB = a.segmentIntersect(b);
            if (!onB) return;
            const int vertex = addVertex(second, *onB);
            crossings[index(first)].push_back({a.parameterOf(b.pointAt(*onB)), vertex});
            crossings[index(second)].push_back({*onB, vertex});
        });
        for (std::size_t i = 0; i < crossings.size(); ++i) {
            auto& list = crossings[i];
            std::stable_sort(list.begin(), list.end(), [](const Crossing& a, const Crossing& b) {
                return a.parameter < b.parameter;
            });
            std::size_t last = i;
            for (const Crossing& c : list) {
                shape_.precs.push_back({c.vertex, shape_.precs[last].next});
                shape_.precs[last].next = static_cast<int>(shape_.precs.size()) - 1;
                last = shape_.precs.size() - 1;
            }
        }
    }

    void keepPositiveWinding() {
        result_.assign(shape_.precs.size(), kNoResult);
        sweep(false);
        sweep(true);
        for (std::size_t i = 0; i < shape_.precs.size(); ++i)
            if (result_[i] != 0) shape_.precs[i].next = -1;
    }

    /// Joins the ends that meet in one vertex again, and drops what stays without a successor.
    void reconnect() {
        auto& precs = shape_.precs;
        std::vector<int> order;
        for (std::size_t i = 0; i < precs.size(); ++i)
            if (precs[i].vertexID >= 0) order.push_back(static_cast<int>(i));
        std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
            return precs[index(a)].vertexID < precs[index(b)].vertexID;
        });
        for (std::size_t k = 0; k + 1 < order.size(); ++k) {
            Prec& a = precs[index(order[k])];
            Prec& b = precs[index(order[k + 1])];
            if (a.vertexID != b.vertexID) continue;
            if (a.next >= 0 && b.next >= 0) {
                std::printf("vertex %d shared without merge.\n", a.vertexID);
                std::printf("  prec[%d].vertexID = %d, .next = %d\n", order[k], a.vertexID, a.next);
                std::printf("  prec[%d].vertexID = %d, .next = %d\n", order[k + 1], b.vertexID,
                            b.next);
            } else if (a.next >= 0) {
                b.next = a.next;
                a.next = -1;
            } else if (b.next >= 0) {
                a.next = b.next;
                b.next = -1;
            }
        }
        for (Prec& p : precs)
            if (p.next < 0) p.vertexID = -1;
    }

    /// Where the numbers didn't agree a chain ends in nothing: a gap, not a loop.
    void dropOpenChains() {
        auto& precs = shape_.precs;
        std::vector<int> before(precs.size(), -1);
        for (std::size_t i = 0; i < precs.size(); ++i)
            if (precs[i].live()) before[index(precs[i].next)] = static_cast<int>(i);
        for (std::size_t i = 0; i < precs.size(); ++i)
            if (!precs[i].live())
                for (int p = before[i]; p >= 0 && precs[index(p)].live(); p = before[index(p)])
                    precs[index(p)] = Prec{};
    }

  private:
    static std::size_t index(int i) { return static_cast<std::size_t>(i); }
    Prec prec(int i) const { return shape_.precs[index(i)]; }
    Line2 edge(int i) const { return {shape_.at(i), shape_.at(prec(i).next)}; }
    bool hasEdge(int i) const { return prec(i).live() && prec(prec(i).next).vertexID >= 0; }
    bool neighbours(int a, int b) const { return prec(a).next == b || prec(b).next == a; }

    std::vector<Interval> edgeIntervals() const {
        std::vector<Interval> intervals;
        intervals.reserve(shape_.precs.size());
        for (int i = 0; i < static_cast<int>(shape_.precs.size()); ++i) {
            if (!hasEdge(i)) continue;
            const Vec2 a = shape_.at(i);
            const Vec2 b = shape_.at(prec(i).next);
            if (!std::isfinite(a.x) || !std::isfinite(b.x)) continue;
            intervals.push_back(
                {std::min(a.x, b.x) - kTolerance, std::max(a.x, b.x) + kTolerance, i});
        }
        return intervals;
    }

    bool jitterOnce(Jitter& random) {
        bool moved = false;
        const auto push = [&](int prec, const Line2& line) {
            Vec2& point = shape_.vertices[index(this->prec(prec).vertexID)];
            const double t = line.parameterOf(point);
            if (!(std::abs(line.signedDistance(point)) < kTolerance && t > 0.0 && t <= 1.0)) return;
            point.x += random.step();
            point.y += random.step();
            moved = true;
        };
        auto intervals = edgeIntervals();
        forEachOverlap(intervals, [&](int first, int second) {
            if (neighbours(first, second)) return;
            push(first, edge(second));
            push(prec(first).next, edge(second));
            push(second, edge(first));
            push(prec(second).next, edge(first));
        });
        return moved;
    }

    int addVertex(int onEdge, double t) {
        const std::size_t a = index(prec(onEdge).vertexID);
        const std::size_t b = index(prec(prec(onEdge).next).vertexID);
        if (shape_.normals.size() == shape_.vertices.size() && !shape_.normals.empty())
            shape_.normals.push_back(shape_.normals[a] * (1.0 - t) + shape_.normals[b] * t);
        shape_.vertices.push_back(shape_.vertices[a] * (1.0 - t) + shape_.vertices[b] * t);
        return static_cast<int>(shape_.vertices.size()) - 1;
    }

    /// The first pass settles the flat edges, the second, turned by a quarter, those left over.
    void sweep(bool turned) {
        std::vector<Span> spans;
        std::vector<Event> events;
        for (int i = 0; i < static_cast<int>(shape_.precs.size()); ++i) {
            if (!hasEdge(i)) continue;
            Vec2 a = shape_.at(i);
            Vec2 b = shape_.at(prec(i).next);
            if (turned) {
                a = {-a.y, a.x};
                b = {-b.y, b.x};
            }
            if (!(a.x != b.x) || !std::isfinite(a.x) || !std::isfinite(b.x)) continue;
            Span span;
            span.slope = (b.y - a.y) / (b.x - a.x);
            span.intercept = a.y - span.slope * a.x;
            span.x0 = std::min(a.x, b.x);
            span.x1 = std::max(a.x, b.x);
            span.direction = a.x < b.x ? -1 : 1;
            span.prec = i;
            const int id = static_cast<int>(spans.size());
            events.push_back({span.x0, EventKind::kStart, id});
            events.push_back({span.x1, EventKind::kEnd, id});
            const bool asks = turned ? result_[index(i)] == kNoResult : std::abs(span.slope) <= 1.0;
            if (asks) events.push_back({(span.x0 + span.x1) / 2.0, EventKind::kMiddle, id});
            spans.push_back(span);
        }
        std::stable_sort(events.begin(), events.end(), [](const Event& a, const Event& b) {
            return a.x != b.x ? a.x < b.x : a.kind < b.kind;
        });
        std::vector<int> active;
        std::vector<std::size_t> place(spans.size(), 0);
        for (const Event& event : events) {
            switch (event.kind) {
                case EventKind::kStart:
                    place[index(event.span)] = active.size();
                    active.push_back(event.span);
                    break;
                case EventKind::kEnd: {
                    const std::size_t at = place[index(event.span)];
                    active[at] = active.back();
                    place[index(active[at])] = at;
                    active.pop_back();
                    break;
                }
                case EventKind::kMiddle:
                    result_[index(spans[index(event.span)].prec)] =
                        windingResult(spans, active, event);
                    break;
            }
        }
    }

    /// 0 where the edge is a border that stays.
    static int windingResult(const std::vector<Span>& spans, const std::vector<int>& active,
                             const Event& event) {
        const Span& self = spans[index(event.span)];
        const double y = self.at(event.x);
        int up = 0;
        int down = 0;
        for (const int id : active) {
            if (id == event.span) continue;
            const Span& other = spans[index(id)];
            if (!(other.x0 <= event.x && event.x < other.x1)) continue;
            const double height = other.at(event.x);
            const bool same = std::abs(height - y) < kTolerance &&
                              std::abs(other.slope - self.slope) < kTolerance &&
                              std::abs(other.intercept - self.intercept) < kTolerance;
            if (same) continue;
            (height > y ? up : down) += other.direction;
        }
        if (up == 0) return self.direction < 0 ? self.direction : 0;
        if (down == 0) return self.direction > 0 ? -self.direction : 0;
        return self.direction < 0 ? -down : up;
    }

    PolyShape2& shape_;
    std::vector<int> result_;
};

}  // namespace

void PolyShape2::resolveOverlaps() {
    OverlapRemoval removal(*this);
    removal.jitter();
    removal.splitAtCrossings();
    removal.keepPositiveWinding();
    removal.reconnect();
    removal.dropOpenChains();
    removeCollinear(kCollinear);
    compact();
}

void PolyShape2::removeCollinear(double tolerance) {
    for (bool removed = true; removed;) {
        removed = false;
        for (std::size_t i = 0; i < precs.size(); ++i) {
            const int self = static_cast<int>(i);
            while (precs[i].live()) {
                Prec& a = precs[i];
                Prec& b = precs[index(a.next)];
                Prec& c = precs[index(b.next)];
                const bool noArea = b.next == self;
                const Line2 line(at(self), at(b.next));
                if (!noArea && !(std::abs(line.signedDistance(at(a.next))) < tolerance)) break;
                removed = true;
                if (noArea || c.next == self) {
                    a = b = c = Prec{};
                    break;
                }
                a.next = std::exchange(b, Prec{}).next;
            }
        }
    }
}

}  // namespace orvin
