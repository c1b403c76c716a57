#include "toolkit/twPicture.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace orvin {

namespace {

constexpr std::size_t kInfoHeaderBytes = 40;
constexpr std::size_t kCoreHeaderBytes = 12;

std::size_t paddedRow(std::size_t width, std::size_t bitsPerPixel) {
    return (width * bitsPerPixel + 31) / 32 * 4;
}

std::uint32_t word(std::span<const std::uint8_t> bytes, std::size_t offset, std::size_t count) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < count; ++i)
        value |= std::uint32_t{bytes[offset + i]} << (8 * i);
    return value;
}

void putWord(std::vector<std::uint8_t>& bytes, std::size_t offset, std::uint32_t value) {
    for (std::size_t i = 0; i < 4; ++i)
        bytes[offset + i] = static_cast<std::uint8_t>(value >> (8 * i));
}

struct BitmapLayout {
    int width = 0;
    int height = 0;
    bool topDown = false;
    std::size_t bitsPerPixel = 0;
    std::size_t paletteOffset = 0;
    std::size_t paletteEntry = 4;  // bytes
    std::size_t paletteSize = 0;   // entries
    std::size_t pixelOffset = 0;
};

bool parseLayout(std::span<const std::uint8_t> bitmap, BitmapLayout& layout) {
    if (bitmap.size() < kCoreHeaderBytes) return false;
    const std::uint32_t headerBytes = word(bitmap, 0, 4);
    std::int64_t height = 0;
    std::int64_t width = 0;
    std::uint32_t colours = 0;
    if (headerBytes == kCoreHeaderBytes) {
        width = word(bitmap, 4, 2);
        height = word(bitmap, 6, 2);
        layout.bitsPerPixel = word(bitmap, 10, 2);
        layout.paletteEntry = 3;
    } else if (headerBytes == kInfoHeaderBytes && bitmap.size() >= kInfoHeaderBytes) {
        width = static_cast<std::int32_t>(word(bitmap, 4, 4));
        height = static_cast<std::int32_t>(word(bitmap, 8, 4));
        layout.bitsPerPixel = word(bitmap, 14, 2);
        if (word(bitmap, 16, 4) != 0) return false;  // compressed
        colours = word(bitmap, 32, 4);
    } else {
        return false;
    }
    layout.topDown = height < 0;
    if (layout.topDown) height = -height;
    if (width <= 0 || height <= 0 || width > twPicture::kLargestSide ||
        height > twPicture::kLargestSide)
        return false;
    layout.width = static_cast<int>(width);
    layout.height = static_cast<int>(height);

    const std::size_t bits = layout.bitsPerPixel;
    if (bits != 1 && bits != 4 && bits != 8 && bits != 24 && bits != 32) return false;
    if (bits <= 8) {
        const std::size_t most = std::size_t{1} << bits;
        layout.paletteSize = colours == 0 ? most : colours;
        if (layout.paletteSize > most) return false;
    } else {
        if (colours > 256) return false;  // a hint for displays of few colours
        layout.paletteSize = colours;
    }
    layout.paletteOffset = headerBytes;
    layout.pixelOffset = layout.paletteOffset + layout.paletteSize * layout.paletteEntry;
    const std::uint64_t pixelBytes =
        std::uint64_t{paddedRow(static_cast<std::size_t>(width), bits)} *
        static_cast<std::uint64_t>(height);
    return bitmap.size() >= layout.pixelOffset && bitmap.size() - layout.pixelOffset >= pixelBytes;
}

// A row of palette numbers, the leftmost pixel in the highest bits. Numbers beyond the palette are
// black.
void resolveRow(std::span<const std::uint8_t> bitmap, const BitmapLayout& layout,
                const std::uint8_t* from, std::uint8_t* to) {
    const std::size_t bits = layout.bitsPerPixel;
    for (std::size_t x = 0; x < static_cast<std::size_t>(layout.width); ++x, to += 3) {
        const std::size_t bit = x * bits;
        const std::size_t number =
            static_cast<std::size_t>(from[bit / 8] >> (8 - bits - bit % 8)) & ((1U << bits) - 1);
        if (number >= layout.paletteSize) continue;
        std::memcpy(to, &bitmap[layout.paletteOffset + number * layout.paletteEntry], 3);
    }
}

}  // namespace

