// CompositeCurve2: a chain of curves, one path of an outline; InputProfile2: all paths of one.
#pragma once

#include <span>
#include <vector>

#include "geometry/Mesh3.h"
#include "geometry/outline/Curve2.h"

namespace orvin {

class CompositeCurve2 final : public Persistent {
  public:
    /// Of one outline: far beyond what is drawn, and short of what a small file of curves of huge
    /// extent asks for.
    static constexpr std::size_t kMostPoints = std::size_t{1} << 22;

    Result writeBody(SceneStream& stream) override;
    const CommandRegistry& commandRegistry() const override;
    std::string_view className() const override { return "CompositeCurve2"; }

    std::vector<Curve2> curves;
    bool closed = false;

    /// Finds out which curves follow one another (ends within 0.0001 per axis) and whether the
    /// chain closes; sets the flags of all curves and of this.
    void linkCurves();

    /// Drops curves too short to be seen and moves ends that nearly meet onto each other.
    void cleanup();

    /// The point at the fraction t of the whole arc length, held to 0..1.
    Vec2 evaluate(double t, Vec2* normal) const;

    /// Adds the polylines of the chain as faces of material 0, kPolygon for closed ones,
    /// kPointList for open ones, each with its own vertices, left normals (not always of unit
    /// length) and texture vertices (1 minus the arc fraction, 0). Joints of less than `hardAngle`
    /// degrees become one smooth point, others stay two points at one place. 0, or what a curve's
    /// flattening returned, or -1 where `out` would have more than kMostPoints.
    Result emit(double tolerance, double hardAngle, Mesh2& out) const;

    /// Arc fractions of all vertices, 0 first.
    void appendKnots(std::vector<double>& knots) const;

    /// Moves `point` onto the first vertex within `tolerance` and yields its arc fraction in `t`;
    /// false where none is that near.
    bool locate(Vec2& point, double tolerance, double& t) const;

    double length() const;
    void reverse();
    void translate(double dx, double dy);
    void scale(double factor);
    void clear();
};

class InputProfile2 final : public Persistent {
  public:
    Result writeBody(SceneStream& stream) override;
    const CommandRegistry& commandRegistry() const override;
    std::string_view className() const override { return "InputProfile2"; }

    std::vector<CompositeCurve2> paths;

    /// All paths in order; stops at the first result that isn't 0.
    Result emitAll(double tolerance, double hardAngle, Mesh2& out) const;

    /// Turns an edge profile that runs downwards, so that it starts at the face; then snaps.
    void orientEdgePath();
    /// Moves ends of a hand-drawn edge that nearly lie on (0, 0) or (0, 100) exactly there.
    void snapEdgeEndpoints();

    void translate(double dx, double dy);
    void scale(double factor);
    void clear() { paths.clear(); }
};

}  // namespace orvin
