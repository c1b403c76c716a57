// The character map of a TrueType font, as far as 8-bit codes go.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace orvin {

/// Glyph numbers by character code, from the first subtable of the cmap table at `table` and no
/// other, whatever platform it is for. Formats 0, 2 (single bytes), 4 and 6; empty for others.
/// Numbers may be out of the font's range, and the list longer than 256 or shorter: format 4 ends
/// it before the first code that only the last segment (to 65535) covers.
std::vector<int> readCharMap(std::span<const std::uint8_t> file, std::uint64_t table,
                             int numGlyphs);

}  // namespace orvin
