#include "render/gl/viewer/Picking.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <span>

#include "geometry/MeshObject.h"
#include "geometry/ShownObjects.h"
#include "render/CameraX.h"
#include "render/LightX.h"
#include "render/gl/GlView.h"
#include "scene/SceneX.h"

namespace orvin {

namespace {

// T. Moeller and B. Trumbore, "Fast, minimum storage ray/triangle intersection", 1997; both sides.
// The distance along the ray, or a negative number.
double meet(const Ray& ray, Vec3 a, Vec3 b, Vec3 c) {
    constexpr double kMiss = -1.0;
    const Vec3 ab = b - a;
    const Vec3 ac = c - a;
    const Vec3 p = cross(ray.direction, ac);
    const double volume = dot(ab, p);
    if (volume == 0.0) return kMiss;
    const Vec3 from = ray.origin - a;
    const double u = dot(from, p) / volume;
    if (!(u >= 0.0 && u <= 1.0)) return kMiss;
    const Vec3 q = cross(from, ab);
    const double v = dot(ray.direction, q) / volume;
    if (!(v >= 0.0 && u + v <= 1.0)) return kMiss;
    return dot(ac, q) / volume;
}

// The first polygon of a mesh, in lengths of the ray; infinity for none.
double firstFace(const Mesh3& mesh, const Ray& ray) {
    double first = std::numeric_limits<double>::infinity();
    for (int i = 0; i < mesh.faceCount(); ++i) {
        const FaceView face = mesh.face(i);
        if (face.kind != ElementKind::kPolygon) continue;
        const std::span<const int> corners = face.vertices;
        for (std::size_t k = 2; k < corners.size(); ++k) {
            const double distance = meet(ray, mesh.vertex(corners[0]), mesh.vertex(corners[k - 1]),
                                         mesh.vertex(corners[k]));
            if (distance >= 0.0 && distance < first) first = distance;
        }
    }
    return first;
}

double fraction(int pixel, int count) {
    return count > 1 ? static_cast<double>(pixel) / (count - 1) : 0.5;
}

}  // namespace

std::optional<Ray> pixelRay(CameraX& camera, int x, int y, int width, int height,
                            double pixelAspect) {
    if (width < 1 || height < 1) return std::nullopt;
    const GlView view = makeGlView(camera, width, height, pixelAspect, {});
    if (!view.isUsable()) return std::nullopt;
    // From -1 to 1 over the window.
    const double across = 2.0 * fraction(x, width) - 1.0;
    const double up = 1.0 - 2.0 * fraction(y, height);
    const double cameraX = across / view.clipFromCamera.m[0][0];
    const double cameraY = up / view.clipFromCamera.m[1][1];
    const double nearest = camera.nearClip();
    Ray ray;
    if (camera.projection() == Projection::kPerspective) {
        ray.direction = {cameraX, cameraY, -1.0};
        ray.origin = ray.direction * nearest;
    } else {
        ray.direction = {0.0, 0.0, -1.0};
        ray.origin = {cameraX, cameraY, -nearest};
    }
    const Matrix4 worldFromCamera = camera.world();
    ray.origin = worldFromCamera.point(ray.origin);
    ray.direction = worldFromCamera.direction(ray.direction);
    return ray;
}

std::optional<ObjectHit> pickObject(SceneX& scene, const Ray& worldRay, int quality) {
    std::optional<ObjectHit> first;
    for (MeshObject* object : shownObjects(scene)) {
        std::uint32_t revision = 0;
        const Mesh3* mesh = object->mesh(quality, revision);
        const auto objectFromWorld = object->world().inverse();
        if (mesh == nullptr || !objectFromWorld || !object->rayHit(worldRay)) continue;
        // Lengths along the ray are the same in every space.
        const double distance = firstFace(*mesh, {objectFromWorld->point(worldRay.origin),
                                                  objectFromWorld->direction(worldRay.direction)});
        if (!std::isfinite(distance) || (first && first->distance <= distance)) continue;
        first = {object, distance, worldRay.origin + worldRay.direction * distance};
    }
    return first;
}

LightX* pickLight(std::span<const LightMark> marks, const Ray& worldRay) {
    LightX* first = nullptr;
    double nearest = std::numeric_limits<double>::infinity();
    const double squared = dot(worldRay.direction, worldRay.direction);
    for (const LightMark& mark : marks) {
        const Vec3 to = mark.place - worldRay.origin;
        const double along = dot(to, worldRay.direction) / squared;
        const double miss = length(to - worldRay.direction * along);
        if (!(along >= 0.0 && along < nearest && miss <= mark.radius)) continue;
        nearest = along;
        first = mark.light;
    }
    return first;
}

}  // namespace orvin
