// Cutting a shape by infinite lines.
#include <algorithm>
#include <cmath>
#include <cstdio>

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
    double at(int k) const { return (first_ + k) * step_ + offset_; }

  private:
    double step_;
    double offset_;
    double first_ = 0.0;
    double count_ = 0.0;
};

bool crosses(double da, double db) {
    return (da <= 0.0 && db > 0.0) || (da > 0.0 && db <= 0.0);
}

}  // namespace

int PolyShape2::appendVertex(Vec2 point, int a, int b, double t) {
    const bool keepNormals = normals.size() == vertices.size() && !normals.empty();
    if (keepNormals) normals.push_back(normals[index(a)] * (1.0 - t) + normals[index(b)] * t);
    vertices.push_back(point);
    return static_cast<int>(vertices.size()) - 1;
}

Result PolyShape2::cutByLine(const Line2& line) {
    std::vector<CutSite> up;
    std::vector<CutSite> down;
    // Predecessors, kept up to date: an edge cut at its start re-points its own.
    const std::size_t count = precs.size();
    std::vector<int> before(count, -1);
    for (std::size_t i = 0; i < count; ++i)
        if (precs[i].live()) before[index(precs[i].next)] = static_cast<int>(i);
    const auto link = [&](int from, int to) {
        precs[index(from)].next = to;
        before[index(to)] = from;
    };
    const auto append = [&](int vertexID) {
        precs.push_back({vertexID, -1});
        before.push_back(-1);
        return static_cast<int>(precs.size()) - 1;
    };
    for (std::size_t i = 0; i < count; ++i) {
        if (!precs[i].live()) continue;
        const int self = static_cast<int>(i);
        const int idA = precs[i].vertexID;
        const int idB = precs[index(precs[i].next)].vertexID;
        if (idB < 0) continue;
        const Vec2 a = vertices[index(idA)];
        const Vec2 b = vertices[index(idB)];
        const double da = line.signedDistance(a);
        const double db = line.signedDistance(b);
        if (!crosses(da, db)) continue;
        const double t = da / (da - db);
        const Vec2 q = a * (1.0 - t) + b * t;
        const int following = precs[i].next;
        int record = -1;
        if (t < kAtStart) {
            const int incoming = before[i];
            record = append(idA);
            if (incoming >= 0) link(incoming, record);
            link(record, self);
        } else if (t > kAtEnd) {
            record = append(idB);
            link(record, following);
            link(self, record);
        } else {
            const int vertex = appendVertex(q, idA, idB, t);
            record = append(vertex);
            const int second = append(vertex);
            link(second, following);
            link(record, second);
            link(self, record);
        }
        (da <= db ? up : down).push_back({record, line.parameterOf(q)});
    }
    if (up.empty() && down.empty()) return kSuccess;
    if (up.size() != down.size()) {
        std::printf("exception:  number of cuts sites differs in 2d clip.\n");
        return kFailure;
    }
    const auto byParameter = [](const CutSite& a, const CutSite& b) {
        return a.parameter < b.parameter;
    };
    std::stable_sort(up.begin(), up.end(), byParameter);
    std::stable_sort(down.begin(), down.end(), byParameter);
    for (std::size_t k = 0; k < up.size(); ++k)
        std::swap(precs[index(up[k].record)].next, precs[index(down[k].record)].next);
    return kSuccess;
}

void PolyShape2::splitEdgesAtLine(const Line2& line) {
    const std::size_t count = precs.size();
    for (std::size_t i = 0; i < count; ++i) {
        if (!precs[i].live()) continue;
        const int idA = precs[i].vertexID;
        const int idB = precs[index(precs[i].next)].vertexID;
        if (idB < 0) continue;
        const double da = line.signedDistance(vertices[index(idA)]);
        const double db = line.signedDistance(vertices[index(idB)]);
        if (!crosses(da, db)) continue;
        const double t = da / (da - db);
        if (t < kAtStart || t > kAtEnd) continue;
        const Vec2 q = vertices[index(idA)] * (1.0 - t) + vertices[index(idB)] * t;
        const int vertex = appendVertex(q, idA, idB, t);
        precs.push_back({vertex, precs[i].next});
        precs[i].next = static_cast<int>(precs.size()) - 1;
    }
}

Result PolyShape2::tile(double dx, double dy, double ox, double oy, bool splitOnly) {
    const Box2 box = bounds();
    if (box.empty()) return kSuccess;
    const auto cut = [&](const Line2& line) {
        if (!splitOnly) return cutByLine(line);
        splitEdgesAtLine(line);
        return kSuccess;
    };
    const GridLines columns(dx, ox, box.xmin, box.xmax);
    const GridLines rows(dy, oy, box.ymin, box.ymax);
    if (!columns.sensible() || !rows.sensible() ||
        !((columns.count() + 1.0) * (rows.count() + 1.0) <= kMaxTiles)) {
        std::printf("too many tiles in a shape of this size, it stays whole.\n");
        return kSuccess;
    }
    for (int k = 0; k < static_cast<int>(columns.count()); ++k) {
        const double x = columns.at(k);
        if (const Result result = cut(Line2({x, 0.0}, {x, 1.0})); result < 0) return result;
    }
    for (int k = 0; k < static_cast<int>(rows.count()); ++k) {
        const double y = rows.at(k);
        if (const Result result = cut(Line2({0.0, y}, {1.0, y})); result < 0) return result;
    }
    return kSuccess;
}

}  // namespace orvin
