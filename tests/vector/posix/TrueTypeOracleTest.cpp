// The TrueType fonts of several packages against FreeType's unscaled outlines, point by point.
#include <ft2build.h>
#include <gtest/gtest.h>
#include FT_ADVANCES_H
#include FT_SFNT_NAMES_H
#include FT_TRUETYPE_TABLES_H

#include <algorithm>
#include <filesystem>
#include <map>

#include "tests/vector/TinyTrueType.h"
#include "tests/vector/posix/FreeTypeFace.h"
#include "vector/font/SfntCursor.h"

namespace orvin {
namespace {

using namespace test;
namespace fs = std::filesystem;

std::vector<fs::path> installedFonts() {
    std::vector<fs::path> fonts;
    for (const char* package : {"dejavu", "freefont", "liberation", "noto", "ttf-bitstream-vera"}) {
        std::error_code error;
        const fs::path folder = fs::path("/usr/share/fonts/truetype") / package;
        for (const auto& entry : fs::directory_iterator(folder, error))
            if (entry.path().extension() == ".ttf") fonts.push_back(entry.path());
    }
    std::sort(fonts.begin(), fonts.end());
    return fonts;
}

std::string tableOf(const Face& face, FT_ULong tag) {
    FT_ULong size = 0;
    if (FT_Load_Sfnt_Table(face.get(), tag, 0, nullptr, &size) != 0) return {};
    std::string bytes(size, '\0');
    FT_Load_Sfnt_Table(face.get(), tag, 0, reinterpret_cast<FT_Byte*>(bytes.data()), &size);
    return bytes;
}

/// The font with its first character map made unreadable: all glyphs keep their numbers.
std::string withoutMap(std::string bytes) {
    SfntCursor directory(asBytes(bytes), 4);
    int count = directory.u16();
    directory.skip(6);
    for (; count > 0; --count) {
        const bool found = directory.u32() == FT_MAKE_TAG('c', 'm', 'a', 'p');
        directory.skip(4);
        const std::uint64_t table = directory.u32();
        directory.skip(4);
        if (!found) continue;
        const std::uint64_t subtable = table + SfntCursor(asBytes(bytes), table + 8).u32();
        bytes[static_cast<std::size_t>(subtable)] = 1;  // a format above 255
    }
    return bytes;
}

/// True where ours are FreeType's moved sideways by dx, each with its first point once more.
bool sameButMoved(const Loops& ours, Loops theirs, int dx) {
    for (auto& loop : theirs) {
        for (GlyphPoint& p : loop)
            p.x += dx;
        loop.push_back(loop.front());
    }
    return ours == theirs;
}

/// Why a composite glyph may look otherwise than FreeType's.
enum class Own { kNo, kByteOffset, kNegativeTerm, kPoints, kScaledOffset, kOrder };

/// What glyphs say of themselves, read apart from the reader under test.
struct GlyphHeaders {
    std::vector<Own> own;                         // by glyph
    std::vector<std::vector<std::size_t>> parts;  // by glyph
    std::vector<bool> sharedMetrics;              // by glyph: those of a component
    std::vector<int> xMin;                        // by glyph, as its header says

    GlyphHeaders(const std::string& glyf, const std::string& loca, int numGlyphs, bool longOffsets)
        : own(static_cast<std::size_t>(numGlyphs), Own::kNo),
          parts(own.size()),
          sharedMetrics(own.size(), false),
          xMin(own.size(), 0) {
        for (std::size_t i = 0; i < own.size(); ++i) {
            SfntCursor at(asBytes(loca), i * (longOffsets ? 4 : 2));
            const std::uint64_t start = longOffsets ? at.u32() : at.u16() * 2u;
            const std::uint64_t end = longOffsets ? at.u32() : at.u16() * 2u;
            SfntCursor in(asBytes(glyf), start);
            if (end <= start) continue;
            const int contours = in.i16();
            xMin[i] = in.i16();
            in.skip(6);
            if (contours == -1) readParts(in, i);
        }
        for (std::size_t i = 0; i < own.size(); ++i) {
            for (const std::size_t part : parts[i]) {
                if (own[part] != Own::kNo) own[i] = own[part];
                if (part > i && !parts[part].empty()) own[i] = Own::kOrder;
            }
        }
    }

