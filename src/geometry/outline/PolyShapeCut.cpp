// Cutting a shape by infinite lines.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numeric>
#include <optional>
#include <span>

#include "geometry/outline/PolyShape2.h"

namespace orvin {

namespace {

// A crossing this near to an end of its edge (as a fraction) lies at that end.
constexpr double kAtStart = 0.001;
constexpr double kAtEnd = 0.999;

// A grid finer than this, for the size of the shape, is no tiling any more but a way to fill the
// memory: the shape then stays whole.
constexpr double kMaxLines = 4096.0;  // each way
constexpr double kMaxTiles = 250000.0;

struct CutSite {
    int record = -1;
    double parameter = 0.0;  // along the cutting line
};

/// The parallel lines of one direction of a grid, from the low to the high end of a shape.
class GridLines {
  public:
    GridLines(double step, double offset, double low, double high) : step_(step), offset_(offset) {
        if (!(step > 0.0)) return;
        first_ = std::trunc((low - offset) / step);
        count_ = std::trunc((high - offset) / step) - first_ + 1.0;
    }
    double count() const { return count_; }
    /// False also for numbers so large that a step is lost in them, and for NaN.
    bool sensible() const {
        return count_ <= kMaxLines && (count_ == 0.0 || first_ + 1.0 != first_);
    }
    std::vector<double> places() const {
        std::vector<double> places;
        for (int k = 0; k < static_cast<int>(count_); ++k)
            places.push_back((first_ + k) * step_ + offset_);
        return places;
    }

  private:
    double step_;
    double offset_;
    double first_ = 0.0;
    double count_ = 0.0;
};

bool crosses(double da, double db) {
    return (da <= 0.0 && db > 0.0) || (da > 0.0 && db <= 0.0);
}

/// An edge at a line that it crosses.
struct Crossing {
    int idA;
    int idB;
    double da;
    double db;

    double t() const { return da / (da - db); }
    bool upward() const { return da <= db; }
};

std::optional<Crossing> crossing(const PolyShape2& shape, int record, const Line2& line) {
    const Prec& prec = shape.precs[static_cast<std::size_t>(record)];
    if (!prec.live()) return std::nullopt;
    const int idB = shape.precs[static_cast<std::size_t>(prec.next)].vertexID;
    if (idB < 0) return std::nullopt;
    const double da = line.signedDistance(shape.vertices[static_cast<std::size_t>(prec.vertexID)]);
    const double db = line.signedDistance(shape.vertices[static_cast<std::size_t>(idB)]);
    if (!crosses(da, db)) return std::nullopt;
    return Crossing{prec.vertexID, idB, da, db};
}

/// Adds the vertex at `t` between two others.
int appendVertex(PolyShape2& shape, Vec2 point, int a, int b, double t) {
    const auto normal = [&](int id) { return shape.normals[static_cast<std::size_t>(id)]; };
    const bool keepNormals =
        shape.normals.size() == shape.vertices.size() && !shape.normals.empty();
    if (keepNormals) shape.normals.push_back(normal(a) * (1.0 - t) + normal(b) * t);
    shape.vertices.push_back(point);
    return static_cast<int>(shape.vertices.size()) - 1;
}

Vec2 between(const PolyShape2& shape, int a, int b, double t) {
    return shape.vertices[static_cast<std::size_t>(a)] * (1.0 - t) +
           shape.vertices[static_cast<std::size_t>(b)] * t;
}

/// Cuts all loops of a shape, line after line.
class LoopCutter {
  public:
    explicit LoopCutter(PolyShape2& shape) : shape_(shape), before_(shape.precs.size(), -1) {
        for (std::size_t i = 0; i < before_.size(); ++i)
            if (shape.precs[i].live())
                before_[static_cast<std::size_t>(shape.precs[i].next)] = static_cast<int>(i);
    }

    /// `records`, in rising order, are all whose edges may cross the line.
    Result cut(const Line2& line, std::span<const int> records) {
        up_.clear();
        down_.clear();
        for (const int record : records)
            if (const auto found = crossing(shape_, record, line)) cutEdge(line, record, *found);
        if (up_.size() != down_.size()) {
            std::printf("exception:  number of cuts sites differs in 2d clip.\n");
            return kFailure;
        }
        const auto byParameter = [](const CutSite& a, const CutSite& b) {
            return a.parameter < b.parameter;
        };
        std::stable_sort(up_.begin(), up_.end(), byParameter);
        std::stable_sort(down_.begin(), down_.end(), byParameter);
        for (std::size_t k = 0; k < up_.size(); ++k) {
            const int up = next(up_[k].record);
            link(up_[k].record, next(down_[k].record));
            link(down_[k].record, up);
        }
        return kSuccess;
    }

  private:
    void cutEdge(const Line2& line, int record, const Crossing& found) {
        const double t = found.t();
        const Vec2 q = between(shape_, found.idA, found.idB, t);
        const int following = next(record);
        int site = -1;
        if (t < kAtStart) {
            const int incoming = before_[static_cast<std::size_t>(record)];
            site = append(found.idA);
            if (incoming >= 0) link(incoming, site);
            link(site, record);
        } else if (t > kAtEnd) {
            site = append(found.idB);
            link(site, following);
            link(record, site);
        } else {
            const int vertex = appendVertex(shape_, q, found.idA, found.idB, t);
            site = append(vertex);
            const int second = append(vertex);
            link(second, following);
            link(site, second);
            link(record, site);
        }
        (found.upward() ? up_ : down_).push_back({site, line.parameterOf(q)});
    }

