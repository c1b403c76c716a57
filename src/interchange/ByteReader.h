// ByteReader: big-endian values and chunks from bytes in memory. Reading past the end gives zeros
// and marks the reader as failed; it never leaves the bytes.
#pragma once

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace orvin {

using Bytes = std::span<const std::uint8_t>;

/// The four letters of a chunk's name as a number.
constexpr std::uint32_t chunkId(const char (&name)[5]) {
    std::uint32_t id = 0;
    for (int i = 0; i < 4; ++i)
        id = id << 8 | static_cast<std::uint8_t>(name[i]);
    return id;
}

struct IffChunk {
    std::uint32_t id = 0;
    Bytes body;  // of the size that is there, if the chunk says a larger one
};

class ByteReader {
  public:
    explicit ByteReader(Bytes bytes) : bytes_(bytes) {}

    bool atEnd() const { return at_ == bytes_.size(); }
    std::size_t rest() const { return bytes_.size() - at_; }
    bool failed() const { return failed_; }

    std::uint16_t u16() { return static_cast<std::uint16_t>(number<2>()); }
    std::uint32_t u32() { return static_cast<std::uint32_t>(number<4>()); }
    std::uint8_t u8() { return static_cast<std::uint8_t>(number<1>()); }
    std::int16_t i16() { return static_cast<std::int16_t>(u16()); }
    std::int32_t i32() { return static_cast<std::int32_t>(u32()); }

    // Numbers that aren't finite read as 0.
    double f32() { return finite(static_cast<double>(std::bit_cast<float>(u32()))); }
    double f64() { return finite(std::bit_cast<double>(number<8>())); }

    /// The next `count` bytes, or what there is of them.
    Bytes take(std::size_t count) {
        if (count > rest()) {
            failed_ = true;
            count = rest();
        }
        const Bytes taken = bytes_.subspan(at_, count);
        at_ += count;
        return taken;
    }

    /// Text up to its zero byte, which is skipped, and one more if the text with it is odd.
    std::string_view text() {
        const Bytes left = bytes_.subspan(at_);
        std::size_t length = 0;
        while (length < left.size() && left[length] != 0)
            ++length;
        at_ += std::min(left.size(), (length / 2 + 1) * 2);
        return {reinterpret_cast<const char*>(left.data()), length};
    }

    /// The next chunk: name, size in four bytes, content. Short rests give an empty chunk, name 0.
    IffChunk chunk() { return sizedChunk<4>(); }
    /// The same with the size in two bytes.
    IffChunk subChunk() { return sizedChunk<2>(); }

  private:
    template <std::size_t Size>
    std::uint64_t number() {
        if (rest() < Size) {
            at_ = bytes_.size();
            failed_ = true;
            return 0;
        }
        const std::uint8_t* const p = bytes_.data() + at_;
        at_ += Size;
        if constexpr (Size == 1) return p[0];
        if constexpr (Size == 2) return static_cast<std::uint64_t>(p[0] << 8 | p[1]);
        if constexpr (Size == 4) return big32(p);
        return static_cast<std::uint64_t>(big32(p)) << 32 | big32(p + 4);
    }

    static std::uint32_t big32(const std::uint8_t* p) {  // one load and a swap
        return static_cast<std::uint32_t>(p[0]) << 24 | static_cast<std::uint32_t>(p[1]) << 16 |
               static_cast<std::uint32_t>(p[2]) << 8 | static_cast<std::uint32_t>(p[3]);
    }

    static double finite(double value) { return std::isfinite(value) ? value : 0.0; }

    template <std::size_t SizeBytes>
    IffChunk sizedChunk() {
        IffChunk chunk;
        chunk.id = u32();
        const auto size = static_cast<std::size_t>(number<SizeBytes>());
        if (failed_) return {};
        chunk.body = take(size);
        if (size % 2 != 0) skipPadding();
        return chunk;
    }

    /// A chunk of odd size is followed by a byte of padding; some writers forget it.
    void skipPadding() {
        if (atEnd()) return;
        const Bytes next = bytes_.subspan(at_);
        bool isName = next.size() >= 4;
        for (std::size_t i = 0; isName && i < 4; ++i)
            isName = (next[i] >= 'A' && next[i] <= 'Z') || (next[i] >= '0' && next[i] <= '9');
        if (!isName) ++at_;
    }

    Bytes bytes_;
    std::size_t at_ = 0;
    bool failed_ = false;
};

}  // namespace orvin
