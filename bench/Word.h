// Word: a text as a solid with a round bevel on both sides.
#pragma once

#include <string>

#include "bench/OutlineShapes.h"
#include "geometry/ObjectX.h"

namespace orvin::benches {

inline constexpr double kDepth = 30.0;
inline constexpr double kBevel = 12.0;  // radius, in hundredths of the depth

class EdgeProfile final : public OutlineProfile {
  public:
    using OutlineProfile::OutlineProfile;
    Result writeBody(SceneStream&) override { return kFailure; }
    const CommandRegistry& commandRegistry() const override {
        static const CommandRegistry none(1);
        return none;
    }
    std::string_view className() const override { return "EdgeProfile"; }

    void makeRound(double radius) {
        const double h = radius * 0.5522847498;
        const double r = radius;
        outline().clear();
        CompositeCurve2& path = outline().paths.emplace_back();
        path.curves = {
            Curve2(Curve2::Type::kBezier, {{0, 0}, {h, 0}, {r, r - h}, {r, r}}),
            Curve2(Curve2::Type::kLinear, {{r, r}, {r, 100 - r}}),
            Curve2(Curve2::Type::kBezier, {{r, 100 - r}, {r, 100 - r + h}, {h, 100}, {0, 100}})};
        path.linkCurves();
        touch();
    }
};

struct Word {
    SceneX scene;
    ProfileT& text = scene.make<ProfileT>("text");
    EdgeProfile& edge = scene.make<EdgeProfile>("edge");
    ObjectXStyle& style = scene.make<ObjectXStyle>("style");
    ObjectX& object = scene.make<ObjectX>("object");

    Word(const char* font, const std::string& letters, double flatness) {
        text.setFont(font, -1);
        text.setText(letters);
        edge.makeRound(kBevel);
        style.setPerim("edge");
        style.setDepth(kDepth);
        object.setFace("text");
        object.setStyle("style");
        object.setFlatRender(flatness);
    }
    int build() {
        std::uint32_t revision = 0;
        const Mesh3* const mesh = object.mesh(1, revision);
        return mesh != nullptr ? mesh->vertexCount() : 0;
    }
};

}  // namespace orvin::benches
