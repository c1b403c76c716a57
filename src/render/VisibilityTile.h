// VisibilityTile: the scan-converted triangles of one screen tile: at each subpixel the fragments
// that show there, nearest first.
//
// One object serves one tile after the other and keeps its memory; it is all that is written while
// tiles are scanned, so several can work on the same VisibilityBuffer.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "render/ScreenTriangle.h"

namespace orvin {

/// A rectangle of the grid or of pixels, all four sides included.
struct GridRect {
    int left = 0;
    int top = 0;
    int right = -1;
    int bottom = -1;

    int width() const { return right - left + 1; }
    int height() const { return bottom - top + 1; }
};

/// One fragment at one subpixel.
class SampleNode {
  public:
    static constexpr std::uint32_t kNone = 0xffffffff;

    SampleNode() = default;
    SampleNode(std::uint32_t triangle, bool opaque, float depth, std::uint32_t next)
        : depth_(depth), triangleAndOpaque_(triangle | (opaque ? kOpaqueBit : 0U)), next_(next) {}

    bool empty() const { return triangleAndOpaque_ == kNone; }
    /// Index into VisibilityTile::triangles().
    std::uint32_t triangle() const { return triangleAndOpaque_ & ~kOpaqueBit; }
    bool opaque() const { return (triangleAndOpaque_ & kOpaqueBit) != 0; }
    float depth() const { return depth_; }
    /// The fragment behind this one, for VisibilityTile::behind(); kNone at the end.
    std::uint32_t next() const { return next_; }
    void setNext(std::uint32_t next) { next_ = next; }

    /// The order of lists: by depth, and of equal depths the earlier triangle is in front.
    bool inFrontOf(const SampleNode& other) const {
        return depth_ < other.depth_ || (depth_ == other.depth_ && triangle() < other.triangle());
    }

    /// True for two opaque fragments of one triangle: nothing lies behind either.
    bool sameOpaque(const SampleNode& other) const {
        return triangleAndOpaque_ == other.triangleAndOpaque_ && opaque();
    }

  private:
    static constexpr std::uint32_t kOpaqueBit = 0x80000000;

    float depth_ = 0.0F;
    std::uint32_t triangleAndOpaque_ = kNone;
    std::uint32_t next_ = kNone;
};

class VisibilityTile {
  public:
    /// More fragments than this don't lie in one tile: 12 bytes each, and as many subpixels.
    static constexpr std::size_t kMaxSamples = std::size_t{1} << 20;

    /// Scan-converts `triangles`, indices into `all`, onto the subpixels of `rect`. Both must stay
    /// as they are while the tile is read. False, with the tile of no use, where they are more than
    /// kMaxSamples, unless `rect` is a single pixel.
    bool scan(std::span<const ScreenTriangle> all, std::span<const std::uint32_t> triangles,
              const GridRect& rect, int subpixels, bool perspective);

    const GridRect& subpixelRect() const { return rect_; }
    /// The rectangle divided by the subpixels along a side of a pixel.
    GridRect pixelRect() const {
        return {rect_.left / n_, rect_.top / n_, rect_.right / n_, rect_.bottom / n_};
    }
    int subpixels() const { return n_; }
    bool perspective() const { return perspective_; }

    std::size_t triangleCount() const { return triangles_.size(); }
    const ScreenTriangle& triangle(std::uint32_t index) const { return all_[triangles_[index]]; }

    /// The nearest fragments of subpixels (x, y), (x + 1, y), ... to the tile's right edge; empty
    /// nodes where nothing shows. Coordinates of the whole grid, inside subpixelRect().
    const SampleNode* row(int x, int y) const {
        return heads_.data() + static_cast<std::size_t>(y - rect_.top) * stride_ +
               static_cast<std::size_t>(x - rect_.left);
    }

    /// The fragment behind `node`; null at the end of the list.
    const SampleNode* behind(const SampleNode& node) const {
        return node.next() == SampleNode::kNone ? nullptr : &pool_[node.next()];
    }

  private:
    struct Span {
        double min;
        double max;
    };

    void scanTriangle(const ScreenTriangle& triangle, std::uint32_t index);
    void widenSpans(const Vec2& a, const Vec2& b, int first, int last);
    void insert(SampleNode& head, const SampleNode& node);
    void insertBehind(SampleNode& head, SampleNode node);
    void sortLists();
    void sortBehind(SampleNode& head);
    std::uint32_t newNode(const SampleNode& node);

    std::span<const ScreenTriangle> all_;
    std::span<const std::uint32_t> triangles_;
    GridRect rect_;
    int n_ = 1;
    bool perspective_ = true;
    std::size_t stride_ = 0;
    std::vector<SampleNode> heads_;  // one a subpixel, row after row
    std::vector<SampleNode> pool_;   // all that lies behind
    std::vector<Span> spans_;        // one a row
    std::vector<SampleNode> sorted_;
};

}  // namespace orvin
