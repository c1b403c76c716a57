// Pairs of intervals that overlap, found by sort and sweep: never an all-pairs loop.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace orvin {

struct Interval {
    double lower = 0.0;
    double upper = 0.0;
    int id = 0;
};

/// Calls visit(earlierId, laterId) for every pair that overlaps, ends included. The order is fixed:
/// by lower end (equal ones as given), each new interval against the active ones as they came in.
/// Intervals that aren't finite must be left out by the caller. Sorts `intervals`.
template <typename Visit>
void forEachOverlap(std::vector<Interval>& intervals, Visit&& visit) {
    std::stable_sort(intervals.begin(), intervals.end(),
                     [](const Interval& a, const Interval& b) { return a.lower < b.lower; });
    std::vector<Interval> active;
    for (const Interval& interval : intervals) {
        std::size_t kept = 0;
        for (const Interval& other : active) {
            if (other.upper < interval.lower) continue;
            active[kept++] = other;
            visit(other.id, interval.id);
        }
        active.resize(kept);
        active.push_back(interval);
    }
}

}  // namespace orvin
