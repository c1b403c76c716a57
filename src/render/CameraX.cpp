#include "render/CameraX.h"

#include <array>
#include <cmath>
#include <cstdio>

#include "scene/SceneStream.h"
#include "scene/SceneX.h"

namespace orvin {

namespace {

// The system's own degree factors: files and parameter values go through these and back.
constexpr double kRadiansPerDegree = 0.01745329277777778;
constexpr double kDegreesPerRadian = 57.29577866666166;

/// Below this an eye-to-target or side vector has no direction.
constexpr double kNoDirection = 1e-5;

bool finite(Vec3 v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

bool positive(double value) {
    return std::isfinite(value) && value > 0.0;
}

/// Rotation of a camera at `eye` that looks at `target`, upright.
Matrix4 lookAtRotation(Vec3 eye, Vec3 target) {
    const Vec3 back = eye - target;
    const Vec3 z = length(back) < kNoDirection ? Vec3{0.0, 0.0, 1.0} : normalize(back);
    const Vec3 side = cross({0.0, 1.0, 0.0}, z);
    const Vec3 x = length(side) < kNoDirection ? Vec3{1.0, 0.0, 0.0} : normalize(side);
    Matrix4 r;
    r.setRow(0, x);
    r.setRow(1, normalize(cross(z, x)));
    r.setRow(2, z);
    return r;
}

/// The rotation part of any matrix: its z axis first, then as near to its y axis as can be.
Matrix4 pureRotation(const Matrix4& matrix) {
    const Vec3 z = normalize(matrix.row(2));
    const Vec3 x = normalize(cross(matrix.row(1), z));
    if (length(z) < 0.5 || length(x) < 0.5) return {};
    Matrix4 r;
    r.setRow(0, x);
    r.setRow(1, cross(z, x));
    r.setRow(2, z);
    return r;
}

Matrix4 tumbleRotation(const CameraPose& pose) {
    return Matrix4::rotation({pose.tumbleUpDown, pose.tumbleLeftRight, 0.0}, "zyx");
}

constexpr std::array<std::string_view, 4> kModeNames{"ORBIT", "HANDHELD", "LOOKAT", "TRANSFORM"};

}  // namespace

CameraX::CameraX(SceneX& scene, MemberKind kind, std::string_view name)
    : TransformMember(scene, kind, name) {
    transform().setRotateOrder("zyx");
    transform().setOrder("trs");
}

CameraX::CameraX(SceneX& scene, std::string_view name)
    : CameraX(scene, MemberKind::kCamera, name) {}

CameraX::CameraX(SceneX& scene, const CameraX& source, std::string_view name)
    : TransformMember(scene, source, name) {
    copyCameraFrom(source);
}

void CameraX::copyCameraFrom(const CameraX& other) {
    copyPoseFrom(other);
    mode_ = other.mode_;
    projection_ = other.projection_;
    lensType_ = other.lensType_;
    lens_ = other.lens_;
    aperture_ = other.aperture_;
    aspect_ = other.aspect_;
    near_ = other.near_;
    far_ = other.far_;
    orthoWidth_ = other.orthoWidth_;
    pose_ = other.pose_;
    underScan_ = other.underScan_;
    scaleVertically_ = other.scaleVertically_;
}

// ---- place

Matrix4 CameraX::parentFromCamera() const {
    // Written source first: what stands on the left acts first on the point.
    switch (mode_) {
        case CameraMode::kOrbit:
            return Matrix4::rotationAbout(2, pose_.roll) *
                   Matrix4::translation({0.0, 0.0, pose_.distance}) * tumbleRotation(pose_) *
                   Matrix4::translation(pose_.target);
        case CameraMode::kHandHeld:
            return Matrix4::rotationAbout(2, pose_.roll) * tumbleRotation(pose_) *
                   Matrix4::translation(pose_.eye);
        case CameraMode::kLookAt:
            // The roll stands behind the inverse form, so here its inverse stands in front.
            return Matrix4::rotationAbout(2, -pose_.roll) *
                   lookAtRotation(pose_.eye, pose_.target) * Matrix4::translation(pose_.eye);
        case CameraMode::kTransform:
            break;
    }
    return transform().matrix();
}

void CameraX::updateNode() {
    if (mode_ != CameraMode::kTransform) transform().setMatrix(parentFromCamera());
}

Result CameraX::setMode(CameraMode mode) {
    if (static_cast<int>(mode) < 0 || static_cast<int>(mode) > 3) return kFailure;
    mode_ = mode;
    updateNode();
    return kSuccess;
}

Result CameraX::setEye(Vec3 eye) {
    if (!finite(eye)) return kFailure;
    pose_.eye = eye;
    updateNode();
    return kSuccess;
}

Result CameraX::setTarget(Vec3 target) {
    if (!finite(target)) return kFailure;
    pose_.target = target;
    updateNode();
    return kSuccess;
}

Result CameraX::setDistance(double distance) {
    if (!std::isfinite(distance)) return kFailure;
    pose_.distance = distance;
    updateNode();
    return kSuccess;
}

Result CameraX::setTumble(double leftRight, double upDown) {
    if (!std::isfinite(leftRight) || !std::isfinite(upDown)) return kFailure;
    pose_.tumbleLeftRight = leftRight;
    pose_.tumbleUpDown = upDown;
    updateNode();
    return kSuccess;
}

Result CameraX::setRoll(double degrees) {
    if (!std::isfinite(degrees)) return kFailure;
    pose_.roll = degrees;
    updateNode();
    return kSuccess;
}

Result CameraX::setPose(const CameraPose& pose) {
    if (!finite(pose.eye) || !finite(pose.target) || !std::isfinite(pose.distance) ||
        !std::isfinite(pose.tumbleLeftRight) || !std::isfinite(pose.tumbleUpDown) ||
        !std::isfinite(pose.roll))
        return kFailure;
    pose_ = pose;
    updateNode();
    return kSuccess;
}

CameraPose CameraX::poseIn(CameraMode mode) const {
    CameraPose pose = pose_;
    const Matrix4 matrix = parentFromCamera();
    const Matrix4 rotation = pureRotation(matrix);
    const Vec3 eye = matrix.origin();
    const Vec3 back = rotation.row(2);

    const bool keepsAngles = mode_ == CameraMode::kOrbit || mode_ == CameraMode::kHandHeld;
    if (!keepsAngles) {
        const Vec3 angles = rotationAngles(rotation, "yxz");
        pose.tumbleLeftRight = angles.y;
        pose.tumbleUpDown = angles.x;
        if (mode != mode_ || mode_ == CameraMode::kTransform) pose.roll = angles.z;
    }
    if (mode_ == CameraMode::kOrbit || mode_ == CameraMode::kTransform) pose.eye = eye;
    if (mode_ == CameraMode::kLookAt) pose.distance = length(pose.eye - pose.target);
    if (mode_ == CameraMode::kHandHeld || mode_ == CameraMode::kTransform)
        pose.target = eye - back * pose.distance;

    if (mode == CameraMode::kLookAt && mode_ != CameraMode::kLookAt) {
        if (!(pose.distance > kNoDirection)) {
            pose.distance = pose.distance < -kNoDirection ? -pose.distance : 1.0;
            pose.target = eye - back * pose.distance;
        }
        const Matrix4 upright = lookAtRotation(pose.eye, pose.target);
        const Vec3 side = rotation.row(0);
        pose.roll = degrees(std::atan2(-dot(side, upright.row(1)), dot(side, upright.row(0))));
    }
    return pose;
}

Result CameraX::drive(CameraMode mode, const CameraPose& sliders) {
    if (mode != mode_ && setMode(mode) != kSuccess) return kFailure;
    const auto follow = [](double& stored, double slider) {
        if (static_cast<float>(stored) != static_cast<float>(slider)) stored = slider;
    };
    CameraPose pose = pose_;
    for (int axis = 0; axis < 3; ++axis) {
        follow(pose.eye[axis], sliders.eye[axis]);
        follow(pose.target[axis], sliders.target[axis]);
    }
    follow(pose.distance, sliders.distance);
    follow(pose.tumbleLeftRight, sliders.tumbleLeftRight);
    follow(pose.tumbleUpDown, sliders.tumbleUpDown);
    follow(pose.roll, sliders.roll);
    return pose == pose_ ? kSuccess : setPose(pose);
}

Result CameraX::switchMode(CameraMode mode) {
    if (static_cast<int>(mode) < 0 || static_cast<int>(mode) > 3) return kFailure;
    const CameraPose pose = poseIn(mode);
    if (mode == CameraMode::kTransform) transform().setMatrix(parentFromCamera());
    mode_ = mode;
    return setPose(pose);
}

// ---- lens and film

Result CameraX::setProjection(Projection projection) {
    if (projection != Projection::kPerspective && projection != Projection::kOrthographic)
        return kFailure;
    projection_ = projection;
    return kSuccess;
}

void CameraX::setLensType(std::string_view name) {
    lensType_ = name.substr(0, kNameCapacity - 1);
}

Result CameraX::setAspect(double aspect) {
    if (!positive(aspect)) return kFailure;
    aspect_ = aspect;
    return kSuccess;
}

Result CameraX::setLens(double millimetres) {
    if (!positive(millimetres)) return kFailure;
    lens_ = millimetres;
    return kSuccess;
}

double CameraX::fieldOfView() const {
    return 2.0 * std::atan2(aperture_ / 2.0, lens_) * kDegreesPerRadian;
}

Result CameraX::setFieldOfView(double degrees) {
    if (!(degrees >= 0.0 && degrees < 180.0)) return kFailure;
    return setLens((aperture_ / 2.0) / std::tan(degrees / 2.0 * kRadiansPerDegree));
}

Result CameraX::setAperture(double millimetres) {
    if (!std::isfinite(millimetres) || millimetres < 0.0) return kFailure;
    aperture_ = millimetres;
    return kSuccess;
}

Result CameraX::setClip(double nearDistance, double farDistance) {
    if (!std::isfinite(nearDistance) || !std::isfinite(farDistance)) return kFailure;
    near_ = nearDistance;
    far_ = farDistance;
    return kSuccess;
}

Result CameraX::setOrthoWidth(double width) {
    if (!positive(width)) return kFailure;
    orthoWidth_ = width;
    return kSuccess;
}

Result CameraX::setUnderScan(double fraction) {
    if (!std::isfinite(fraction) || fraction <= -1.0) return kFailure;
    underScan_ = fraction;
    return kSuccess;
}

// ---- projection

ViewWindow CameraX::viewWindow(double screenAspect, double pixelRatio) const {
    const double screen = positive(screenAspect) ? screenAspect : 1.0;
    const double widen = 1.0 + underScan_;
    double halfWidth = 0.0;
    double halfHeight = 0.0;
    if (projection_ == Projection::kPerspective) {
        halfWidth = widen * aperture_ * near_ / (2.0 * lens_);
        halfHeight = halfWidth / (screen * (positive(pixelRatio) ? pixelRatio : 1.0));
    } else {
        halfWidth = widen * orthoWidth_ / 2.0;
        halfHeight = halfWidth / aspect_;
        if (!scaleVertically_) {
            if (screen <= aspect_)
                halfWidth = halfHeight * screen;
            else
                halfHeight = halfWidth / screen;
        }
    }
    return {-halfWidth, halfWidth, -halfHeight, halfHeight};
}

Matrix4 CameraX::projectionMatrix(double screenAspect, double pixelRatio, double offsetX,
                                  double offsetY) const {
    const ViewWindow window = viewWindow(screenAspect, pixelRatio);
    const double width = window.right - window.left;
    const double height = window.top - window.bottom;
    const double left = window.left + offsetX * width;
    const double right = window.right + offsetX * width;
    const double bottom = window.bottom + offsetY * height;
    const double top = window.top + offsetY * height;
    const double depth = far_ - near_;
    Matrix4 r;
    if (projection_ == Projection::kPerspective) {
        r.m[0][0] = 2.0 * near_ / width;
        r.m[1][1] = 2.0 * near_ / height;
        r.m[2] = {(right + left) / width, (top + bottom) / height, (near_ - far_) / depth, -1.0};
        r.m[3] = {0.0, 0.0, -2.0 * far_ * near_ / depth, 0.0};
    } else {
        r.m[0][0] = 2.0 / width;
        r.m[1][1] = 2.0 / height;
        r.m[2][2] = -2.0 / depth;
        r.m[3] = {-(right + left) / width, -(top + bottom) / height, -(far_ + near_) / depth, 1.0};
    }
    return r;
}

std::pair<Vec3, Vec3> CameraX::frustumCorners(double u, double v, double screenAspect,
                                              double pixelRatio) const {
    const ViewWindow window = viewWindow(screenAspect, pixelRatio);
    const Vec3 onNear{window.left + u * (window.right - window.left),
                      window.bottom + v * (window.top - window.bottom), -near_};
    const double widening = projection_ == Projection::kPerspective ? far_ / near_ : 1.0;
    return {onNear, {onNear.x * widening, onNear.y * widening, -far_}};
}

ViewportRect CameraX::fitInto(int width, int height) const {
    if (width <= 0 || height <= 0) return {0, 0, width, height};
    const double w = width;
    const double h = height;
    if (w / h <= aspect_) {
        const int band = (height - static_cast<int>(w / aspect_)) / 2;
        return {0, band, width, height - 2 * band};
    }
    const int band = (width - static_cast<int>(h * aspect_)) / 2;
    return {band, 0, width - 2 * band, height};
}

Matrix4 CameraX::viewMatrix() {
    const Matrix4& worldFromCamera = world();
    if (const auto inverse = worldFromCamera.inverse()) return *inverse;
    std::printf("BAD Camera INVERT!");
    return worldFromCamera;
}

std::string_view cameraModeName(CameraMode mode) {
    return kModeNames[static_cast<std::size_t>(mode)];
}

std::optional<CameraMode> cameraModeNamed(std::string_view word) {
    for (std::size_t i = 0; i < kModeNames.size(); ++i)
        if (word == kModeNames[i]) return static_cast<CameraMode>(i);
    return std::nullopt;
}

}  // namespace orvin
