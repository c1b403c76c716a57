// LineBuffer: one line of the word stream under construction, in a buffer that never grows, so that
// nothing is allocated per line. What doesn't fit is dropped and remembered; SceneStream::putLine
// then fails.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace orvin {

inline constexpr std::size_t kLineCapacity = 4096;  // longest line, and longest token kept
inline constexpr std::size_t kNameCapacity = 256;   // names and keys, with their NUL

class LineBuffer {
  public:
    LineBuffer& clear();
    LineBuffer& text(std::string_view bytes);
    LineBuffer& character(char c);
    LineBuffer& number(double value);                      // six decimals, as "%f"
    LineBuffer& whole(long long value);                    // as "%d"
    LineBuffer& hex(std::span<const std::uint8_t> bytes);  // lowercase digits

    /// In quotes, each inner quote with a backslash. A value that ends in a backslash can't be
    /// quoted (the reader would take the closing quote for a part of it): it is written bare where
    /// it can be, and gains a blank behind the backslash where it can't.
    LineBuffer& quoted(std::string_view value);

    /// As quoted(), with a name's limit: the copy between the quotes is that of quoteEscape().
    LineBuffer& quotedName(std::string_view name);

    std::string_view view() const { return {bytes_.data(), size_}; }
    bool overflowed() const { return overflowed_; }

  private:
    std::array<char, kLineCapacity> bytes_;
    std::size_t size_ = 0;
    bool overflowed_ = false;
};

/// Escapes a name for a quoted token: each double quote gains a backslash. The copy is at most 255
/// bytes long; a quote whose two bytes would reach position 255 ends it.
std::string quoteEscape(std::string_view text);

}  // namespace orvin
