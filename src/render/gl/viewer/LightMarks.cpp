#include "render/gl/viewer/LightMarks.h"

#include <algorithm>

#include "geometry/ShownObjects.h"
#include "render/LightX.h"
#include "scene/SceneX.h"

namespace orvin {

namespace {

constexpr double kLeastHalf = 100.0;
constexpr double kStandOff = 1.15;

Matrix4 withoutScale(const Matrix4& world) {
    Matrix4 turned;
    for (int axis = 0; axis < 3; ++axis) {
        const Vec3 unit = normalize(world.row(axis));
        turned.setRow(axis, unit);
    }
    return turned;
}

}  // namespace

Box3 furnitureBounds(SceneX& scene, int quality) {
    Box3 bounds = shownBounds(scene, quality);
    const bool isSmall = bounds.empty() || length(bounds.size()) < 2.0 * kLeastHalf;
    if (isSmall) {
        bounds.add({-kLeastHalf, -kLeastHalf, -kLeastHalf});
        bounds.add({kLeastHalf, kLeastHalf, kLeastHalf});
    }
    return bounds;
}

double iconRadius(const CameraX& viewer, Vec3 place) {
    double halfWidth = viewer.orthoWidth() / 2.0;
    if (viewer.projection() == Projection::kPerspective) {
        const Matrix4 world = viewer.world();
        // Icons right at the eye, and behind it, don't matter.
        const double depth =
            std::max(dot(world.origin() - place, normalize(world.row(2))), viewer.nearClip());
        halfWidth = depth * viewer.aperture() / (2.0 * viewer.lens());
    }
    return halfWidth * kIconShare;
}

std::vector<LightMark> lightMarks(SceneX& scene, const CameraX& viewer, const Box3& bounds) {
    std::vector<LightMark> marks;
    const double reach = length(bounds.size()) / 2.0;
    for (SceneMember* member : scene.members(MemberKind::kLight)) {
        auto* light = dynamic_cast<LightX*>(member);
        if (light == nullptr) continue;
        const Matrix4 world = light->world();
        const Matrix4 turned = withoutScale(world);
        LightMark mark;
        mark.light = light;
        mark.place = world.origin();
        if (light->type() == LightType::kDirectional)
            mark.place += turned.row(2) * (reach * kStandOff);
        mark.radius = iconRadius(viewer, mark.place);
        mark.worldFromIcon = Matrix4::scaling({mark.radius, mark.radius, mark.radius}) * turned *
                             Matrix4::translation(mark.place);
        marks.push_back(mark);
    }
    return marks;
}

}  // namespace orvin
