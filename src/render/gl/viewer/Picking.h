// Picking: what lies under a pixel of a viewer. Plain geometry; nothing is drawn for it.
#pragma once

#include <optional>
#include <span>

#include "render/gl/viewer/LightMarks.h"
#include "scene/TransformMember.h"

namespace orvin {

class CameraX;
class MeshObject;
class SceneX;

/// The ray of world space that the camera sees in a pixel; x to the right and y down, from (0, 0)
/// in the upper left corner to (width - 1, height - 1) in the lower right one. It starts on the
/// camera's near plane. Nothing for a picture without pixels, or a lens that shows nothing.
std::optional<Ray> pixelRay(CameraX& camera, int x, int y, int width, int height,
                            double pixelAspect = 1.0);

struct ObjectHit {
    MeshObject* object = nullptr;
    double distance = 0.0;  // in lengths of the ray's direction, 0 or more
    Vec3 point;             // world space
};

/// The first polygon of an enabled object along a ray of world space, from either side; nothing
/// where it meets none. Meshes are those of the preview, `quality` 0, or of the render, 1.
std::optional<ObjectHit> pickObject(SceneX& scene, const Ray& worldRay, int quality = 0);

/// The first light whose icon the ray meets (a ball around it), null for none.
LightX* pickLight(std::span<const LightMark> marks, const Ray& worldRay);

}  // namespace orvin
