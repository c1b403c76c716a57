// GlView: the camera of one picture in OpenGL's terms.
#pragma once

#include "toolkit/math/Box3.h"
#include "toolkit/math/Matrix4.h"

namespace orvin {

class CameraX;

struct GlView {
    int width = 0;  // pixels
    int height = 0;
    Matrix4 cameraFromWorld;
    Matrix4 clipFromCamera;

    /// False for lenses that show nothing (a film without width, say): entries aren't numbers.
    bool isUsable() const;
};

/// The window is that of CameraX::viewWindow(). Depth is counted from where `shown` (world space,
/// may be empty) begins, though never from before the camera's near distance, so that small gaps
/// keep apart whatever the camera's clip distances are. No far plane cuts anything off.
GlView makeGlView(CameraX& camera, int width, int height, double pixelAspect, const Box3& shown);

}  // namespace orvin
