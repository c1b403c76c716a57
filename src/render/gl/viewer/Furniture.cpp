#include "render/gl/viewer/Furniture.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "geometry/MeshObject.h"
#include "render/LightX.h"
#include "scene/SceneX.h"

namespace orvin {

namespace {

constexpr LineColor kGroundColor{0.45F, 0.45F, 0.48F};
constexpr LineColor kGuideColor{0.55F, 0.62F, 0.75F};
constexpr LineColor kCameraColor{0.35F, 0.75F, 0.85F};
constexpr LineColor kSelectionColor{1.0F, 0.85F, 0.2F};
constexpr LineColor kNameColor{0.85F, 0.85F, 0.85F};
constexpr int kGroundCells = 8;  // on each side of the middle

class Builder {
  public:
    Builder(SceneX& scene, const CameraX& viewer, const FurnitureOptions& options, int quality)
        : scene_(scene),
          viewer_(viewer),
          options_(options),
          bounds_(furnitureBounds(scene, quality)),
          reach_(length(bounds_.size()) / 2.0) {
        out_.lights = lightMarks(scene, viewer, bounds_);
    }

    Furniture build() {
        if (options_.groundPlane) addGround();
        if (options_.guides) addGuides();
        if (options_.cameras) addCameras();
        if (options_.lights) addLightNames();
        if (options_.selection) addSelection();
        if (!options_.lights) out_.lights.clear();
        for (const FurnitureLines& lines : out_.lines)
            for (const Vec3& p : lines.points)
                out_.bounds.add(p);
        for (const LightMark& mark : out_.lights) {
            const Vec3 icon{mark.radius, mark.radius, mark.radius};
            out_.bounds.add(mark.place - icon);
            out_.bounds.add(mark.place + icon);
        }
        return std::move(out_);
    }

  private:
    FurnitureLines& lines(const LineColor& color, bool stippled, bool onTop) {
        out_.lines.push_back({color, stippled, onTop, {}});
        return out_.lines.back();
    }
    static void add(FurnitureLines& lines, Vec3 from, Vec3 to) {
        lines.points.push_back(from);
        lines.points.push_back(to);
    }
    void addName(const SceneMember& member, Vec3 place, const LineColor& color) {
        if (options_.names) out_.texts.push_back({std::string(member.name()), place, color, true});
    }

    // A length of 1, 2 or 5 times a power of ten that isn't below `least`.
    static double roundLength(double least) {
        const double power = std::pow(10.0, std::floor(std::log10(std::max(least, 1e-6))));
        for (const double step : {1.0, 2.0, 5.0})
            if (step * power >= least) return step * power;
        return 10.0 * power;
    }

    void addGround() {
        const double step = roundLength(reach_ / kGroundCells);
        const double half = step * kGroundCells;
        const double y = options_.groundLevel;
        FurnitureLines& plane = lines(kGroundColor, true, false);
        for (int i = -kGroundCells; i <= kGroundCells; ++i) {
            add(plane, {-half, y, i * step}, {half, y, i * step});
            add(plane, {i * step, y, -half}, {i * step, y, half});
        }
        out_.labels.push_back({GuideLabel::kGround, {half, y, 0.0}});
        out_.labels.push_back({GuideLabel::kFront, {0.0, y, half}});
    }

    void addGuides() {
        FurnitureLines& guides = lines(kGuideColor, true, false);
        add(guides, {0, -reach_, 0}, {0, reach_, 0});
        out_.labels.push_back({GuideLabel::kVerticalAxis, {0, reach_, 0}});
        const double x = options_.frameWidth / 2.0;
        const double y = options_.frameHeight / 2.0;
        if (!(x > 0.0 && y > 0.0)) return;
        const Vec3 corners[] = {{-x, -y, 0}, {x, -y, 0}, {x, y, 0}, {-x, y, 0}};
        for (std::size_t i = 0; i < 4; ++i)
            add(guides, corners[i], corners[(i + 1) % 4]);
        out_.labels.push_back({GuideLabel::kLeftEdge, {-x, 0, 0}});
    }

