#include "geometry/outline/FacePeeler.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

namespace orvin {

namespace {

constexpr int kGridSide = 50;
constexpr double kSamePlace = 0.001;  // squared distance from a corner of the triangle

double squaredLength(Vec2 v) {
    return dot(v, v);
}

}  // namespace

FacePeeler::FacePeeler(PolyShape2 shape)
    : shape_(std::move(shape)), limit_(3 * shape_.precs.size()) {
    std::vector<Vec2> points;
    previous_.assign(shape_.precs.size(), -1);
    for (int i = 0; i < static_cast<int>(shape_.precs.size()); ++i) {
        if (!prec(i).live()) continue;
        previous_[static_cast<std::size_t>(prec(i).next)] = i;
        gridPrecs_.push_back(i);
        points.push_back(shape_.at(i));
    }
    grid_.build(points, kGridSide, kGridSide);
}

bool FacePeeler::extractPolygon(std::vector<int>& ids, int maxSides) {
    int start = 0;
    bridged_.clear();
    for (;;) {
        start = liveFrom(start);
        if (start >= static_cast<int>(shape_.precs.size())) return false;
        if (isStuck(start)) {
            ++start;
            continue;
        }
        switch (walk(start, maxSides)) {
            case Walk::kBroken:
                return false;
            case Walk::kBridged:
                if (shape_.precs.size() > limit_) return false;
                continue;
            case Walk::kPiece:
                break;
        }
        if (polygon_.size() != 2) {
            take(ids);
            return true;
        }
        if (prec(polygon_[0]).next == polygon_[1] && prec(polygon_[1]).next == polygon_[0]) {
            remove(polygon_[0]);
            remove(polygon_[1]);
        } else {
            noteStuck();
        }
        ++start;
    }
}

/// The first live record from `start` on, or the count of records. What is deleted stays so, so
/// runs of deleted records are jumped over the next time.
int FacePeeler::liveFrom(int start) {
    const int count = static_cast<int>(shape_.precs.size());
    while (static_cast<int>(jump_.size()) < count)
        jump_.push_back(static_cast<int>(jump_.size()) + 1);
    int live = start;
    while (live < count && prec(live).vertexID < 0)
        live = jump_[static_cast<std::size_t>(live)];
    while (start < live)
        start = std::exchange(jump_[static_cast<std::size_t>(start)], live);
    return live;
}

/// A piece that ended at its second point was turned away by the third: nothing changes that until
/// one of the two that follow does.
void FacePeeler::noteStuck() {
    if (stuckAt_.size() < shape_.precs.size()) stuckAt_.resize(shape_.precs.size());
    stuckAt_[static_cast<std::size_t>(polygon_[0])] = {polygon_[1], prec(polygon_[1]).next};
}

bool FacePeeler::isStuck(int start) {
    if (static_cast<std::size_t>(start) >= stuckAt_.size()) return false;
    const Followers& known = stuckAt_[static_cast<std::size_t>(start)];
    return known.next >= 0 && prec(start).next == known.next && prec(known.next).vertexID >= 0 &&
           prec(known.next).next == known.afterNext && prec(known.afterNext).vertexID >= 0;
}

FacePeeler::Walk FacePeeler::walk(int start, int maxSides) {
    polygon_.assign(1, start);
    edges_.clear();
    box_ = {};
    const Vec2 v0 = shape_.at(start);
    box_.add(v0);
    for (int current = start;;) {
        const int following = prec(current).next;
        if (following == start) return Walk::kPiece;
        if (following < 0 || prec(following).vertexID < 0) {
            std::printf("ASSERTION: prec list contains deleted entry.\n");
            return Walk::kBroken;
        }
        const Vec2 previous = shape_.at(polygon_.back());
        const Vec2 newest = shape_.at(following);
        polygon_.push_back(following);
        box_.add(newest);
        for (const Line2& edge : edges_) {
            if (edge.signedDistance(newest) >= 0.0) continue;
            polygon_.pop_back();
            return Walk::kPiece;
        }
        if (squaredLength(previous - newest) > 0.0 && polygon_.size() >= 3) {
            if (std::abs(cross(previous - newest, v0 - newest)) / 2.0 == 0.0) {
                std::printf("coincident point in polygon !\n");
                polygon_.pop_back();
                return Walk::kPiece;
            }
            const int blocking = blockingRecord(v0, previous, newest);
            if (blocking >= 0) {
                bridge(polygon_[polygon_.size() - 2], blocking);
                return Walk::kBridged;
            }
        }
        if (prec(following).next == start || static_cast<int>(polygon_.size()) >= maxSides)
            return Walk::kPiece;
        edges_.emplace_back(previous, newest);
        current = following;
    }
}

/// The record inside the triangle that lies nearest to the newest edge of the piece; -1 if none.
int FacePeeler::blockingRecord(Vec2 v0, Vec2 previous, Vec2 newest) {
    const Line2 sides[] = {{v0, previous}, {previous, newest}, {newest, v0}};
    Box2 box;
    box.add(v0);
    box.add(previous);
    box.add(newest);
    double best = 1e20;
    int found = -1;
    grid_.query(box, [&](int entry) {
        const int candidate = gridPrecs_[static_cast<std::size_t>(entry)];
        if (prec(candidate).vertexID < 0) return false;
        const Vec2 p = shape_.at(candidate);
        if (!box_.contains(p)) return true;
        if (squaredLength(p - v0) < kSamePlace || squaredLength(p - previous) < kSamePlace ||
            squaredLength(p - newest) < kSamePlace)
            return true;
        for (const Line2& side : sides)
            if (!side.isLeftOrOn(p)) return true;
        const double distance = edges_.back().signedDistance(p);
        if (distance < best && !wasBridged(candidate)) {
            best = distance;
            found = candidate;
        }
        return true;
    });
    return found;
}

/// Points on one line with the first of the piece would be bridged to in turns for ever.
bool FacePeeler::wasBridged(int candidate) {
    const int from = prec(polygon_[polygon_.size() - 2]).vertexID;
    const int to = prec(candidate).vertexID;
    return std::find(bridged_.begin(), bridged_.end(), std::pair(from, to)) != bridged_.end();
}

void FacePeeler::bridge(int a, int b) {
    bridged_.emplace_back(prec(a).vertexID, prec(b).vertexID);
    const int before = previous_[static_cast<std::size_t>(b)];
    const int r1 = static_cast<int>(shape_.precs.size());
    const int r2 = r1 + 1;
    const int afterA = prec(a).next;
    shape_.precs.push_back({prec(a).vertexID, afterA});
    shape_.precs.push_back({prec(b).vertexID, r1});
    previous_.resize(shape_.precs.size(), -1);
    const auto link = [&](int from, int to) {
        prec(from).next = to;
        previous_[static_cast<std::size_t>(to)] = from;
    };
    link(r1, afterA);
    link(r2, r1);
    if (before >= 0) link(before, r2);
    link(a, b);
}

void FacePeeler::remove(int i) {
    prec(i).vertexID = -1;
}

void FacePeeler::take(std::vector<int>& ids) {
    ids.clear();
    for (const int i : polygon_)
        ids.push_back(prec(i).vertexID);
    const int first = polygon_.front();
    const int last = polygon_.back();
    if (prec(last).next == first) {
        for (const int i : polygon_)
            remove(i);
        return;
    }
    // Only a part of the loop: the cut stays as an edge of the rest.
    for (std::size_t k = 1; k + 1 < polygon_.size(); ++k)
        remove(polygon_[k]);
    prec(first).next = last;
    previous_[static_cast<std::size_t>(last)] = first;
}

bool FacePeeler::extractLoop(std::vector<int>& ids, int maxSides) {
    ids.clear();
    const int count = static_cast<int>(shape_.precs.size());
    int current = resume_;
    if (current < 0) {
        current = 0;
        while (current < count && prec(current).vertexID < 0)
            ++current;
        if (current >= count) return false;
    }
    resume_ = -1;
    while (static_cast<int>(ids.size()) < maxSides) {
        if (current < 0 || prec(current).vertexID < 0) return true;
        ids.push_back(prec(current).vertexID);
        const int following = prec(current).next;
        remove(current);
        current = following;
    }
    resume_ = current;
    return true;
}

bool FacePeeler::next(std::vector<int>& ids) {
    if (!extractPolygon(ids)) {
        // Also how a sound shape ends: no polygon is left, and no record either.
        std::printf("extractPolygon exception, extractLoop called.\n");
        if (!extractLoop(ids)) return false;
    }
    clean(ids);
    return true;
}

void FacePeeler::clean(std::vector<int>& ids) const {
    // A bridge runs there and back: without this its double edges would stand out as needles.
    const std::size_t n = ids.size();
    for (std::size_t i = 0; i < n; ++i)
        if (ids[i] == ids[(i + 2) % n]) ids[(i + 1) % n] = ids[i];
    const auto at = [&](int id) { return shape_.vertices[static_cast<std::size_t>(id)]; };
    std::vector<int> kept;
    kept.reserve(n);
    for (std::size_t i = 0; i < n; ++i)
        if (i == 0 || squaredLength(at(ids[i]) - at(ids[i - 1])) > 0.0) kept.push_back(ids[i]);
    if (kept.size() > 1 && squaredLength(at(kept.front()) - at(kept.back())) <= 0.0)
        kept.pop_back();
    ids.swap(kept);
}

}  // namespace orvin
