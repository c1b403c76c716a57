#include "render/gl/GlView.h"

#include <algorithm>
#include <cmath>

#include "render/CameraX.h"

namespace orvin {

namespace {

// How far in front of the camera the box begins (x) and ends (y).
Vec2 depthsOf(const Box3& box, const Matrix4& cameraFromWorld) {
    const Box3 inCamera = box.under(cameraFromWorld);
    return {-inCamera.max.z, -inCamera.min.z};
}

}  // namespace

bool GlView::isUsable() const {
    for (const Matrix4* matrix : {&cameraFromWorld, &clipFromCamera})
        for (const auto& row : matrix->m)
            for (const double value : row)
                if (!std::isfinite(value)) return false;
    return true;
}

GlView makeGlView(CameraX& camera, int width, int height, double pixelAspect, const Box3& shown) {
    GlView view;
    view.width = width;
    view.height = height;
    view.cameraFromWorld = camera.viewMatrix();

    double nearest = camera.nearClip();
    double farthest = std::max(camera.farClip(), nearest + 1.0);
    if (!shown.empty()) {
        const Vec2 depths = depthsOf(shown, view.cameraFromWorld);
        // A hair around the box, so that nothing that lies in its faces is cut.
        nearest = std::max(nearest, depths.x - 1e-3 * std::abs(depths.x));
        farthest = std::max(depths.y + 1e-3 * std::abs(depths.y), nearest + 1.0);
    }

    Matrix4& clip = view.clipFromCamera;
    const double screenAspect = static_cast<double>(width) / height;
    if (camera.projection() == Projection::kPerspective) {
        // As CameraX::projectionMatrix() with the far plane at infinity.
        constexpr double kNearest = 1e-4;  // there is no depth in a window without distance
        nearest = std::max(nearest, kNearest);
        const double across =
            2.0 * camera.lens() / ((1.0 + camera.underScan()) * camera.aperture());
        clip.m[0] = {across, 0.0, 0.0, 0.0};
        clip.m[1] = {0.0, across * screenAspect * pixelAspect, 0.0, 0.0};
        clip.m[2] = {0.0, 0.0, -1.0, -1.0};
        clip.m[3] = {0.0, 0.0, -2.0 * nearest, 0.0};
    } else {
        const ViewWindow window = camera.viewWindow(screenAspect, pixelAspect);
        clip.m[0][0] = 2.0 / (window.right - window.left);
        clip.m[1][1] = 2.0 / (window.top - window.bottom);
        clip.m[2][2] = -2.0 / (farthest - nearest);
        clip.m[3] = {0.0, 0.0, -(farthest + nearest) / (farthest - nearest), 1.0};
    }
    return view;
}

}  // namespace orvin