    // A pyramid from the eye as wide as the lens sees, or a box; a mark shows where up is.
    void addCameras() {
        for (SceneMember* member : scene_.members(MemberKind::kCamera)) {
            auto* camera = dynamic_cast<CameraX*>(member);
            const std::string_view name = member->name();
            if (camera == nullptr || camera == &viewer_ || name == kProfileCamera ||
                name == kLightingCamera)
                continue;
            const bool perspective = camera->projection() == Projection::kPerspective;
            const Matrix4 world = camera->world();
            const double depth = 2.0 * iconRadius(viewer_, world.origin());
            const double film = perspective ? camera->aperture() / (2.0 * camera->lens()) : 0.5;
            const double wide = depth * std::clamp(film, 0.1, 4.0);
            const double high = wide / std::clamp(camera->aspect(), 0.25, 4.0);
            const double narrowing = perspective ? 0.0 : 1.0;
            const auto at = [&](double x, double y, double z) { return world.point({x, y, z}); };
            FurnitureLines& shape = lines(kCameraColor, false, false);
            const Vec2 corners[] = {{-wide, -high}, {wide, -high}, {wide, high}, {-wide, high}};
            for (std::size_t i = 0; i < 4; ++i) {
                const Vec2 a = corners[i];
                const Vec2 b = corners[(i + 1) % 4];
                add(shape, at(a.x, a.y, -depth), at(b.x, b.y, -depth));
                add(shape, at(a.x * narrowing, a.y * narrowing, 0), at(a.x, a.y, -depth));
                if (!perspective) add(shape, at(a.x, a.y, 0), at(b.x, b.y, 0));
            }
            const double peak = high * 1.4;
            add(shape, at(-wide / 2, high * 1.1, -depth), at(0, peak, -depth));
            add(shape, at(0, peak, -depth), at(wide / 2, high * 1.1, -depth));
            addName(*member, world.origin(), kCameraColor);
        }
    }

    void addLightNames() {
        for (const LightMark& mark : out_.lights)
            addName(*mark.light, mark.place, kNameColor);
    }

    // ---- selection

    void addSelection() {
        FurnitureLines& marks = lines(kSelectionColor, false, true);
        for (SceneMember* member : scene_.selection()) {
            auto* placed = dynamic_cast<TransformMember*>(member);
            if (placed == nullptr) continue;
            Box3 around;
            markTree(*placed, marks, around);
            if (options_.names && !around.empty())
                out_.texts.push_back({std::string(member->name()),
                                      {around.center().x, around.max.y, around.center().z},
                                      kSelectionColor,
                                      false});
        }
    }

    // The member and, for a Set, all that hangs on it.
    void markTree(TransformMember& top, FurnitureLines& marks, Box3& around) {
        std::vector<TransformMember*> open{&top};
        while (!open.empty()) {
            TransformMember* member = open.back();
            open.pop_back();
            for (std::size_t i = 0; i < member->childCount(); ++i)
                open.push_back(member->child(i));
            markOne(*member, marks, around);
        }
    }
    void markOne(TransformMember& member, FurnitureLines& marks, Box3& around) {
        if (auto* light = dynamic_cast<LightX*>(&member)) {
            for (const LightMark& mark : out_.lights)
                if (mark.light == light)
                    addCorners(iconBox(mark.radius), Matrix4::translation(mark.place), marks,
                               around);
        } else if (dynamic_cast<CameraX*>(&member) != nullptr) {
            const Vec3 place = member.world().origin();
            addCorners(iconBox(iconRadius(viewer_, place)), Matrix4::translation(place), marks,
                       around);
        } else if (const Box3 box = member.localBounds(); !box.empty()) {
            addCorners(box, member.world(), marks, around);
        }
    }
    static Box3 iconBox(double half) {
        Box3 box;
        box.add({-half, -half, -half});
        box.add({half, half, half});
        return box;
    }
    // Three short lines into each corner of a box.
    static void addCorners(const Box3& box, const Matrix4& world, FurnitureLines& marks,
                           Box3& around) {
        constexpr double kShare = 0.2;
        around.merge(box.under(world));
        for (int i = 0; i < 8; ++i) {
            const Vec3 corner = box.corner(i);
            for (int axis = 0; axis < 3; ++axis) {
                Vec3 inner = corner;
                inner[axis] += (box.corner(i ^ (1 << axis))[axis] - corner[axis]) * kShare;
                add(marks, world.point(corner), world.point(inner));
            }
        }
    }

    SceneX& scene_;
    const CameraX& viewer_;
    const FurnitureOptions& options_;
    Box3 bounds_;
    double reach_;
    Furniture out_;
};

}  // namespace

Furniture makeFurniture(SceneX& scene, const CameraX& viewer, const FurnitureOptions& options,
                        int quality) {
    return Builder(scene, viewer, options, quality).build();
}

}  // namespace orvin
