#include "geometry/outline/EdgePath.h"

#include <algorithm>
#include <cmath>

#include "geometry/outline/Line2.h"

namespace orvin {

namespace {

constexpr double kPercent = 0.01;
constexpr double kSamePlace = 0.0001;  // squared
constexpr double kFlat = 0.9;          // cosine between the end of a path and the face
constexpr double kTuck = 0.1;          // of the first or last step
constexpr double kProbe = 0.001;       // how far from an end its direction is looked at
constexpr std::size_t kMaxPoints = 4096;

void divideLongSteps(std::vector<Vec2>& path, const EdgePathSettings& settings) {
    const double longest = settings.longestStep;
    if (!(longest > 0.0) || path.empty()) return;
    const double sx = settings.depth * settings.xScale * kPercent;
    const double sy = settings.depth * kPercent;
    std::vector<Vec2> divided{path.front()};
    for (std::size_t i = 1; i < path.size(); ++i) {
        const Vec2 a = path[i - 1];
        const Vec2 b = path[i];
        const Vec2 step{(b.x - a.x) * sx, (b.y - a.y) * sy};
        const double squared = dot(step, step);
        if (squared > longest * longest) {
            const double room =
                static_cast<double>(kMaxPoints - std::min(kMaxPoints, divided.size()));
            const double count = std::min(std::trunc(std::sqrt(squared) / longest), room);
            for (int j = 0; j < static_cast<int>(count); ++j) {
                const double t = (j + 1) / (count + 1.0);
                divided.push_back(a * (1.0 - t) + b * t);
            }
        }
        divided.push_back(b);
    }
    path = std::move(divided);
}

/// Without the small step the normal at a flat end would be averaged with that of the long run.
void tuckFlatEnds(std::vector<Vec2>& path, const InputProfile2& edge) {
    if (path.size() < 2 || edge.paths.empty()) return;
    const auto direction = [](const CompositeCurve2& curve, double from, double to) {
        return normalize(curve.evaluate(to, nullptr) - curve.evaluate(from, nullptr));
    };
    const bool start = direction(edge.paths.front(), 0.0, kProbe).x > kFlat;
    const bool end = direction(edge.paths.back(), 1.0 - kProbe, 1.0).x < -kFlat;
    const Vec2 first = path[0];
    const Vec2 second = path[1];
    const Vec2 last = path.back();
    const Vec2 beforeLast = path[path.size() - 2];
    if (end) path.insert(path.end() - 1, {(1.0 - kTuck) * last.x + kTuck * beforeLast.x, last.y});
    if (start) path.insert(path.begin() + 1, {(1.0 - kTuck) * first.x + kTuck * second.x, first.y});
}

std::vector<double> arcFractions(const std::vector<Vec2>& path) {
    std::vector<double> s(path.size(), 0.0);
    for (std::size_t i = 1; i < path.size(); ++i)
        s[i] = s[i - 1] + length(path[i] - path[i - 1]);
    const double total = s.empty() ? 0.0 : s.back();
    if (total > 0.0)
        for (double& value : s)
            value /= total;
    return s;
}

/// Lays the materials along the path: the strip behind a boundary has the next one.
Result layMaterials(const std::vector<Vec2>& path, const std::vector<double>& s,
                    const MaterialIntervals& intervals, EdgePath& out) {
    const auto add = [&](Vec2 point, double arcV, int material) {
        out.points.push_back(point);
        out.arcV.push_back(arcV);
        out.materials.push_back(material);
    };
    std::size_t current = 0;
    for (std::size_t i = 0; i < path.size(); ++i) {
        while (intervals[current].end + MaterialIntervals::kSame < s[i]) {
            const double boundary = intervals[current].end;
            if (++current == intervals.size()) return kFailure;
            if (i == 0) continue;
            const double w = (boundary - s[i - 1]) / (s[i] - s[i - 1]);
            add(path[i - 1] * (1.0 - w) + path[i] * w, 1.0 - boundary, intervals[current].material);
        }
        add(path[i], 1.0 - s[i], intervals[current].material);
    }
    return kSuccess;
}

}  // namespace

Result prepareEdgePath(const Mesh2& geometry, const InputProfile2& edge, int pathIndex,
                       const MaterialIntervals* intervals, const EdgePathSettings& settings,
                       EdgePath& path) {
    if (pathIndex < 0 || pathIndex >= geometry.faceCount()) return kFailure;
    const FaceView face = geometry.face(pathIndex);
    std::vector<Vec2> points;
    for (const int v : face.vertices)
        points.push_back(geometry.vertex(v));
    if (face.kind == ElementKind::kPolygon) {
        const Vec2 gap = points.back() - points.front();
        if (dot(gap, gap) > kSamePlace) points.push_back(points.front());
    }
    divideLongSteps(points, settings);
    tuckFlatEnds(points, edge);
    const std::vector<double> s = arcFractions(points);

    path = {};
    const MaterialIntervals plain;
    const bool covered = intervals != nullptr && intervals->size() > 0;
    const MaterialIntervals& laid = covered ? *intervals : plain;
    if (layMaterials(points, s, laid, path) != kSuccess) return kFailure;
    for (Vec2& p : path.points)
        p = p * kPercent;
    return kSuccess;
}

}  // namespace orvin
