// ByteReader: big-endian values and chunks from a part of a model file. Reading past the end gives
// zeros and marks the reader as failed; it never leaves its part. Readers are copied to read ahead
// or to come back: they only know their place.
#pragma once

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "interchange/ModelInput.h"

namespace orvin {

/// The four letters of a chunk's name as a number.
constexpr std::uint32_t chunkId(const char (&name)[5]) {
    std::uint32_t id = 0;
    for (int i = 0; i < 4; ++i)
        id = id << 8 | static_cast<std::uint8_t>(name[i]);
    return id;
}

struct IffChunk;

class ByteReader {
  public:
    explicit ByteReader(ModelInput& input) : input_(&input), end_(input.size()) {}

    bool atEnd() const { return at_ == end_; }
    std::size_t rest() const { return end_ - at_; }
    std::size_t position() const { return at_; }  // in the file
    bool failed() const { return failed_; }

    std::uint16_t u16() { return static_cast<std::uint16_t>(number<2>()); }
    std::uint32_t u32() { return static_cast<std::uint32_t>(number<4>()); }
    std::uint8_t u8() { return static_cast<std::uint8_t>(number<1>()); }
    std::int16_t i16() { return static_cast<std::int16_t>(u16()); }
    std::int32_t i32() { return static_cast<std::int32_t>(u32()); }

    // Numbers that aren't finite read as 0.
    double f32() { return finite(static_cast<double>(std::bit_cast<float>(u32()))); }
    double f64() { return finite(std::bit_cast<double>(number<8>())); }

    /// A reader of the next `count` bytes, or of what there is of them.
    ByteReader take(std::size_t count) {
        if (count > rest()) {
            failed_ = true;
            count = rest();
        }
        ByteReader taken = *this;
        taken.failed_ = false;
        at_ += count;
        taken.end_ = at_;
        return taken;
    }

    /// Text up to its zero byte, which is skipped, and one more if the text with it is odd.
    std::string text() {
        std::string text;
        forText([&text](const std::uint8_t* from, std::size_t count) {
            text.append(reinterpret_cast<const char*>(from), count);
        });
        return text;
    }
    void skipText() {
        forText([](const std::uint8_t*, std::size_t) {});
    }

    /// The next chunk: name, size in four bytes, content. Short rests give an empty chunk, name 0.
    IffChunk chunk();
    /// The same with the size in two bytes.
    IffChunk subChunk();

  private:
    template <std::size_t Size>
    std::uint64_t number() {
        if (rest() < Size) {
            at_ = end_;
            failed_ = true;
            return 0;
        }
        const std::uint8_t* const p = input_->bytes(at_, Size);
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

    template <typename Part>
    void forText(Part&& part) {
        const std::size_t start = at_;
        bool ended = false;
        while (!ended && !atEnd()) {
            const Bytes seen = input_->look(at_, 1);
            const std::size_t count = std::min(seen.size(), rest());
            const void* const zero = std::memchr(seen.data(), 0, count);
            ended = zero != nullptr;
            const auto length =
                ended
                    ? static_cast<std::size_t>(static_cast<const std::uint8_t*>(zero) - seen.data())
                    : count;
            part(seen.data(), length);
            at_ += length;
        }
        at_ = start + std::min(end_ - start, ((at_ - start) / 2 + 1) * 2);
    }

    template <std::size_t SizeBytes>
    IffChunk sizedChunk();

    /// A chunk of odd size is followed by a byte of padding; some writers forget it.
    void skipPadding() {
        ByteReader next = take(std::min<std::size_t>(rest(), 4));
        const std::size_t count = next.rest();
        bool isName = count == 4;
        while (isName && !next.atEnd()) {
            const std::uint8_t c = next.u8();
            isName = (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
        }
        at_ -= isName || count == 0 ? count : count - 1;
    }

    ModelInput* input_;
    std::size_t at_ = 0;
    std::size_t end_;
    bool failed_ = false;
};

struct IffChunk {
    std::uint32_t id = 0;
    ByteReader body;  // of the size that is there, if the chunk says a larger one
};

template <std::size_t SizeBytes>
IffChunk ByteReader::sizedChunk() {
    const std::uint32_t id = u32();
    const auto size = static_cast<std::size_t>(number<SizeBytes>());
    if (failed_) return {0, take(0)};
    const IffChunk chunk{id, take(size)};
    if (size % 2 != 0) skipPadding();
    return chunk;
}

inline IffChunk ByteReader::chunk() {
    return sizedChunk<4>();
}
inline IffChunk ByteReader::subChunk() {
    return sizedChunk<2>();
}

}  // namespace orvin
