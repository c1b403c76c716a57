// LightMarks: where a viewer shows a scene's lights.
#pragma once

#include <vector>

#include "toolkit/math/Box3.h"
#include "toolkit/math/Matrix4.h"

namespace orvin {

class CameraX;
class LightX;
class SceneX;

struct LightMark {
    LightX* light = nullptr;
    Vec3 place;             // world space
    double radius = 1.0;    // of the icon, world units
    Matrix4 worldFromIcon;  // for an icon of about two units that shines along negative z
};

/// Radius of an icon as it shows, of half the picture's width.
inline constexpr double kIconShare = 0.045;

/// World units of an icon's radius at a place, such that it looks as large from everywhere.
double iconRadius(const CameraX& viewer, Vec3 place);

/// Box of all enabled objects; a cube of 200 units around the origin for a scene that shows less,
/// so that furniture always has a size.
Box3 furnitureBounds(SceneX& scene, int quality);

/// One mark for each light of the scene, the ones that are off included. Lights that have a
/// direction but no place stand off from their origin, where they come from, outside of `bounds`.
/// `viewer` is the camera that looks.
std::vector<LightMark> lightMarks(SceneX& scene, const CameraX& viewer, const Box3& bounds);

}  // namespace orvin
