#include "scene/Transform.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace orvin {

namespace {

using Axes = std::array<Vec3, 3>;

constexpr std::size_t following(std::size_t axis) {
    return (axis + 1) % 3;
}

Vec3 crossOfOthers(const Axes& axes, std::size_t axis) {
    const std::size_t next = following(axis);
    return normalize(cross(axes[next], axes[following(next)]));
}

Vec3 anyPerpendicular(Vec3 unit) {
    const Vec3 helper = std::abs(unit.x) < 0.6 ? Vec3{1, 0, 0} : Vec3{0, 1, 0};
    return normalize(cross(unit, helper));
}

// Axes that span less than a plane's worth of directions, or whose two shorter ones do: the longest
// stays, and of the others whatever doesn't lie along it.
Axes completedFrame(const Axes& axes, std::size_t longest) {
    Axes frame = axes;
    if (dot(axes[longest], axes[longest]) == 0.0)
        return {Vec3{1, 0, 0}, Vec3{0, 1, 0}, Vec3{0, 0, 1}};
    const std::size_t second = following(longest);
    const std::size_t third = following(second);
    constexpr double kAlong = 1e-9;
    const Vec3 fromSecond = cross(axes[longest], axes[second]);
    const Vec3 fromThird = cross(axes[third], axes[longest]);
    if (length(fromSecond) > kAlong) {
        frame[third] = normalize(fromSecond);
        frame[second] = cross(frame[third], frame[longest]);
    } else {
        frame[second] =
            length(fromThird) > kAlong ? normalize(fromThird) : anyPerpendicular(axes[longest]);
        frame[third] = cross(frame[longest], frame[second]);
    }
    return frame;
}

// The orthonormal, right-handed frame for unit axes (or zero ones) of these lengths.
Axes orthonormalFrame(const Axes& axes, Vec3 lengths) {
    std::size_t longest = 0;
    for (std::size_t i = 1; i < 3; ++i)
        if (lengths[static_cast<int>(i)] > lengths[static_cast<int>(longest)]) longest = i;
    const std::size_t a = following(longest);
    const std::size_t b = following(a);
    constexpr double kParallel = 1e-9;
    if (length(cross(axes[a], axes[b])) < kParallel) return completedFrame(axes, longest);
    Axes frame = axes;
    frame[longest] = crossOfOthers(frame, longest);
    const std::size_t shorter = lengths[static_cast<int>(a)] < lengths[static_cast<int>(b)] ? a : b;
    frame[shorter] = crossOfOthers(frame, shorter);
    return frame;
}

std::array<char, 3> firstThree(std::string_view letters) {
    std::array<char, 3> kept{' ', ' ', ' '};
    std::copy_n(letters.begin(), std::min(letters.size(), kept.size()), kept.begin());
    return kept;
}

Matrix4 aboutPivot(const Matrix4& operation, Vec3 pivot) {
    return Matrix4::translation(-pivot) * operation * Matrix4::translation(pivot);
}

}  // namespace

Vec3 Transform::origin() const {
    derive();
    return origin_;
}

Vec3 Transform::translate() const {
    derive();
    return translate_;
}

Vec3 Transform::rotate() const {
    derive();
    return rotate_;
}

Vec3 Transform::scale() const {
    derive();
    return scale_;
}

void Transform::change() {
    derive();
    matrixDirty_ = true;
}

void Transform::setOrigin(Vec3 value) {
    change();
    origin_ = value;
}

void Transform::setTranslate(Vec3 value) {
    change();
    translate_ = value;
}

void Transform::setRotate(Vec3 degrees) {
    change();
    rotate_ = degrees;
}

void Transform::setScale(Vec3 value) {
    change();
    scale_ = value;
}

void Transform::setOrder(std::string_view letters) {
    change();
    order_ = firstThree(letters);
}

void Transform::setRotateOrder(std::string_view letters) {
    change();
    rotateOrder_ = firstThree(letters);
}

const Matrix4& Transform::matrix() const {
    if (matrixDirty_) {
        matrix_ = compose(true);
        matrixDirty_ = false;
    }
    return matrix_;
}

void Transform::setMatrix(const Matrix4& matrix) {
    matrix_ = matrix;
    matrixDirty_ = false;
    matrixIsMaster_ = true;
}

Matrix4 Transform::compose(bool withTranslation) const {
    Matrix4 result;
    Vec3 pivot = origin_;
    for (auto letter = order_.rbegin(); letter != order_.rend(); ++letter) {
        switch (*letter) {
            case 'r':
            case 'R':
                result = result * aboutPivot(Matrix4::rotation(rotate_, rotateOrder()), pivot);
                break;
            case 's':
            case 'S':
                result = result * aboutPivot(Matrix4::scaling(scale_), pivot);
                break;
            case 't':
            case 'T':
                if (withTranslation) result = result * Matrix4::translation(translate_);
                break;
            default:
                break;
        }
        pivot = result.point(origin_);
    }
    return result;
}

void Transform::derive() const {
    if (!matrixIsMaster_) return;
    matrixIsMaster_ = false;
    Axes axes;
    for (std::size_t i = 0; i < 3; ++i) {
        axes[i] = matrix_.row(static_cast<int>(i));
        scale_[static_cast<int>(i)] = length(axes[i]);
        axes[i] = normalize(axes[i]);
    }
    const Axes frame = orthonormalFrame(axes, scale_);
    Matrix4 rotation;
    for (int i = 0; i < 3; ++i) {
        const auto axis = static_cast<std::size_t>(i);
        rotation.setRow(i, frame[axis]);
        if (dot(frame[axis], axes[axis]) < 0.0) scale_[i] = -scale_[i];
    }
    rotate_ = rotationAngles(rotation, rotateOrder());
    translate_ = matrix_.origin() - compose(false).origin();
}

}  // namespace orvin
