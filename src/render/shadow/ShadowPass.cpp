#include "render/shadow/ShadowPass.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "geometry/MeshObject.h"
#include "geometry/ShownObjects.h"
#include "render/LightX.h"
#include "render/VisibilityBuffer.h"
#include "scene/SceneX.h"
#include "toolkit/Errors.h"
#include "toolkit/Progress.h"

namespace orvin {

namespace {

constexpr std::string_view kCameraName = "shadowmapLight";

constexpr double kMarginOfDepth = 0.05;  // in front of the box, as a part of its depth

// A wider pyramid than this has no use for a picture, a narrower one no width.
constexpr double kNarrowestView = 0.1;  // degrees
constexpr double kWidestView = 178.0;

// A box without width shows, at least, where it is.
constexpr double kLeastExtent = 1e-6;

bool finite(Vec3 v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

// Puts the camera at `eye`, looking upright along `axis`, whatever the pose of the scene's root.
void place(CameraX& camera, Vec3 eye, Vec3 axis) {
    camera.setMode(CameraMode::kLookAt);
    camera.setEye(eye);
    camera.setTarget(eye + axis);
    const Matrix4 rootFromWorld = camera.parent()->world().inverse().value_or(Matrix4());
    if (rootFromWorld != Matrix4())
        camera.transform().setMatrix(camera.transform().matrix() * rootFromWorld);
}

// The box of all that casts, in the camera's axes.
Box3 castersBox(const SceneX& scene, const Matrix4& cameraFromWorld, int quality) {
    Box3 box;
    for (MeshObject* object : shownObjects(scene)) {
        std::uint32_t revision = 0;
        object->mesh(quality, revision);  // the box is that of the last quality asked for
        box.merge(object->localBounds().under(object->world() * cameraFromWorld));
    }
    return box;
}

// False where there is no box to look at.
bool frameBox(const SceneX& scene, const LightX& light, int quality, CameraX& camera,
              ShadowFrame& frame) {
    const Vec3 axis = -light.direction();
    place(camera, {}, axis);
    const Matrix4 worldFromView = camera.world();
    const Box3 box = castersBox(scene, camera.viewMatrix(), quality);
    if (box.empty() || !finite(box.size()) || !finite(box.center())) return false;

    Vec3 extent = box.size();
    const double least = std::max({extent.x, extent.y, extent.z, kLeastExtent}) * kLeastExtent;
    extent.x = std::max(extent.x, least);
    extent.y = std::max(extent.y, least);
    const Vec3 centre = box.center();
    const double front = box.max.z + kMarginOfDepth * extent.z;
    place(camera, worldFromView.point({centre.x, centre.y, front}), axis);
    camera.setProjection(Projection::kOrthographic);
    camera.setOrthoWidth(extent.x);
    camera.setAspect(extent.x / extent.y);
    camera.setScaleVertically(true);
    camera.setClip(0.0, (1.0 + kMarginOfDepth) * extent.z);
    frame.left = -extent.x / 2.0;
    frame.right = extent.x / 2.0;
    frame.bottom = -extent.y / 2.0;
    frame.top = extent.y / 2.0;
    return true;
}

// False for a light that is nowhere.
bool framePyramid(const LightX& light, CameraX& camera, ShadowFrame& frame) {
    const Vec3 axis = -normalize(light.world().direction({0.0, 0.0, 1.0}));
    if (!finite(light.worldOrigin()) || !finite(axis)) return false;
    place(camera, light.worldOrigin(), axis);
    camera.setAperture(1.0);
    camera.setFieldOfView(std::clamp(2.0 * light.outerAngle(), kNarrowestView, kWidestView));
    frame.focal = camera.lens();
    return true;
}

// Half-way between the two nearest surfaces; 0 where there are fewer.
double texelOf(const VisibilityTile& tile, const SampleNode& nearest) {
    if (nearest.empty()) return 0.0;
    const SampleNode* second = tile.behind(nearest);
    if (second == nullptr) return 0.0;
    return (static_cast<double>(nearest.depth()) + static_cast<double>(second->depth())) * 0.5;
}

// False when the work is to stop.
bool drawDepths(const VisibilityBuffer& visibility, ImageBuffer& depths) {
    VisibilityTile scratch;
    const auto draw = [&](const VisibilityTile& tile) {
        const GridRect& rect = tile.subpixelRect();
        const auto width = static_cast<std::size_t>(rect.width());
        for (int y = rect.top; y <= rect.bottom; ++y) {
            if (pollProgress(0, 1) != 0) return false;
            const SampleNode* heads = tile.row(rect.left, y);
            for (std::size_t i = 0; i < width; ++i) {
                const double texel = texelOf(tile, heads[i]);
                if (texel != 0.0 &&
                    depths.writePixel(rect.left + static_cast<int>(i), y, texel) != kSuccess)
                    throw kImageBufferFailed;
            }
        }
        return true;
    };
    for (std::size_t k = 0; k < visibility.tileCount(); ++k)
        if (!visibility.visitTile(k, scratch, draw)) return false;
    return true;
}

}  // namespace

std::unique_ptr<ShadowMap> makeShadowMap(SceneX& scene, LightX& light, const RenderParams& params,
                                         std::uint64_t memoryBudget) {
    if (light.type() == LightType::kAmbient) return nullptr;
    const int resolution = std::clamp<int>(params.shadowQuality, 1, kMaxShadowResolution);
    RenderParams pass;
    pass.width = resolution;
    pass.height = resolution;
    pass.cropRect = {0, 0, resolution - 1, resolution - 1};
    pass.antiAliasSize = 1;
    pass.cullBehindOpaque = 0;

    ShadowFrame frame;
    frame.resolution = resolution;
    CameraX camera(scene, scene.uniqueName(kCameraName));
    const bool framed = light.type() == LightType::kDirectional
                            ? frameBox(scene, light, pass.bestGeometry, camera, frame)
                            : framePyramid(light, camera, frame);
    if (!framed) return nullptr;
    frame.cameraFromWorld = camera.viewMatrix();

    ImageBuffer depths(resolution, resolution, PixelKind::kDepth,
                       memoryBudget != 0 ? memoryBudget : ImageBuffer::freeBudget());
    if (!drawDepths(VisibilityBuffer(scene, &camera, pass), depths)) return nullptr;
    return std::make_unique<ShadowMap>(frame, light.softness(), std::move(depths));
}

}  // namespace orvin
