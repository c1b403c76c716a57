// FontFile: a font parsed from a file, its glyphs addressed by 8-bit character code.
//
// A load parses the whole file; nothing stays open. The reader goes by the file's extension alone,
// in any case: .ttf (TrueType) or .pfa and .pfb (Type 1).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "geometry/outline/CompositeCurve2.h"
#include "vector/font/FontDiagnostics.h"
#include "vector/font/FontGlyph.h"

namespace orvin {

class FontFile {
  public:
    enum class Kind { kType1 = 0, kTrueType = 1, kNone = 2 };
    enum class Encoding { kStandard = 0, kIsoLatin1 = 1, kCustom = 2 };  // of a Type 1 font

    /// Opens and parses. Never throws for bad input: a Type 1 fault sets hasError(); an unknown
    /// extension is told on standard error and leaves no glyphs; a TrueType file stays as far as
    /// it got. `charset` is kept and means nothing.
    FontFile(std::string_view path, int charset);

    /// An empty font, for readers to fill.
    FontFile() = default;

    bool hasError() const { return !errorText_.empty(); }
    const std::string& errorText() const { return errorText_; }

    /// The box of the whole font, in font units.
    std::int64_t heightUnits() const { return std::int64_t{yMax} - yMin; }
    std::int64_t widthUnits() const { return std::int64_t{xMax} - xMin; }

    std::size_t glyphCount() const { return table.glyphs.size(); }
    const FontGlyph& glyphAt(std::size_t index) const { return table.glyphs[index]; }
    /// The first glyph of that code; null for none.
    const FontGlyph* glyphForCode(int code) const;

    /// Appends one closed path per contour of `glyph` (of this font) to `target`, coordinates
    /// times `scale`: straight runs as Linear curves, Type 1 curves as Beziers of four points,
    /// TrueType curves as Beziers of three. Contours keep their direction.
    void makeCurves(const FontGlyph& glyph, InputProfile2& target, float scale) const;

    // ---- what readers write

    /// Records the first fault, and reports it.
    void fontError(std::string_view message);

    Kind kind = Kind::kNone;
    std::string name;  // full font name
    Encoding encodingKind = Encoding::kStandard;
    std::int32_t yMax = 0;
    std::int32_t yMin = 0;
    std::int32_t xMax = 0;
    std::int32_t xMin = 0;
    GlyphTable table;
    int charset = -1;

  private:
    std::string errorText_;
};

/// Parses one kind of font file into the FontFile that it was made with.
class FontReader {
  public:
    virtual ~FontReader() = default;
    virtual void read(std::string_view path) = 0;
};

/// True where FontFile has a reader for the file's extension: .ttf, .pfa or .pfb, in any case.
bool isFontFileName(std::string_view path);

/// Words for a status line: of a font without and with hasError().
std::string_view fontStatusText(bool error);

}  // namespace orvin
