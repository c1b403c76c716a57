// ShadowMap: a depth picture seen from a light, and the filtered look-up in it.
//
// A texel holds the depth half-way between the two surfaces nearest to the light, in front of the
// light's camera; 0 where there are fewer than two. So the lit side of a closed object never lies
// behind its own texels, and a bias of 0.001 units is enough. The other side of it: a lone sheet
// casts no shadow.
//
// Look-ups are exact at any width of the filter: an index of the nearest and farthest blocker of
// each 8 x 8 texels, of each 64 x 64 and so on tells at once where all or none of them block, and
// which of 8 x 8 may.
#pragma once

#include <cstdint>
#include <vector>

#include "render/ShadowLookup.h"
#include "render/image/ImageBuffer.h"
#include "render/shadow/ShadowKernel.h"

namespace orvin {

class ShadowMap final : public ShadowLookup {
  public:
    /// Texels up to this depth are without a blocker.
    static constexpr double kNoBlocker = 1e-05;
    /// World units by which a surface must lie behind a blocker to be in its shadow.
    static constexpr double kBias = 0.001;

    /// `depths`, kDepth, has frame.resolution texels on each side, 1 at least; row 0 is the bottom
    /// row. Throws eBaseError 101 where a paged buffer can't be read.
    ShadowMap(const ShadowFrame& frame, int softness, ImageBuffer depths);

    /// Taps beyond the map's edge count as shadow, each with the average weight. At least 0, and at
    /// most 1. A paged map serves one thread at a time.
    double filtered(int ix, int iy, double depth) const override;

    const ImageBuffer& depths() const { return depths_; }
    const ShadowKernel& kernel() const { return kernel_; }

  private:
    struct Rect {
        int left;
        int bottom;
        int right;  // all four sides included
        int top;
    };
    /// Of the texels of a block.
    struct Blockers {
        double nearest;       // infinite without any
        double farthest;      // minus infinite without any
        std::uint64_t where;  // all bits set: all texels; of 8 x 8 texels one bit each, row by row
    };
    /// The blocks of 2^shift texels a side, row after row.
    struct Level {
        int shift;
        int blocksAcross;
        std::vector<Blockers> blocks;

        std::size_t index(int x, int y) const {
            return static_cast<std::size_t>(y) * static_cast<std::size_t>(blocksAcross) +
                   static_cast<std::size_t>(x);
        }
        const Blockers& at(int x, int y) const { return blocks[index(x, y)]; }
        Blockers& at(int x, int y) { return blocks[index(x, y)]; }
    };
    /// One look-up: which taps, as texels of the map, and what is looked up.
    struct Query {
        Rect taps;
        int kernelLeft;  // texel of the kernel's first tap, in the map or outside
        int kernelBottom;
        double depth;
    };

    void indexTexels();
    void indexBlocks();
    Level& addLevel(int shift, int blocksAcross);
    std::uint64_t blocked(std::size_t level, const Query& query) const;
    std::uint64_t weigh(const Query& query) const;
    std::uint64_t weigh(const Query& query, std::uint64_t where) const;
    std::uint64_t weighDeeper(const Query& query) const;

    ShadowKernel kernel_;
    ImageBuffer depths_;
    const double* texels_;       // null for a paged map
    std::vector<Level> levels_;  // from fine to coarse
    std::size_t startLevel_ = 0;
};

}  // namespace orvin
