// The outlines of a Type 1 font: its charstrings, run as "Adobe Type 1 Font Format" (1990),
// chapter 6, describes them, but for what is said here.
//
// Hints mean nothing. Flex goes by subroutines 0 to 2, whatever they hold; othersubrs only pass
// their arguments on. `div` divides the two numbers at the bottom of the stack, without a rest.
// "return" and "endchar" end nothing. A moveto without a closepath before goes on in the same
// contour. A closing line stands as a curve with its handles on its ends.
//
// Degenerate input: missing arguments are 0; what overflows wraps; calls go 11 deep; a font that
// runs through more than kOperationLimit numbers and operators gets no more points.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "vector/font/FontFile.h"

namespace orvin {

/// An accented glyph, to be assembled from two others.
struct SeacRecord {
    std::int32_t asb = 0;  // left side bearing of the accent; not used
    std::int32_t adx = 0;  // where the accent goes
    std::int32_t ady = 0;
    std::int32_t bchar = 0;  // base
    std::int32_t achar = 0;  // accent, a code of Adobe's StandardEncoding
    std::int32_t code = 0;   // of the accented glyph
};

class Type1Charstrings {
  public:
    static constexpr std::size_t kOperationLimit = std::size_t{1} << 24;  // of one font

    explicit Type1Charstrings(FontFile& font) : font_(font) {}

    /// Adds a subroutine (plain bytes) behind those that are there; called by its place.
    void addSubroutine(std::span<const std::uint8_t> code);

    /// Runs a charstring (plain bytes): the glyph gets its contours and widths, the font's box
    /// grows around all points.
    void run(std::span<const std::uint8_t> code, FontGlyph& glyph);

    /// Names the operators and numbers of a charstring in the report.
    static void print(std::span<const std::uint8_t> code);

    /// The accented glyphs so far.
    std::vector<SeacRecord>& accented() { return accented_; }

  private:
    enum class Step { kNone, kMove, kLine, kControl, kClose };
    struct Piece {
        std::size_t first = 0;
        std::size_t count = 0;
    };

    void interpret(std::span<const std::uint8_t> code);
    bool execute(int op);

    void move(std::int32_t dx, std::int32_t dy) { step(dx, dy, Step::kMove, 1); }
    void line(std::int32_t dx, std::int32_t dy) { step(dx, dy, Step::kLine, 1); }
    void curve(std::int32_t dx1, std::int32_t dy1, std::int32_t dx2, std::int32_t dy2,
               std::int32_t dx3, std::int32_t dy3);
    void step(std::int32_t dx, std::int32_t dy, Step kind, std::uint8_t onCurve);
    void addPoint(std::uint8_t onCurve);
    void flushContour();
    void closePath();

    void callSubroutine();
    void flex();
    void callOtherSubroutine();
    void divide();

    std::int32_t argument(std::size_t i) const { return i < stack_.size() ? stack_[i] : 0; }
    std::int32_t popArgument();
    bool reporting() const { return depth_ == 0 && fontDiagnostics(); }

    FontFile& font_;
    std::vector<std::uint8_t> subroutineBytes_;
    std::vector<Piece> subroutines_;
    std::vector<SeacRecord> accented_;
    std::size_t operationsLeft_ = kOperationLimit;

    // Of the glyph that runs.
    FontGlyph* glyph_ = nullptr;
    std::int32_t x_ = 0;
    std::int32_t y_ = 0;
    bool pathOpen_ = false;
    Step lastStep_ = Step::kNone;
    bool inFlex_ = false;
    int depth_ = 0;
    std::vector<std::int32_t> stack_;
    std::vector<std::int32_t> otherStack_;  // that othersubrs and "pop" exchange numbers through
    std::vector<GlyphPoint> contour_;
};

}  // namespace orvin
