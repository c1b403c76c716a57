// Clean outlines from loops that cross: jitter away near misses, split at crossings, find the
// winding on both sides of every edge by a sweep in x (and one in y for the steep ones), keep the
// border of the places with positive winding.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <optional>
#include <utility>

#include "geometry/outline/BoxPairs.h"
#include "geometry/outline/PolyShape2.h"
#include "geometry/outline/WindingSweep.h"

namespace orvin {

namespace {

constexpr double kTolerance = 0.001;
constexpr double kCollinear = 0.01;
constexpr int kNoResult = -999;
// The jitter ends by itself on art; this ends it on coordinates so large that a step is lost.
constexpr int kMaxJitterRounds = 64;
// An outline that has more pairs of edges near each other, or more crossings, is no art.
constexpr std::int64_t kMostPairs = std::int64_t{1} << 26;
constexpr std::size_t kMostCrossings = std::size_t{1} << 22;  // two entries for each
constexpr std::size_t kMostPairsKept = std::size_t{1} << 22;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
// Generous bounds of what rounding does: to a distance, by the largest coordinate; to where two
// lines meet that differ by the least that counts, by its square.
constexpr double kRounding = 1e-13;
constexpr double kCrossingSlack = 1e-8;

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

/// Of edges.
struct Pair {
    int first;
    int second;
};

struct Crossing {
    int edge = -1;
    double parameter = 0.0;
    int vertex = -1;
};

class OverlapRemoval {
  public:
    explicit OverlapRemoval(PolyShape2& shape)
        : shape_(shape), vertexCount_(shape.vertices.size()), normalCount_(shape.normals.size()) {}

    /// Moves points off the edges that they nearly lie on, until none does. False where there are
    /// too many pairs to look at.
    bool jitter() {
        Jitter random;
        for (int round = 0; round < kMaxJitterRounds; ++round)
            if (!jitterOnce(random)) return pairsLeft_ > 0;
        near_.reset();
        return true;
    }

    /// False where there are too many pairs to look at, or crossings.
    bool splitAtCrossings() {
        std::vector<Crossing> crossings;
        const auto cross = [&](int first, int second) {
            if (neighbours(first, second)) return true;
            const Line2 a = edge(first);
            const Line2 b = edge(second);
            const auto onB = a.segmentIntersect(b);
            if (!onB) return --pairsLeft_ > 0;
            const int vertex = addVertex(second, *onB);
            crossings.push_back({first, a.parameterOf(b.pointAt(*onB)), vertex});
            crossings.push_back({second, *onB, vertex});
            return crossings.size() < kMostCrossings && --pairsLeft_ > 0;
        };
        const bool all = near_ ? std::all_of(near_->begin(), near_->end(),
                                             [&](Pair p) { return cross(p.first, p.second); })
                               : BoxPairs(edgeBoxes()).forEach(cross);
        if (!all) return false;
        std::stable_sort(crossings.begin(), crossings.end(),
                         [](const Crossing& a, const Crossing& b) {
                             return a.edge != b.edge ? a.edge < b.edge : a.parameter < b.parameter;
                         });
        int edge = -1;
        std::size_t last = 0;
        for (const Crossing& c : crossings) {
            if (c.edge != edge) last = index(edge = c.edge);
            shape_.precs.push_back({c.vertex, shape_.precs[last].next});
            shape_.precs[last].next = static_cast<int>(shape_.precs.size()) - 1;
            last = shape_.precs.size() - 1;
        }
        return true;
    }

    /// As it came, while no edge was split.
    void putBack() {
        if (!given_.empty()) std::copy(given_.begin(), given_.end(), shape_.vertices.begin());
        shape_.normals.resize(normalCount_);
        shape_.vertices.resize(vertexCount_);
    }

