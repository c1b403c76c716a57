// A scene with an extruded object, for tests: outlines and edges are given as curves.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <tuple>
#include <utility>
#include <vector>

#include "geometry/ObjectX.h"
#include "scene/SceneX.h"
#include "tests/geometry/OutlineShapes.h"

namespace orvin::test {

class CurveProfile final : public OutlineProfile {
  public:
    using OutlineProfile::outline;
    using OutlineProfile::OutlineProfile;

    Result writeBody(SceneStream& stream) override { return SceneMember::writeBody(stream); }
    const CommandRegistry& commandRegistry() const override {
        static const CommandRegistry none(1);
        return none;
    }
    std::string_view className() const override { return "CurveProfile"; }

    /// A path of straight lines, closed ones with the first point repeated.
    void addLines(std::vector<Vec2> points, bool closed) {
        if (closed) points.push_back(points.front());
        add({Curve2(Curve2::Type::kLinear, std::move(points))});
    }
    /// A circle of four Beziers; a negative radius runs clockwise.
    void addCircle(Vec2 center, double radius) {
        const double k = 0.5522847498 * radius;
        const double r = std::abs(radius);
        const double s = radius > 0 ? 1.0 : -1.0;
        const Vec2 axes[] = {{1, 0}, {0, s}, {-1, 0}, {0, -s}};
        std::vector<Curve2> curves;
        for (std::size_t i = 0; i < 4; ++i) {
            const Vec2 a = axes[i] * r + center;
            const Vec2 b = axes[(i + 1) % 4] * r + center;
            curves.emplace_back(Curve2::Type::kBezier,
                                std::vector<Vec2>{a, a + axes[(i + 1) % 4] * std::abs(k),
                                                  b + axes[i] * std::abs(k), b});
        }
        add(std::move(curves));
    }
    void add(std::vector<Curve2> curves) {
        CompositeCurve2& path = outline().paths.emplace_back();
        path.curves = std::move(curves);
        path.linkCurves();
        touch();
    }
};

struct Extrusion {
    SceneX scene;
    CurveProfile& outline = scene.make<CurveProfile>("outline");
    CurveProfile& edge = scene.make<CurveProfile>("edge");
    ObjectXStyle& style = scene.make<ObjectXStyle>("style");
    ObjectX& object = scene.make<ObjectX>("object");

    Extrusion() {
        style.setPerim("edge");
        object.setFace("outline");
        object.setStyle("style");
    }
    void straightEdge() { edge.addLines({{0, 0}, {0, 100}}, false); }
    void bevelEdge() { edge.addLines({{0, 0}, {10, 10}, {10, 90}, {0, 100}}, false); }
    void roundEdge() {
        edge.add({Curve2(Curve2::Type::kBezier, {{0, 0}, {8, 0}, {15, 7}, {15, 15}}),
                  Curve2(Curve2::Type::kLinear, {{15, 15}, {15, 100}, {0, 100}})});
    }
    const Mesh3* build(int quality = 1) {
        std::uint32_t revision = 0;
        return object.mesh(quality, revision);
    }
};

inline Vec3 newell(const Mesh3& mesh, int face) {
    Vec3 sum;
    const auto ids = mesh.face(face).vertices;
    for (std::size_t i = 0; i < ids.size(); ++i)
        sum += cross(mesh.vertex(ids[i]), mesh.vertex(ids[(i + 1) % ids.size()]));
    return sum * 0.5;
}

/// What the checks count on a solid.
struct Solid {
    int openEdges = 0;      // edges without a partner in the other direction, points welded
    int inwardCorners = 0;  // normals that look away from their polygon's front
    int oddNormals = 0;     // not of unit length
    double frontArea = 0.0;
    double backArea = 0.0;
    double volume = 0.0;
};

inline Solid examine(const Mesh3& mesh) {
    Solid solid;
    using Key = std::tuple<long long, long long, long long>;
    std::map<Key, int> welded;
    const auto weld = [&](int v) {
        const Vec3 p = mesh.vertex(v);
        const Key key{std::llround(p.x * 1e4), std::llround(p.y * 1e4), std::llround(p.z * 1e4)};
        return welded.emplace(key, static_cast<int>(welded.size())).first->second;
    };
    std::map<std::pair<int, int>, int> edges;
    for (int f = 0; f < mesh.faceCount(); ++f) {
        const FaceView face = mesh.face(f);
        const Vec3 area = newell(mesh, f);
        const Vec3 front = normalize(area);
        if (face.normals.size() != face.vertices.size()) ++solid.oddNormals;
        for (std::size_t i = 0; i < face.vertices.size(); ++i) {
            const int a = weld(face.vertices[i]);
            const int b = weld(face.vertices[(i + 1) % face.vertices.size()]);
            if (a != b) {
                ++edges[{a, b}];
                --edges[{b, a}];
            }
            const Vec3 n = mesh.normal(face.normals[i]);
            if (std::abs(length(n) - 1.0) > 1e-9) ++solid.oddNormals;
            if (length(area) > 1e-6 && dot(n, front) < 0.1) ++solid.inwardCorners;
        }
        const Vec3 p = mesh.vertex(face.vertices[0]);
        solid.volume += dot(p, area) / 3.0;
        const Vec3 n = mesh.normal(face.normals[0]);
        if (n == Vec3{0, 0, 1}) solid.frontArea += area.z;
        if (n == Vec3{0, 0, -1}) solid.backArea -= area.z;
    }
    for (const auto& [edge, count] : edges)
        if (count > 0) solid.openEdges += count;
    return solid;
}

}  // namespace orvin::test
