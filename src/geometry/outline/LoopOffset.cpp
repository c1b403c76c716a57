#include "geometry/outline/LoopOffset.h"

#include <cmath>
#include <cstdio>
#include <optional>

#include "geometry/outline/NearLoop.h"

namespace orvin {

namespace {

constexpr double kSharpTurn = 0.5235987833333333;   // 30 degrees
constexpr double kSlightTurn = 0.1745329277777778;  // 10 degrees
constexpr double kShortEdge = 0.01;
constexpr double kStraight = 0.9999;   // cosine
constexpr double kBand = 0.999;        // of the distance: nearer to the loop is too near
constexpr double kEntryWidth = 0.001;  // where the bisection ends
constexpr int kFanReach = 5;           // edges

class LoopOffset {
  public:
    LoopOffset(std::span<const Vec2> loop, double distance)
        : loop_(loop), n_(loop.size()), distance_(distance) {
        findEdges();
    }

    std::vector<Vec2> run(bool bothSigns, OffsetRepair repair) {
        placed_.resize(n_);
        for (std::size_t i = 0; i < n_; ++i)
            placed_[i] = place(i, bothSigns);
        // Nothing is nearer than a distance that isn't positive.
        if (repair != OffsetRepair::kNone && distance_ > 0.0 && n_ > 0) repairRuns(repair);
        return std::move(placed_);
    }

  private:
    std::size_t wrap(std::size_t i) const { return i >= n_ ? i % n_ : i; }
    const Line2& nextEdge(std::size_t i) const { return edges_[next_[i]]; }
    const Line2& previousEdge(std::size_t i) const { return edges_[previous_[i]]; }

    /// Edge k runs from point k to the next. The nearest edges of any length around each point.
    void findEdges() {
        edges_.reserve(n_);
        std::size_t lastReal = n_;
        for (std::size_t k = 0; k < n_; ++k) {
            edges_.emplace_back(loop_[k], loop_[wrap(k + 1)]);
            if (isReal(k)) lastReal = k;
        }
        if (lastReal == n_) return;
        hasEdges_ = true;
        previous_.resize(n_);
        next_.resize(n_);
        for (std::size_t i = 0, real = lastReal; i < n_; ++i) {
            previous_[i] = real;
            if (isReal(i)) real = i;
        }
        std::size_t real = lastReal;
        for (std::size_t i = 0; i < n_; ++i)
            if (isReal(i)) {
                real = i;
                break;
            }
        for (std::size_t i = n_; i-- > 0;) {
            if (isReal(i)) real = i;
            next_[i] = real;
        }
    }
    bool isReal(std::size_t k) const {
        const Vec2 d = edges_[k].direction();
        return dot(d, d) > Line2::kNoDirection;
    }

    std::optional<Vec2> mitre(std::size_t i) const {
        return previousEdge(i).offset(-distance_).intersect(nextEdge(i).offset(-distance_));
    }

    Vec2 place(std::size_t i, bool bothSigns) const {
        if (!hasEdges_) return loop_[i];
        const Line2& before = previousEdge(i);
        const Line2& after = nextEdge(i);
        const Vec2 a = normalize(before.direction());
        const Vec2 b = normalize(after.direction());
        const double turn = std::atan2(cross(a, b), dot(a, b));
        const bool sharp = bothSigns && distance_ < 0.0 ? turn > kSharpTurn : turn < -kSharpTurn;
        if (sharp) {
            // A very short edge would throw the mitre far out.
            const Vec2 p = loop_[i];
            if (length(p - loop_[wrap(i + n_ - 1)]) < kShortEdge)
                return p - after.normal() * distance_;
            if (length(loop_[wrap(i + 1)] - p) < kShortEdge) return p - before.normal() * distance_;
        }
        if (dot(a, b) <= kStraight) {
            if (const auto corner = mitre(i)) return *corner;
            return after.offset(-distance_).point();
        }
        return after.point() - after.normal() * distance_;
    }

    void repairRuns(OffsetRepair repair) {
        const NearLoop band(loop_, edges_, distance_ * kBand);
        near_.resize(n_);
        first_ = n_;
        for (std::size_t i = 0; i < n_; ++i) {
            near_[i] = band.isNear(placed_[i]);
            if (!near_[i] && first_ == n_) first_ = i;
        }
        if (first_ == n_ && !rescue(band)) return;
        edgeNear_.resize(n_);
        for (std::size_t i = 0; i < n_; ++i) {
            const std::size_t j = wrap(i + 1);
            edgeNear_[i] = near_[i] && near_[j] && band.isNear((placed_[i] + placed_[j]) * 0.5);
        }
        collapseRuns(band, repair);
    }

