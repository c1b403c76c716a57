// TrueTypeOutlines: parses the glyf table into the glyphs of a font.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "vector/font/FontGlyph.h"
#include "vector/font/SfntCursor.h"

namespace orvin {

/// Where a glyph's data lies, relative to the glyf table.
struct GlyphLocation {
    std::uint64_t offset = 0;
    std::int64_t length = 0;  // below 1: the glyph is empty
};

class TrueTypeOutlines {
  public:
    /// Work and memory are bounded by the file's size: a file whose glyphs overlap more than fonts
    /// do runs out of both, and the glyphs after that stay empty.
    TrueTypeOutlines(std::span<const std::uint8_t> file, GlyphTable& table);

    /// Adds one glyph per location, its number as its code.
    void read(std::uint64_t glyfTable, std::span<const GlyphLocation> locations);

  private:
    struct Box {
        int xMin, yMin, xMax, yMax;
    };
    // One component of a composite glyph. The matrix is a b, c d in 16.16 fixed point.
    struct Component {
        int parent;
        std::uint16_t flags;
        std::uint16_t glyph;
        int argument1;
        int argument2;
        std::int32_t a, b, c, d;
    };

    void readSimple(SfntCursor& in, FontGlyph& glyph, int contourCount, const Box& box);
    void readFlags(SfntCursor& in, std::size_t pointCount);
    std::size_t readCoordinates(SfntCursor& in, std::size_t pointCount);
    void readComponents(SfntCursor& in, int parent);
    void resolve(const Component& component);
    GlyphPoint pointOf(const FontGlyph& glyph, int number) const;
    bool spend(std::uint64_t work);

    std::span<const std::uint8_t> file_;
    GlyphTable& table_;
    std::uint64_t workLeft_;
    std::vector<Component> components_;

    // Of the glyph being read.
    std::vector<std::size_t> ends_;
    std::vector<std::uint8_t> flags_;
    std::vector<GlyphPoint> points_;
};

}  // namespace orvin
