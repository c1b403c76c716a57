// TinyFont: letters of a few pixels, for what viewers write beside things.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace orvin::tinyfont {

inline constexpr int kWidth = 5;    // pixels of a letter
inline constexpr int kAdvance = 6;  // from one to the next
inline constexpr int kHeight = 9;   // the last two rows are for descenders
inline constexpr int kDescent = 2;

/// The rows of a letter, top row first; bit 4 is the left pixel. Bytes that aren't printable ASCII
/// show as a box.
const std::array<std::uint8_t, kHeight>& glyph(char letter);

/// Pixels that a text takes, without the gap behind its last letter.
constexpr int textWidth(std::string_view text) {
    return text.empty() ? 0 : static_cast<int>(text.size()) * kAdvance - (kAdvance - kWidth);
}

}  // namespace orvin::tinyfont