    /// Everything came too near. A corner that two points share may still hold; failing that the
    /// loop becomes one point, and the sweep closes it with a fan.
    bool rescue(const NearLoop& band) {
        const double slight = std::sin(-kSlightTurn);
        for (std::size_t i = 0; hasEdges_ && i < n_; ++i) {
            const Vec2 a = normalize(previousEdge(i).direction());
            const Vec2 b = normalize(nextEdge(i).direction());
            const std::size_t j = wrap(i + 1);
            if (!(cross(a, b) < slight) || !(length(loop_[j] - loop_[i]) < kShortEdge) ||
                !(dot(a, b) <= kStraight))
                continue;
            const auto corner = mitre(i);
            if (!corner || band.isNear(*corner)) continue;
            placed_[i] = placed_[j] = *corner;
            near_[i] = near_[j] = 0;
            first_ = i;
        }
        if (first_ < n_) return true;
        Vec2 sum;
        for (const Vec2 p : loop_)
            sum = sum + p;
        placed_.assign(n_, sum * (1.0 / static_cast<double>(n_)));
        return false;
    }

    void collapseRuns(const NearLoop& band, OffsetRepair repair) {
        for (std::size_t k = first_; k < first_ + n_; ++k) {
            const std::size_t c = wrap(k);
            const std::size_t p = wrap(k + n_ - 1);
            if (!near_[c] || (near_[p] && edgeNear_[p])) continue;
            const Vec2 from = near_[p] ? (placed_[p] + placed_[c]) * 0.5 : placed_[p];
            const Entry entry = findEntry(band, from, placed_[c]);
            std::size_t m = k + 1;
            while (near_[wrap(m)] && edgeNear_[wrap(m - 1)])
                ++m;
            if (repair == OffsetRepair::kFans && !isFan(m, entry.edge)) continue;
            for (; k < m; ++k)
                placed_[wrap(k)] = entry.point;
            if (repair == OffsetRepair::kFans) --k;
        }
    }

    /// Whether the run reaches about as far on the ring as along the loop.
    bool isFan(std::size_t end, std::size_t edge) const {
        const std::size_t apart = (end > edge ? end - edge : edge - end) % n_;
        if (apart <= kFanReach) return true;
        std::printf("no fan %d %d (diff %d/%d)\n", static_cast<int>(wrap(end)),
                    static_cast<int>(wrap(edge)), static_cast<int>(apart), static_cast<int>(n_));
        return false;
    }

    struct Entry {
        Vec2 point;
        std::size_t edge = 0;  // one more than the edge of the loop that it met
    };

    /// The last point from `from` to `to`, which is too near, that is still far enough.
    Entry findEntry(const NearLoop& band, Vec2 from, Vec2 to) const {
        const auto at = [&](double t) { return from * (1.0 - t) + to * t; };
        double low = 0.0;
        double high = 1.0;
        std::optional<std::size_t> last;
        while (high - low >= kEntryWidth) {
            const double t = (low + high) / 2.0;
            const Vec2 x = at(t);
            if (last && band.isNearEdge(x, *last)) {
                high = t;
            } else if (const auto edge = band.firstNear(x)) {
                last = edge;
                high = t;
            } else {
                low = t;
            }
        }
        if (!last) last = band.firstNear(to);
        return {at(low), last ? *last + 1 : 0};
    }

    std::span<const Vec2> loop_;
    std::size_t n_;
    double distance_;
    std::vector<Line2> edges_;
    std::vector<std::size_t> previous_;  // the edge before each point
    std::vector<std::size_t> next_;      // the edge behind each point
    bool hasEdges_ = false;              // false: the loop is one place
    std::vector<Vec2> placed_;
    std::vector<char> near_;
    std::vector<char> edgeNear_;
    std::size_t first_ = 0;  // a point that isn't near
};

}  // namespace

std::vector<Vec2> offsetLoop(std::span<const Vec2> loop, double distance, OffsetRepair repair) {
    return LoopOffset(loop, distance).run(false, repair);
}

std::vector<Vec2> offsetLoopSigned(std::span<const Vec2> loop, double distance,
                                   OffsetRepair repair) {
    return LoopOffset(loop, distance).run(true, repair);
}

}  // namespace orvin
