// Transform: translate, rotate, scale and pivot of one node, with the cached local matrix.
//
// The letters of `order` act on the point one after the other from the last to the first, each
// about the pivot as moved so far; "rst" and "trs" therefore give the same matrix and the pivot
// lands on origin + translate. After setMatrix the matrix is the master and the components are
// derived when they are asked for: scale from the lengths of the axes, rotation from the nearest
// right-handed frame, translation so that the pivot stays. A shear is lost by that.
//
// Degenerate input: an axis of length 0 keeps scale 0 and the frame is completed from the others;
// a mirroring matrix gives the axis that the frame turns over a negative scale.
#pragma once

#include <array>
#include <string_view>

#include "toolkit/math/Matrix4.h"

namespace orvin {

class Transform {
  public:
    Vec3 origin() const;
    Vec3 translate() const;
    Vec3 rotate() const;  // degrees
    Vec3 scale() const;
    std::string_view order() const { return {order_.data(), order_.size()}; }
    std::string_view rotateOrder() const { return {rotateOrder_.data(), rotateOrder_.size()}; }

    void setOrigin(Vec3 value);
    void setTranslate(Vec3 value);
    void setRotate(Vec3 degrees);
    void setScale(Vec3 value);
    // Three letters of "r", "s", "t" and of "x", "y", "z", of either case; others are skipped, and
    // so is what stands behind the third.
    void setOrder(std::string_view letters);
    void setRotateOrder(std::string_view letters);

    /// parentFromLocal.
    const Matrix4& matrix() const;

    /// Makes `matrix` the master; components follow on demand.
    void setMatrix(const Matrix4& matrix);

  private:
    using Letters = std::array<char, 3>;

    void derive() const;
    void change();
    Matrix4 compose(bool withTranslation) const;

    mutable Vec3 origin_;
    mutable Vec3 translate_;
    mutable Vec3 rotate_;
    mutable Vec3 scale_{1.0, 1.0, 1.0};
    mutable bool matrixIsMaster_ = false;  // components are stale
    mutable Matrix4 matrix_;
    mutable bool matrixDirty_ = true;
    Letters order_{'r', 's', 't'};
    Letters rotateOrder_{'x', 'y', 'z'};
};

}  // namespace orvin
