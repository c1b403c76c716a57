#include "render/TilePainter.h"

#include <algorithm>
#include <array>

#include "render/CameraX.h"
#include "render/LightX.h"
#include "render/Shading.h"
#include "scene/SceneX.h"

namespace orvin {

namespace {

constexpr std::uint32_t kNoShade = 0xffffffff;

// The three corners of one attribute; false where the mesh hasn't got it for this face.
bool gather(std::span<const Vec3> values, std::span<const int> indices,
            const std::array<std::size_t, 3>& corners, std::array<Vec3, 3>& out) {
    for (std::size_t i = 0; i < 3; ++i) {
        if (corners[i] >= indices.size()) return false;
        const int index = indices[corners[i]];
        if (index < 0 || static_cast<std::size_t>(index) >= values.size()) return false;
        out[i] = values[static_cast<std::size_t>(index)];
    }
    return true;
}

Spread<Vec3> spread(const std::array<Vec3, 3>& corners) {
    return Spread<Vec3>::over(corners[0], corners[1], corners[2]);
}

Spread<Vec3> worldTangents(std::array<Vec3, 3> corners, const Matrix4& worldFromObject) {
    for (Vec3& tangent : corners)
        tangent = normalize(worldFromObject.direction(tangent));
    return spread(corners);
}

}  // namespace

FrameShading::FrameShading(const VisibilityBuffer& buffer, const SceneX& scene)
    : visibility(buffer) {
    if (CameraX* camera = buffer.camera()) eye = camera->world().origin();
    for (const LightX* light : enabledLights(scene))
        lights.push_back(light);
    for (const SceneMember* surface : buffer.surfaces()) {
        const auto* material = dynamic_cast<const MaterialX*>(surface);
        materials.push_back(material != nullptr ? ShadeMaterial(*material) : ShadeMaterial());
    }
    const bool bumpy = std::any_of(materials.begin(), materials.end(), [](const ShadeMaterial& m) {
        return (m.needs & ShadingNeeds::kTangents) != 0;
    });
    if (!bumpy) return;
    for (const VisibilityBuffer::Object& object : buffer.objects())
        tangents.push_back({object.owner->tangents(), object.owner->binormals()});
}

TriangleShade makeTriangleShade(const FrameShading& frame, const TriangleId& id) {
    const VisibilityBuffer::Object& object = frame.visibility.objects()[id.object];
    const ShadeMaterial& material = frame.materials[id.surface];
    TriangleShade shade;
    shade.material = &material;
    const FaceView face = object.mesh->face(static_cast<int>(id.face));
    const std::array<std::size_t, 3> corners{0, std::size_t{id.fan} + 1, std::size_t{id.fan} + 2};
    std::array<Vec3, 3> values;
    if (gather(object.positions, face.vertices, corners, values)) shade.position = spread(values);

    // A face without normals is flat. All normals are turned to the side that the eye sees.
    double sign = (id.flags & TriangleId::kFacesEye) != 0 ? 1.0 : -1.0;
    if (gather(object.normals, face.normals, corners, values)) {
        shade.normal = spread(values);
        sign *= object.normalSign;
    } else {
        shade.normal.c = normalize(cross(shade.position.a, shade.position.b));
    }
    shade.normal = {shade.normal.a * sign, shade.normal.b * sign, shade.normal.c * sign};

    if (gather(object.mesh->texVertices(), face.texture, corners, values)) {
        const auto flat = [](Vec3 t) { return Vec2{t.x, t.y}; };
        shade.texture = Spread<Vec2>::over(flat(values[0]), flat(values[1]), flat(values[2]));
    }
    if ((material.needs & ShadingNeeds::kTangents) != 0) {
        const TangentSpans& surface = frame.tangents[id.object];
        if (gather(surface.tangents, face.texture, corners, values))
            shade.tangentS = worldTangents(values, object.worldFromObject);
        if (gather(surface.binormals, face.texture, corners, values))
            shade.tangentT = worldTangents(values, object.worldFromObject);
    }
    return shade;
}

void TilePainter::begin(const VisibilityTile& tile) {
    tile_ = &tile;
    shadeIndex_.assign(tile.triangleCount(), kNoShade);
    shades_.clear();
    context_.eye = frame_.eye;
}

const TriangleShade& TilePainter::shadeOf(std::uint32_t triangle) {
    std::uint32_t& index = shadeIndex_[triangle];
    if (index == kNoShade) {
        index = static_cast<std::uint32_t>(shades_.size());
        shades_.push_back(makeTriangleShade(frame_, tile_->triangle(triangle).id));
    }
    return shades_[index];
}

// Depth first, with the levels on a stack of our own: a scene decides how many layers there are.
Rgba TilePainter::paint(const PixelTree& tree) {
    levels_.clear();
    levels_.push_back({PixelTree::kRoot, {}, {}});
    for (;;) {
        Level& level = levels_.back();
        const PixelNode& node = tree.node(level.node);
        level.front = shadeNode(tree, node);
        if (node.behind != PixelNode::kNone && level.front[3] < 1.0F) {
            levels_.push_back({node.behind, {}, {}});
            continue;
        }
        // The group is done; so may be its layer, and with it the group in front of that layer.
        for (;;) {
            Level& done = levels_.back();
            const PixelNode& group = tree.node(done.node);
            for (std::size_t i = 0; i < 4; ++i)
                done.sum[i] += group.coverage * done.front[i];
            if (group.others != PixelNode::kNone) {
                done.node = group.others;
                break;
            }
            const Rgba layer = done.sum;
            levels_.pop_back();
            if (levels_.empty()) return layer;
            // Coverage is of the whole pixel; behind a group it counts as a part of the group.
            Level& ahead = levels_.back();
            const float scale = 1.0F / tree.node(ahead.node).coverage;
            const float through = 1.0F - ahead.front[3];
            for (std::size_t i = 0; i < 4; ++i)
                ahead.front[i] += through * (layer[i] * scale);
        }
    }
}

Rgba TilePainter::shadeNode(const PixelTree& tree, const PixelNode& node) {
    const TriangleShade& shade = shadeOf(node.triangle);
    const ShadeMaterial& material = *shade.material;
    const double u = static_cast<double>(node.u);
    const double v = static_cast<double>(node.v);
    context_.position = shade.position.at(u, v);
    context_.normal = normalize(shade.normal.at(u, v));
    if ((material.needs & ShadingNeeds::kTangents) != 0) {
        context_.tangentS = normalize(shade.tangentS.at(u, v));
        context_.tangentT = normalize(shade.tangentT.at(u, v));
    }
    if ((material.needs & (ShadingNeeds::kTexture | ShadingNeeds::kCorners)) != 0)
        interpolateCorners(tree, node, shade);
    return orvin::shade(material, context_, frame_.lights, true);
}

void TilePainter::interpolateCorners(const PixelTree& tree, const PixelNode& node,
                                     const TriangleShade& shade) {
    const ScreenTriangle& triangle = tile_->triangle(node.triangle);
    const double x0 = tree.x0();
    const double y0 = tree.y0();
    const double x1 = x0 + tree.side();
    const double y1 = y0 + tree.side();
    const std::array<Vec2, ShadeContext::kCorners> corners{
        {{x0, y0}, {x0, y1}, {x1, y1}, {x1, y0}}};
    const bool mirrors = (shade.material->needs & ShadingNeeds::kCorners) != 0;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const Barycentric at =
            barycentricAt(triangle, tile_->perspective(), corners[i].x, corners[i].y);
        const Vec2 t = shade.texture.at(at.u, at.v);
        TextureBox& box = context_.texture;
        if (i == 0) box = {t.x, t.y, t.x, t.y};
        box = {std::min(box.sMin, t.x), std::min(box.tMin, t.y), std::max(box.sMax, t.x),
               std::max(box.tMax, t.y)};
        if (!mirrors) continue;
        context_.cornerPositions[i] = shade.position.at(at.u, at.v);
        context_.cornerNormals[i] = normalize(shade.normal.at(at.u, at.v));
    }
}

}  // namespace orvin
