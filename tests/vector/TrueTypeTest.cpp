// TrueType fonts: what the tables say, what the reader does on purpose in its own way, and files
// that lie.
#include <gtest/gtest.h>

#include <cstdio>

#include "tests/support/TempFolder.h"
#include "tests/vector/TinyTrueType.h"
#include "toolkit/platform/Platform.h"

namespace orvin {

void PrintTo(const GlyphPoint& p, std::ostream* out) {
    *out << '(' << p.x << ' ' << p.y << (p.onCurve != 0 ? ")" : ") off");
}

namespace {

using namespace test;

std::vector<int> firstXs(const FontFile& font) {
    std::vector<int> xs;
    for (std::size_t i = 0; i < font.glyphCount(); ++i) {
        const Loops loops = loopsOf(font, font.glyphAt(i));
        xs.push_back(loops.empty() ? -1 : loops[0][0].x);
    }
    return xs;
}

// Glyph n is a square at x = n, so that a code's glyph shows in its outline.
TinyTrueType numberedGlyphs(int count) {
    TinyTrueType font;
    for (int i = 0; i < count; ++i)
        font.glyphs.push_back(squareGlyph(i, 0, 10));
    return font;
}

TEST(TrueType, ReadsNameBoxOutlinesAndMetrics) {
    TinyTrueType tiny = numberedGlyphs(3);
    tiny.glyphs[1] = simpleGlyph({{{5, 5}, {50, 90, 0}, {95, 5}}, {{1, 2}}});
    tiny.metrics = {{600, 20}, {300, -5}};
    for (const bool longOffsets : {false, true}) {
        tiny.longOffsets = longOffsets;
        const FontFile font = parsed(tiny.build());
        EXPECT_EQ(font.name, "Tiny");
        EXPECT_EQ(font.heightUnits(), 1000);
        EXPECT_EQ(font.widthUnits(), 1000);
        ASSERT_EQ(font.glyphCount(), 3u);
        EXPECT_EQ(loopsOf(font, font.glyphAt(1)),
                  (Loops{{{5, 5}, {50, 90, 0}, {95, 5}, {5, 5}}, {{1, 2}, {1, 2}}}));
        const FontGlyph& last = font.glyphAt(2);  // past the long metrics
        EXPECT_EQ(last.advanceWidth, 300);
        EXPECT_EQ(last.leftSideBearing, 7);
        EXPECT_EQ(font.glyphForCode(2), &last);
        EXPECT_EQ(font.glyphForCode(3), nullptr);
    }
}

TEST(TrueType, ShortCoordinatesAndRunsOfFlags) {
    // Five points of which a run of flags makes seven: bytes to the right and up, then words.
    const std::string flags = {0x37, 0x3f, 5};
    const std::string glyph =
        words({1, 0, 0, 0, 0, 4, 0}) + flags + "\x01\x02\x03\x04\x05" + "\x06\x07\x08\x09\x0a";
    TinyTrueType tiny;
    tiny.glyphs = {glyph, words({1, 0, 0, 0, 0, 1, 0}) + std::string("\x07\x31\x09\x08", 4)};
    const FontFile font = parsed(tiny.build());
    EXPECT_EQ(loopsOf(font, font.glyphAt(0)),
              (Loops{{{1, 6}, {3, 13}, {6, 21}, {10, 30}, {15, 40}, {1, 6}}}));
    EXPECT_EQ(loopsOf(font, font.glyphAt(1)), (Loops{{{-9, -8}, {-9, -8}, {-9, -8}}}));
}

TEST(TrueType, TablesEndTheReadWhereOneIsMissing) {
    const auto without = [](const char* tag) {
        TinyTrueType tiny = numberedGlyphs(2);
        tiny.tables[tag] = "";
        return parsed(tiny.build());
    };
    EXPECT_EQ(without("name").glyphCount(), 0u);
    EXPECT_EQ(without("name").heightUnits(), 0);
    EXPECT_EQ(without("glyf").glyphCount(), 0u);
    EXPECT_EQ(without("glyf").heightUnits(), 1000);
    const FontFile unmeasured = without("hmtx");
    EXPECT_EQ(unmeasured.glyphCount(), 2u);
    EXPECT_EQ(unmeasured.glyphAt(1).advanceWidth, 0);
    EXPECT_FALSE(unmeasured.hasError());
    EXPECT_EQ(without("post").glyphCount(), 2u);  // never there
}

TEST(TrueType, NameIsTheLastFullOneInEnglish) {
    struct Case {
        const char* what;
        std::string records;
        const char* expected;
    };
    const std::string text = std::string("Mac") + std::string("\0W\0i\0n", 6);
    const auto table = [&](const std::vector<int>& records) {
        const int count = static_cast<int>(records.size()) / 6;
        return words({0, count, 6 + 12 * count}) + words(records) + text;
    };
    const Case cases[] = {
        {"Macintosh", table({1, 0, 0, 4, 3, 0}), "Mac"},
        {"later wins", table({1, 0, 0, 4, 3, 0, 3, 1, 1033, 4, 6, 3}), "Win"},
        {"another language", table({3, 1, 1031, 4, 6, 3}), ""},
        {"family only", table({1, 0, 0, 1, 3, 0}), ""},
        {"unknown platform", table({4, 0, 1033, 4, 3, 0}), ""},
        {"too long", table({1, 0, 0, 4, 2049, 0}), ""},
    };
    for (const Case& c : cases) {
        TinyTrueType tiny = numberedGlyphs(1);
        tiny.name = c.records;
        EXPECT_EQ(parsed(tiny.build()).name, c.expected) << c.what;
    }
}

TEST(TrueType, CharacterMaps) {
    struct Case {
        const char* what;
        std::string cmap;
        std::vector<int> glyphs;  // by code; one that isn't there shows glyph 0
    };
    std::string bytes(262, '\0');
    bytes[2] = 3;
    std::vector<int> keys(256, 0);
    keys[1] = 8;  // a lead byte
    const auto format4 = [](const std::vector<int>& segments, const std::vector<int>& array) {
        // Columns: end, start, delta, range offset.
        const int count = static_cast<int>(segments.size()) / 4;
        std::vector<int> table = {
            4, 16 + 8 * count + 2 * static_cast<int>(array.size()), 0, 2 * count, 0, 0, 0};
        for (int column = 0; column < 4; ++column) {
            for (int i = 0; i < count; ++i)
                table.push_back(segments[static_cast<std::size_t>(4 * i + column)]);
            if (column == 0) table.push_back(0);
        }
        return cmapOf(words(table) + words(array));
    };
    const std::vector<int> bytesExpected = [&] {
        std::vector<int> expected(262, 0);
        expected[2] = 3;
        return expected;
    }();
    std::vector<int> above(256, 0);
    const Case cases[] = {
        {"bytes, and six behind the last code", cmapOf(words({0, 262, 0}) + bytes), bytesExpected},
        {"high bytes: single ones by glyph number",
         cmapOf(words({2, 518 + 8 + 6, 0}) + words(keys) + std::string(16, '\0') +
                words({0, 2, 3, 1})),
         {0, 0, 3, 0}},
        {"trimmed", trimmedMap(2, {3, 1, 9}), {0, 0, 3, 1, 0}},
        {"segments up to the last one", format4({2, 1, 1, 0, 65535, 65535, 1, 0}, {}), {0, 2, 3}},
        {"segment with an array, an entry of 0 in it",
         format4({2, 0, 1, 4, 65535, 65535, 1, 0}, {1, 0, 2}),
         {2, 0, 3}},
        {"negative result", format4({1, 0, -5, 0, 65535, 65535, 1, 0}, {}), {0, 0}},
        {"array entry out of range", format4({1, 0, 0, 9999, 65535, 65535, 1, 0}, {}), {0, 0}},
        {"sentinel only", format4({65535, 65535, 1, 0}, {}), {0, 1, 2, 3}},
        {"symbols: no code below 256", format4({61694, 61441, 0, 0, 65535, 65535, 1, 0}, {}),
         above},
        {"no subtable", words({0, 0}), {0, 1, 2, 3}},
        {"format 1", cmapOf(words({1, 20, 0})), {0, 1, 2, 3}},
        {"format 12", cmapOf(words({12, 0, 0})), {0, 1, 2, 3}},
    };
    for (const Case& c : cases) {
        TinyTrueType tiny = numberedGlyphs(4);
        tiny.cmap = c.cmap;
        const FontFile font = parsed(tiny.build());
        EXPECT_EQ(firstXs(font), c.glyphs) << c.what;
        for (std::size_t i = 0; i < font.glyphCount(); ++i)
            EXPECT_EQ(font.glyphAt(i).code, static_cast<int>(i)) << c.what;
    }
}

TEST(TrueType, CompositeGlyphs) {
    constexpr int kWords = 1;
    constexpr int kOffsets = 2;
    const auto bytes = [](int a, int b) {
        return std::string{static_cast<char>(a), static_cast<char>(b)};
    };
    const auto fraction = [](double v) { return be16(static_cast<int>(v * 16384)); };
    struct Case {
        const char* what;
        std::vector<ComponentRecord> records;
        Loops expected;
    };
    // Glyph 0 is the loop (4 0) (8 4) (0 8), glyph 3 the composite itself.
    const Loops base = {{{4, 0}, {8, 4}, {0, 8}, {4, 0}}};
    const Case cases[] = {
        {"word offsets",
         {{kWords | kOffsets, 0, words({-3, 2})}},
         {{{1, 2}, {5, 6}, {-3, 10}, {1, 2}}}},
        {"byte offsets are never negative",
         {{kOffsets, 0, bytes(200, 255)}},
         {{{204, 255}, {208, 259}, {200, 263}, {204, 255}}}},
        {"one scale, then the offset",
         {{kOffsets | 8, 0, bytes(1, 1) + fraction(0.5)}},
         {{{3, 1}, {5, 3}, {1, 5}, {3, 1}}}},
        {"two scales",
         {{kOffsets | 64, 0, bytes(0, 0) + fraction(0.5) + fraction(1.5)}},
         {{{2, 0}, {4, 6}, {0, 12}, {2, 0}}}},
        {"matrix: x' = a x + c y, y' = b x + d y",
         {{kOffsets | 128, 0,
           bytes(0, 0) + fraction(1) + fraction(0.5) + fraction(0.25) + fraction(1)}},
         {{{4, 2}, {9, 8}, {2, 8}, {4, 2}}}},
        // -1 in 16.16 times 4, in 32 bits and shifted without sign: 65536 - 4.
        {"negative terms don't mirror",
         {{kOffsets | 8, 0, bytes(0, 0) + fraction(-1)}},
         {{{65532, 0}, {65528, 65532}, {0, 65528}, {65532, 0}}}},
        // Point 4 of the parent is the first of its second loop; the repeats count.
        {"points that meet",
         {{kOffsets, 0, bytes(0, 0)}, {kOffsets, 0, bytes(20, 0)}, {0, 0, bytes(4, 2)}},
         {base[0], {{24, 0}, {28, 4}, {20, 8}, {24, 0}}, {{28, -8}, {32, -4}, {24, 0}, {28, -8}}}},
        {"points that aren't there", {{kWords, 0, words({77, -1})}}, base},
        {"itself: what it had before",
         {{kOffsets, 0, bytes(0, 0)}, {kOffsets, 3, bytes(0, 1)}},
         {base[0], {{4, 1}, {8, 5}, {0, 9}, {4, 1}}}},
        {"a composite of a lower number",
         {{kOffsets, 2, bytes(0, 0)}},
         {{{14, 0}, {18, 4}, {10, 8}, {14, 0}}}},
        {"a composite of a higher number is still empty", {{kOffsets, 4, bytes(0, 0)}}, {}},
        {"a number out of range", {{kOffsets, 999, bytes(0, 0)}, {kOffsets, 0, bytes(0, 0)}}, base},
        {"itself only", {{kOffsets, 3, bytes(0, 0)}}, {}},
    };
    for (const Case& c : cases) {
        TinyTrueType tiny = numberedGlyphs(5);
        tiny.glyphs[0] = simpleGlyph({{{4, 0}, {8, 4}, {0, 8}}});
        tiny.glyphs[2] = compositeGlyph({{kOffsets, 0, bytes(10, 0)}});
        tiny.glyphs[3] = compositeGlyph(c.records);
        tiny.glyphs[4] = compositeGlyph({{kOffsets, 3, bytes(0, 0)}});
        const FontFile font = parsed(tiny.build());
        EXPECT_EQ(loopsOf(font, font.glyphAt(3)), c.expected) << c.what;
    }
}

// The curves of a glyph as text: l for Linear, b for Bezier, with the number of points, < and >
// for ends that are attached, o for a curve that closes itself.
std::string curvesOf(const CompositeCurve2& path) {
    std::string text;
    for (const Curve2& curve : path.curves) {
        text += curve.attachedHead ? "<" : " ";
        text += curve.type() == Curve2::Type::kBezier ? "b" : "l";
        text += std::to_string(curve.points().size());
        text += curve.attachedTail ? ">" : curve.closed ? "o" : " ";
    }
    return text;
}

TEST(FontFile, MakesCurvesOfContours) {
    struct Case {
        const char* what;
        FontFile::Kind kind;
        std::vector<GlyphPoint> loop;
        const char* curves;
    };
    constexpr auto kTrueType = FontFile::Kind::kTrueType;
    constexpr auto kType1 = FontFile::Kind::kType1;
    const Case cases[] = {
        {"square", kTrueType, {{0, 0}, {0, 9}, {9, 9}, {9, 0}}, " l5o"},
        {"two points", kTrueType, {{0, 0}, {9, 0}}, " l3o"},
        {"one point", kTrueType, {{5, 5}}, " l2o"},
        {"line and curve", kTrueType, {{0, 0}, {9, 0}, {9, 9, 0}}, " l2><b3 "},
        {"curve and line", kTrueType, {{0, 0}, {9, 9, 0}, {9, 0}, {5, -1}}, " b3><l3 "},
        {"four control points in a run",
         kTrueType,
         {{0, 0}, {0, 8, 0}, {8, 8, 0}, {8, 0, 0}, {4, -4, 0}, {0, -4}},
         " b3><b3><b3><b3><l2 "},
        {"a run at the end", kTrueType, {{0, 0}, {8, 0}, {8, 8, 0}, {0, 8, 0}}, " l2><b3><b3 "},
        {"a control point first: it lies on the outline, its repeat bends",
         kTrueType,
         {{0, 0, 0}, {9, 0}, {9, 9}},
         " l3><b2 "},
        {"cubic", kType1, {{0, 0}, {0, 9, 0}, {9, 9, 0}, {9, 0}, {5, -5}}, " b4><l3 "},
    };
    for (const Case& c : cases) {
        FontFile font;
        font.kind = c.kind;
        font.table.addLoop(font.table.glyphs.emplace_back(), c.loop);
        InputProfile2 profile;
        font.makeCurves(font.glyphAt(0), profile, 0.5f);
        ASSERT_EQ(profile.paths.size(), 1u) << c.what;
        EXPECT_TRUE(profile.paths[0].closed);
        EXPECT_EQ(curvesOf(profile.paths[0]), c.curves) << c.what;
    }
}

TEST(FontFile, RunsOfControlPointsSplitHalfway) {
    FontFile font;
    font.kind = FontFile::Kind::kTrueType;
    const GlyphPoint loop[] = {{0, 0}, {0, 8, 0}, {8, 8, 0}, {8, 0}};
    font.table.addLoop(font.table.glyphs.emplace_back(), loop);
    InputProfile2 profile;
    font.makeCurves(font.glyphAt(0), profile, 0.5f);
    font.makeCurves(font.glyphAt(0), profile, 1.0f);  // adds
    ASSERT_EQ(profile.paths.size(), 2u);
    const auto first = profile.paths[0].curves[0].points();
    const auto second = profile.paths[0].curves[1].points();
    EXPECT_EQ(first[1], (Vec2{0, 4}));
    EXPECT_EQ(first[2], (Vec2{2, 4}));
    EXPECT_EQ(second[0], (Vec2{2, 4}));
    EXPECT_EQ(second[2], (Vec2{4, 0}));
}

TEST(FontFile, GoesByTheExtension) {
    const TempFolder folder;
    const std::string bytes = numberedGlyphs(2).build();
    const auto glyphsOf = [&](const char* name, bool write = true) {
        const std::filesystem::path path = folder.path() / name;
        if (write) {
            std::FILE* const file = platform::openFile(path, "wb");
            std::fwrite(bytes.data(), 1, bytes.size(), file);
            std::fclose(file);
        }
        const FontFile font(platform::textFromPath(path), 0);
        EXPECT_FALSE(font.hasError());
        return font.glyphCount();
    };
    EXPECT_EQ(glyphsOf("a.ttf"), 2u);
    EXPECT_EQ(glyphsOf("B.TTF"), 2u);
    EXPECT_EQ(glyphsOf("missing.ttf", false), 0u);
    testing::internal::CaptureStderr();
    EXPECT_EQ(FontFile("font", 0).glyphCount(), 0u);
    EXPECT_EQ(FontFile("x.otf", 0).kind, FontFile::Kind::kNone);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Unrecognized font file type: font\nUnrecognized font file type: x.otf\n");
}

TEST(TrueType, ReportsWhatItReads) {
    TinyTrueType tiny;
    tiny.glyphs = {"", simpleGlyph({{{0, 0}, {5, 0, 0}}}),
                   compositeGlyph({{2, 1, std::string(2, '\0')}}), words({0, 0, 0, 0, 0}),
                   words({-2, 0, 0, 0, 0})};
    tiny.cmap = trimmedMap(0, {1});
    const std::string bytes = tiny.build();
    testing::internal::CaptureStdout();
    parsed(bytes);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    setFontDiagnostics(true);
    testing::internal::CaptureStdout();
    parsed(bytes);
    setFontDiagnostics(false);
    const std::string report = testing::internal::GetCapturedStdout();
    std::size_t at = 0;
    for (const char* line :
         {"sfnt version: 00010000\nBuilding font table directory:\n  cmap @ 140, len: 24\n",
          "Parsing 'name' table:\n  Tiny\n", "  num glyphs: 5\n  max points: 0\n",
          "  format 6: Trimmed Character Map\n", "  units per em: 1000\n  x min: -10\n",
          "  location table format: 0\n", "  num horizontal metrics: 1\n",
          "  num location table entries: 6 (should equal: 5 + 1)\n", "    0 empty glyph (A)\n",
          "    1 simple glyph (1 curves, 2 points)\n    { [0 0] () [5 0] [] !! }\n",
          "    2 composite glyph\n      subglyph:   1\n", "    3 empty glyph (B)\n",
          "  unrecognized glyph type (numCountours: -2)\n", "    0: width:   500, lsb:     0\n",
          "-   1: width:   500, lsb:     7\n"}) {
        const std::size_t found = report.find(line, at);
        EXPECT_NE(found, std::string::npos) << line;
        if (found != std::string::npos) at = found;
    }
}

TEST(TrueType, FilesCutAnywhereEndThere) {
    TinyTrueType tiny = numberedGlyphs(3);
    tiny.cmap = trimmedMap(0, {0, 1, 2});
    tiny.tables["zzzz"] = simpleGlyph({{{1, 1}, {2, 2}, {3, 3}}});  // the last table
    const std::string whole = tiny.build();
    for (std::size_t size = 0; size < whole.size(); ++size)
        EXPECT_LE(parsed(whole.substr(0, size)).glyphCount(), 3u);

    // The glyph data last in the file, cut in the y of its third point.
    tiny.glyphs.resize(1);
    tiny.tables["zzzz"] = simpleGlyph({{{1, 1}, {2, 2}, {3, 3}, {4, 4}}});
    std::string file = tiny.build();
    const auto glyfOffset = static_cast<int>(file.find("glyf")) + 8;
    const auto lastOffset = file.find("zzzz") + 8;
    file.replace(static_cast<std::size_t>(glyfOffset), 4, file.substr(lastOffset, 4));
    const FontFile font = parsed(file.substr(0, file.size() - 3));
    EXPECT_EQ(loopsOf(font, font.glyphAt(0)), (Loops{{{1, 1}, {2, 2}, {1, 1}}}));
}

TEST(TrueType, LyingFilesCostNoMoreThanTheirSize) {
    // All 65535 glyphs lie at one place: 65536 points each, of 2 bytes for every 256 flags.
    std::string flags;
    for (int i = 0; i < 256; ++i)
        flags += std::string("\x39\xff", 2);
    const std::string huge = words({1, 0, 0, 0, 0, 65535, 0}) + flags;
    TinyTrueType tiny;
    tiny.glyphs = {huge};
    std::string loca;
    for (int i = 0; i < 65536; ++i)
        loca += be16(i % 2 * static_cast<int>(huge.size() / 2));
    tiny.tables["loca"] = loca;
    tiny.tables["maxp"] = be32(65536) + be16(65535) + std::string(8, '\0');
    const FontFile many = parsed(tiny.build());
    EXPECT_EQ(many.glyphCount(), 65535u);
    EXPECT_EQ(many.table.points(many.table.contours(many.glyphAt(0))[0]).size(), 65537u);

    // Each composite takes the one before it twice: 2 to the 60th squares, if anybody let it.
    TinyTrueType doubling;
    doubling.glyphs = {squareGlyph(0, 0, 10)};
    for (int i = 0; i < 60; ++i)
        doubling.glyphs.push_back(
            compositeGlyph({{2, i, std::string("\1\1", 2)}, {2, i, std::string(2, '\0')}}));
    const FontFile font = parsed(doubling.build());
    ASSERT_EQ(font.glyphCount(), 61u);
    EXPECT_EQ(font.glyphAt(10).contourCount, 1024u);
    std::size_t contours = 0;
    for (std::size_t i = 0; i < font.glyphCount(); ++i)
        contours += font.glyphAt(i).contourCount;
    EXPECT_LT(contours, 100000u);
}

}  // namespace
}  // namespace orvin
