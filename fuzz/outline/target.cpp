// Raw points as an outline, all the way to a solid. The first four bytes choose style and scale,
// then come loops: a byte with the count of points, each two signed 16-bit numbers, of which the
// lowest stands for a coordinate that is no number. Work is bounded, so that much is tried in a
// short time: the control points of a curve, the points in all, and for the size of the outline the
// pieces that a curve comes to and the tiles.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "fuzz/Fuzzing.h"
#include "geometry/ObjectX.h"
#include "scene/SceneX.h"

namespace {

using namespace orvin;
using fuzzing::require;

class RawProfile final : public OutlineProfile {
  public:
    using OutlineProfile::outline;
    using OutlineProfile::OutlineProfile;

    const CommandRegistry& commandRegistry() const override {
        static const CommandRegistry none(1);
        return none;
    }
    std::string_view className() const override { return "RawProfile"; }

    void add(Curve2::Type type, std::vector<Vec2> points) {
        CompositeCurve2& path = outline().paths.emplace_back();
        path.curves.emplace_back(type, std::move(points));
        path.linkCurves();
    }
};

constexpr std::size_t kMostControlPoints = 12;
constexpr std::size_t kMostPoints = 150;
constexpr double kMostTiles = 24.0;  // one way
constexpr double kFinest = 1e-3;     // of the outline's extent

class Bytes {
  public:
    Bytes(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}
    bool empty() const { return at_ >= size_; }
    unsigned next() { return empty() ? 0 : data_[at_++]; }
    double coordinate(double scale) {
        const auto value = static_cast<std::int16_t>(next() | next() << 8);
        if (value == std::numeric_limits<std::int16_t>::min())
            return std::numeric_limits<double>::quiet_NaN();
        return value * scale;
    }

  private:
    const std::uint8_t* data_;
    std::size_t size_;
    std::size_t at_ = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    const unsigned options = bytes.next();
    const double scale = std::pow(10.0, static_cast<int>(bytes.next() % 20) - 10);
    const double offset = static_cast<std::int8_t>(bytes.next()) * 0.25;
    const double spike = bytes.next() * 0.5;

    SceneX scene;
    auto& outline = scene.make<RawProfile>("outline");
    auto& edge = scene.make<RawProfile>("edge");
    edge.add(Curve2::Type::kBezier, {{0, 0}, {8, 0}, {15, 7}, {15, 50}});
    edge.add(Curve2::Type::kLinear, {{15, 50}, {20, 60}, {0, 100}});
    const bool curved = (options & 1) != 0;
    std::size_t pointsLeft = kMostPoints;
    Box2 box;
    while (!bytes.empty() && pointsLeft > 0) {
        const std::size_t most = curved ? kMostControlPoints : pointsLeft;
        std::vector<Vec2> points(std::min<std::size_t>(bytes.next(), most));
        pointsLeft -= std::min(pointsLeft, points.size() + 1);
        for (Vec2& p : points) {
            p.x = bytes.coordinate(scale);
            p.y = bytes.coordinate(scale);
            box.add(p);
        }
        outline.add(curved ? Curve2::Type::kBezier : Curve2::Type::kLinear, std::move(points));
    }
    auto& style = scene.make<ObjectXStyle>("style");
    style.setPerim("edge");
    style.setFrontFaceOffset((options & 2) != 0 ? offset : 0.0);
    style.setSpikeAngle((options & 4) != 0 ? spike : 0.0);
    if ((options & 8) != 0) style.setMitreMethod(ObjectXStyle::Mitre::kComplex);
    auto& object = scene.make<ObjectX>("object");
    object.setFace("outline");
    object.setStyle("style");
    ObjectX::Meshing meshing;
    meshing.on = (options & 16) != 0;
    if (!box.empty()) {
        const double tiles = 1.0 + (options >> 5);
        meshing.bestTileResolution = {box.width() / tiles, box.height() / kMostTiles};
        const double finest = std::max(box.width(), box.height()) * kFinest;
        object.setFlatPreview(std::max(finest, object.flatPreview()));
        object.setFlatRender(std::max(finest, object.flatRender()));
    }
    object.setMeshing(meshing);

    std::uint32_t revision = 0;
    for (const int quality : {0, 1}) {
        const Mesh3* const mesh = object.mesh(quality, revision);
        require(mesh != nullptr);
        require(mesh->vertexCount() == mesh->normalCount());
        for (const Vec3 n : mesh->normals())
            require(!(dot(n, n) > 1.001));
    }
    require(!object.needsUpdate(1));
    return 0;
}
