// CameraX: the scene camera, and the base of the lights, which can be looked through as well.
//
// It looks along its negative z. Four modes say where its place comes from:
//   ORBIT     target, distance, the two tumble angles, roll
//   HANDHELD  eye, the two tumble angles, roll
//   LOOKAT    eye, target, roll (which turns the other way than in the modes above)
//   TRANSFORM the transform node as it stands
// In the first three, every setter puts the resulting matrix into the transform node at once, so
// that world() is all that the rest of the system needs. In those modes the node's own components
// follow from the matrix, and what is set on the node directly lasts until the next setter.
//
// Setters that refuse a value return -1 and keep the old one. Values that aren't finite numbers
// are refused everywhere.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "scene/TransformMember.h"

namespace orvin {

enum class CameraMode : int { kOrbit = 0, kHandHeld = 1, kLookAt = 2, kTransform = 3 };
enum class Projection : int { kPerspective = 0, kOrthographic = 1 };

/// All that says where a camera is. Which fields matter depends on the mode.
struct CameraPose {
    Vec3 eye{0.0, 0.0, 100.0};
    Vec3 target;
    double distance = 100.0;
    double tumbleLeftRight = 0.0;  // degrees about y
    double tumbleUpDown = 0.0;     // degrees about x, taken before the turn about y
    double roll = 0.0;             // degrees

    friend bool operator==(const CameraPose&, const CameraPose&) = default;
};

/// A window on a plane in front of the camera: the near plane of a perspective camera, any plane of
/// an orthographic one. Camera-space units.
struct ViewWindow {
    double left = 0.0;
    double right = 0.0;
    double bottom = 0.0;
    double top = 0.0;
};

/// A rectangle within a viewport, in pixels from its corner.
struct ViewportRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    friend bool operator==(const ViewportRect&, const ViewportRect&) = default;
};

class CameraX : public TransformMember {
  public:
    /// Mode TRANSFORM at the node's place; rotation order "zyx", transform order "trs".
    CameraX(SceneX& scene, std::string_view name);

    /// The copy stands under the scene's root, in the same pose; a name that is taken is made
    /// unique.
    CameraX(SceneX& scene, const CameraX& source, std::string_view name);

    const CommandRegistry& commandRegistry() const override;
    std::string_view className() const override { return "CameraX"; }
    Result writeBody(SceneStream& stream) override;

    // ---- place

    CameraMode mode() const { return mode_; }
    /// Takes the stored values of the mode as they are: the picture may jump. A number that is no
    /// mode is refused. See switchMode() for the gentle way.
    Result setMode(CameraMode mode);

    // The stored values, those included that the present mode makes no use of: they are what files
    // keep, and what new slider values are compared with. See pose() for where the camera is.
    Vec3 eye() const { return pose_.eye; }
    Vec3 target() const { return pose_.target; }
    double distance() const { return pose_.distance; }
    double tumbleLeftRight() const { return pose_.tumbleLeftRight; }
    double tumbleUpDown() const { return pose_.tumbleUpDown; }
    double roll() const { return pose_.roll; }

    Result setEye(Vec3 eye);
    Result setTarget(Vec3 target);
    Result setDistance(double distance);
    Result setTumble(double leftRight, double upDown);
    Result setTumbleLeftRight(double degrees) { return setTumble(degrees, pose_.tumbleUpDown); }
    Result setTumbleUpDown(double degrees) { return setTumble(pose_.tumbleLeftRight, degrees); }
    Result setRoll(double degrees);

    /// The values that give the present place in `mode`, whatever the present mode is: set as they
    /// come, they leave the picture where it is. The present mode's own values come back untouched;
    /// the others are worked out. For TRANSFORM the roll is that of ORBIT.
    /// A target is put `distance` in front of the eye where the present mode has none, and 1 unit
    /// where it would else fall on the eye, for then a LOOKAT camera wouldn't know its direction.
    CameraPose poseIn(CameraMode mode) const;

    /// poseIn(mode()): what a slider of any mode shows for this camera.
    CameraPose pose() const { return poseIn(mode_); }
    Result setPose(const CameraPose& pose);

    /// Follows a set of sliders: goes to `mode` as setMode() does and sets what differs from the
    /// stored values, compared as floats, so that the rounding of a slider moves nothing.
    Result drive(CameraMode mode, const CameraPose& sliders);

    /// Goes to another mode without moving the picture.
    Result switchMode(CameraMode mode);

