// What font readers make of a file: glyphs, their contours, their points. All in font units, y up.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace orvin {

struct GlyphPoint {
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::uint8_t onCurve = 1;  // 1: on the outline, 0: a control point

    friend bool operator==(const GlyphPoint&, const GlyphPoint&) = default;
};

/// One loop: the points [first, first + count) of the table. The last repeats the first.
struct GlyphContour {
    std::size_t first = 0;
    std::size_t count = 0;
};

struct FontGlyph {
    int code = 0;           // character code; a TrueType glyph's number until it is mapped
    std::string glyphName;  // Type 1 only, without the slash
    std::size_t firstContour = 0;
    std::size_t contourCount = 0;
    std::int32_t leftSideBearing = 0;
    std::int32_t advanceWidth = 0;
};

/// The glyphs of a font. Points of all glyphs lie in one list, so that a copy of a glyph costs no
/// more than its record.
class GlyphTable {
  public:
    std::vector<FontGlyph> glyphs;

    std::span<const GlyphContour> contours(const FontGlyph& glyph) const {
        return std::span(contours_).subspan(glyph.firstContour, glyph.contourCount);
    }
    std::span<const GlyphPoint> points(const GlyphContour& contour) const {
        return std::span(points_).subspan(contour.first, contour.count);
    }

    /// Adds a contour of these points (none of this table) behind those that `glyph` has; earlier
    /// spans are void then. Any record of `glyphs` will do; cheapest is the one that got a contour
    /// last. False, with nothing done, where the table has no room for it (see setCapacity).
    bool addContour(FontGlyph& glyph, std::span<const GlyphPoint> points);

    /// The same, with the first point added once more at the end.
    bool addLoop(FontGlyph& glyph, std::span<const GlyphPoint> points);

    /// Adds copies of the contours of `source`, moved by (dx, dy) with wrap-around. False where
    /// some found no room.
    bool addCopies(FontGlyph& glyph, const FontGlyph& source, std::int32_t dx, std::int32_t dy);

    /// The room: this many points and contours together, over all glyphs. A hostile file asks for
    /// far more than its size.
    void setCapacity(std::size_t capacity) { capacity_ = capacity; }

  private:
    bool prepareToAdd(FontGlyph& glyph, std::size_t pointCount);

    std::vector<GlyphContour> contours_;
    std::vector<GlyphPoint> points_;
    std::size_t capacity_ = std::size_t{1} << 22;
};

}  // namespace orvin
