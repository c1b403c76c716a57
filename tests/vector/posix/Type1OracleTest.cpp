// The Type 1 fonts that are installed, against FreeType's unscaled outlines, point by point.
#include <ft2build.h>
#include <gtest/gtest.h>
#include FT_MODULE_H
#include FT_TYPE1_TABLES_H

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <set>

#include "tests/support/TempFolder.h"
#include "tests/vector/TinyType1.h"
#include "tests/vector/posix/FreeTypeFace.h"

namespace orvin {
namespace {

using namespace test;
namespace fs = std::filesystem;

/// Those of the packages that ./dev test installs (URW's base fonts, Latin Modern), those that come
/// with other things, and those below the folder that ORVIN_TYPE1_FONTS names.
std::set<fs::path> installedFonts() {
    std::set<fs::path> fonts;  // some have a link in a second folder
    std::vector<fs::path> folders = {"/usr/share/fonts/X11/Type1", "/usr/share/groff",
                                     "/usr/share/texmf/fonts/type1"};
    if (const char* const more = std::getenv("ORVIN_TYPE1_FONTS")) folders.emplace_back(more);
    for (const fs::path& folder : folders) {
        std::error_code error;
        for (const auto& entry : fs::recursive_directory_iterator(folder, error)) {
            const fs::path extension = entry.path().extension();
            if (extension == ".pfb" || extension == ".pfa")
                fonts.insert(fs::canonical(entry.path()));
        }
    }
    return fonts;
}

/// A font with an encoding of the test's own, so that every glyph has a code.
class Recoded {
  public:
    explicit Recoded(const std::string& file) {
        if (file[0] != '\x80') {
            const std::size_t eexec = file.find("eexec") + 5;
            clear_ = file.substr(0, eexec);
            rest_ = file.substr(eexec);
            return;
        }
        std::size_t length = 0;
        for (unsigned i = 0; i < 4; ++i)
            length |= std::size_t{static_cast<std::uint8_t>(file[2 + i])} << 8 * i;
        clear_ = file.substr(6, length);
        rest_ = file.substr(6 + length);
        segments_ = true;
    }
    std::string with(const std::vector<std::string>& names) const {
        std::string clear = clear_;
        const std::size_t at = clear.find("/Encoding");
        clear.replace(at, 9, "/Was");
        std::string vector = "/Encoding " + std::to_string(names.size()) + " array\n";
        for (std::size_t i = 0; i < names.size(); ++i)
            vector += "dup " + std::to_string(i) + "/" + names[i] + " put\n";
        clear.insert(at, vector + "readonly def ");
        return (segments_ ? pfbSegment(1, clear) : clear) + rest_;
    }

  private:
    std::string clear_;
    std::string rest_;
    bool segments_ = false;
};

std::string decrypted(const std::string& cipher, std::uint16_t key, std::size_t lead) {
    std::string plain;
    std::uint16_t state = key;
    for (const char c : cipher) {
        const auto byte = static_cast<std::uint8_t>(c);
        plain += static_cast<char>(byte ^ (state >> 8));
        state = static_cast<std::uint16_t>((byte + std::uint32_t{state}) * 52845U + 22719U);
    }
    return plain.substr(std::min(lead, plain.size()));
}

/// Glyphs that look otherwise here on purpose: those that divide, and those that are assembled.
enum class Own { kNo, kDiv, kSeac };

/// Finds them, apart from the reader under test.
class OwnWays {
  public:
    explicit OwnWays(const std::string& pfb) {
        const std::size_t start = pfb.find("\x80\x02", pfb.find("eexec"));
        if (start == std::string::npos) return;  // text
        text_ = decrypted(pfb.substr(start + 6), 55665, 4);
        const std::size_t glyphs = text_.find("/CharStrings");
        const std::size_t lenIV = text_.find("/lenIV ");
        if (lenIV < glyphs) lead_ = static_cast<std::size_t>(std::stoi(text_.substr(lenIV + 7, 4)));
        for (std::size_t at = text_.find("/Subrs"); (at = text_.find("dup ", at)) < glyphs;) {
            const std::size_t number = at += 4;
            std::string code;
            if (readCode(number, at, code)) subrs_.push_back(wayOf(code));
        }
        for (std::size_t at = glyphs; (at = text_.find('/', at + 1)) != std::string::npos;) {
            const std::size_t name = at + 1;
            std::string code;
            if (readCode(name, at, code))
                glyphs_.try_emplace(text_.substr(name, text_.find(' ', name) - name), wayOf(code));
        }
    }

