#include "geometry/outline/OutlinePreparation.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <optional>

#include "geometry/outline/LoopGeometry.h"

namespace orvin {

namespace {

constexpr double kNearlyOne = 0.0001;         // squared distance of points that count as one
constexpr double kShortestSide = 0.0001;      // of a corner that can be split
constexpr double kSplitCorner = 0.785398175;  // radians: 45 degrees
constexpr double kRadiansPerDegree = 0.01745329278;
constexpr double kCrown = 0.0625;     // squared size of the little crown of points around a tip
constexpr double kNoTipEdge = 0.001;  // a tip's short edge is longer

using Loop = std::vector<Vec2>;

double squaredDistance(Vec2 a, Vec2 b) {
    return dot(a - b, a - b);
}

bool isFinite(const Loop& loop) {
    return std::all_of(loop.begin(), loop.end(),
                       [](Vec2 p) { return std::isfinite(p.x) && std::isfinite(p.y); });
}

Loop withoutRepeats(const Loop& loop) {
    Loop kept;
    for (const Vec2 p : loop)
        if (kept.empty() || !(squaredDistance(p, kept.back()) < kNearlyOne)) kept.push_back(p);
    if (kept.size() > 1 && squaredDistance(kept.front(), kept.back()) < kNearlyOne) kept.pop_back();
    return kept;
}

void splitSharpCorners(PolyShape2& shape) {
    const double limit = std::cos(kSplitCorner);
    const std::size_t count = shape.precs.size();
    for (std::size_t i = 0; i < count; ++i) {
        const int q = shape.precs[i].next;
        const int r = shape.precs[static_cast<std::size_t>(q)].next;
        const Vec2 u = shape.at(q) - shape.at(static_cast<int>(i));
        const Vec2 w = shape.at(r) - shape.at(q);
        if (!(length(u) >= kShortestSide && length(w) >= kShortestSide)) continue;
        if (!(dot(normalize(w), normalize(u)) < limit)) continue;
        shape.precs.push_back({shape.precs[static_cast<std::size_t>(q)].vertexID, q});
        shape.precs[i].next = static_cast<int>(shape.precs.size()) - 1;
    }
}

/// The blunted tip: where its two points go.
struct Tip {
    Vec2 a;
    Vec2 b;
};

/// Looks at the edge from point i to the next as the short edge of a tip. Marked points are passed
/// over on the way to the long sides. A hard corner, two points at one place, is never a tip's: so
/// the ends of a letter's stems stay.
std::optional<Tip> findTip(const Loop& points, const std::vector<char>& marks, std::size_t i,
                           double cosLimit, double pull) {
    const std::size_t n = points.size();
    const std::size_t j = (i + 1) % n;
    if (n < 4 || marks[i] || marks[j] || !(length(points[j] - points[i]) > kNoTipEdge))
        return std::nullopt;
    const auto isAtTip = [&](Vec2 point) { return point == points[i] || point == points[j]; };
    std::size_t p = (i + n - 1) % n;
    while (p != j && marks[p])
        p = (p + n - 1) % n;
    std::size_t q = (j + 1) % n;
    while (q != i && marks[q])
        q = (q + 1) % n;
    if (p == j || q == i || points[p] == points[q] || isAtTip(points[p]) || isAtTip(points[q]))
        return std::nullopt;
    const Vec2 a = points[i] - points[p];
    const Vec2 b = points[q] - points[j];
    const double la = length(a);
    const double lb = length(b);
    if (!(cross(a, b) >= 0.0 && -dot(a, b) / (la * lb) >= cosLimit)) return std::nullopt;
    return Tip{points[i] - a * (pull / la), points[j] + b * (pull / lb)};
}

Loop withoutCrowns(const Loop& points, double cosLimit) {
    const std::size_t n = points.size();
    std::vector<char> marks(n, 0);
    for (std::size_t i = 0; i < n; ++i) {
        if (!findTip(points, marks, i, cosLimit, 0.0)) continue;
        const auto inCrown = [&](std::size_t k) {
            return squaredDistance(points[k], points[i]) < kCrown;
        };
        for (std::size_t k = (i + n - 1) % n; k != (i + 1) % n && inCrown(k); k = (k + n - 1) % n)
            marks[k] = 1;
        for (std::size_t k = (i + 2) % n; k != i && inCrown(k); k = (k + 1) % n)
            marks[k] = 1;
    }
    Loop kept;
    for (std::size_t i = 0; i < n; ++i)
        if (!marks[i]) kept.push_back(points[i]);
    return kept;
}

Loop withBluntTips(const Loop& points, double cosLimit, double pull) {
    const std::size_t n = points.size();
    const std::vector<char> noMarks(n, 0);
    Loop blunt;
    for (std::size_t i = 0; i < n; ++i) {
        if (const auto tip = findTip(points, noMarks, i, cosLimit, pull)) {
            blunt.insert(blunt.end(), {tip->a, tip->a, tip->b, tip->b});
            ++i;  // the other point of the tip
        } else if (i != 0 || !findTip(points, noMarks, n - 1, cosLimit, pull)) {
            blunt.push_back(points[i]);
        }
    }
    return blunt;
}

}  // namespace

void loadLoops(const Mesh2& geometry, PolyShape2& shape) {
    Loop points;
    Loop normals;
    for (int f = 0; f < geometry.faceCount(); ++f) {
        const FaceView face = geometry.face(f);
        if (face.vertices.size() < 3) continue;
        if (face.normals.size() != face.vertices.size()) {
            std::printf("missing normals on profile.\n");
            continue;
        }
        points.clear();
        normals.clear();
        for (std::size_t i = 0; i < face.vertices.size(); ++i) {
            points.push_back(geometry.vertex(face.vertices[i]));
            normals.push_back(normalize(geometry.normal(face.normals[i])) * -1.0);
        }
        if (!isFinite(points)) {
            std::printf("a path of the profile isn't finite, it is left out.\n");
            continue;
        }
        const auto start = std::min_element(points.begin(), points.end(), [](Vec2 a, Vec2 b) {
            return a.y != b.y ? a.y < b.y : a.x < b.x;
        });
        std::rotate(normals.begin(), normals.begin() + (start - points.begin()), normals.end());
        std::rotate(points.begin(), start, points.end());
        shape.addLoop(points, normals);
    }
}

void offsetFrontFace(PolyShape2& shape, double distance, OffsetRepair repair) {
    PolyShape2 moved;
    for (const LoopInfo& loop : shape.classifyLoops()) {
        const Loop points =
            withoutRepeats(offsetLoopSigned(shape.loopPoints(loop.head), distance, repair));
        if (points.size() > 2) moved.addLoop(points, cornerNormals(points));
    }
    moved.resolveOverlaps();
    splitSharpCorners(moved);
    shape = std::move(moved);
}

void removeSpikes(PolyShape2& shape, double angle, double pullBack) {
    const double cosLimit = std::cos(angle * kRadiansPerDegree);
    std::vector<Loop> loops;
    if (shape.collectLoops(loops) != kSuccess) return;
    std::vector<Loop> kept;
    for (const Loop& loop : loops) {
        const Loop points = withoutCrowns(loop, cosLimit);
        if (points.size() >= 3) kept.push_back(withBluntTips(points, cosLimit, pullBack));
    }
    shape.rebuildFromLoops(kept);
}

}  // namespace orvin
