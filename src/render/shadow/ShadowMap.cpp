#include "render/shadow/ShadowMap.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <utility>

#include "toolkit/Errors.h"

namespace orvin {

namespace {

constexpr int kLevelShift = 3;
constexpr int kBlockMask = (1 << kLevelShift) - 1;
constexpr double kInfinite = std::numeric_limits<double>::infinity();
constexpr std::uint64_t kEverywhere = ~std::uint64_t{0};

bool isBlocker(double texel) {
    return texel > ShadowMap::kNoBlocker;
}

// For texels that are blockers. Monotonous in the texel, which the index relies on.
bool shades(double texel, double depth) {
    return texel + ShadowMap::kBias < depth;
}

int blocksFor(int texels, int shift) {
    return ((texels - 1) >> shift) + 1;
}

}  // namespace

ShadowMap::ShadowMap(const ShadowFrame& frame, int softness, ImageBuffer depths)
    : ShadowLookup(frame),
      kernel_(softness),
      depths_(std::move(depths)),
      texels_(reinterpret_cast<const double*>(std::as_const(depths_).direct())) {
    indexTexels();
    while (levels_.back().blocksAcross > 1)
        indexBlocks();
    // The level to start at has few blocks under a kernel.
    while (startLevel_ + 1 < levels_.size() && (1 << levels_[startLevel_].shift) < kernel_.size())
        ++startLevel_;
}

void ShadowMap::indexTexels() {
    const int res = frame().resolution;
    Level& level = addLevel(kLevelShift, blocksFor(res, kLevelShift));
    std::vector<double> row(static_cast<std::size_t>(res));
    for (int y = 0; y < res; ++y) {
        if (depths_.readRow(y, row) != kSuccess) throw kImageBufferFailed;
        const int firstBit = (y & kBlockMask) << kLevelShift;
        for (int x = 0; x < res; ++x) {
            const double texel = row[static_cast<std::size_t>(x)];
            Blockers& block = level.at(x >> kLevelShift, y >> kLevelShift);
            if (isBlocker(texel)) {
                block.nearest = std::min(block.nearest, texel);
                block.farthest = std::max(block.farthest, texel);
            } else {
                block.where &= ~(std::uint64_t{1} << (firstBit + (x & kBlockMask)));
            }
        }
    }
}

// Blocks of 8 x 8 blocks of the level before.
void ShadowMap::indexBlocks() {
    const std::size_t from = levels_.size() - 1;
    const int across = levels_[from].blocksAcross;
    Level& level = addLevel(levels_[from].shift + kLevelShift, blocksFor(across, kLevelShift));
    for (int y = 0; y < across; ++y)
        for (int x = 0; x < across; ++x) {
            const Blockers& part = levels_[from].at(x, y);
            Blockers& block = level.at(x >> kLevelShift, y >> kLevelShift);
            block.nearest = std::min(block.nearest, part.nearest);
            block.farthest = std::max(block.farthest, part.farthest);
            if (part.where != kEverywhere) block.where = 0;
        }
}

ShadowMap::Level& ShadowMap::addLevel(int shift, int blocksAcross) {
    const auto across = static_cast<std::size_t>(blocksAcross);
    return levels_.emplace_back(Level{
        shift, blocksAcross,
        std::vector<Blockers>(across * across, Blockers{kInfinite, -kInfinite, kEverywhere})});
}

double ShadowMap::filtered(int ix, int iy, double depth) const {
    const int last = frame().resolution - 1;
    const int half = kernel_.half();
    const Query query{{std::max(ix - half, 0), std::max(iy - half, 0), std::min(ix + half, last),
                       std::min(iy + half, last)},
                      ix - half,
                      iy - half,
                      depth};
    const double dark = ShadowKernel::part(blocked(startLevel_, query));
    const double taps = static_cast<double>(kernel_.size()) * kernel_.size();
    const double inside = static_cast<double>(query.taps.right - query.taps.left + 1) *
                          (query.taps.top - query.taps.bottom + 1);
    // Taps beyond a corner weigh more than the ones that the bell has there: the sum may pass 1.
    return std::max(1.0 - ((taps - inside) / taps + dark), 0.0);
}

// The weights of all taps that are in shadow.
std::uint64_t ShadowMap::blocked(std::size_t level, const Query& query) const {
    const Level& blocks = levels_[level];
    const Rect& taps = query.taps;
    std::uint64_t sum = 0;
    for (int y = taps.bottom >> blocks.shift; y <= taps.top >> blocks.shift; ++y)
        for (int x = taps.left >> blocks.shift; x <= taps.right >> blocks.shift; ++x) {
            const Blockers& block = blocks.at(x, y);
            if (!shades(block.nearest, query.depth)) continue;
            Query part = query;
            part.taps = {std::max(taps.left, x << blocks.shift),
                         std::max(taps.bottom, y << blocks.shift),
                         std::min(taps.right, ((x + 1) << blocks.shift) - 1),
                         std::min(taps.top, ((y + 1) << blocks.shift) - 1)};
            const bool deeper = !shades(block.farthest, query.depth);
            if (!deeper && block.where == kEverywhere)
                sum += weigh(part);
            else if (level != 0)
                sum += blocked(level - 1, part);
            else
                sum += deeper ? weighDeeper(part) : weigh(part, block.where);
        }
    return sum;
}

// All taps of the query.
std::uint64_t ShadowMap::weigh(const Query& query) const {
    const Rect& taps = query.taps;
    const std::uint64_t columns =
        kernel_.sideSum(taps.left - query.kernelLeft, taps.right - query.kernelLeft);
    return columns *
           kernel_.sideSum(taps.bottom - query.kernelBottom, taps.top - query.kernelBottom);
}

// The taps, all in one block of texels, whose bits are set.
std::uint64_t ShadowMap::weigh(const Query& query, std::uint64_t where) const {
    const Rect& taps = query.taps;
    const int left = taps.left & ~kBlockMask;  // of the block
    const unsigned columns = (2U << (taps.right - left)) - (1U << (taps.left - left));
    std::uint64_t sum = 0;
    for (int y = taps.bottom; y <= taps.top; ++y) {
        auto bits = static_cast<unsigned>(where >> ((y & kBlockMask) << kLevelShift)) & columns;
        std::uint64_t inRow = 0;
        while (bits != 0) {
            const int first = std::countr_zero(bits);
            const int last = first + std::countr_one(bits >> first) - 1;
            inRow +=
                kernel_.sideSum(left + first - query.kernelLeft, left + last - query.kernelLeft);
            bits &= ~0U << (last + 1);
        }
        sum += inRow * kernel_.side()[y - query.kernelBottom];
    }
    return sum;
}

// The taps, all in one block of texels, that are in shadow; texel by texel.
std::uint64_t ShadowMap::weighDeeper(const Query& query) const {
    const Rect& taps = query.taps;
    const auto width = static_cast<std::size_t>(taps.right - taps.left + 1);
    const std::uint32_t* columns = kernel_.side() + (taps.left - query.kernelLeft);
    const double depth = query.depth;
    double paged[std::size_t{1} << kLevelShift];
    std::uint64_t sum = 0;
    for (int y = taps.bottom; y <= taps.top; ++y) {
        const double* texels = paged;
        if (texels_ != nullptr)
            texels = texels_ +
                     static_cast<std::size_t>(y) * static_cast<std::size_t>(frame().resolution) +
                     static_cast<std::size_t>(taps.left);
        else
            for (std::size_t i = 0; i < width; ++i)
                if (depths_.readPixel(taps.left + static_cast<int>(i), y, paged[i]) != kSuccess)
                    throw kImageBufferFailed;
        std::uint32_t inRow = 0;
        for (std::size_t i = 0; i < width; ++i) {
            // Without a branch, which no processor would foresee.
            const auto dark = static_cast<std::uint32_t>(isBlocker(texels[i])) &
                              static_cast<std::uint32_t>(shades(texels[i], depth));
            inRow += columns[i] & (0U - dark);
        }
        sum += static_cast<std::uint64_t>(inRow) * kernel_.side()[y - query.kernelBottom];
    }
    return sum;
}

}  // namespace orvin
