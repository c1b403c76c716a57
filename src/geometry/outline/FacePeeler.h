// FacePeeler: convex polygons from a welded shape, peeled off its loops one at a time.
//
// There is no triangulator and no pairing of holes with their outer loops: where a vertex of any
// loop lies inside the piece that grows, a bridge is cut to it, which merges the loops, and peeling
// starts over. The shape is used up.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "geometry/outline/PointGrid.h"
#include "geometry/outline/PolyShape2.h"

namespace orvin {

class FacePeeler {
  public:
    static constexpr int kMaxSides = 256;

    /// Takes the shape over and sorts its points into the grid, which then stays as it is: records
    /// that bridges add later aren't in it.
    explicit FacePeeler(PolyShape2 shape);

    /// The next convex polygon as vertex ids (a piece may have fewer than 3). False when none is
    /// left, when a loop runs into a deleted record, or when too many bridges were made.
    bool extractPolygon(std::vector<int>& ids, int maxSides = kMaxSides);

    /// The next run of a loop as it stands, whatever its form: the way out of a bad outline. False
    /// when no record is left.
    bool extractLoop(std::vector<int>& ids, int maxSides = kMaxSides);

    /// Runs to the end and calls emit(ids) for each cleaned polygon of 3 or more corners. A shape
    /// that keeps growing stops at three times its records: a gap rather than an endless loop. It
    /// then starts anew, and bridges the same two places for one piece no more.
    template <typename Emit>
    void forEachPolygon(Emit&& emit) {
        peelAll();
        std::size_t from = 0;
        for (const std::size_t end : ends_) {
            emit(std::span<const int>(ids_.data() + from, end - from));
            from = end;
        }
    }

    const PolyShape2& shape() const { return shape_; }

    /// True where bridges never came to an end, so that a part stays unfilled.
    bool overgrown() const { return shape_.precs.size() > limit_; }

  private:
    enum class Walk { kPiece, kBridged, kBroken };

    /// One that waits for a record to change.
    struct Waiting {
        int start;
        int next;  // of those that wait for the same record, as an index into waiting_; or -1
    };

    void begin();
    void peelAll();
    void peelOnce();
    void addRecord(Prec record);
    int openFrom(int start);
    void setOpen(int start);
    void close(int start);
    void noteStuck();
    void waitFor(int record, int start);
    void changed(int record);
    bool next(std::vector<int>& ids);
    void clean(std::vector<int>& ids) const;
    Walk walk(int start, int maxSides);
    int blockingRecord(Vec2 v0, const Line2& newestEdge);
    bool wasBridged(int candidate);
    void bridge(int a, int b);
    void link(int from, int to);
    void remove(int prec);
    void take(std::vector<int>& ids);
    Prec& prec(int i) { return shape_.precs[static_cast<std::size_t>(i)]; }

    PolyShape2 shape_;
    std::size_t limit_;  // of records
    PointGrid grid_;
    std::vector<int> previous_;  // the record before each record
    int resume_ = -1;            // where extractLoop stopped
    int firstLive_ = 0;          // records before it are deleted

    // Records that a piece may grow from: neither deleted nor stuck. A bit each.
    std::vector<std::uint64_t> open_;
    std::size_t firstOpen_ = 0;      // words of open_ before it are 0
    std::vector<int> firstWaiting_;  // for each record
    std::vector<Waiting> waiting_;

    // All polygons of a run.
    std::vector<int> ids_;
    std::vector<std::size_t> ends_;

    // The piece under construction, and the vertices that bridges to it joined.
    bool bridgeOnce_ = false;
    std::vector<std::pair<int, int>> bridged_;
    std::vector<int> polygon_;
    std::vector<Line2> edges_;
    Box2 box_;
};

}  // namespace orvin