    int next(int record) const { return shape_.precs[static_cast<std::size_t>(record)].next; }
    void link(int from, int to) {
        shape_.precs[static_cast<std::size_t>(from)].next = to;
        before_[static_cast<std::size_t>(to)] = from;
    }
    int append(int vertexID) {
        shape_.precs.push_back({vertexID, -1});
        before_.push_back(-1);
        return static_cast<int>(shape_.precs.size()) - 1;
    }

    PolyShape2& shape_;
    std::vector<int> before_;  // the record before each record
    std::vector<CutSite> up_;
    std::vector<CutSite> down_;
};

Result splitEdges(PolyShape2& shape, const Line2& line, std::span<const int> records) {
    for (const int record : records) {
        const auto found = crossing(shape, record, line);
        if (!found) continue;
        const double t = found->t();
        if (t < kAtStart || t > kAtEnd) continue;
        const Vec2 q = between(shape, found->idA, found->idB, t);
        const int vertex = appendVertex(shape, q, found->idA, found->idB, t);
        Prec& prec = shape.precs[static_cast<std::size_t>(record)];
        const Prec second{vertex, prec.next};
        prec.next = static_cast<int>(shape.precs.size());
        shape.precs.push_back(second);
    }
    return kSuccess;
}

/// For a row of parallel lines, taken in order: the edges that each may cross. An edge waits for
/// the first line ahead that its extent reaches; edges never change while they wait.
class EdgesAhead {
  public:
    /// `places` are the lines', rising, along `axis`.
    EdgesAhead(const PolyShape2& shape, double Vec2::*axis, std::vector<double> places)
        : shape_(shape), axis_(axis), places_(std::move(places)), first_(places_.size(), -1) {
        for (std::size_t i = 0; i < shape.precs.size(); ++i)
            wait(static_cast<int>(i), 0);
    }

    /// Calls cut(place, records) for each line, and then waits with what it left of the edges.
    template <typename Cut>
    Result forEachLine(Cut&& cut) {
        std::vector<int> records;
        for (std::size_t line = 0; line < places_.size(); ++line) {
            records.clear();
            for (int i = first_[line]; i >= 0; i = behind_[static_cast<std::size_t>(i)])
                records.push_back(i);
            std::sort(records.begin(), records.end());
            const std::size_t before = shape_.precs.size();
            if (const Result result = cut(places_[line], records); result < 0) return result;
            for (const int record : records)
                wait(record, line + 1);
            for (std::size_t i = before; i < shape_.precs.size(); ++i)
                wait(static_cast<int>(i), line + 1);
        }
        return kSuccess;
    }

  private:
    void wait(int record, std::size_t fromLine) {
        behind_.resize(shape_.precs.size(), -1);
        const Prec& prec = shape_.precs[static_cast<std::size_t>(record)];
        if (!prec.live() || shape_.precs[static_cast<std::size_t>(prec.next)].vertexID < 0) return;
        const double a = shape_.at(record).*axis_;
        const double b = shape_.at(prec.next).*axis_;
        const auto place = std::lower_bound(places_.begin() + static_cast<std::ptrdiff_t>(fromLine),
                                            places_.end(), std::min(a, b));
        if (place == places_.end() || !(*place <= std::max(a, b))) return;
        int& first = first_[static_cast<std::size_t>(place - places_.begin())];
        behind_[static_cast<std::size_t>(record)] = first;
        first = record;
    }

    const PolyShape2& shape_;
    double Vec2::*axis_;
    std::vector<double> places_;
    std::vector<int> first_;   // record that waits for each line, or -1
    std::vector<int> behind_;  // the next that waits for the same line as this record, or -1
};

std::vector<int> allRecords(const PolyShape2& shape) {
    std::vector<int> records(shape.precs.size());
    std::iota(records.begin(), records.end(), 0);
    return records;
}

}  // namespace

Result PolyShape2::cutByLine(const Line2& line) {
    return LoopCutter(*this).cut(line, allRecords(*this));
}

void PolyShape2::splitEdgesAtLine(const Line2& line) {
    splitEdges(*this, line, allRecords(*this));
}

Result PolyShape2::tile(double dx, double dy, double ox, double oy, bool splitOnly) {
    const Box2 box = bounds();
    if (box.empty()) return kSuccess;
    const GridLines columns(dx, ox, box.xmin, box.xmax);
    const GridLines rows(dy, oy, box.ymin, box.ymax);
    if (!columns.sensible() || !rows.sensible() ||
        !((columns.count() + 1.0) * (rows.count() + 1.0) <= kMaxTiles)) {
        std::printf("too many tiles in a shape of this size, it stays whole.\n");
        return kSuccess;
    }
    LoopCutter cutter(*this);
    const auto cut = [&](const Line2& line, std::span<const int> records) {
        return splitOnly ? splitEdges(*this, line, records) : cutter.cut(line, records);
    };
    const Result result = EdgesAhead(*this, &Vec2::x, columns.places())
                              .forEachLine([&](double x, std::span<const int> records) {
                                  return cut(Line2({x, 0.0}, {x, 1.0}), records);
                              });
    if (result < 0) return result;
    return EdgesAhead(*this, &Vec2::y, rows.places())
        .forEachLine([&](double y, std::span<const int> records) {
            return cut(Line2({0.0, y}, {1.0, y}), records);
        });
}

}  // namespace orvin
