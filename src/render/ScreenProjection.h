// ScreenProjection: from camera space to the grid of subpixels, with the constants of one frame.
#pragma once

#include <optional>

#include "render/ScreenTriangle.h"
#include "scene/RenderParams.h"

namespace orvin {

class CameraX;

/// Subpixels along a side of a pixel, held in 1 to 5.
int subpixelsPerSide(const RenderParams& params);

struct ScreenProjection {
    ScreenProjection(const CameraX& camera, const RenderParams& params);

    /// Depth is the distance in front of the camera's plane.
    static double depth(Vec3 camera) { return -camera.z; }

    /// Where a point of camera space falls on the grid. A point in the eye's plane isn't divided.
    Vec2 project(Vec3 camera) const;

    /// The plane of depth (orthographic) or 1/depth (perspective) of the camera-space plane
    /// normal . p + d = 0; nothing for a plane that is seen edge-on.
    std::optional<GridPlane> depthPlane(Vec3 normal, double d) const;

    int subWidth = 0;  // the picture in subpixels
    int subHeight = 0;
    bool perspective = true;
    double focal = 50.0;
    double nearClip = 1.0;
    double scaleX = 1.0;  // camera-plane units to subpixels
    double scaleY = 1.0;
    double invScaleX = 1.0;
    double invScaleY = 1.0;
    double halfWOverScaleX = 0.0;
    double halfHOverScaleY = 0.0;
    double invFocalScaleX = 1.0;
    double invFocalScaleY = 1.0;
    double halfWOverFocalScaleX = 0.0;
    double halfHOverFocalScaleY = 0.0;
};

inline Vec2 ScreenProjection::project(Vec3 camera) const {
    double x = camera.x;
    double y = camera.y;
    const double d = depth(camera);
    if (perspective && d != 0.0) {
        const double shrink = focal / d;
        x *= shrink;
        y *= shrink;
    }
    return {x * scaleX + subWidth * 0.5, y * scaleY + subHeight * 0.5};
}

}  // namespace orvin
