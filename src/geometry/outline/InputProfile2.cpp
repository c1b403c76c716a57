#include "geometry/ModelHooks.h"
#include "geometry/outline/CompositeCurve2.h"
#include "scene/SceneStream.h"

namespace orvin {

namespace {

// An edge is drawn in a box of 100 by 100; these ends count as lying on its faces.
constexpr double kNearAxis = 0.5;
constexpr double kNearBack = 99.95;
constexpr double kBack = 100.0;

InputProfile2& profile(Persistent& self) {
    return static_cast<InputProfile2&>(self);
}

bool runsDownwards(const CompositeCurve2& path) {
    if (path.closed || path.curves.empty()) return false;
    const auto first = path.curves.front().points();
    const auto last = path.curves.back().points();
    if (first.empty() || last.empty()) return false;
    return first.front().y >= 0.0 && last.back().y >= 0.0 && last.back().y < first.front().y;
}

/// Every face of a model as one closed path of its x and y.
Result readModel(const std::string& path, InputProfile2& target) {
    Mesh3 mesh;
    if (modelHooks().read == nullptr || modelHooks().read(path, mesh) != kSuccess) return kFailure;
    for (int f = 0; f < mesh.faceCount(); ++f) {
        std::vector<Vec2> points;
        for (const int v : mesh.face(f).vertices)
            points.push_back({mesh.vertex(v).x, mesh.vertex(v).y});
        CompositeCurve2& composite = target.paths.emplace_back();
        composite.closed = true;
        composite.curves.emplace_back(Curve2::Type::kLinear, std::move(points)).closed = true;
    }
    return kSuccess;
}

}  // namespace

Result InputProfile2::writeBody(SceneStream& stream) {
    for (CompositeCurve2& path : paths) {
        const Result result = stream.writeObject(path);
        if (result != kSuccess) return result;
    }
    return kSuccess;
}

const CommandRegistry& InputProfile2::commandRegistry() const {
    static const CommandRegistry& registry = []() -> const CommandRegistry& {
        static CommandRegistry r;
        r.lookupOrInsert("begin", [](SceneStream& stream, Persistent& self) {
            std::string_view word;
            if (stream.nextToken(word) != kSuccess || word != "CompositeCurve2") return kFailure;
            stream.push(profile(self).paths.emplace_back());
            return kSuccess;
        });
        r.lookupOrInsert("infileObj", [](SceneStream& stream, Persistent& self) {
            std::string path;
            if (stream.readText(path, kLineCapacity) != kSuccess) return kFailure;
            return readModel(path, profile(self));
        });
        // Illustrator outlines only come in as profiles of their own: this road is closed.
        r.lookupOrInsert("infileIllustrator", [](SceneStream& stream, Persistent&) {
            std::string path;
            stream.readText(path, kLineCapacity);
            return kFailure;
        });
        r.lookupOrInsert("end", endCommand);
        return r;
    }();
    return registry;
}

Result InputProfile2::emitAll(double tolerance, double hardAngle, Mesh2& out) const {
    for (const CompositeCurve2& path : paths) {
        const Result result = path.emit(tolerance, hardAngle, out);
        if (result != kSuccess) return result;
    }
    return kSuccess;
}

void InputProfile2::orientEdgePath() {
    bool downwards = false;
    for (const CompositeCurve2& path : paths)
        downwards = downwards || runsDownwards(path);
    if (downwards)
        for (CompositeCurve2& path : paths)
            path.reverse();
    snapEdgeEndpoints();
}

void InputProfile2::snapEdgeEndpoints() {
    for (CompositeCurve2& path : paths) {
        for (Curve2& curve : path.curves) {
            for (std::size_t i = 0; i < curve.points().size(); ++i) {
                const Vec2 p = curve.points()[i];
                if (p.x < -kNearAxis || p.x > kNearAxis) continue;
                if (p.y >= -kNearAxis && p.y <= kNearAxis)
                    curve.setPoint(i, {0.0, 0.0});
                else if (p.y >= kNearBack && p.y <= kBack + kNearAxis)
                    curve.setPoint(i, {0.0, kBack});
            }
            curve.computeLength();
        }
    }
}

void InputProfile2::translate(double dx, double dy) {
    for (CompositeCurve2& path : paths)
        path.translate(dx, dy);
}

void InputProfile2::scale(double factor) {
    for (CompositeCurve2& path : paths)
        path.scale(factor);
}

}  // namespace orvin
