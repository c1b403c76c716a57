#include "render/shadow/ShadowMap.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "toolkit/Errors.h"

namespace orvin {

namespace {

constexpr int kLevelShift = 3;
constexpr double kInfinite = std::numeric_limits<double>::infinity();

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
        addLevel();
    // The level to start at has few blocks under a kernel.
    while (startLevel_ + 1 < levels_.size() && (1 << levels_[startLevel_].shift) < kernel_.size())
        ++startLevel_;
}

void ShadowMap::indexTexels() {
    const int res = frame().resolution;
    const int across = blocksFor(res, kLevelShift);
    const auto count = static_cast<std::size_t>(across) * static_cast<std::size_t>(across);
    Level& level = levels_.emplace_back(
        Level{kLevelShift, across, std::vector<Blockers>(count, {kInfinite, -kInfinite})});
    std::vector<double> row(static_cast<std::size_t>(res));
    for (int y = 0; y < res; ++y) {
        if (depths_.readRow(y, row) != kSuccess) throw kImageBufferFailed;
        Blockers* blocks = &level.blocks[static_cast<std::size_t>(y >> kLevelShift) *
                                         static_cast<std::size_t>(across)];
        for (int x = 0; x < res; ++x) {
            const double texel = row[static_cast<std::size_t>(x)];
            const double depth = isBlocker(texel) ? texel : kInfinite;
            Blockers& block = blocks[x >> kLevelShift];
            block.nearest = std::min(block.nearest, depth);
            block.farthest = std::max(block.farthest, depth);
        }
    }
}

void ShadowMap::addLevel() {
    const Level& fine = levels_.back();
    Level level;
    level.shift = fine.shift + kLevelShift;
    level.blocksAcross = blocksFor(fine.blocksAcross, kLevelShift);
    const auto across = static_cast<std::size_t>(level.blocksAcross);
    level.blocks.assign(across * across, {kInfinite, -kInfinite});
    for (int y = 0; y < fine.blocksAcross; ++y)
        for (int x = 0; x < fine.blocksAcross; ++x) {
            const Blockers& from = fine.at(x, y);
            Blockers& to = level.blocks[static_cast<std::size_t>(y >> kLevelShift) * across +
                                        static_cast<std::size_t>(x >> kLevelShift)];
            to.nearest = std::min(to.nearest, from.nearest);
            to.farthest = std::max(to.farthest, from.farthest);
        }
    levels_.push_back(std::move(level));
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
            if (shades(block.farthest, query.depth))
                sum += allOf(part);
            else
                sum += level == 0 ? blockedTexels(part) : blocked(level - 1, part);
        }
    return sum;
}

std::uint64_t ShadowMap::allOf(const Query& query) const {
    const Rect& taps = query.taps;
    const std::uint64_t columns =
        kernel_.sideSum(taps.left - query.kernelLeft, taps.right - query.kernelLeft);
    return columns *
           kernel_.sideSum(taps.bottom - query.kernelBottom, taps.top - query.kernelBottom);
}

std::uint64_t ShadowMap::blockedTexels(const Query& query) const {
    const Rect& taps = query.taps;
    const auto width = static_cast<std::size_t>(taps.right - taps.left + 1);
    const std::uint32_t* columns = kernel_.side() + (taps.left - query.kernelLeft);
    const std::uint32_t* rows = kernel_.side() - query.kernelBottom;
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
        for (std::size_t i = 0; i < width; ++i)
            inRow += isBlocker(texels[i]) && shades(texels[i], query.depth) ? columns[i] : 0U;
        sum += static_cast<std::uint64_t>(inRow) * rows[y];
    }
    return sum;
}

}  // namespace orvin
