// ProfileProperty: which material covers which part of an edge, path by path.
#pragma once

#include <cstddef>
#include <unordered_map>
#include <vector>

#include "scene/Persistent.h"

namespace orvin {

/// A stretch of an edge path, as fractions of its arc length, and the material slot on it.
struct MaterialInterval {
    double start = 0.0;
    double end = 1.0;
    int material = 0;
};

/// The intervals of one edge path, sorted; each begins where the one before ends.
class MaterialIntervals {
  public:
    static constexpr double kSame = 0.001;      // nearer places are one
    static constexpr double kMinWidth = 0.003;  // of an interval that the user makes
    static constexpr std::size_t kMost = 1024;  // more than there are places that aren't one

    MaterialIntervals() : list_{MaterialInterval{}} {}
    explicit MaterialIntervals(std::vector<MaterialInterval> list) : list_(std::move(list)) {}

    const std::vector<MaterialInterval>& list() const { return list_; }
    std::size_t size() const { return list_.size(); }
    const MaterialInterval& operator[](std::size_t i) const { return list_[i]; }

    /// Puts an interval in: over one of the same ends, in front, or into the one behind the end
    /// where it begins. One that fits nowhere is dropped, and so is one too many.
    void insert(const MaterialInterval& interval);

    /// The interval, not the last, that ends exactly at `t`; -1 for none.
    int findBoundary(double t) const;

    /// Cuts the interval around `t` in two of one material. -1 where no interval holds `t`.
    int split(double t);

    /// Joins interval `i` with the one behind, under `material` (negative: the one that both have).
    /// -1 without one behind, or where the materials differ and none is given.
    int merge(int i, int material);

    /// Whether a boundary may be put at `t`, all intervals staying wide enough: the one behind
    /// interval `i` moved there, or, with a negative `i` or farther off, a new one. A move that is
    /// refused snaps `t` back.
    bool boundaryAllowed(int i, double& t) const;

    /// Moves the boundary behind interval `i` to `t`; past its neighbours it jumps: the intervals
    /// are joined (under `material` if that isn't negative) and the one around `t` is split. -1
    /// without such a boundary.
    int moveBoundary(int i, double t, int material);

    /// The same ends, within kSame, and the same materials.
    bool sameAs(const MaterialIntervals& other) const;

  private:
    bool hasBoundary(int i) const { return i >= 0 && i <= static_cast<int>(list_.size()) - 2; }

    std::vector<MaterialInterval> list_;
};

class ProfileProperty final : public Persistent {
  public:
    struct Entry {
        int path = 0;
        MaterialIntervals intervals;
    };

    /// One entry, for path 0.
    ProfileProperty() { addEntry(0); }

    Result writeBody(SceneStream& stream) override;
    const CommandRegistry& commandRegistry() const override;
    std::string_view className() const override { return "ProfileProperty"; }

    const std::vector<Entry>& entries() const { return entries_; }

    Entry* entry(int path);  // null for a path without one
    /// A new entry of one interval, 0 to 1, of material 0. -1 where the path has one.
    int addEntry(int path);
    Entry& entryOrNew(int path);

    bool sameAs(const ProfileProperty& other) const;

  private:
    std::vector<Entry> entries_;
    std::unordered_map<int, std::size_t> places_;  // of the paths' entries
};

}  // namespace orvin
