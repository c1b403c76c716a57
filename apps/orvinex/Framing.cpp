#include "orvinex/Framing.h"

#include <algorithm>
#include <cmath>

#include "geometry/MeshObject.h"
#include "render/CameraX.h"

namespace orvin::orvinex {

namespace {

// Pictures up to this wide for their height hold a framed scene.
constexpr double kWidestPicture = 16.0 / 9.0;
constexpr double kFilled = 0.88;  // of width or height

CameraX* sceneCamera(SceneX& scene) {
    return scene.memberAs<CameraX>(MemberKind::kCamera, kDefaultCamera);
}

/// How far in front of the camera, along its negative z, the centre of the box must lie.
double distanceToHold(const Box3& box, const Matrix4& worldFromCamera, double fieldOfView) {
    const double tangentX = std::tan(radians(fieldOfView) / 2.0) * kFilled;
    const double tangentY = tangentX / kWidestPicture;
    double distance = 0.0;
    for (int i = 0; i < 8; ++i) {
        const Vec3 corner = box.corner(i) - box.center();
        const double x = std::abs(dot(corner, worldFromCamera.row(0)));
        const double y = std::abs(dot(corner, worldFromCamera.row(1)));
        const double z = dot(corner, worldFromCamera.row(2));
        distance = std::max(distance, std::max(x / tangentX, y / tangentY) + z);
    }
    return distance;
}

}  // namespace

void frameObjects(SceneX& scene) {
    CameraX* const camera = sceneCamera(scene);
    Box3 box;
    for (SceneMember* const member : scene.members(MemberKind::kObject))
        if (auto* const object = dynamic_cast<MeshObject*>(member))
            box.merge(object->worldBounds());
    if (camera == nullptr || box.empty()) return;
    camera->setTarget(box.center());
    const double distance =
        std::max(distanceToHold(box, camera->world(), camera->fieldOfView()), 1e-6);
    camera->setDistance(distance);
    camera->setClip(std::min(camera->nearClip(), distance / 1000.0),
                    std::max(camera->farClip(), 4.0 * distance));
}

apps::OptionSpec turnOption() {
    return {"--turn", "LR,UD", "camera turned left-right and up-down, in degrees (0,0)"};
}

void turnCamera(SceneX& scene, const apps::ParsedOptions& options) {
    CameraX* const camera = sceneCamera(scene);
    if (camera == nullptr || !options.has("--turn")) return;
    const std::string text = options.value("--turn");
    const std::size_t comma = text.find(',');
    if (comma == std::string::npos) throw apps::UsageError("--turn takes two angles, LR,UD");
    camera->setTumble(apps::realOption(text.substr(0, comma), "--turn", -360.0, 360.0),
                      apps::realOption(text.substr(comma + 1), "--turn", -360.0, 360.0));
}

}  // namespace orvin::orvinex
