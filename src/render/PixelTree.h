// PixelTree: the subpixels of one pixel, grouped by the triangle that they show. Next to a group
// stand the other groups of its layer; behind it the tree of what its own subpixels hide. Each
// group is shaded once, however many subpixels it has.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "render/VisibilityTile.h"

namespace orvin {

struct PixelNode {
    static constexpr std::uint32_t kNone = 0xffffffff;

    std::uint32_t triangle = 0;  // index into VisibilityTile::triangle()
    float coverage = 0.0F;       // of the whole pixel, in front of and behind other groups alike
    float u = 0.0F;              // barycentric weights of the first and second corner at the
    float v = 0.0F;              // centre of the group's subpixels
    std::uint32_t others = kNone;
    std::uint32_t behind = kNone;
};

/// Barycentric weights of the first and second corner at a point of the grid. A perspective
/// triangle whose 1/depth is exactly 0 there gives its undivided planes.
struct Barycentric {
    double u = 0.0;
    double v = 0.0;
};
inline Barycentric barycentricAt(const ScreenTriangle& t, bool perspective, double x, double y) {
    const double u = t.u.at(x, y);
    const double v = t.v.at(x, y);
    if (!perspective) return {u, v};
    const double w = t.depth.at(x, y);
    if (w == 0.0) return {u, v};
    const double depth = 1.0 / w;
    return {u * depth, v * depth};
}

class PixelTree {
  public:
    /// Groups the subpixels of a pixel that lies wholly inside the tile. False where nothing shows.
    bool build(const VisibilityTile& tile, int pixelX, int pixelY);

    bool empty() const { return nodes_.empty(); }
    static constexpr std::uint32_t kRoot = 0;
    const PixelNode& node(std::uint32_t index) const { return nodes_[index]; }
    std::span<const PixelNode> nodes() const { return nodes_; }

    // The pixel's origin on the grid, and its side.
    int x0() const { return x0_; }
    int y0() const { return y0_; }
    int side() const { return n_; }

  private:
    struct Pending {
        std::uint32_t mask;    // subpixels
        std::uint32_t parent;  // whose `behind` they are
    };

    /// Subpixels of a group: how many, and the sums of their columns and rows in the pixel.
    struct Group {
        int count = 0;
        int columns = 0;
        int rows = 0;
    };

    void setGrid(int side);
    std::uint32_t addNode(const VisibilityTile& tile, std::uint32_t triangle, const Group& group);

    int x0_ = 0;
    int y0_ = 0;
    int n_ = 0;
    // By subpixel of the pixel, row after row:
    std::array<int, 25> columns_{};
    std::array<int, 25> rows_{};
    std::array<const SampleNode*, 25> samples_{};  // the front of what isn't grouped yet
    std::vector<PixelNode> nodes_;
    std::vector<Pending> pending_;
};

}  // namespace orvin
