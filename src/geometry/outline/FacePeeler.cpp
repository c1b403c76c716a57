#include "geometry/outline/FacePeeler.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdio>
#include <optional>
#include <utility>

namespace orvin {

namespace {

constexpr std::size_t kWordBits = 64;
constexpr double kSamePlace = 0.001;  // squared distance from a corner of the triangle

double squaredLength(Vec2 v) {
    return dot(v, v);
}

}  // namespace

FacePeeler::FacePeeler(PolyShape2 shape)
    : shape_(std::move(shape)), limit_(3 * shape_.precs.size()) {
    begin();
}

void FacePeeler::begin() {
    resume_ = -1;
    firstLive_ = 0;
    firstOpen_ = 0;
    waiting_.clear();
    std::vector<Vec2> points;
    std::vector<int> records;
    const std::size_t count = shape_.precs.size();
    points.reserve(count);
    records.reserve(count);
    previous_.assign(count, -1);
    firstWaiting_.assign(count, -1);
    open_.assign(count / kWordBits + 1, 0);
    for (int i = 0; i < static_cast<int>(count); ++i) {
        if (prec(i).vertexID >= 0) setOpen(i);
        if (!prec(i).live()) continue;
        previous_[static_cast<std::size_t>(prec(i).next)] = i;
        records.push_back(i);
        points.push_back(shape_.at(i));
    }
    grid_.build(points, records);
}

void FacePeeler::peelAll() {
    const std::vector<Prec> given = shape_.precs;
    ids_.reserve(2 * given.size());
    ends_.reserve(given.size() / 2);
    peelOnce();
    if (!overgrown()) return;
    shape_.precs = given;
    bridgeOnce_ = true;
    begin();
    peelOnce();
}

void FacePeeler::peelOnce() {
    ids_.clear();
    ends_.clear();
    std::vector<int> polygon;
    while (!overgrown() && next(polygon) && !overgrown()) {
        if (polygon.size() < 3) continue;
        ids_.insert(ids_.end(), polygon.begin(), polygon.end());
        ends_.push_back(ids_.size());
    }
}

bool FacePeeler::extractPolygon(std::vector<int>& ids, int maxSides) {
    int start = 0;
    bridged_.clear();
    for (;;) {
        start = openFrom(start);
        if (start >= static_cast<int>(shape_.precs.size())) return false;
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

void FacePeeler::addRecord(Prec record) {
    const std::size_t i = shape_.precs.size();
    shape_.precs.push_back(record);
    previous_.push_back(-1);
    firstWaiting_.push_back(-1);
    if (i / kWordBits >= open_.size()) open_.push_back(0);
    setOpen(static_cast<int>(i));
}

/// The first open record from `start` on, or the count of records.
int FacePeeler::openFrom(int start) {
    const auto from = static_cast<std::size_t>(start);
    std::size_t word = std::max(from / kWordBits, firstOpen_);
    if (word >= open_.size()) return static_cast<int>(shape_.precs.size());
    std::uint64_t bits = open_[word];
    if (word == from / kWordBits) bits &= ~std::uint64_t{0} << (from % kWordBits);
    while (bits == 0) {
        if (++word >= open_.size()) return static_cast<int>(shape_.precs.size());
        bits = open_[word];
    }
    if (start == 0) firstOpen_ = word;
    return static_cast<int>(word * kWordBits + static_cast<std::size_t>(std::countr_zero(bits)));
}

void FacePeeler::setOpen(int start) {
    const std::size_t word = static_cast<std::size_t>(start) / kWordBits;
    open_[word] |= std::uint64_t{1} << (static_cast<std::size_t>(start) % kWordBits);
    firstOpen_ = std::min(firstOpen_, word);
}

void FacePeeler::close(int start) {
    const std::size_t word = static_cast<std::size_t>(start) / kWordBits;
    open_[word] &= ~(std::uint64_t{1} << (static_cast<std::size_t>(start) % kWordBits));
}

/// A piece that ended at its second point was turned away by the third: nothing changes that until
/// one of the three does.
void FacePeeler::noteStuck() {
    const int start = polygon_[0];
    close(start);
    waitFor(start, start);
    waitFor(polygon_[1], start);
    waitFor(prec(polygon_[1]).next, start);
}

void FacePeeler::waitFor(int record, int start) {
    int& first = firstWaiting_[static_cast<std::size_t>(record)];
    waiting_.push_back({start, first});
    first = static_cast<int>(waiting_.size()) - 1;
}

/// A record was deleted or got another successor.
void FacePeeler::changed(int record) {
    int& first = firstWaiting_[static_cast<std::size_t>(record)];
    for (; first >= 0; first = waiting_[static_cast<std::size_t>(first)].next) {
        const int start = waiting_[static_cast<std::size_t>(first)].start;
        if (prec(start).vertexID >= 0) setOpen(start);
    }
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
        const Line2 newestEdge(previous, newest);
        if (squaredLength(previous - newest) > 0.0 && polygon_.size() >= 3) {
            if (std::abs(cross(previous - newest, v0 - newest)) / 2.0 == 0.0) {
                std::printf("coincident point in polygon !\n");
                polygon_.pop_back();
                return Walk::kPiece;
            }
            const int blocking = blockingRecord(v0, newestEdge);
            if (blocking >= 0) {
                bridge(polygon_[polygon_.size() - 2], blocking);
                return Walk::kBridged;
            }
        }
        if (prec(following).next == start || static_cast<int>(polygon_.size()) >= maxSides)
            return Walk::kPiece;
        edges_.push_back(newestEdge);
        current = following;
    }
}

/// The record inside the triangle over the newest edge of the piece that lies nearest to the edge
/// before it; -1 if none.
int FacePeeler::blockingRecord(Vec2 v0, const Line2& newestEdge) {
    const Vec2 previous = newestEdge.point();
    const Vec2 newest = shape_.at(polygon_.back());
    double best = 1e20;
    std::optional<PointGrid::Point> found;  // a copy: the grid moves points as it drops others
    grid_.query({v0, previous, newest}, [&](const PointGrid::Point& point) {
        const Vec2 p = point.at;
        if (prec(point.id).vertexID < 0) return false;
        if (squaredLength(p - v0) < kSamePlace || squaredLength(p - previous) < kSamePlace ||
            squaredLength(p - newest) < kSamePlace)
            return true;
        if (!box_.contains(p) || !newestEdge.isLeftOrOn(p) || !Line2(v0, previous).isLeftOrOn(p) ||
            !Line2(newest, v0).isLeftOrOn(p))
            return true;
        const double distance = edges_.back().signedDistance(p);
        const bool nearer =
            distance < best || (distance == best && found && point.precedes(*found));
        if (nearer && !wasBridged(point.id)) {
            best = distance;
            found = point;
        }
        return true;
    });
    return found ? found->id : -1;
}

/// Points on one line with the first of the piece may be bridged to in turns for ever.
bool FacePeeler::wasBridged(int candidate) {
    if (!bridgeOnce_) return false;
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
    addRecord({prec(a).vertexID, afterA});
    addRecord({prec(b).vertexID, r1});
    link(r1, afterA);
    link(r2, r1);
    if (before >= 0) link(before, r2);
    link(a, b);
}

void FacePeeler::link(int from, int to) {
    prec(from).next = to;
    previous_[static_cast<std::size_t>(to)] = from;
    changed(from);
}

void FacePeeler::remove(int i) {
    prec(i).vertexID = -1;
    close(i);
    changed(i);
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
    link(first, last);
}

bool FacePeeler::extractLoop(std::vector<int>& ids, int maxSides) {
    ids.clear();
    const int count = static_cast<int>(shape_.precs.size());
    int current = resume_;
    if (current < 0) {
        while (firstLive_ < count && prec(firstLive_).vertexID < 0)
            ++firstLive_;
        if (firstLive_ >= count) return false;
        current = firstLive_;
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
    std::size_t kept = 0;
    int before = -1;  // whether it was kept or not
    for (std::size_t i = 0; i < n; ++i) {
        const int id = ids[i];
        if (i == 0 || squaredLength(at(id) - at(before)) > 0.0) ids[kept++] = id;
        before = id;
    }
    ids.resize(kept);
    if (kept > 1 && squaredLength(at(ids.front()) - at(ids.back())) <= 0.0) ids.pop_back();
}

}  // namespace orvin
