#include "geometry/ProfileProperty.h"

#include <cmath>

#include "scene/SceneStream.h"

namespace orvin {

namespace {

bool same(double a, double b) {
    return std::abs(a - b) <= MaterialIntervals::kSame;
}

template <typename T>
auto iteratorAt(std::vector<T>& list, std::size_t i) {
    return list.begin() + static_cast<std::ptrdiff_t>(i);
}

Result readInterval(SceneStream& stream, Persistent& self) {
    int path = 0;
    MaterialInterval interval;
    if (stream.readInt(path) != kSuccess || stream.readDouble(interval.start) != kSuccess ||
        stream.readDouble(interval.end) != kSuccess ||
        stream.readInt(interval.material) != kSuccess)
        return kFailure;
    if (!(interval.start >= 0.0 && interval.end <= 1.0 && interval.start < interval.end))
        return kFailure;
    static_cast<ProfileProperty&>(self).entryOrNew(path).intervals.insert(interval);
    return kSuccess;
}

// A style calls these blocks by the edge they belong to.
Result readEnd(SceneStream& stream, Persistent& self) {
    std::string_view word;
    if (stream.nextToken(word) != kSuccess) return kFailure;
    if (word != "perimProperties" && word != "holeProperties" && word != self.className())
        return kFailure;
    stream.pop();
    return kSuccess;
}

}  // namespace

void MaterialIntervals::insert(const MaterialInterval& interval) {
    for (std::size_t k = 0; k < list_.size(); ++k) {
        MaterialInterval& current = list_[k];
        if (same(current.start, interval.start) && same(current.end, interval.end)) {
            current.material = interval.material;
            return;
        }
        if (list_.size() >= kMost) continue;
        if (k == 0 && interval.start <= kSame) {
            current.start = interval.end;
            list_.insert(list_.begin(), interval);
            return;
        }
        if (!same(current.end, interval.start)) continue;
        if (k + 1 == list_.size()) {
            list_.push_back(interval);
            return;
        }
        MaterialInterval& next = list_[k + 1];
        if (same(next.end, interval.end)) {
            next.material = interval.material;
        } else if (next.end > interval.end) {
            next.start = interval.end;
            list_.insert(iteratorAt(list_, k + 1), interval);
        }
        return;
    }
}

int MaterialIntervals::findBoundary(double t) const {
    for (int i = 0; hasBoundary(i); ++i)
        if (list_[static_cast<std::size_t>(i)].end == t) return i;
    return -1;
}

int MaterialIntervals::split(double t) {
    for (std::size_t k = 0; k < list_.size(); ++k) {
        if (!(list_[k].start < t && t < list_[k].end)) continue;
        const MaterialInterval behind{t, list_[k].end, list_[k].material};
        list_[k].end = t;
        list_.insert(iteratorAt(list_, k + 1), behind);
        return 0;
    }
    return -1;
}

int MaterialIntervals::merge(int i, int material) {
    if (!hasBoundary(i)) return -1;
    const auto k = static_cast<std::size_t>(i);
    if (material < 0 && list_[k].material != list_[k + 1].material) return -1;
    list_[k].end = list_[k + 1].end;
    if (material >= 0) list_[k].material = material;
    list_.erase(iteratorAt(list_, k + 1));
    return 0;
}

bool MaterialIntervals::boundaryAllowed(int i, double& t) const {
    if (hasBoundary(i)) {
        const MaterialInterval& before = list_[static_cast<std::size_t>(i)];
        const MaterialInterval& behind = list_[static_cast<std::size_t>(i) + 1];
        if (t >= before.start && t <= behind.end) {
            if (t - before.start >= kMinWidth && behind.end - t >= kMinWidth) return true;
            t = before.end;
            return false;
        }
    }
    for (const MaterialInterval& interval : list_) {
        if (t == interval.start || t == interval.end) return false;
        if (t > interval.start && t < interval.end)
            return t - interval.start >= kMinWidth && interval.end - t >= kMinWidth;
    }
    return true;
}

int MaterialIntervals::moveBoundary(int i, double t, int material) {
    if (!hasBoundary(i)) return -1;
    const auto k = static_cast<std::size_t>(i);
    MaterialInterval& before = list_[k];
    MaterialInterval& behind = list_[k + 1];
    if (t >= before.start && t <= behind.end) {
        before.end = behind.start = t;
        return 0;
    }
    behind.start = before.start;
    if (material >= 0) behind.material = material;
    list_.erase(iteratorAt(list_, k));
    return split(t);
}

bool MaterialIntervals::sameAs(const MaterialIntervals& other) const {
    if (list_.size() != other.list_.size()) return false;
    for (std::size_t k = 0; k < list_.size(); ++k) {
        const MaterialInterval& a = list_[k];
        const MaterialInterval& b = other.list_[k];
        if (!same(a.start, b.start) || !same(a.end, b.end) || a.material != b.material)
            return false;
    }
    return true;
}

Result ProfileProperty::writeBody(SceneStream& stream) {
    for (const Entry& entry : entries_) {
        for (const MaterialInterval& interval : entry.intervals.list()) {
            stream.line()
                .clear()
                .text("mtlInterval ")
                .whole(entry.path)
                .character(' ')
                .number(interval.start)
                .character(' ')
                .number(interval.end)
                .character(' ')
                .whole(interval.material);
            if (const Result result = stream.putLine(); result != kSuccess) return result;
        }
    }
    return kSuccess;
}

const CommandRegistry& ProfileProperty::commandRegistry() const {
    static const CommandRegistry& registry = []() -> const CommandRegistry& {
        static CommandRegistry r(16);
        r.lookupOrInsert("mtlInterval", readInterval);
        r.lookupOrInsert("end", readEnd);
        return r;
    }();
    return registry;
}

ProfileProperty::Entry* ProfileProperty::entry(int path) {
    const auto place = places_.find(path);
    return place != places_.end() ? &entries_[place->second] : nullptr;
}

int ProfileProperty::addEntry(int path) {
    if (!places_.try_emplace(path, entries_.size()).second) return -1;
    entries_.push_back({path, {}});
    return 0;
}

ProfileProperty::Entry& ProfileProperty::entryOrNew(int path) {
    addEntry(path);
    return *entry(path);
}

bool ProfileProperty::sameAs(const ProfileProperty& other) const {
    if (entries_.size() != other.entries_.size()) return false;
    for (std::size_t k = 0; k < entries_.size(); ++k)
        if (entries_[k].path != other.entries_[k].path ||
            !entries_[k].intervals.sameAs(other.entries_[k].intervals))
            return false;
    return true;
}

}  // namespace orvin
