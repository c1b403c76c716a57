#include "orvinex/EdgeSheet.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

#include "common/Drawing.h"
#include "common/Files.h"
#include "common/Options.h"
#include "geometry/ObjectX.h"
#include "orvinex/RenderedPicture.h"
#include "render/CameraX.h"
#include "render/LightX.h"
#include "render/MaterialX.h"
#include "render/SoftwareRenderer.h"
#include "scene/SceneX.h"
#include "vector/edges/ProfileL.h"
#include "vector/illustrator/ProfileI.h"

namespace orvin::orvinex {

namespace {

using apps::Color;
using apps::Polyline;

constexpr Color kPaper{250, 250, 247};
constexpr Color kInk{40, 42, 48};
constexpr Color kSolid{214, 222, 232};
constexpr Color kBox{205, 205, 200};
constexpr Color kFaces{120, 140, 170};

// What lies around the box of 0 to 100 in a section, in its units.
constexpr double kMargin = 14.0;
constexpr double kFlatness = 0.02;
constexpr double kHardAngle = 20.0;

// The letter: scene units and degrees.
constexpr double kDepth = 23.0;
constexpr double kFieldOfView = 24.0;
constexpr double kTurn = -34.0;
constexpr double kTilt = -22.0;
constexpr double kRadius = 66.0;  // of the sphere that fills the picture; larger letters stand back
constexpr int kSubpixels = 4;
constexpr int kShadowTexels = 1024;
constexpr int kShadowSoftness = 3;

struct LightSettings {
    Rgba color;
    double intensity;
    double direction, elevation;  // degrees about y and x
    bool castsShadow;
};
// The key light grazes the sides that the camera sees, so that a section shows as light and shade;
// the second keeps what looks away from it apart from what lies in the dark.
constexpr LightSettings kLights[] = {
    {{1.0F, 1.0F, 1.0F, 0.0F}, 1.05, -18.0, -38.0, true},
    {{0.75F, 0.85F, 1.0F, 0.0F}, 0.4, -125.0, -12.0, false},
    {{1.0F, 0.9F, 0.8F, 0.0F}, 0.18, 40.0, 35.0, false},
};

Curve2 line(std::initializer_list<Vec2> points) {
    return Curve2(Curve2::Type::kLinear, points);
}
Curve2 bezier(Vec2 a, Vec2 b, Vec2 c, Vec2 d) {
    return Curve2(Curve2::Type::kBezier, {a, b, c, d});
}

void addPath(InputProfile2& outline, std::vector<Curve2> curves) {
    CompositeCurve2& path = outline.paths.emplace_back();
    path.curves = std::move(curves);
    path.linkCurves();
}

/// An R: straight and round sides, hard corners of both kinds, a hole.
void drawLetter(InputProfile2& outline) {
    addPath(outline, {line({{58.0, 100.0},
                            {8.0, 100.0},
                            {8.0, 0.0},
                            {27.0, 0.0},
                            {27.0, 36.0},
                            {45.0, 36.0},
                            {69.0, 0.0},
                            {93.0, 0.0},
                            {67.0, 40.0}}),
                      bezier({67.0, 40.0}, {80.0, 44.0}, {88.0, 54.0}, {88.0, 68.0}),
                      bezier({88.0, 68.0}, {88.0, 88.0}, {78.0, 100.0}, {58.0, 100.0})});
    addPath(outline, {line({{54.0, 52.0}, {27.0, 52.0}, {27.0, 84.0}, {54.0, 84.0}}),
                      bezier({54.0, 84.0}, {64.0, 84.0}, {70.0, 78.0}, {70.0, 68.0}),
                      bezier({70.0, 68.0}, {70.0, 58.0}, {64.0, 52.0}, {54.0, 52.0})});
}

/// A scene of its own with the letter in it.
class LetterScene {
  public:
    LetterScene() {
        for (const LightSettings& settings : kLights)
            addLight(settings);
        addMaterial("face", {0.42F, 0.55F, 0.78F, 1.0F}, 60.0, 0.25);
        addMaterial("edge", {0.93F, 0.74F, 0.36F, 1.0F}, 90.0, 0.45);
        drawLetter(*letter_.inputProfile());
        letter_.touch();
        style_.setPerim("section");
        style_.setDepth(kDepth);
        style_.setMaterial(0, "face");
        style_.setMaterial(1, "edge");
        style_.setMitreMethod(ObjectXStyle::Mitre::kComplex);
        object_.setFace("letter");
        object_.setStyle("style");
        object_.setFlatRender(0.2);
    }

    /// Throws Failure where no solid comes of the edge.
    apps::Picture render(Profile& edge, int side) {
        *section_.inputProfile() = *edge.inputProfile();
        section_.touch();
        const int paths = static_cast<int>(section_.inputProfile()->paths.size());
        const MaterialIntervals whole({{0.0, 1.0, 1}});
        for (int path = 0; path < paths; ++path)
            style_.setPerimIntervalMaterial(path, whole);
        std::uint32_t revision = 0;
        if (object_.mesh(1, revision) == nullptr)
            throw apps::Failure("no solid comes of edge '" + edge.name() + "'");
        placeCamera();
        RenderParams params;
        params.flags = RenderParams::kShadows;
        params.shadowQuality = kShadowTexels;
        params.width = side;
        params.height = side;
        params.antiAliasSize = kSubpixels;
        const auto image = renderSoftware(*scene_, params);
        if (!image) throw apps::Failure("the frame was stopped");
        return uprightPicture(*image);
    }

