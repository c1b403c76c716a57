// The points of a glyph, contour by contour; and fonts in memory.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "vector/font/FontFile.h"

namespace orvin::test {

inline std::span<const std::uint8_t> asBytes(const std::string& text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

/// The font that `Reader` makes of these bytes.
template <typename Reader>
FontFile parsedBy(FontFile::Kind kind, const std::string& bytes) {
    FontFile font;
    font.kind = kind;
    Reader(font).parse(asBytes(bytes));
    return font;
}

using Loops = std::vector<std::vector<GlyphPoint>>;

inline Loops loopsOf(const FontFile& font, const FontGlyph& glyph) {
    Loops loops;
    for (const GlyphContour& contour : font.table.contours(glyph)) {
        const auto points = font.table.points(contour);
        loops.emplace_back(points.begin(), points.end());
    }
    return loops;
}

}  // namespace orvin::test
