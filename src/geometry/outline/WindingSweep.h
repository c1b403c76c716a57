// WindingSweep: for edges of loops, whether the winding on one side is 0 and on the other positive.
//
// A sweep in x, in which each edge asks at its middle what stands above and below it. Edges in
// higher or lower strips of the plane are known by their sums; only those in the middle's own strip
// are looked at one by one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "geometry/outline/Line2.h"
#include "geometry/outline/Strips.h"

namespace orvin {

class WindingSweep {
  public:
    /// Edges that lie on each other within this don't count twice.
    static constexpr double kSame = 0.001;

    /// An edge as a function of x.
    struct Span {
        /// Not upright.
        Span(Vec2 a, Vec2 b, int edge);

        double at(double x) const { return slope * x + intercept; }

        double x0;
        double x1;
        double slope;
        double intercept;
        double bottom;  // of at() between x0 and x1, rounding and kSame included
        double top;
        Strips::Range strips{0, 0};
        int direction;  // -1 from left to right, +1 from right to left
        int edge;
    };

    explicit WindingSweep(std::size_t mostSpans) {
        spans_.reserve(mostSpans);
        asking_.reserve(mostSpans);
    }

    /// Keeps the memory for other spans.
    void clear() {
        spans_.clear();
        asking_.clear();
    }
    void add(const Span& span, bool asks);

    /// Calls answer(edge, result) for each edge that asks. The result is 0 where the edge is a
    /// border that stays.
    template <typename Answer>
    void run(Answer&& answer) {
        prepare();
        for (const Event& event : events_) {
            if (event.kind == EventKind::kMiddle)
                answer(spans_[event.span].edge, resultOf(event.span, event.x));
            else
                turn(event.span, event.kind);
        }
    }

  private:
    // At one x, spans that end there are no more and those that start there are, when one asks.
    enum class EventKind : std::uint32_t { kStart = 0, kEnd = 1, kMiddle = 2 };

    struct Event {
        double x = 0.0;
        std::uint32_t span = 0;
        EventKind kind = EventKind::kStart;

        bool precedes(const Event& other) const {
            return x != other.x ? x < other.x : kind < other.kind;
        }
    };
    struct Sides {
        int up = 0;
        int down = 0;
    };

    /// Sums of directions by strip, by blocks of strips, and by blocks of those.
    class Sums {
      public:
        void reset(int count);
        void add(int strip, int value);
        int below(int strip) const;  // of all strips before it
        int total() const { return total_; }

      private:
        static constexpr int kBlock = 16;
        static_assert(Strips::kMost <= kBlock * kBlock * kBlock);

        static int sumBefore(const std::vector<int>& values, int end);

        std::vector<int> ofStrip_;
        std::vector<int> ofBlock_;
        std::vector<int> ofLargeBlock_;
        int total_ = 0;
    };

    void prepare();
    void turn(std::uint32_t span, EventKind kind);
    int resultOf(std::uint32_t asking, double x);
    void look(std::uint32_t asking, double x, double y, Sides& sides);

    std::vector<Span> spans_;
    std::vector<std::uint32_t> asking_;
    std::vector<Event> events_;
    Strips strips_;
    Sums bottoms_;  // of the active spans, by the strip of their lower end
    Sums tops_;
    StripLists<std::uint32_t> active_;  // those that ended go when their strip is looked at
};

}  // namespace orvin
