// ByteWriter: a file of big-endian chunks, built in memory, since a chunk's size stands before it.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string_view>
#include <vector>

namespace orvin {

class ByteWriter {
  public:
    void u8(std::uint8_t value) { bytes_.push_back(value); }
    void u16(std::uint16_t value) { number<2>(value); }
    void u32(std::uint32_t value) { number<4>(value); }
    void i16(std::int16_t value) { u16(static_cast<std::uint16_t>(value)); }
    void i32(std::int32_t value) { u32(static_cast<std::uint32_t>(value)); }
    /// The nearest float; the largest one for a larger value, 0 for what is no number.
    void f32(double value);
    void f64(double value) { number<8>(std::bit_cast<std::uint64_t>(value)); }
    /// Text with its zero byte, and one more where the two together are odd. Ends before a zero
    /// byte in it.
    void text(std::string_view text);

    /// Starts a chunk (four letters); its size is filled in by endChunk(), which also pads it to an
    /// even size. Chunks nest.
    std::size_t beginChunk(std::uint32_t id);
    void endChunk(std::size_t start);
    /// The same with a size of two bytes.
    std::size_t beginSubChunk(std::uint32_t id);
    void endSubChunk(std::size_t start);

    /// Takes back all beyond the first `size` bytes.
    void truncate(std::size_t size) { bytes_.resize(size); }

    std::size_t size() const { return bytes_.size(); }
    /// True once a chunk grew beyond what its size can say: the bytes are of no use then.
    bool tooLarge() const { return tooLarge_; }
    /// True where all of it was written.
    bool writeTo(std::FILE* file) const;

  private:
    template <std::size_t Size>
    void number(std::uint64_t value) {
        for (std::size_t i = Size; i-- > 0;)
            bytes_.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
    void endSized(std::size_t start, std::size_t sizeBytes);

    std::vector<std::uint8_t> bytes_;
    bool tooLarge_ = false;
};

}  // namespace orvin
