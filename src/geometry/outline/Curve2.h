// Curve2: one polyline or one Bezier segment of an outline, in the unit of the reader that made it.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "scene/Persistent.h"
#include "toolkit/Result.h"
#include "toolkit/math/Vec.h"

namespace orvin {

class Curve2 final : public Persistent {
  public:
    enum class Type : std::int16_t { kLinear = 0, kBezier = 2, kEmpty = 4 };

    /// A Bezier of more control points isn't flattened: the work grows with their cube.
    static constexpr std::size_t kMaxControlPoints = 256;

    Curve2() = default;
    Curve2(Type type, std::vector<Vec2> points);

    Result writeBody(SceneStream& stream) override;
    const CommandRegistry& commandRegistry() const override;
    std::string_view className() const override { return "Curve2"; }

    Type type() const { return type_; }
    void setType(Type type) { type_ = type; }
    void makeEmpty();

    /// Linear: the polyline's vertices. Bezier: the control points of one curve of any degree.
    std::span<const Vec2> points() const { return points_; }
    void addPoint(Vec2 p) { points_.push_back(p); }
    void setPoint(std::size_t i, Vec2 p) { points_[i] = p; }
    void clearPoints() { points_.clear(); }

    bool attachedHead = false;  // begins where the curve before it ends
    bool attachedTail = false;  // ends where the next one begins
    bool closed = false;

    /// End points with unit directions that point out of the curve. Taken from the first two and
    /// last two points whatever the type. Zero vectors for an empty curve.
    void startFrame(Vec2& point, Vec2& direction) const;
    void endFrame(Vec2& point, Vec2& direction) const;

    /// The point at t in 0..1 (Linear: by arc length, needs computeLength) and the unit left
    /// normal. Past the end of a Linear curve: the zero point, `normal` untouched. `normal` may be
    /// null.
    Vec2 evaluate(double t, Vec2* normal) const;

    /// Replaces the lists by a polyline with normals. Bezier: within `tolerance` of the curve,
    /// or a millionth of its extent where that is more.
    /// Linear: every segment gets its own two points with its (unnormalised) left normal.
    /// -1 for a Bezier of too many control points.
    Result flatten(double tolerance, std::vector<Vec2>& points, std::vector<Vec2>& normals) const;

    /// Drops points within 0.1 of their successor; a curve too short to be one becomes Empty.
    /// Returns how many points went.
    int removeShort();

    /// Arc length, a Bezier's along its polyline at 0.1. Kept until the next call.
    void computeLength();
    double length() const { return length_; }

    /// Appends the arc fractions of the vertices (Bezier: of the end). An `offset` of exactly 0
    /// puts 0 in front.
    void appendKnots(double offset, double total, std::vector<double>& knots) const;

    /// Moves `point` onto the first vertex within `tolerance`; true on a hit. `accumulated` grows
    /// by the arc length walked.
    bool snapToKnot(Vec2& point, double tolerance, double& accumulated) const;

    void translate(double dx, double dy);
    void scale(double factor);
    void reverse();

  private:
    Result flattenBezier(double tolerance, std::vector<Vec2>& points,
                         std::vector<Vec2>& normals) const;
    void flattenLinear(std::vector<Vec2>& points, std::vector<Vec2>& normals) const;

    Type type_ = Type::kLinear;
    std::vector<Vec2> points_;
    double length_ = 0.0;
};

}  // namespace orvin