    void keepPositiveWinding() {
        result_.assign(shape_.precs.size(), kNoResult);
        WindingSweep winding(shape_.precs.size());
        sweep(winding, false);
        sweep(winding, true);
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

    struct Heights {
        double bottom;
        double top;
    };

    /// The edges as boxes: edges whose boxes don't meet have nothing to do with each other.
    std::vector<BoxPairs::Box> edgeBoxes() {
        largest_ = 0.0;
        for (const Vec2 p : shape_.vertices)
            for (const double c : {std::abs(p.x), std::abs(p.y)})
                if (c > largest_ && std::isfinite(c)) largest_ = c;
        std::vector<BoxPairs::Box> boxes;
        boxes.reserve(shape_.precs.size());
        for (int i = 0; i < static_cast<int>(shape_.precs.size()); ++i) {
            if (!hasEdge(i)) continue;
            const Vec2 a = shape_.at(i);
            const Vec2 b = shape_.at(prec(i).next);
            if (!std::isfinite(a.x) || !std::isfinite(b.x)) continue;
            const Heights heights = reach(i);
            boxes.push_back({std::min(a.x, b.x) - kTolerance, std::max(a.x, b.x) + kTolerance,
                             heights.bottom, heights.top, i});
        }
        return boxes;
    }

    /// Where an edge may meet another, or push its points away.
    Heights reach(int i) const {
        const Vec2 a = shape_.at(i);
        const Vec2 b = shape_.at(prec(i).next);
        // The line of a very short edge counts as upright: what it meets may be anywhere. One that
        // is a point meets nothing, but may be pushed away itself.
        if (!hasDirection(b - a) && !(a == b)) return {-kInfinity, kInfinity};
        // Lines that are nearly one meet where rounding has them meet: that grows with the
        // coordinates' rounding error and with the length of edges.
        const double margin = 2.0 * kTolerance + kCrossingSlack * largest_ * largest_;
        return {std::min(a.y, b.y) - margin, std::max(a.y, b.y) + margin};
    }
    static bool hasDirection(Vec2 d) {
        const double squared = dot(d, d);
        return squared > Line2::kNoDirection && squared < kInfinity;
    }

    /// True where a point moved; otherwise the pairs of edges that may meet are in near_, unless
    /// they are too many to keep.
    bool jitterOnce(Jitter& random) {
        bool moved = false;
        BoxPairs pairs(edgeBoxes());
        near_.emplace();
        std::vector<End> ends;  // by vertex; filled when one moves
        const auto push = [&](int prec, const Line2& line) {
            const int vertex = this->prec(prec).vertexID;
            Vec2& point = shape_.vertices[index(vertex)];
            const double t = line.parameterOf(point);
            if (!(std::abs(line.signedDistance(point)) < kTolerance && t > 0.0 && t <= 1.0)) return;
            if (given_.empty()) given_ = shape_.vertices;
            point.x += random.step();
            point.y += random.step();
            moved = true;
            if (ends.empty()) ends = edgeEnds();
            const auto atVertex =
                std::equal_range(ends.begin(), ends.end(), End{vertex, 0},
                                 [](const End& a, const End& b) { return a.vertex < b.vertex; });
            for (auto end = atVertex.first; end != atVertex.second; ++end) {
                const Heights heights = reach(end->edge);
                pairs.grow(end->edge, heights.bottom, heights.top);
            }
        };
        pairs.forEach([&](int first, int second) {
            if (neighbours(first, second)) return true;
            const Meeting meeting = meetingOf(first, second);
            if (meeting.mayCross) keep({first, second});
            if (!meeting.mayTouch) return --pairsLeft_ > 0;
            push(first, edge(second));
            push(prec(first).next, edge(second));
            push(second, edge(first));
            push(prec(second).next, edge(first));
            return --pairsLeft_ > 0;
        });
        return moved && pairsLeft_ > 0;
    }

    void keep(Pair pair) {
        if (!near_) return;
        if (near_->size() < kMostPairsKept)
            near_->push_back(pair);
        else
            near_.reset();
    }

    struct Meeting {
        bool mayTouch = true;  // an end of one may be within the tolerance of the other's line
        bool mayCross = true;
    };

    /// What can be told of two edges without a root.
    Meeting meetingOf(int first, int second) const {
        const Vec2 a = shape_.at(first);
        const Vec2 b = shape_.at(second);
        const Vec2 alongA = shape_.at(prec(first).next) - a;
        const Vec2 alongB = shape_.at(prec(second).next) - b;
        if (!hasDirection(alongA) || !hasDirection(alongB)) return {};
        // Distances of the ends of one from the line of the other, times the other's length.
        const Vec2 between = b - a;
        const double b0 = cross(alongA, between);
        const double b1 = b0 + cross(alongA, alongB);
        const double a0 = cross(between, alongB);
        const double a1 = cross(between - alongA, alongB);
        const double least = 2.0 * kTolerance + kRounding * largest_;
        const auto off = [least](double area, Vec2 along) {
            return area * area > least * least * dot(along, along);
        };
        const auto sameSide = [](double u, double v) { return (u > 0.0) == (v > 0.0); };
        const bool offB = off(b0, alongA) && off(b1, alongA);
        const bool offA = off(a0, alongB) && off(a1, alongB);
        return {!offA || !offB, !(offA && sameSide(a0, a1)) && !(offB && sameSide(b0, b1))};
    }

    struct End {
        int vertex;
        int edge;
    };

    /// The ends of all edges, sorted by vertex.
    std::vector<End> edgeEnds() const {
        std::vector<End> ends;
        for (int i = 0; i < static_cast<int>(shape_.precs.size()); ++i) {
            if (!hasEdge(i)) continue;
            ends.push_back({prec(i).vertexID, i});
            ends.push_back({prec(prec(i).next).vertexID, i});
        }
        std::sort(ends.begin(), ends.end(), [](const End& a, const End& b) {
            return a.vertex != b.vertex ? a.vertex < b.vertex : a.edge < b.edge;
        });
        return ends;
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
    void sweep(WindingSweep& winding, bool turned) {
        winding.clear();
        for (int i = 0; i < static_cast<int>(shape_.precs.size()); ++i) {
            if (!hasEdge(i)) continue;
            Vec2 a = shape_.at(i);
            Vec2 b = shape_.at(prec(i).next);
            if (turned) {
                a = {-a.y, a.x};
                b = {-b.y, b.x};
            }
            if (!(a.x != b.x) || !std::isfinite(a.x) || !std::isfinite(b.x)) continue;
            const WindingSweep::Span span(a, b, i);
            const bool asks = turned ? result_[index(i)] == kNoResult : std::abs(span.slope) <= 1.0;
            winding.add(span, asks);
        }
        winding.run([this](int prec, int result) { result_[index(prec)] = result; });
    }

    PolyShape2& shape_;
    std::size_t vertexCount_;  // as it came
    std::size_t normalCount_;
    std::vector<Vec2> given_;  // the vertices, once one moves
    std::int64_t pairsLeft_ = kMostPairs;
    std::optional<std::vector<Pair>> near_;
    std::vector<int> result_;
    double largest_ = 0.0;  // coordinate
};

}  // namespace

void PolyShape2::resolveOverlaps() {
    OverlapRemoval removal(*this);
    if (!removal.jitter() || !removal.splitAtCrossings()) {
        std::printf("an outline crosses itself too often, it stays as it is.\n");
        removal.putBack();
        return;
    }
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
