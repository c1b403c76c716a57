// TrueTypeReader: outlines, advance widths and the font's name from an sfnt file, as Apple's
// TrueType Reference Manual and Microsoft's OpenType pages describe it.
//
// Takes the tables name, maxp, cmap, head, hhea, loca, glyf, hmtx, in this order, up to the first
// that isn't there. Of cmap only the first subtable and codes 0 to 255, whatever their meaning. No
// hinting, no kerning.
//
// Differs from the format on purpose: byte offsets of composite glyphs are never negative, negative
// matrix terms don't mirror, and a composite sees a component of a higher number only if that is no
// composite itself.
//
// Degenerate input: data past the end of the file reads as zeros, and a simple glyph ends with its
// last whole point; a composite that names itself takes what it had before.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "vector/font/FontFile.h"

namespace orvin {

class TrueTypeReader final : public FontReader {
  public:
    explicit TrueTypeReader(FontFile& font) : font_(font) {}

    void read(std::string_view path) override;

    /// Parses a file that is in memory.
    void parse(std::span<const std::uint8_t> file);

  private:
    FontFile& font_;
};

}  // namespace orvin
