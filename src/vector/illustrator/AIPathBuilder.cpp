#include "vector/illustrator/AIPathBuilder.h"

#include <utility>

namespace orvin {

void AIPathBuilder::setPoint(Vec2 point) {
    endCurve();
    point_ = point;
    hasPoint_ = true;
}

CompositeCurve2& AIPathBuilder::beginPath() {
    if (!path_) path_.emplace();
    return *path_;
}

Curve2& AIPathBuilder::newCurve(Curve2::Type type) {
    Curve2& curve = beginPath().curves.emplace_back();
    curve.setType(type);
    curve.addPoint(point_);
    return curve;
}

void AIPathBuilder::lineTo(Vec2 point) {
    Curve2& line = lineOpen_ ? path_->curves.back() : newCurve(Curve2::Type::kLinear);
    line.addPoint(point);
    point_ = point;
    lineOpen_ = true;
}

void AIPathBuilder::curveTo(Vec2 control1, Vec2 control2, Vec2 point) {
    endCurve();
    Curve2& curve = newCurve(Curve2::Type::kBezier);
    curve.addPoint(control1);
    curve.addPoint(control2);
    curve.addPoint(point);
    point_ = point;
}

void AIPathBuilder::curveTo(Vec2 control, Vec2 point) {
    endCurve();
    Curve2& curve = newCurve(Curve2::Type::kBezier);
    curve.addPoint(control);
    curve.addPoint(point);
    point_ = point;
}

CompositeCurve2 AIPathBuilder::take() {
    CompositeCurve2 path = path_ ? std::move(*path_) : CompositeCurve2();
    drop();
    path.linkCurves();
    path.cleanup();
    return path;
}

void AIPathBuilder::drop() {
    path_.reset();
    hasPoint_ = false;
    endCurve();
}

}  // namespace orvin
