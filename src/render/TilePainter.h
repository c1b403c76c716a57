// TilePainter: from the trees of a tile's pixels to their colours.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "render/PixelTree.h"
#include "render/Rgba.h"
#include "render/ShadeContext.h"
#include "render/TriangleShade.h"
#include "render/VisibilityBuffer.h"

namespace orvin {

class LightX;

/// The tangents of an object's surface in object space, by texture vertex; see MeshObject.
struct TangentSpans {
    std::span<const Vec3> tangents;
    std::span<const Vec3> binormals;
};

/// What all tiles of a frame are shaded with; constant once built.
struct FrameShading {
    /// Resolves the materials of the buffer's surfaces. Faces without a material look like a new
    /// MaterialX. The lights are the enabled ones of the scene; they must be prepared.
    FrameShading(const VisibilityBuffer& visibility, const SceneX& scene);

    const VisibilityBuffer& visibility;
    Vec3 eye;  // world space
    std::vector<const LightX*> lights;
    std::vector<ShadeMaterial> materials;  // by TriangleId::surface
    std::vector<TangentSpans> tangents;    // by TriangleId::object; empty where no material asks
};

/// The attributes of a triangle, looked up in its mesh.
TriangleShade makeTriangleShade(const FrameShading& frame, const TriangleId& id);

class TilePainter {
  public:
    explicit TilePainter(const FrameShading& frame) : frame_(frame) {}

    /// Goes to another tile, which must stay as it is while its pixels are painted.
    void begin(const VisibilityTile& tile);

    /// The colour of a pixel of that tile, multiplied by alpha. The tree must not be empty.
    Rgba paint(const PixelTree& tree);

  private:
    /// One level of layers on the way down into the tree.
    struct Level {
        std::uint32_t node;  // of this layer, being painted
        Rgba front;          // its own colour, while what is behind it is painted
        Rgba sum;            // of the groups of the layer before it
    };

    const TriangleShade& shadeOf(std::uint32_t triangle);
    Rgba shadeNode(const PixelTree& tree, const PixelNode& node);
    void interpolateCorners(const PixelTree& tree, const PixelNode& node,
                            const TriangleShade& shade);

    const FrameShading& frame_;
    const VisibilityTile* tile_ = nullptr;
    ShadeContext context_;
    std::vector<std::uint32_t> shadeIndex_;  // by triangle of the tile, kNone until one is needed
    std::vector<TriangleShade> shades_;
    std::vector<Level> levels_;
};

}  // namespace orvin
