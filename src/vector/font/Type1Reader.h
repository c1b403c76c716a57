// Type1Reader: outlines and advance widths of a PostScript Type 1 font, as text (PFA) or in
// segments (PFB). "Adobe Type 1 Font Format" (1990) describes the format, Adobe's technical note
// 5040 the segments.
//
// It looks for a few words, it runs no PostScript: /Encoding and eexec in the clear text; /lenIV,
// /Subrs and /CharStrings in the encrypted part. Tokens end at white space alone. Glyphs that the
// encoding doesn't name are left out. What charstrings do is told in Type1Charstring.h.
//
// Differs from the format on purpose: "StandardEncoding" is the layout of Windows. An accented
// glyph takes its base by character code, and its accent at (adx, ady) whatever the side bearings;
// accents don't grow the font's box, which holds the origin always. A name that stands for two
// codes gets the lower one.
//
// Degenerate input: numbers that are none read as 0; lists that are shorter than they say end with
// the next one, or with the file; a text file with binary encryption holds no outlines.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "vector/font/FontFile.h"

namespace orvin {

class Type1Reader final : public FontReader {
  public:
    explicit Type1Reader(FontFile& font) : font_(font) {}

    void read(std::string_view path) override;

    /// Parses a file that is in memory.
    void parse(std::span<const std::uint8_t> file);

  private:
    FontFile& font_;
};

}  // namespace orvin