    Own of(const std::string& glyph) const {
        const auto found = glyphs_.find(glyph);
        return found != glyphs_.end() ? found->second : Own::kNo;
    }

  private:
    /// "NAME LENGTH RD BYTES" from `name` on; `end` gets the place behind.
    bool readCode(std::size_t name, std::size_t& end, std::string& code) const {
        const std::size_t blank = text_.find(' ', name);
        const std::size_t data = text_.find(' ', text_.find(' ', blank + 1) + 1) + 1;
        int length = 0;
        if (data < name || !readWhole(text_.substr(blank + 1, 6), length) || length < 0)
            return false;
        end = data + static_cast<std::size_t>(length);
        code = decrypted(text_.substr(data, static_cast<std::size_t>(length)), 4330, lead_);
        return true;
    }

    /// Subroutines come before those that call them, but for hints.
    Own wayOf(const std::string& code) const {
        int number = 0;
        for (std::size_t i = 0; i < code.size(); ++i) {
            const auto byte = [&](std::size_t k) {
                return k < code.size() ? static_cast<std::uint8_t>(code[k]) : 0;
            };
            const int v = byte(i);
            if (v == 12 && byte(i + 1) == 12) return Own::kDiv;
            if (v == 12 && byte(i + 1) == 6) return Own::kSeac;
            const auto subr = static_cast<std::size_t>(number);
            if (v == 10 && subr < subrs_.size() && subrs_[subr] != Own::kNo) return subrs_[subr];
            if (v >= 32) number = v <= 246 ? v - 139 : (v - 247) * 256 + byte(i + 1) + 108;
            i += v == 255 ? 4U : v > 246 || v == 12 ? 1U : 0U;
        }
        return Own::kNo;
    }

    std::string text_;
    std::size_t lead_ = 4;
    std::vector<Own> subrs_;
    std::map<std::string, Own> glyphs_;
};

Library openPlainLibrary() {
    Library library = openLibrary();
    // The interpreter that keeps all points as they are.
    FT_UInt plain = 0;
    FT_Property_Set(library.get(), "type1", "hinting-engine", &plain);
    return library;
}

bool samePlace(const GlyphPoint& a, const GlyphPoint& b) {
    return a.x == b.x && a.y == b.y;
}

/// Contours that don't come back to their start, be it by a point or by a curve with its handles on
/// its ends, and without lines of no length, which FreeType drops; a moveto alone is no contour.
Loops plainContours(Loops contours) {
    const auto noLine = [](const GlyphPoint& a, const GlyphPoint& b) {
        return a.onCurve != 0 && b.onCurve != 0 && samePlace(a, b);
    };
    for (auto& points : contours) {
        points.erase(std::unique(points.begin(), points.end(), noLine), points.end());
        if (points.size() > 1 && points.back().onCurve != 0 && samePlace(points.back(), points[0]))
            points.pop_back();
        const std::size_t n = points.size();
        if (n > 3 && points[n - 1].onCurve == 0 && samePlace(points[n - 1], points[0]) &&
            points[n - 2].onCurve == 0 && samePlace(points[n - 2], points[n - 3]))
            points.resize(n - 2);
    }
    std::erase_if(contours, [](const auto& points) { return points.size() < 2; });
    return contours;
}

/// FreeType's answer for one font, and how ours differs.
class Comparison {
  public:
    int fonts = 0;
    int compared = 0;
    std::map<Own, int> onPurpose;