  private:
    void addLight(const LightSettings& settings) {
        auto& light = scene_->make<LightX>("light");
        light.setType(LightType::kDirectional);
        light.setColor(settings.color);
        light.setIntensity(settings.intensity);
        light.setCastsShadow(settings.castsShadow);
        light.setSoftness(kShadowSoftness);
        light.transform().setRotate({settings.elevation, settings.direction, 0.0});
    }

    void addMaterial(std::string_view name, const Rgba& color, double exponent, double amount) {
        auto& material = scene_->make<MaterialX>(name);
        material.setDiffuse(color);
        material.setSpecular(exponent, amount);
    }

    void placeCamera() {
        const Box3 box = object_.localBounds();
        const double radius = std::max(kRadius, length(box.max - box.min) / 2.0);
        const double distance = radius / std::sin(radians(kFieldOfView / 2.0));
        camera_.setMode(CameraMode::kOrbit);
        camera_.setFieldOfView(kFieldOfView);
        camera_.setAspect(1.0);
        camera_.setPose({.eye = {},
                         .target = (box.min + box.max) * 0.5,
                         .distance = distance,
                         .tumbleLeftRight = kTurn,
                         .tumbleUpDown = kTilt});
    }

    std::unique_ptr<SceneX> scene_ = std::make_unique<SceneX>("edges");
    CameraX& camera_ = scene_->make<CameraX>(kDefaultCamera);
    ProfileI& letter_ = scene_->make<ProfileI>("letter");
    // Unlike a ProfileI, it has a shape where its curves are straight.
    ProfileL& section_ = scene_->make<ProfileL>("section");
    ObjectXStyle& style_ = scene_->make<ObjectXStyle>("style");
    ObjectX& object_ = scene_->make<ObjectX>("object");
};

/// The paths of an edge, finely divided, in its own units.
std::vector<Polyline> sectionLines(const InputProfile2& curves) {
    Mesh2 shape;
    std::vector<Polyline> lines;
    if (curves.emitAll(kFlatness, kHardAngle, shape) != kSuccess) return lines;
    for (int f = 0; f < shape.faceCount(); ++f) {
        Polyline& line = lines.emplace_back();
        for (const int v : shape.face(f).vertices)
            line.push_back(shape.vertex(v));
    }
    return lines;
}

/// The front face above, the back one below, the solid to the left.
void drawSection(apps::Picture& sheet, Profile& edge, double left, double top, double side) {
    std::vector<Polyline> lines = sectionLines(*edge.inputProfile());
    Vec2 low{0.0, 0.0};
    Vec2 high{100.0, 100.0};
    for (const Polyline& line : lines)
        for (const Vec2 p : line) {
            low = {std::min(low.x, p.x), std::min(low.y, p.y)};
            high = {std::max(high.x, p.x), std::max(high.y, p.y)};
        }
    const double extent = std::max(high.x - low.x, high.y - low.y) + 2.0 * kMargin;
    const double scale = side / extent;
    const Vec2 origin{left + (kMargin - low.x) * scale,
                      top + (side - (high.y + low.y) * scale) / 2.0};
    const auto place = [&](Vec2 p) { return origin + p * scale; };
    for (Polyline& line : lines)
        for (Vec2& p : line)
            p = place(p);

    const double outside = low.x - kMargin;
    const Polyline faces[] = {{place({outside, 0.0}), place({0.0, 0.0})},
                              {place({outside, 100.0}), place({0.0, 100.0})}};
    const Polyline box[] = {{place({0.0, 0.0}), place({100.0, 0.0}), place({100.0, 100.0}),
                             place({0.0, 100.0}), place({0.0, 0.0})}};
    const double inside = faces[0][0].x;
    for (Polyline solid : lines) {
        if (solid.empty()) continue;
        solid.insert(solid.end(), {{inside, solid.back().y}, {inside, solid.front().y}});
        apps::fillPolygon(sheet, solid, kSolid);
    }
    apps::drawLines(sheet, box, side * 0.006, kBox);
    apps::drawLines(sheet, faces, side * 0.012, kFaces);
    apps::drawLines(sheet, lines, side * 0.016, kInk);
}

}  // namespace

apps::Picture drawEdgeSheet(std::span<const SheetEdge> edges, const SheetLayout& layout,
                            const std::function<void(double)>& progress) {
    const int count = static_cast<int>(edges.size());
    const int columns = std::clamp(layout.columns, 1, std::max(1, count));
    const int rows = (count + columns - 1) / columns;
    const int letter = layout.letterSide;
    const int section = letter * 3 / 4;
    const int caption = letter / 8;
    const int gap = std::max(4, letter / 20);
    const int cellWidth = section + letter + 2 * gap;
    const int cellHeight = letter + caption + 2 * gap;
    if (cellWidth > static_cast<int>(apps::kMaxPictureSide) / columns ||
        cellHeight > static_cast<int>(apps::kMaxPictureSide) / std::max(1, rows))
        throw apps::Failure("a sheet of that size can't be made");
    apps::Picture sheet(cellWidth * columns, cellHeight * rows);
    apps::fillPicture(sheet, kPaper);
    LetterScene scene;
    for (int i = 0; i < count; ++i) {
        const SheetEdge& entry = edges[static_cast<std::size_t>(i)];
        const int left = i % columns * cellWidth + gap;
        const int top = i / columns * cellHeight + gap;
        const double captionHeight = caption * 0.5;
        apps::drawText(sheet, entry.caption, {left + gap * 0.5, top + caption * 0.75},
                       captionHeight, kInk);
        drawSection(sheet, *entry.edge, left, top + caption + (letter - section) / 2.0, section);
        if (entry.makesSolids)
            apps::placePicture(sheet, scene.render(*entry.edge, letter), left + section,
                               top + caption);
        progress((i + 1.0) / count);
    }
    return sheet;
}

}  // namespace orvin::orvinex