    /// Stores pose() into the fields: called after a matrix was put into the node of a TRANSFORM
    /// camera, so that eye, target and angles speak of it. The mode stays.
    void deriveFromNode() { pose_ = pose(); }

    /// Everything but the name and the parent: place, lens, projection, clip.
    void copyCameraFrom(const CameraX& other);

    // ---- lens and film

    Projection projection() const { return projection_; }
    Result setProjection(Projection projection);

    const std::string& lensType() const { return lensType_; }
    void setLensType(std::string_view name);  // at most 255 bytes are kept

    /// Film width over height; positive.
    double aspect() const { return aspect_; }
    Result setAspect(double aspect);

    /// Focal length in mm; positive.
    double lens() const { return lens_; }
    Result setLens(double millimetres);

    /// Horizontal view angle in degrees, kept as a focal length for the present aperture. Refused
    /// where no positive focal length gives it: 0 and less, 180 and more, an aperture of 0.
    double fieldOfView() const;
    Result setFieldOfView(double degrees);

    /// Film width in mm; not negative.
    double aperture() const { return aperture_; }
    Result setAperture(double millimetres);

    /// Distances in world units from the eye, kept as they come: neither sign nor order is checked.
    double nearClip() const { return near_; }
    double farClip() const { return far_; }
    Result setClip(double nearDistance, double farDistance);

    /// World units across an orthographic picture; positive.
    double orthoWidth() const { return orthoWidth_; }
    Result setOrthoWidth(double width);
    Result setOrthoSize(double width) { return setOrthoWidth(width); }

    /// How much more than its picture a viewer shows: 0.1 is 10 % on each axis.
    double underScan() const { return underScan_; }
    Result setUnderScan(double fraction);

    /// Orthographic pictures are stretched to the camera's aspect instead of keeping squares.
    bool scaleVertically() const { return scaleVertically_; }
    void setScaleVertically(bool on) { scaleVertically_ = on; }

    // ---- projection for OpenGL and picking. `screenAspect` is width over height in pixels,
    // `pixelRatio` the width of a pixel over its height.

    /// The window of the whole picture on the near plane, under-scan included. A perspective
    /// picture is always as wide as the film; an orthographic one is orthoWidth() wide on screens
    /// wider than the camera's aspect, and orthoWidth() / aspect() high on the others. An
    /// orthographic picture knows no pixel ratio.
    ViewWindow viewWindow(double screenAspect, double pixelRatio = 1.0) const;

    /// clipFromCamera of the present projection; the offsets shift the window by that fraction of
    /// its width and height. The perspective depth entry is -1: the far plane cuts nothing off, and
    /// the near cut lies at near far / (far - near). Entries are infinite or NaN for an aperture or
    /// a near distance of 0 (perspective) and for equal clip distances.
    Matrix4 projectionMatrix(double screenAspect, double pixelRatio = 1.0, double offsetX = 0.0,
                             double offsetY = 0.0) const;

    /// The points of the near and the far plane, in camera space, seen at a screen fraction: (0, 0)
    /// is the lower left corner, (1, 1) the upper right one. A perspective camera needs a near
    /// distance other than 0.
    std::pair<Vec3, Vec3> frustumCorners(double u, double v, double screenAspect,
                                         double pixelRatio = 1.0) const;

    /// Where a picture of the camera's aspect lies in a viewport: full width with equal bands
    /// above and below, or full height with bands at the sides. An empty viewport stays as it is.
    ViewportRect fitInto(int width, int height) const;

    /// cameraFromWorld. A camera that was scaled to nothing prints "BAD Camera INVERT!" and yields
    /// its world matrix as it is.
    Matrix4 viewMatrix();

  protected:
    CameraX(SceneX& scene, MemberKind kind, std::string_view name);

    /// The transform keys and the camera's own; lights add theirs behind.
    static void registerCameraCommands(CommandRegistry& registry);

  private:
    Matrix4 parentFromCamera() const;
    void updateNode();

    CameraMode mode_ = CameraMode::kTransform;
    Projection projection_ = Projection::kPerspective;
    std::string lensType_;
    double lens_ = 50.0;
    double aperture_ = 35.0;
    double aspect_ = 1.0;
    double near_ = 1.0;
    double far_ = 10000.0;
    double orthoWidth_ = 400.0;
    CameraPose pose_;
    double underScan_ = 0.0;
    bool scaleVertically_ = false;
};

/// The word of a mode in the stream, and back (nothing for an unknown word).
std::string_view cameraModeName(CameraMode mode);
std::optional<CameraMode> cameraModeNamed(std::string_view word);

}  // namespace orvin
