#include "geometry/Profile.h"

namespace orvin {

const Mesh2* OutlineProfile::getShape(double tolerance, double hardAngle, std::uint32_t& stamp) {
    prepare();
    if (shapeCount_ != changeCount_ || tolerance != tolerance_) {
        tolerance_ = tolerance;
        shapeCount_ = 0;  // what a flattening that fails leaves behind is no shape
        shape_.clear();
        if (flatten(tolerance, hardAngle, shape_) != kSuccess) return nullptr;
        touch();
        shapeCount_ = changeCount_;
    }
    stamp = changeCount_;
    return &shape_;
}

Result OutlineProfile::flatten(double tolerance, double hardAngle, Mesh2& shape) {
    return outline_.emitAll(tolerance, hardAngle, shape);
}

Box2 OutlineProfile::bounds() {
    Box2 box;
    for (const Vec2 p : shape_.vertices())
        box.add(p);
    return box;
}

}  // namespace orvin