  private:
    void readParts(SfntCursor& in, std::size_t i) {
        unsigned flags = 0;
        do {
            flags = in.u16();
            parts[i].push_back(in.u16());
            const bool word = (flags & 1) != 0;
            const int a = word ? in.i16() : in.u8();
            const int b = word ? in.i16() : in.u8();
            if (!word && std::max(a, b) > 127) own[i] = Own::kByteOffset;
            if ((flags & 2) == 0) own[i] = Own::kPoints;
            if ((flags & 0x800) != 0) own[i] = Own::kScaledOffset;
            if ((flags & 0x200) != 0) sharedMetrics[i] = true;
            const int terms = (flags & 8) != 0 ? 1 : (flags & 64) != 0 ? 2 : (flags & 128) / 32;
            for (int t = 0; t < terms; ++t)
                if (in.i16() < 0) own[i] = Own::kNegativeTerm;
        } while ((flags & 32) != 0);
    }
};

TEST(TrueTypeOracle, OutlinesAndAdvancesAreFreeTypes) {
    const Library library = openLibrary();
    const std::vector<fs::path> fonts = installedFonts();
    ASSERT_GE(fonts.size(), 20u) << "the font packages are missing: ./dev test installs them";
    int compared = 0;
    std::map<Own, int> onPurpose;
    for (const fs::path& path : fonts) {
        const std::string bytes = contentOf(path);
        const Face face = openFace(library, bytes);
        ASSERT_TRUE(face) << path;
        const FontFile font = parsed(withoutMap(bytes));
        ASSERT_EQ(font.glyphCount(), static_cast<std::size_t>(face->num_glyphs)) << path;
        EXPECT_EQ(font.xMin, face->bbox.xMin);
        EXPECT_EQ(font.yMin, face->bbox.yMin);
        EXPECT_EQ(font.xMax, face->bbox.xMax);
        EXPECT_EQ(font.yMax, face->bbox.yMax);
        const auto* const head =
            static_cast<const TT_Header*>(FT_Get_Sfnt_Table(face.get(), FT_SFNT_HEAD));
        const GlyphHeaders headers(tableOf(face, FT_MAKE_TAG('g', 'l', 'y', 'f')),
                                   tableOf(face, FT_MAKE_TAG('l', 'o', 'c', 'a')),
                                   static_cast<int>(face->num_glyphs),
                                   head->Index_To_Loc_Format != 0);
        int wrong = 0;
        for (FT_UInt i = 0; i < static_cast<FT_UInt>(face->num_glyphs); ++i) {
            ASSERT_EQ(FT_Load_Glyph(face.get(), i, FT_LOAD_NO_SCALE), 0) << path << ' ' << i;
            const FontGlyph& glyph = font.glyphAt(i);
            ++compared;
            const Loops ours = loopsOf(font, glyph);
            const Loops theirs = loopsOfOutline(face->glyph->outline);
            // FreeType moves the left end of the glyph's box to the left side bearing.
            int dx = headers.xMin[i] - glyph.leftSideBearing;
            if (headers.sharedMetrics[i] && !ours.empty() && !theirs.empty())
                dx = ours[0][0].x - theirs[0][0].x;
            const bool same = sameButMoved(ours, theirs, dx);
            if (!same && headers.own[i] != Own::kNo) {
                ++onPurpose[headers.own[i]];
                continue;
            }
            if (!same && ++wrong < 4) ADD_FAILURE() << path << " glyph " << i;
            FT_Fixed advance = 0;
            FT_Get_Advance(face.get(), i, FT_LOAD_NO_SCALE, &advance);
            if (glyph.advanceWidth != advance && ++wrong < 4)
                ADD_FAILURE() << path << " advance of " << i << ' ' << glyph.advanceWidth << ' '
                              << advance;
        }
    }
    std::printf(
        "%zu fonts, %d glyphs; different on purpose: %d byte offsets, %d negative terms, %d points "
        "that meet, %d scaled offsets, %d composites of later ones\n",
        fonts.size(), compared, onPurpose[Own::kByteOffset], onPurpose[Own::kNegativeTerm],
        onPurpose[Own::kPoints], onPurpose[Own::kScaledOffset], onPurpose[Own::kOrder]);
    EXPECT_GT(onPurpose[Own::kByteOffset], 1000);  // common: accents that move left
    EXPECT_GT(onPurpose[Own::kNegativeTerm], 100);
}

TEST(TrueTypeOracle, NamesAndCodesAreFreeTypes) {
    const Library library = openLibrary();
    int mapped = 0;
    for (const fs::path& path : installedFonts()) {
        const std::string bytes = contentOf(path);
        const Face face = openFace(library, bytes);
        ASSERT_TRUE(face) << path;
        std::string name;
        for (FT_UInt i = 0; i < FT_Get_Sfnt_Name_Count(face.get()); ++i) {
            FT_SfntName record;
            ASSERT_EQ(FT_Get_Sfnt_Name(face.get(), i, &record), 0);
            const bool english = record.platform_id == 1 && record.language_id == 0;
            if (record.name_id != 4 || !(english || record.language_id == 1033)) continue;
            name.clear();
            for (FT_UInt k = record.platform_id == 3 ? 1 : 0; k < record.string_len;
                 k += record.platform_id == 3 ? 2 : 1)
                name += static_cast<char>(record.string[k]);
        }
        const FontFile font = parsed(bytes);
        EXPECT_EQ(font.name, name) << path;

        // The font's first map, whatever it is for; ours ends before the first code that only the
        // last segment has.
        const FontFile byNumber = parsed(withoutMap(bytes));
        ASSERT_GT(face->num_charmaps, 0) << path;
        ASSERT_EQ(FT_Set_Charmap(face.get(), face->charmaps[0]), 0) << path;
        for (int code = 0; code < 256; ++code) {
            const FT_UInt number = FT_Get_Char_Index(face.get(), static_cast<FT_ULong>(code));
            const FontGlyph* const glyph = font.glyphForCode(code);
            if (glyph == nullptr) {
                EXPECT_EQ(number, 0u) << path << ' ' << code;
                continue;
            }
            if (number != 0) ++mapped;
            EXPECT_EQ(glyph->firstContour, byNumber.glyphAt(number).firstContour)
                << path << ' ' << code;
            EXPECT_EQ(glyph->contourCount, byNumber.glyphAt(number).contourCount);
            EXPECT_EQ(glyph->advanceWidth, byNumber.glyphAt(number).advanceWidth);
        }
    }
    EXPECT_GT(mapped, 2000);
}

}  // namespace
}  // namespace orvin
