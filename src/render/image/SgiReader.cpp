#include "render/image/SgiReader.h"

#include <algorithm>

namespace orvin {

namespace {

constexpr std::size_t kHeaderBytes = 512;
constexpr std::uint32_t kMagic = 474;
constexpr std::uint64_t kLargestRatio = 256;  // picture bytes to file bytes
constexpr std::uint64_t kSmallPicture = 16 << 20;

struct Header {
    bool runLength;
    std::size_t width;
    std::size_t height;
    std::size_t channels;
};

std::uint32_t half(std::span<const std::uint8_t> bytes, std::size_t offset) {
    return static_cast<std::uint32_t>(bytes[offset] << 8 | bytes[offset + 1]);
}

std::uint32_t word(std::span<const std::uint8_t> bytes, std::size_t offset) {
    return half(bytes, offset) << 16 | half(bytes, offset + 2);
}

bool parseHeader(std::span<const std::uint8_t> bytes, Header& header) {
    if (bytes.size() < kHeaderBytes) return false;
    const int storage = bytes[2];
    const int bytesPerChannel = bytes[3];
    const std::uint32_t colourMap = word(bytes, 104);
    if (half(bytes, 0) != kMagic || storage > 1 || bytesPerChannel != 1 || colourMap != 0)
        return false;
    header.runLength = storage == 1;
    header.width = half(bytes, 6);
    header.height = half(bytes, 8);
    header.channels = half(bytes, 10);
    return (header.channels == 3 || header.channels == 4) && header.width > 0 && header.height > 0;
}

bool fits(const Header& header, std::size_t fileBytes) {
    const std::uint64_t rows = std::uint64_t{header.height} * header.channels;
    const std::uint64_t picture = rows * header.width;
    if (!header.runLength) return picture <= fileBytes - kHeaderBytes;
    // Rows may share their data, so only the tables grow with the height.
    if (rows * 8 > fileBytes - kHeaderBytes) return false;
    return picture <= std::max(kSmallPicture, kLargestRatio * fileBytes);
}

// One channel of one row into every `stride`-th byte of `out`. False where `in` ends too early.
bool unpackRow(std::span<const std::uint8_t> in, std::uint8_t* out, std::size_t stride,
               std::size_t width) {
    const std::uint8_t* from = in.data();
    const std::uint8_t* const end = from + in.size();
    for (std::size_t left = width; left > 0;) {
        if (from == end) return false;
        const std::uint8_t head = *from++;
        const std::size_t count = std::min<std::size_t>(head & 127, left);
        if (count == 0) return true;
        const bool literal = (head & 0x80) != 0;
        const std::size_t bytes = literal ? count : 1;
        if (static_cast<std::size_t>(end - from) < bytes) return false;
        if (literal) {
            for (std::size_t i = 0; i < count; ++i)
                out[i * stride] = from[i];
        } else {
            const std::uint8_t value = *from;
            for (std::size_t i = 0; i < count; ++i)
                out[i * stride] = value;
        }
        from += bytes;
        out += count * stride;
        left -= count;
    }
    return true;
}

bool decodeRunLength(const Header& header, std::span<const std::uint8_t> bytes, std::uint8_t* out) {
    for (std::size_t y = 0; y < header.height; ++y, out += header.width * header.channels) {
        for (std::size_t c = 0; c < header.channels; ++c) {
            const std::size_t offset = word(bytes, kHeaderBytes + (c * header.height + y) * 4);
            if (offset > bytes.size()) return false;
            if (!unpackRow(bytes.subspan(offset), out + c, header.channels, header.width))
                return false;
        }
    }
    return true;
}

void decodeVerbatim(const Header& header, std::span<const std::uint8_t> bytes, std::uint8_t* out) {
    const std::uint8_t* in = bytes.data() + kHeaderBytes;
    const std::size_t pixels = header.width * header.height;
    for (std::size_t i = 0; i < pixels; ++i)
        for (std::size_t c = 0; c < header.channels; ++c)
            *out++ = in[c * pixels + i];
}

}  // namespace

Result readSgi(std::span<const std::uint8_t> bytes, ImageBuffer& image) {
    image = ImageBuffer();
    Header header{};
    if (!parseHeader(bytes, header) || !fits(header, bytes.size())) return kFailure;

    ImageBuffer read(static_cast<int>(header.width), static_cast<int>(header.height),
                     header.channels == 4 ? PixelKind::kRgba : PixelKind::kRgb);
    if (!header.runLength) {
        decodeVerbatim(header, bytes, read.direct());
    } else if (!decodeRunLength(header, bytes, read.direct())) {
        return kFailure;
    }
    image = std::move(read);
    return kSuccess;
}

}  // namespace orvin
