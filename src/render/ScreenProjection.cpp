#include "render/ScreenProjection.h"

#include <algorithm>

#include "render/CameraX.h"

namespace orvin {

int subpixelsPerSide(const RenderParams& params) {
    return std::clamp<int>(params.antiAliasSize, 1, 5);
}

ScreenProjection::ScreenProjection(const CameraX& camera, const RenderParams& params) {
    const int n = subpixelsPerSide(params);
    subWidth = truncToInt(n * params.width);
    subHeight = truncToInt(n * params.height);
    perspective = camera.projection() == Projection::kPerspective;
    focal = camera.lens();
    nearClip = camera.nearClip();

    const double frameAspect = static_cast<double>(subWidth) / subHeight;
    if (perspective) {
        const double film = camera.aperture();
        scaleX = subWidth / film;
        scaleY = subHeight / (film / (frameAspect * static_cast<double>(params.pixelAspect)));
    } else {
        const double viewAspect = params.viewAspect != 0.0 ? params.viewAspect : camera.aspect();
        const double width = camera.orthoWidth();
        const double height = width / viewAspect;
        if (viewAspect >= frameAspect) {
            scaleY = subHeight / height;
            scaleX = camera.scaleVertically() ? subWidth / width : scaleY;
        } else {
            scaleX = subWidth / width;
            scaleY = camera.scaleVertically() ? subHeight / height : scaleX;
        }
    }

    invScaleX = 1.0 / scaleX;
    invScaleY = 1.0 / scaleY;
    halfWOverScaleX = subWidth / 2.0 / scaleX;
    halfHOverScaleY = subHeight / 2.0 / scaleY;
    invFocalScaleX = 1.0 / (focal * scaleX);
    invFocalScaleY = 1.0 / (focal * scaleY);
    halfWOverFocalScaleX = subWidth / 2.0 / (focal * scaleX);
    halfHOverFocalScaleY = subHeight / 2.0 / (focal * scaleY);
}

std::optional<GridPlane> ScreenProjection::depthPlane(Vec3 normal, double d) const {
    if (perspective) {
        if (d == 0.0) return std::nullopt;
        const double k = 1.0 / d;
        return GridPlane{
            -k * invFocalScaleX * normal.x, -k * invFocalScaleY * normal.y,
            (normal.x * halfWOverFocalScaleX + normal.y * halfHOverFocalScaleY + normal.z) * k};
    }
    if (normal.z == 0.0) return std::nullopt;
    const double k = 1.0 / normal.z;
    return GridPlane{k * invScaleX * normal.x, k * invScaleY * normal.y,
                     (d - normal.x * halfWOverScaleX - normal.y * halfHOverScaleY) * k};
}

}  // namespace orvin
