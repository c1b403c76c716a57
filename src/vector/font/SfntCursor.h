// SfntCursor: reads big-endian values from a font that is in memory. Past its end all is zero.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace orvin {

class SfntCursor {
  public:
    /// `offset` may lie anywhere.
    SfntCursor(std::span<const std::uint8_t> file, std::uint64_t offset)
        : file_(file), position_(offset) {}

    std::uint64_t position() const { return position_; }
    void skip(std::uint64_t bytes) { position_ += bytes; }
    bool atEnd() const { return position_ >= file_.size(); }
    /// True once a byte was asked for that isn't there.
    bool pastEnd() const { return position_ > file_.size(); }

    std::uint8_t u8() {
        const std::uint64_t at = position_++;
        return at < file_.size() ? file_[static_cast<std::size_t>(at)] : std::uint8_t{0};
    }
    std::uint16_t u16() {
        const unsigned high = u8();
        return static_cast<std::uint16_t>(high << 8 | u8());
    }
    std::int16_t i16() { return static_cast<std::int16_t>(u16()); }
    std::uint32_t u32() {
        const std::uint32_t high = u16();
        return high << 16 | u16();
    }

  private:
    std::span<const std::uint8_t> file_;
    std::uint64_t position_;
};

}  // namespace orvin
