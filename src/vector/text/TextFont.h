// TextFont: what a text keeps of a font: an outline and two metrics for each 8-bit code, such that
// the font's box is 100 units high. No file is needed once it is loaded.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "geometry/outline/CompositeCurve2.h"
#include "toolkit/Result.h"

namespace orvin {

class TextFont {
  public:
    static constexpr std::size_t kCodes = 256;

    struct Glyph {
        InputProfile2 outline;  // its origin is where the pen stands
        float advance = 0.0f;
        float bearing = 0.0f;

        /// True where some of the outline is more than ten times the font's height away: fonts
        /// mirror parts of some letters, which the reader doesn't do.
        bool isAstray() const;
    };

    TextFont() : glyphs_(kCodes) {}

    /// Takes the place of the font before. `param` is kept. -1, and nothing changes, where the
    /// font reports an error. A font without height (as one whose file isn't there) leaves no
    /// outlines, and the metrics as they were; so do codes that the new font lacks.
    Result load(std::string_view path, int param);

    Glyph& glyph(unsigned char code) { return glyphs_[code]; }
    const Glyph& glyph(unsigned char code) const { return glyphs_[code]; }

    /// Codes that have an outline.
    std::size_t outlineCount() const;

    std::string name;      // file name without its folders
    bool hasName = false;  // false: no font was ever chosen
    int param = -1;
    double emWidth = 0.0;  // advance and bearing of "M"

    /// The two numbers that stand in files, as they were loaded or read.
    float height = 0.0f;  // 100 for a font just loaded
    float width = 0.0f;

    /// The same as a layout takes them. Files hold the two halves of the height's bits in their
    /// place, and every file ever written has them so; a pair that no font has is taken for a
    /// height of 100 and for the width of the box around all outlines but astray ones. So a text
    /// looks after a save, a flatten or an undo as it did before, but for the difference between
    /// that box and the font's own.
    struct Measures {
        double height;
        double width;
    };
    Measures measures() const;

  private:
    std::vector<Glyph> glyphs_;
};

}  // namespace orvin
