#include "render/image/TgaReader.h"

#include <algorithm>
#include <cstring>

namespace orvin {

namespace {

constexpr std::size_t kHeaderBytes = 18;
constexpr int kCountMask = 95;
constexpr std::size_t kLongestPacket = 1 + kCountMask;  // pixels

struct Header {
    std::size_t dataOffset;
    bool runLength;
    std::size_t width;
    std::size_t height;
    std::size_t pixelBytes;  // in the file
};

std::size_t word(std::span<const std::uint8_t> bytes, std::size_t offset) {
    return bytes[offset] | static_cast<std::size_t>(bytes[offset + 1]) << 8;
}

bool parseHeader(std::span<const std::uint8_t> bytes, Header& header) {
    if (bytes.size() < kHeaderBytes) return false;
    const int type = bytes[2];
    const int depth = bytes[16];
    const int alphaBits = bytes[17] & 15;
    if (type != 2 && type != 3 && type != 10 && type != 11) return false;
    if (depth != 8 && depth != 24 && depth != 32) return false;
    if (depth == 32 && alphaBits != 8) return false;
    header.dataOffset = kHeaderBytes + bytes[0] + word(bytes, 5);
    header.runLength = type >= 10;
    header.width = word(bytes, 12);
    header.height = word(bytes, 14);
    header.pixelBytes = static_cast<std::size_t>(depth) / 8;
    return header.width > 0 && header.height > 0 && header.dataOffset <= bytes.size();
}

// The fewest bytes that can hold the pixels: every row in runs as long as they may be.
std::uint64_t leastBytes(const Header& header) {
    if (!header.runLength) return std::uint64_t{header.width} * header.height * header.pixelBytes;
    const std::uint64_t packets = (header.width + kLongestPacket - 1) / kLongestPacket;
    return packets * (1 + header.pixelBytes) * header.height;
}

// Pixels of kIn bytes in the file (B, G, R, A order) to R, G, B (A).
template <std::size_t kIn>
struct Pixels {
    static constexpr std::size_t kOut = kIn == 4 ? 4 : 3;

    static void copy(const std::uint8_t* in, std::uint8_t* out, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i, in += kIn, out += kOut) {
            if constexpr (kIn == 1) {
                out[0] = out[1] = out[2] = in[0];
            } else {
                const std::uint8_t blue = in[0];
                out[1] = in[1];
                out[0] = in[2];
                out[2] = blue;
                if constexpr (kIn == 4) out[3] = in[3];
            }
        }
    }

    static void repeat(const std::uint8_t* in, std::uint8_t* out, std::size_t count) {
        std::uint8_t pixel[kOut];
        copy(in, pixel, 1);
        for (std::size_t i = 0; i < count; ++i)
            std::memcpy(out + i * kOut, pixel, kOut);
    }
};

// One row of packets. Moves `in` on; false where it ends too early.
template <std::size_t kIn>
bool unpackRow(std::span<const std::uint8_t>& in, std::uint8_t* out, std::size_t width) {
    const std::uint8_t* from = in.data();
    const std::uint8_t* const end = from + in.size();
    for (std::size_t left = width; left > 0;) {
        if (from == end) return false;
        const std::uint8_t head = *from++;
        const std::size_t count = std::min<std::size_t>(1 + (head & kCountMask), left);
        const bool run = (head & 0x80) != 0;
        const std::size_t bytes = run ? kIn : count * kIn;
        if (static_cast<std::size_t>(end - from) < bytes) return false;
        if (run) {
            Pixels<kIn>::repeat(from, out, count);
        } else {
            Pixels<kIn>::copy(from, out, count);
        }
        from += bytes;
        out += count * Pixels<kIn>::kOut;
        left -= count;
    }
    in = {from, end};
    return true;
}

template <std::size_t kIn>
bool decode(const Header& header, std::span<const std::uint8_t> in, std::uint8_t* out) {
    if (!header.runLength) {
        Pixels<kIn>::copy(in.data(), out, header.width * header.height);
        return true;
    }
    for (std::size_t y = 0; y < header.height; ++y, out += header.width * Pixels<kIn>::kOut)
        if (!unpackRow<kIn>(in, out, header.width)) return false;
    return true;
}

void makeOpaqueIfClear(std::uint8_t* pixels, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        if (pixels[i * 4 + 3] != 0) return;
    for (std::size_t i = 0; i < count; ++i)
        pixels[i * 4 + 3] = 255;
}

}  // namespace

Result readTga(std::span<const std::uint8_t> bytes, ImageBuffer& image) {
    image = ImageBuffer();
    Header header{};
    if (!parseHeader(bytes, header)) return kFailure;
    const auto data = bytes.subspan(header.dataOffset);
    if (leastBytes(header) > data.size()) return kFailure;

    ImageBuffer read(static_cast<int>(header.width), static_cast<int>(header.height),
                     header.pixelBytes == 4 ? PixelKind::kRgba : PixelKind::kRgb);
    std::uint8_t* const out = read.direct();
    bool complete = false;
    switch (header.pixelBytes) {
        case 1:
            complete = decode<1>(header, data, out);
            break;
        case 3:
            complete = decode<3>(header, data, out);
            break;
        default:
            complete = decode<4>(header, data, out);
            break;
    }
    if (!complete) return kFailure;
    if (header.pixelBytes == 4) makeOpaqueIfClear(out, header.width * header.height);
    image = std::move(read);
    return kSuccess;
}

}  // namespace orvin