    void compare(const Library& library, const fs::path& path) {
        const std::string bytes = contentOf(path);
        const Face face = openFace(library, bytes);
        if (!face) return;  // PostScript that makes a font of another
        ++fonts;
        const OwnWays own(bytes);
        std::map<std::string, FT_UInt> numbers;  // the first of a name
        for (FT_UInt i = 0; i < static_cast<FT_UInt>(face->num_glyphs); ++i) {
            char name[256];
            ASSERT_EQ(FT_Get_Glyph_Name(face.get(), i, name, sizeof name), 0);
            numbers.try_emplace(name, i);
        }
        const Recoded recoded(bytes);
        for (auto next = numbers.begin(); next != numbers.end();) {
            std::vector<std::string> chunk;
            const auto first = next;
            for (; next != numbers.end() && chunk.size() < 256; ++next)
                chunk.push_back(next->first);
            const FontFile font = parsedType1(recoded.with(chunk));
            ASSERT_FALSE(font.hasError()) << path << font.errorText();
            int code = 0;
            for (auto glyph = first; glyph != next; ++glyph, ++code) {
                ASSERT_EQ(FT_Load_Glyph(face.get(), glyph->second, FT_LOAD_NO_SCALE), 0);
                compareGlyph(font, font.glyphForCode(code), face->glyph, own.of(glyph->first),
                             path.string() + ' ' + glyph->first);
            }
        }
    }

  private:
    void compareGlyph(const FontFile& font, const FontGlyph* glyph, FT_GlyphSlot theirs, Own own,
                      const std::string& what) {
        ASSERT_NE(glyph, nullptr) << what;
        ++compared;
        const Loops ours = plainContours(loopsOf(font, *glyph));
        const Loops freeTypes = plainContours(loopsOfOutline(theirs->outline));
        if (ours == freeTypes && glyph->advanceWidth == theirs->metrics.horiAdvance) return;
        if (own == Own::kNo) {
            EXPECT_EQ(written(ours), written(freeTypes)) << what;
            EXPECT_EQ(glyph->advanceWidth, theirs->metrics.horiAdvance) << what;
        }
        ++onPurpose[own];
    }
};

TEST(Type1Oracle, OutlinesAndAdvancesAreFreeTypes) {
    const Library library = openPlainLibrary();
    Comparison all;
    for (const fs::path& path : installedFonts())
        all.compare(library, path);
    ASSERT_GE(all.fonts, 120) << "the font packages are missing: ./dev test installs them";
    std::printf(
        "%d fonts, %d glyphs; different on purpose: %d that divide, %d that are assembled\n",
        all.fonts, all.compared, all.onPurpose[Own::kDiv], all.onPurpose[Own::kSeac]);
    EXPECT_GT(all.compared, 80000);
    EXPECT_GT(all.onPurpose[Own::kDiv], 10000);  // Latin Modern's widths
}

TEST(Type1Oracle, BothDressesAreTheSameFont) {
    ASSERT_EQ(std::system("t1ascii --version > /dev/null"), 0)
        << "t1utils are missing: ./dev test installs them";
    const TempFolder folder;
    int turned = 0;
    for (const fs::path& path : installedFonts()) {
        if (path.extension() != ".pfb") continue;
        const fs::path pfa = folder.path() / "font.pfa";
        const fs::path pfb = folder.path() / "font.pfb";
        const std::string command = "t1ascii '" + path.string() + "' '" + pfa.string() +
                                    "' && t1binary '" + pfa.string() + "' '" + pfb.string() + "'";
        ASSERT_EQ(std::system(command.c_str()), 0);
        const FontFile binary(path.string(), 0);
        ASSERT_FALSE(binary.hasError()) << path;
        ASSERT_GT(binary.glyphCount(), 0u) << path;
        for (const fs::path& other : {pfa, pfb}) {
            const FontFile font(other.string(), 0);
            ASSERT_EQ(font.glyphCount(), binary.glyphCount()) << path;
            EXPECT_EQ(font.name, binary.name);
            EXPECT_EQ(font.heightUnits(), binary.heightUnits());
            EXPECT_EQ(font.widthUnits(), binary.widthUnits());
            for (std::size_t i = 0; i < font.glyphCount(); ++i) {
                EXPECT_EQ(font.glyphAt(i).code, binary.glyphAt(i).code);
                EXPECT_EQ(loopsOf(font, font.glyphAt(i)), loopsOf(binary, binary.glyphAt(i)))
                    << path << ' ' << font.glyphAt(i).glyphName;
            }
        }
        ++turned;
    }
    EXPECT_GE(turned, 120);
}

}  // namespace
}  // namespace orvin