twPicture::twPicture(int width, int height, int bitsPerPixel)
    : bitsPerPixel_(bitsPerPixel == 32 ? 32 : 24) {
    if (width <= 0 || height <= 0) return;
    width_ = width;
    height_ = height;
    bits_.resize(rowBytes() * static_cast<std::size_t>(height));
}

std::unique_ptr<twPicture> twPicture::fromPackedBitmap(std::span<const std::uint8_t> bitmap) {
    BitmapLayout layout;
    if (!parseLayout(bitmap, layout)) return nullptr;
    auto picture = std::make_unique<twPicture>(layout.width, layout.height,
                                               layout.bitsPerPixel == 32 ? 32 : 24);
    const std::size_t row = paddedRow(static_cast<std::size_t>(layout.width), layout.bitsPerPixel);
    for (int y = 0; y < layout.height; ++y) {
        const int stored = layout.topDown ? y : layout.height - 1 - y;
        const std::uint8_t* from =
            bitmap.data() + layout.pixelOffset + row * static_cast<std::size_t>(stored);
        if (layout.bitsPerPixel <= 8) {
            resolveRow(bitmap, layout, from, picture->pixel(0, y));
        } else {
            std::memcpy(picture->pixel(0, y), from,
                        static_cast<std::size_t>(layout.width) * picture->pixelBytes());
        }
    }
    return picture;
}

std::vector<std::uint8_t> twPicture::packedBitmap() const {
    if (empty()) return {};
    std::vector<std::uint8_t> bitmap(kInfoHeaderBytes);
    bitmap.reserve(kInfoHeaderBytes + bits_.size());
    putWord(bitmap, 0, kInfoHeaderBytes);
    putWord(bitmap, 4, static_cast<std::uint32_t>(width_));
    putWord(bitmap, 8, static_cast<std::uint32_t>(height_));
    putWord(bitmap, 12, 1U | static_cast<std::uint32_t>(bitsPerPixel_) << 16);  // one plane
    putWord(bitmap, 20, static_cast<std::uint32_t>(bits_.size()));
    bitmap.insert(bitmap.end(), bits_.begin(), bits_.end());
    return bitmap;
}

std::size_t twPicture::rowBytes() const {
    return paddedRow(static_cast<std::size_t>(width_), static_cast<std::size_t>(bitsPerPixel_));
}

std::uint8_t* twPicture::pixel(int x, int y) {
    if (x < 0 || x >= width_ || y < 0 || y >= height_) return nullptr;
    return bits_.data() + rowBytes() * static_cast<std::size_t>(height_ - 1 - y) +
           pixelBytes() * static_cast<std::size_t>(x);
}

const std::uint8_t* twPicture::pixel(int x, int y) const {
    return const_cast<twPicture*>(this)->pixel(x, y);
}

bool twPicture::readRgbRow(int y, std::span<std::uint8_t> rgb) const {
    const std::uint8_t* from = pixel(0, y);
    const auto width = static_cast<std::size_t>(width_);
    if (from == nullptr || rgb.size() < width * 3) return false;
    for (std::size_t x = 0; x < width; ++x, from += pixelBytes())
        for (std::size_t c = 0; c < 3; ++c)
            rgb[x * 3 + c] = from[2 - c];
    return true;
}

bool twPicture::writeRgbRow(int y, std::span<const std::uint8_t> rgb) {
    std::uint8_t* to = pixel(0, y);
    const auto width = static_cast<std::size_t>(width_);
    if (to == nullptr || rgb.size() < width * 3) return false;
    for (std::size_t x = 0; x < width; ++x, to += pixelBytes()) {
        for (std::size_t c = 0; c < 3; ++c)
            to[2 - c] = rgb[x * 3 + c];
        if (bitsPerPixel_ == 32) to[3] = 255;
    }
    return true;
}

twPicture twPicture::converted(int bitsPerPixel) const {
    twPicture picture(width_, height_, bitsPerPixel);
    if (picture.bitsPerPixel_ == bitsPerPixel_) return *this;
    std::vector<std::uint8_t> rgb(static_cast<std::size_t>(width_) * 3);
    for (int y = 0; y < height_; ++y) {
        readRgbRow(y, rgb);
        picture.writeRgbRow(y, rgb);
    }
    return picture;
}

}  // namespace orvin
