// A small font of single strokes, for captions in pictures that the programs make.
#pragma once

#include <vector>

#include "toolkit/math/Vec.h"

namespace orvin::apps {

inline constexpr double kStrokeCapHeight = 8.0;  // of capitals and digits, in glyph units

struct StrokeGlyph {
    std::vector<std::vector<Vec2>> strokes;  // y up, the baseline at 0; a single point is a dot
    double advance = 0.0;
};

/// The glyph of an ASCII character; a box for what the font doesn't have.
StrokeGlyph strokeGlyph(char character);

}  // namespace orvin::apps
