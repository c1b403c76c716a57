// ProfileT: a piece of text and the outline of its letters. It carries the outlines of its font,
// in projects too: a font file is needed only where a font is chosen.
//
// Text is 8-bit codes, as the font's own map means them. Lines end with LF; CR ends a line without
// moving down (CR LF is one end). A character without an advance width is invisible and moves
// nothing. Letters stand with their origin at the pen; the first baseline is at y = 0, lines go
// down from there.
//
// Degenerate input: an empty text, and one of blanks, has an empty shape. Nothing holds back a pen
// that negative spacing moves backwards. A text of more than CompositeCurve2::kMostPoints points
// has no shape; its curves end before there are more points, curves and paths together.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "geometry/Profile.h"
#include "vector/text/TextFont.h"

namespace orvin {

/// How lines stand to x = 0. Other numbers start a line where the pen of the one before stopped.
enum class Justify : int { kLeft = 0, kCenter = 1, kRight = 2 };

class ProfileT final : public OutlineProfile {
  public:
    /// Of a text whose font nobody chose.
    static constexpr std::string_view kDefaultFont = R"(C:\Winnt\Fonts\Arial.ttf)";
    /// The longest text that a project holds, line ends, tabs and quotes counted as two bytes.
    static constexpr std::size_t kLongestText = 4085;

    /// Loads the default font; where it isn't there, the text has no outlines yet.
    ProfileT(SceneX& scene, std::string_view name);
    ProfileT(SceneX& scene, const ProfileT& source, std::string_view name);

    /// -1 with a line missing where the text is longer than kLongestText.
    Result writeBody(SceneStream& stream) override;
    const CommandRegistry& commandRegistry() const override;
    std::string_view className() const override { return "ProfileT"; }

    // ---- what the text is; each of these lays it out anew

    /// See TextFont::load.
    Result setFont(std::string_view path, int param);
    /// Up to the first NUL.
    void setText(std::string_view text);
    void setJustify(Justify justify);
    /// The distance of lines as a factor of the font's height, and what is added to each advance,
    /// as a factor of the font's width.
    void setTextParms(double leading, double letterSpacing);

    // ---- these take effect with the next touch()

    /// Percent; glyphs and advances grow with it, leading and letter spacing don't.
    void setPointSize(double percent) { pointSize_ = percent; }
    void setFontParms(float height, float width);
    /// A kerning of zeros for so many characters, at most kMostKerning: a line of a file asks for
    /// any number, and no text that a project holds is longer.
    void setKerningLength(std::size_t length);
    /// What the pen moves by behind character `i`, in em. Nothing out of range.
    void setKerningAt(std::size_t i, double em);

    static constexpr std::size_t kMostKerning = 4096;

    const std::string& text() const { return text_; }
    Justify justify() const { return justify_; }
    double leading() const { return leading_; }
    double letterSpacing() const { return letterSpacing_; }
    double pointSize() const { return pointSize_; }
    std::span<const double> kerning() const { return kerning_; }
    const TextFont& font() const { return font_; }

    /// A letter where the layout puts it.
    struct Letter {
        unsigned char code;
        Vec2 pen;
    };
    /// All letters that have an outline, in order. Void when the text changes.
    std::span<const Letter> letters();

    void touch() override;
    InputProfile2* inputProfile() override;
    const Mesh2* getShape(double tolerance, double hardAngle, std::uint32_t& stamp) override;

  protected:
    void prepare() override;
    Result flatten(double tolerance, double hardAngle, Mesh2& shape) override;

  private:
    struct Commands;
    struct Line {
        std::string_view text;
        std::size_t first;  // character index of its first
    };

    void layOut();
    double widthOf(const Line& line, double spacing) const;
    void setLine(const Line& line, double spacing, Vec2& pen);
    double advanceOf(char c) const;
    double kerningAt(std::size_t i) const { return i < kerning_.size() ? kerning_[i] : 0.0; }
    InputProfile2 sizedOutline(unsigned char code) const;
    Result writeFont(SceneStream& stream);

    Justify justify_ = Justify::kCenter;
    double leading_ = 1.2;
    double letterSpacing_ = 0.0;
    bool hasText_ = false;
    std::string text_;
    std::vector<double> kerning_;
    double pointSize_ = 100.0;
    TextFont font_;
    TextFont::Glyph* currentGlyph_ = nullptr;  // that the stream is filling

    std::vector<Letter> letters_;
    double letterScale_ = 1.0;   // of their outlines: later sizes wait for the next layout
    bool laidOut_ = false;       // letters_ are up to date
    bool curvesBuilt_ = false;   // and outline() is too
    std::size_t pointsDue_ = 0;  // of the curve that the stream is filling
};

}  // namespace orvin
