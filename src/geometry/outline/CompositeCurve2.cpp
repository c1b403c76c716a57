#include "geometry/outline/CompositeCurve2.h"

#include <algorithm>
#include <cmath>

#include "geometry/outline/Line2.h"
#include "scene/SceneStream.h"

namespace orvin {

namespace {

constexpr double kLinked = 0.0001;
constexpr double kNearlyMeets = 0.1;
constexpr double kDegreesPerRadian = 57.29577866666166;

bool meets(Vec2 a, Vec2 b) {
    return std::abs(a.x - b.x) <= kLinked && std::abs(a.y - b.y) <= kLinked;
}

double angleBetween(Vec2 a, Vec2 b) {
    // Rounding may lift the product of two equal unit vectors above 1.
    return std::acos(std::clamp(dot(normalize(a), normalize(b)), -1.0, 1.0)) * kDegreesPerRadian;
}

void addPath(std::span<const Vec2> points, std::span<const Vec2> normals, bool closed,
             double hardAngle, Mesh2& out) {
    if (points.empty()) return;
    if (closed && points.size() > 1 && angleBetween(normals.back(), normals.front()) < hardAngle) {
        points = points.first(points.size() - 1);
        normals = normals.first(points.size());
    }
    double total = 0.0;
    for (std::size_t i = 1; i < points.size(); ++i)
        total += length(points[i] - points[i - 1]);
    double running = 0.0;
    std::vector<int> vertices(points.size());
    std::vector<int> texture(points.size());
    std::vector<int> normalIds(points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (i > 0) running += length(points[i] - points[i - 1]);
        vertices[i] = out.addVertex(points[i]);
        texture[i] = out.addTexVertex({total > 0.0 ? 1.0 - running / total : 1.0, 0.0});
        normalIds[i] = out.addNormal(normals[i]);
    }
    out.addFace(closed ? ElementKind::kPolygon : ElementKind::kPointList, 0, vertices, texture,
                normalIds);
}

CompositeCurve2& composite(Persistent& self) {
    return static_cast<CompositeCurve2&>(self);
}

}  // namespace

Result CompositeCurve2::writeBody(SceneStream& stream) {
    Result result = stream.putInt("closed", closed);
    for (Curve2& curve : curves) {
        if (result != kSuccess) return result;
        result = stream.writeObject(curve);
    }
    return result;
}

const CommandRegistry& CompositeCurve2::commandRegistry() const {
    static const CommandRegistry& registry = []() -> const CommandRegistry& {
        static CommandRegistry r;
        r.lookupOrInsert("begin", [](SceneStream& stream, Persistent& self) {
            std::string_view word;
            if (stream.nextToken(word) != kSuccess || word != "Curve2") return kFailure;
            // The block is read before another one is appended: the address holds that long.
            stream.push(composite(self).curves.emplace_back());
            return kSuccess;
        });
        r.lookupOrInsert("closed", [](SceneStream& stream, Persistent& self) {
            int value = 0;
            if (stream.readInt(value) != kSuccess) return kFailure;
            if (value != 0) composite(self).closed = true;
            return kSuccess;
        });
        r.lookupOrInsert("end", endCommand);
        return r;
    }();
    return registry;
}

void CompositeCurve2::linkCurves() {
    closed = false;
    for (Curve2& c : curves)
        c.attachedHead = c.attachedTail = c.closed = false;
    const auto joins = [](const Curve2& from, const Curve2& to) {
        return !from.points().empty() && !to.points().empty() &&
               meets(from.points().back(), to.points().front());
    };
    if (curves.size() == 1) {
        closed = curves[0].closed = joins(curves[0], curves[0]);
        return;
    }
    bool broken = false;
    for (std::size_t i = 0; i < curves.size(); ++i) {
        Curve2& next = curves[(i + 1) % curves.size()];
        if (joins(curves[i], next))
            curves[i].attachedTail = next.attachedHead = true;
        else
            broken = true;
    }
    closed = !curves.empty() && !broken;
}

void CompositeCurve2::cleanup() {
    std::vector<Curve2> kept;
    kept.reserve(curves.size());
    for (Curve2& c : curves)
        if (c.removeShort() == 0 || c.type() != Curve2::Type::kEmpty) kept.push_back(std::move(c));
    curves = std::move(kept);
    for (std::size_t i = curves.size(); i-- > 0;) {
        const Curve2& next = curves[(i + 1) % curves.size()];
        if (curves[i].points().empty() || next.points().empty()) continue;
        const Vec2 target = next.points().front();
        if (orvin::length(curves[i].points().back() - target) < kNearlyMeets)
            curves[i].setPoint(curves[i].points().size() - 1, target);
    }
    for (Curve2& c : curves)
        c.computeLength();
    curves.shrink_to_fit();
}

double CompositeCurve2::length() const {
    double total = 0.0;
    for (const Curve2& c : curves)
        total += c.length();
    return total;
}

Vec2 CompositeCurve2::evaluate(double t, Vec2* normal) const {
    if (curves.empty()) return {};
    if (t <= 0.0) return curves.front().evaluate(0.0, normal);
    if (t >= 1.0) return curves.back().evaluate(1.0, normal);
    const double s = t * length();
    double running = 0.0;
    for (const Curve2& c : curves) {
        if (c.length() > 0.0 && s <= running + c.length())
            return c.evaluate((s - running) / c.length(), normal);
        running += c.length();
    }
    return {};
}

Result CompositeCurve2::emit(double tolerance, double hardAngle, Mesh2& out) const {
    std::vector<Vec2> points;
    std::vector<Vec2> normals;
    std::vector<Vec2> newPoints;
    std::vector<Vec2> newNormals;
    for (std::size_t i = 0; i < curves.size(); ++i) {
        const Curve2& curve = curves[i];
        const Result result = curve.flatten(tolerance, newPoints, newNormals);
        if (result != kSuccess) return result;
        const bool smooth = !points.empty() && !newPoints.empty() &&
                            angleBetween(normals.back(), newNormals.front()) < hardAngle;
        const std::ptrdiff_t skip = smooth ? 1 : 0;
        points.insert(points.end(), newPoints.begin() + skip, newPoints.end());
        normals.insert(normals.end(), newNormals.begin() + skip, newNormals.end());
        if (static_cast<std::size_t>(out.vertexCount()) + points.size() > kMostPoints)
            return kFailure;
        if (curve.attachedTail && !curve.closed && i + 1 < curves.size()) continue;
        addPath(points, normals, curve.closed || closed, hardAngle, out);
        points.clear();
        normals.clear();
    }
    return kSuccess;
}

void CompositeCurve2::appendKnots(std::vector<double>& knots) const {
    const double whole = length();
    const double total = whole > 0.0 ? whole : 1.0;
    double offset = 0.0;
    for (const Curve2& c : curves) {
        c.appendKnots(offset, total, knots);
        offset += c.length();
    }
}

bool CompositeCurve2::locate(Vec2& point, double tolerance, double& t) const {
    const double total = length();
    double accumulated = 0.0;
    for (const Curve2& c : curves) {
        if (!c.snapToKnot(point, tolerance, accumulated)) continue;
        t = total > 0.0 ? accumulated / total : 0.0;
        return true;
    }
    return false;
}

void CompositeCurve2::reverse() {
    std::reverse(curves.begin(), curves.end());
    for (Curve2& c : curves)
        c.reverse();
}

void CompositeCurve2::translate(double dx, double dy) {
    for (Curve2& c : curves)
        c.translate(dx, dy);
}

void CompositeCurve2::scale(double factor) {
    for (Curve2& c : curves) {
        c.scale(factor);
        c.computeLength();
    }
}

void CompositeCurve2::clear() {
    curves.clear();
    closed = false;
}

}  // namespace orvin
