#include "orvinhost/World.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace orvin::stand_in {
namespace {

constexpr std::size_t kGuard = 256;
constexpr std::uint8_t kGuardByte = 0x5E;
constexpr int kPadding = 20;  // a multiple of 4 that is none of 16

// Differs from pixel to pixel, so that no plain fill and no picture looks like it.
PF_Pixel pattern(int x, int y) {
    std::uint32_t h = static_cast<std::uint32_t>(x) * 0x9E3779B1u ^
                      static_cast<std::uint32_t>(y) * 0x85EBCA77u ^ 0xC2B2AE3Du;
    h ^= h >> 15;
    h *= 0x2C1B3C6Du;
    h ^= h >> 13;
    return {static_cast<A_u_char>(h >> 24), static_cast<A_u_char>(h >> 16),
            static_cast<A_u_char>(h >> 8), static_cast<A_u_char>(h)};
}

bool same(PF_Pixel a, PF_Pixel b) {
    return a.alpha == b.alpha && a.red == b.red && a.green == b.green && a.blue == b.blue;
}

// One output pixel of a picture that is made smaller: the mean of its block, colour weighted by
// alpha.
PF_Pixel blockMean(const apps::Picture& picture, int x0, int y0, int step) {
    std::uint64_t alpha = 0;
    std::array<std::uint64_t, 3> color{};
    std::uint64_t count = 0;
    for (int y = y0; y < std::min(y0 + step, picture.height); ++y)
        for (int x = x0; x < std::min(x0 + step, picture.width); ++x) {
            const std::uint8_t* p = picture.pixel(x, y);
            alpha += p[3];
            for (std::size_t c = 0; c < 3; ++c)
                color[c] += std::uint64_t{p[c]} * p[3];
            ++count;
        }
    PF_Pixel result{static_cast<A_u_char>((alpha + count / 2) / count), 0, 0, 0};
    if (alpha > 0) {
        result.red = static_cast<A_u_char>((color[0] + alpha / 2) / alpha);
        result.green = static_cast<A_u_char>((color[1] + alpha / 2) / alpha);
        result.blue = static_cast<A_u_char>((color[2] + alpha / 2) / alpha);
    }
    return result;
}

}  // namespace

World::World(int width, int height) : width_(width), height_(height), padding_(kPadding) {
    guard();
    for (int y = 0; y < height_; ++y) {
        PF_Pixel* pixels = row(y);
        for (int x = 0; x < width_; ++x)
            pixels[x] = pattern(x, y);
    }
}

World::World(const apps::Picture& picture, int downsample)
    : World((picture.width + downsample - 1) / downsample,
            (picture.height + downsample - 1) / downsample) {
    for (int y = 0; y < height_; ++y) {
        PF_Pixel* pixels = row(y);
        for (int x = 0; x < width_; ++x) {
            if (downsample > 1) {
                pixels[x] = blockMean(picture, x * downsample, y * downsample, downsample);
                continue;
            }
            const std::uint8_t* p = picture.pixel(x, y);
            pixels[x] = {p[3], p[0], p[1], p[2]};
        }
    }
}

std::size_t World::rowBytes() const {
    return static_cast<std::size_t>(width_) * 4 + static_cast<std::size_t>(padding_);
}

void World::guard() {
    memory_.assign(2 * kGuard + rowBytes() * static_cast<std::size_t>(height_), kGuardByte);
}

PF_Pixel* World::row(int y) {
    return reinterpret_cast<PF_Pixel*>(memory_.data() + kGuard +
                                       rowBytes() * static_cast<std::size_t>(y));
}

const PF_Pixel* World::row(int y) const {
    return reinterpret_cast<const PF_Pixel*>(memory_.data() + kGuard +
                                             rowBytes() * static_cast<std::size_t>(y));
}

void World::fill(PF_Pixel pixel) {
    for (int y = 0; y < height_; ++y)
        std::fill_n(row(y), width_, pixel);
}

void World::describe(PF_LayerDef& layer, bool writeable, PF_RationalScale pixelAspect) {
    const A_long standard = layer.dephault;
    std::memset(&layer, 0, sizeof layer);
    layer.dephault = standard;
    if (empty()) return;
    layer.world_flags = writeable ? PF_WorldFlag_WRITEABLE : 0;
    layer.data = row(0);
    layer.rowbytes = static_cast<A_long>(rowBytes());
    layer.width = width_;
    layer.height = height_;
    layer.extent_hint = {0, 0, width_, height_};
    layer.pix_aspect_ratio = pixelAspect;
}

bool World::guardsIntact() const {
    const auto intact = [](const std::uint8_t* from, std::size_t count) {
        return std::all_of(from, from + count,
                           [](std::uint8_t byte) { return byte == kGuardByte; });
    };
    if (empty()) return true;
    if (!intact(memory_.data(), kGuard) ||
        !intact(memory_.data() + memory_.size() - kGuard, kGuard))
        return false;
    for (int y = 0; y < height_; ++y) {
        const auto* end = reinterpret_cast<const std::uint8_t*>(row(y) + width_);
        if (!intact(end, static_cast<std::size_t>(padding_))) return false;
    }
    return true;
}

long long World::unwrittenPixels() const {
    long long count = 0;
    for (int y = 0; y < height_; ++y) {
        const PF_Pixel* pixels = row(y);
        for (int x = 0; x < width_; ++x)
            if (same(pixels[x], pattern(x, y))) ++count;
    }
    return count;
}

std::uint64_t World::checksum() const {
    std::uint64_t hash = 0xCBF29CE484222325u;
    for (int y = 0; y < height_; ++y) {
        const PF_Pixel* pixels = row(y);
        for (int x = 0; x < width_; ++x) {
            std::uint32_t word = 0;
            std::memcpy(&word, pixels + x, sizeof word);
            hash = (hash ^ word) * 0x100000001B3u;
        }
    }
    return hash;
}

apps::Picture World::picture() const {
    apps::Picture picture(width_, height_);
    for (int y = 0; y < height_; ++y) {
        const PF_Pixel* pixels = row(y);
        std::uint8_t* out = picture.pixel(0, y);
        for (int x = 0; x < width_; ++x, out += 4) {
            out[0] = pixels[x].red;
            out[1] = pixels[x].green;
            out[2] = pixels[x].blue;
            out[3] = pixels[x].alpha;
        }
    }
    return picture;
}

}  // namespace orvin::stand_in
