// AIPathBuilder: the path that operators of Illustrator art draw, as a chain of curves: a run of
// lines becomes one Linear curve, each curve operator one Bezier.
#pragma once

#include <optional>

#include "geometry/outline/CompositeCurve2.h"

namespace orvin {

class AIPathBuilder {
  public:
    /// A path that has a line or curve is open until it is taken or dropped.
    bool isOpen() const { return path_.has_value(); }
    /// Lines and curves need a point to start from.
    bool hasPoint() const { return hasPoint_; }

    /// Moves there. Inside a path, what follows is a new curve of the same path.
    void setPoint(Vec2 point);

    // These need hasPoint().
    void lineTo(Vec2 point);
    void curveTo(Vec2 control1, Vec2 control2, Vec2 point);
    /// A curve of three control points: both operators that leave a control point out draw it.
    void curveTo(Vec2 control, Vec2 point);

    /// Ends the open path: closing is found from where its ends are, and what is too short to be
    /// seen goes. May be without curves then.
    CompositeCurve2 take();
    void drop();

  private:
    CompositeCurve2& beginPath();
    Curve2& newCurve(Curve2::Type type);
    void endCurve() { lineOpen_ = false; }

    std::optional<CompositeCurve2> path_;
    Vec2 point_;  // where the next line or curve starts
    bool hasPoint_ = false;
    bool lineOpen_ = false;  // the last curve is a run of lines that goes on
};

}  // namespace orvin
