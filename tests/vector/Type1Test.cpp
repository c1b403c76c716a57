// The Type 1 reader: what a charstring makes, which glyphs are kept, dresses and faults.
#include "vector/font/Type1Reader.h"

#include <gtest/gtest.h>

#include <fstream>

#include "tests/support/TempFolder.h"
#include "tests/vector/TinyType1.h"

namespace orvin {
namespace {

using namespace test;

std::string outlineOf(const FontFile& font, int code) {
    const FontGlyph* const glyph = font.glyphForCode(code);
    return glyph == nullptr ? "none" : written(loopsOf(font, *glyph));
}

const std::vector<std::string> kFlexSubrs = {"3 0 callothersubr pop pop setcurrentpoint return",
                                             "0 1 callothersubr return",
                                             "0 2 callothersubr return",
                                             "return",
                                             "1 3 callothersubr pop callsubr return",
                                             "7 11 rlineto return",
                                             "6 callsubr",
                                             "20 hstem 5 callsubr 5 callsubr return"};

TEST(Type1, CharstringsMakeTheseOutlines) {
    const struct {
        const char* what;
        const char* words;
        const char* outline;
    } cases[] = {
        {"lines, and a closing line in the shape of a curve",
         "10 500 hsbw 20 30 rmoveto 100 hlineto 50 vlineto -40 -5 rlineto closepath endchar",
         "30,30 130,30 130,80 90,75 90,75~ 30,30~ 30,30"},
        {"closed already: nothing is added",
         "0 500 hsbw 10 hmoveto 10 hlineto 10 vlineto -10 -10 rlineto closepath closepath endchar",
         "10,0 20,0 20,10 10,0"},
        {"three kinds of curve",
         "0 9 hsbw 5 vmoveto 1 2 3 4 5 6 rrcurveto 1 2 3 4 vhcurveto 1 2 3 4 hvcurveto endchar",
         "0,5 1,7~ 4,11~ 9,17 9,18~ 11,21~ 15,21 16,21~ 18,24~ 18,28"},
        {"the current point survives closepath; moves in a row count once",
         "0 9 hsbw 1 1 rmoveto 5 hlineto 5 vlineto closepath 1 1 rmoveto 2 hmoveto 3 vmoveto "
         "4 hlineto endchar",
         "1,1 6,1 6,6 6,6~ 1,1~ 1,1 | 9,10 13,10"},
        {"a moveto without closepath goes on in the contour",
         "0 9 hsbw 1 1 rmoveto 5 hlineto 5 vmoveto 5 hlineto endchar", "1,1 6,1 6,6 11,6"},
        {"without a moveto the path begins before its first step",
         "7 9 hsbw 5 hlineto 5 vlineto endchar", "7,0 12,0 12,5"},
        {"sbw and setcurrentpoint set the point",
         "3 4 500 0 sbw 5 hlineto 50 60 setcurrentpoint 5 hlineto endchar", "3,4 8,4 55,60"},
        {"all forms of numbers",
         "0 9 hsbw 107 -107 rmoveto 108 -108 rlineto 1131 -1131 rlineto "
         "1132 -40000 rlineto endchar",
         "107,-107 215,-215 1346,-1346 2478,-41346"},
        {"missing arguments are 0, surplus ones stand on top",
         "0 9 hsbw 5 rmoveto rlineto 1 2 3 4 rlineto endchar", "5,0 5,0 6,2"},
        {"hints clear the stack, unknown operators don't",
         "0 9 hsbw 1 2 hstem 3 4 vstem 1 2 3 4 5 6 hstem3 dotsection 5 #02 hmoveto 4 #0C63 "
         "hlineto endchar",
         "5,0 9,0"},
        {"endchar and return end nothing", "0 9 hsbw 5 hmoveto endchar 4 hlineto return 4 vlineto",
         "5,0 9,0 9,4"},
        {"div takes the bottom of the stack, off go the top two",
         "0 9 hsbw 20 6 div 1 rmoveto endchar", "3,1"},
        {"so it spoils what stands before", "0 9 hsbw 100 50 5 div rmoveto endchar", "100,2"},
        {"a division by 0 is the largest number", "0 9 hsbw 5 0 div hmoveto endchar",
         "2147483647,0"},
        {"sums wrap", "0 9 hsbw 2147483647 hmoveto 1 hlineto endchar",
         "2147483647,0 -2147483648,0"},
        {"the least number over -1 wraps", "0 9 hsbw -2147483648 -1 div hmoveto endchar",
         "-2147483648,0"},
        {"calls", "0 9 hsbw 5 hmoveto 5 callsubr 5 callsubr endchar", "5,0 12,11 19,22"},
        {"hint replacement", "0 9 hsbw 5 hmoveto 7 4 callsubr 3 hlineto endchar",
         "5,0 12,11 19,22 22,22"},
        {"a call that isn't there", "0 9 hsbw 5 hmoveto 99 callsubr -1 callsubr 3 hlineto endchar",
         "5,0 8,0"},
        {"a call of itself ends, with its number left over",
         "0 9 hsbw 5 hmoveto 6 callsubr 3 hlineto endchar", "5,0 11,0"},
        {"othersubrs pass their arguments on; pop of nothing is -1",
         "0 9 hsbw 11 22 2 99 callothersubr pop pop rmoveto pop hlineto endchar", "11,22 10,22"},
        {"flex: the reference point goes into the first step",
         "0 9 hsbw 10 hmoveto 1 callsubr 50 5 rmoveto 2 callsubr -40 hmoveto 2 callsubr "
         "20 1 rmoveto 2 callsubr 20 vmoveto 2 callsubr 20 hmoveto 2 callsubr 20 -3 rmoveto "
         "2 callsubr 9 8 rmoveto 2 callsubr 50 99 88 0 callsubr 4 hlineto endchar",
         "10,0 20,5~ 40,6~ 40,26 60,26~ 80,23~ 89,31 93,31"},
        {"a short flex builds nothing",
         "0 9 hsbw 10 hmoveto 1 callsubr 50 5 rmoveto 2 callsubr 50 9 8 0 callsubr 4 hlineto "
         "endchar",
         "10,0 14,0"},
        {"flex's end without a start means nothing",
         "0 9 hsbw 10 hmoveto 0 callsubr 4 hlineto endchar", "10,0 14,0"},
        {"cut in the middle of a number", "0 9 hsbw 10 hmoveto 4 hlineto #FF0102", "10,0 14,0"},
    };
    for (const auto& c : cases) {
        TinyType1 tiny;
        tiny.subrs = kFlexSubrs;
        tiny.glyphs = {{"A", c.words}, {"B", "1 2 hsbw endchar"}};
        const FontFile font = parsedType1(tiny.pfb());
        EXPECT_EQ(outlineOf(font, 'A'), c.outline) << c.what;
        ASSERT_NE(font.glyphForCode('B'), nullptr) << c.what;
        EXPECT_EQ(font.glyphForCode('B')->leftSideBearing, 1);
        EXPECT_EQ(font.glyphForCode('B')->advanceWidth, 2);
    }
}

TEST(Type1, TheBoxHoldsTheOriginAndAllKeptPoints) {
    TinyType1 tiny;
    tiny.glyphs = {{"A", "0 9 hsbw 10 20 rmoveto 100 200 -300 5 6 7 rrcurveto endchar"},
                   {"nobody", "0 9 hsbw 9999 9999 rmoveto endchar"}};
    const FontFile font = parsedType1(tiny.pfb());
    EXPECT_EQ(font.glyphCount(), 1u);
    EXPECT_EQ(font.xMin, -190);
    EXPECT_EQ(font.xMax, 110);
    EXPECT_EQ(font.yMin, 0);
    EXPECT_EQ(font.yMax, 232);
    EXPECT_EQ(font.name, "Tiny");
}

std::string moveTo(int x) {
    return "0 9 hsbw " + std::to_string(x) + " hmoveto 1 hlineto endchar";
}

TEST(Type1, EncodingsSayWhichGlyphsStay) {
    const std::vector<std::pair<std::string, std::string>> glyphs = {
        {"quoteright", moveTo(1)}, {"grave", moveTo(2)},  {"Euro", moveTo(3)},
        {"sfthyphen", moveTo(4)},  {"eacute", moveTo(5)}, {"quotesinglbase", moveTo(6)}};
    const struct {
        const char* what;
        const char* encoding;
        FontFile::Encoding kind;
        std::vector<int> codes;
    } cases[] = {
        {"Windows",
         "/Encoding StandardEncoding def",
         FontFile::Encoding::kStandard,
         {39, 96, 173, 233, 130}},
        {"Latin 1, one half",
         "/Encoding ISOLatin1Encoding def",
         FontFile::Encoding::kIsoLatin1,
         {39}},
        {"a vector; a name with two codes gets the lower",
         "/Encoding 256 array 0 1 255 {1 index exch /.notdef put} for\ndup 200 /Euro put\n"
         "dup 100 /Euro put dup 0 /eacute put dup 65/grave put readonly def",
         FontFile::Encoding::kCustom,
         {65, 100, 0}},
        {"a vector that is shorter than it says ends at eexec",
         "/Encoding 256 array\ndup 7 /Euro",
         FontFile::Encoding::kCustom,
         {7}},
        {"a vector longer than it says",
         "/Encoding 1 array dup 7 /Euro put dup 8 /grave put",
         FontFile::Encoding::kCustom,
         {7}},
        {"an empty vector leaves the table before it",
         "/Encoding 256 array def",
         FontFile::Encoding::kCustom,
         {39, 96, 173, 233, 130}},
        {"codes out of range",
         "/Encoding 4 array dup -1 /Euro put dup 256 /grave put dup 9 /eacute",
         FontFile::Encoding::kCustom,
         {9}},
        {"the last one counts",
         "/Encoding ISOLatin1Encoding def /Encoding StandardEncoding def",
         FontFile::Encoding::kStandard,
         {39, 96, 173, 233, 130}},
    };
    for (const auto& c : cases) {
        TinyType1 tiny;
        tiny.encoding = c.encoding;
        tiny.glyphs = glyphs;
        for (const std::string& bytes : {tiny.pfa(), tiny.pfb()}) {
            const FontFile font = parsedType1(bytes);
            std::vector<int> codes;
            for (std::size_t i = 0; i < font.glyphCount(); ++i)
                codes.push_back(font.glyphAt(i).code);
            EXPECT_EQ(codes, c.codes) << c.what;
            EXPECT_EQ(font.encodingKind, c.kind) << c.what;
        }
    }
}

TEST(Type1, AccentedGlyphsAreAssembledByCode) {
    TinyType1 tiny;
    tiny.glyphs = {{"Eacute", "5 9 hsbw 33 100 200 69 194 seac"},     // acute
                   {"Ecircumflex", "0 9 hsbw 0 100 200 69 66 seac"},  // no accent of the table
                   {"iacute", "0 9 hsbw 0 10 20 245 194 seac"},       // 245 is otilde here
                   {"Scaron", "0 9 hsbw 0 10 20 83 207 seac"},        // neither is in the font
                   {"E", moveTo(7)},
                   {"acute", moveTo(50)},
                   {"otilde", moveTo(9)}};
    const FontFile font = parsedType1(tiny.pfb());
    EXPECT_EQ(outlineOf(font, 201), "7,0 8,0 | 150,200 151,200");
    EXPECT_EQ(outlineOf(font, 202), "7,0 8,0");
    EXPECT_EQ(outlineOf(font, 237), "9,0 10,0 | 60,20 61,20");
    EXPECT_EQ(outlineOf(font, 138), "");
    EXPECT_EQ(font.yMax, 0) << "accents don't grow the box";
    EXPECT_EQ(font.xMax, 51);
}

TEST(Type1, FontsInManyDresses) {
    TinyType1 tiny;
    tiny.subrs = kFlexSubrs;
    tiny.glyphs = {{"A", "0 9 hsbw 5 hmoveto 5 callsubr endchar"}, {"B", moveTo(3)}};
    const std::string expected = "5,0 12,11";
    const auto isFont = [&](const std::string& bytes, const char* what) {
        const FontFile font = parsedType1(bytes);
        EXPECT_FALSE(font.hasError()) << what;
        EXPECT_EQ(outlineOf(font, 'A'), expected) << what;
        EXPECT_EQ(font.glyphCount(), 2u) << what;
    };
    isFont(tiny.pfa(), "hexadecimal");
    isFont(tiny.pfb(), "segments");
    const std::string cipher = tiny.cipherText();
    const std::string clear = pfbSegment(1, tiny.clearText());
    isFont(clear + pfbSegment(2, cipher), "no end mark");
    isFont(clear + pfbSegment(2, cipher) + "\x80\x03", "no third segment");
    isFont(clear + pfbSegment(1, hex(cipher)) + "\x80\x03", "hexadecimal in a segment");
    isFont(clear + pfbSegment(2, cipher.substr(0, 50)) + pfbSegment(2, cipher.substr(50)),
           "a private part in two segments");
    std::string returns = tiny.pfa();
    std::replace(returns.begin(), returns.end(), '\n', '\r');
    isFont(returns, "lines of CR");
    tiny.claimedGlyphs = 500;
    tiny.claimedSubrs = 500;
    isFont(tiny.pfb(), "lists shorter than they say");
    tiny.lenIV = "/lenIV 0 def";
    tiny.lead = 0;
    isFont(tiny.pfb(), "no random bytes");
    tiny.lenIV = "/lenIV -1 def";
    isFont(tiny.pfb(), "a negative number of random bytes");
    tiny.lenIV = "/lenIV 9 def";
    tiny.lead = 9;
    isFont(tiny.pfb(), "more random bytes");
}

TEST(Type1, FaultsAreToldAndWhatWasReadStays) {
    TinyType1 tiny;
    tiny.glyphs = {{"A", moveTo(3)}, {"B", moveTo(4)}};
    const std::string clear = tiny.clearText();
    const struct {
        const char* what;
        std::string bytes;
        const char* error;
        std::size_t glyphs;
    } cases[] = {
        {"empty", "", "Invalid Type 1 font (2).", 0},
        {"another file", "OTTO", "Invalid Type 1 font (2).", 0},
        {"no comment of PostScript", "%PDF-1.4\n", "Invalid Type 1 font (3).", 0},
        {"segment without it", pfbSegment(1, "hello"), "Invalid Type 1 font (3).", 0},
        {"no eexec", "%!PS\n/FontName /X def\n", "Unable to locate font outline data.", 0},
        {"cut behind eexec", clear, "Unable to locate font outline data.", 0},
        {"cut in the clear segment", pfbSegment(1, clear).substr(0, 40),
         "Unable to locate font outline data.", 0},
        {"only the end mark", "\x80\x03", "", 0},
        {"binary encryption without segments", clear + tiny.cipherText(), "", 0},
        {"wrong encryption", clear + hex(tiny.privateText()), "", 0},
        {"something behind the font", tiny.pfb().substr(0, tiny.pfb().size() - 2) + "junk", "", 2},
    };
    for (const auto& c : cases) {
        const FontFile font = parsedType1(c.bytes);
        EXPECT_EQ(font.errorText(), c.error) << c.what;
        EXPECT_EQ(font.glyphCount(), c.glyphs) << c.what;
    }
    const FontFile missing("/no such folder/x.pfb", 0);
    EXPECT_TRUE(missing.hasError());
    EXPECT_EQ(missing.errorText(), "Unable to open file for reading.");

    // Cut anywhere: no more than what was read, and an end.
    const std::string whole = tiny.pfb();
    for (std::size_t size = 0; size < whole.size(); ++size)
        EXPECT_LE(parsedType1(whole.substr(0, size)).glyphCount(), 2u);
}

TEST(Type1, HostileFontsEnd) {
    TinyType1 tiny;
    // Each calls the next many times over: 11 deep that would be 40 to the 11th.
    for (int i = 0; i < 16; ++i) {
        std::string words;
        for (int k = 0; k < 40; ++k)
            words += std::to_string(i + 1) + " callsubr ";
        tiny.subrs.push_back(words + "1 hlineto return");
    }
    tiny.glyphs = {{"A", "0 9 hsbw 3 callsubr endchar"}, {"B", moveTo(3)}};
    EXPECT_EQ(parsedType1(tiny.pfb()).glyphCount(), 2u);

    // A glyph that doubles itself again and again.
    std::string doubling = "0 9 hsbw 1 hmoveto 1 hlineto closepath ";
    for (int i = 0; i < 60; ++i)
        doubling += "0 0 0 65 194 seac ";
    TinyType1 growing;
    growing.glyphs = {{"A", doubling}, {"acute", moveTo(3)}};
    const FontFile font = parsedType1(growing.pfb());
    std::size_t points = 0;
    for (const GlyphContour& contour : font.table.contours(*font.glyphForCode('A')))
        points += contour.count;
    EXPECT_LE(points, std::size_t{1} << 22);

    // A private part in crumbs.
    std::string crumbs = pfbSegment(1, growing.clearText());
    for (int i = 0; i < 200000; ++i)
        crumbs += pfbSegment(2, "x");
    EXPECT_EQ(parsedType1(crumbs).glyphCount(), 0u);

    // A segment without length, over and over.
    growing.glyphs = {{"B", moveTo(3)}};
    EXPECT_EQ(parsedType1(growing.pfa() + pfbSegment(1, "") + "%!").glyphCount(), 1u);
    const std::string noEnd = growing.pfb().substr(0, growing.pfb().size() - 2);
    EXPECT_EQ(parsedType1(noEnd + pfbSegment(1, "") + "%!").glyphCount(), 1u);
}

TEST(Type1, TheReportNamesWhatItMeets) {
    TinyType1 tiny;
    tiny.subrs = {"return"};
    tiny.glyphs = {{"A", "0 9 hsbw 1 2 3 #0C63 7 callsubr 1 callsubr 0 callsubr endchar"},
                   {"stranger", "0 9 hsbw endchar"}};
    testing::internal::CaptureStdout();
    setFontDiagnostics(true);
    parsedType1(tiny.pfb());
    parsedType1("nonsense");
    setFontDiagnostics(false);
    parsedType1("nonsense");
    const std::string report = testing::internal::GetCapturedStdout();
    for (const char* text :
         {"-------------------------------------------------------------\n"
          "  TYPE 1 SEGMENT HEADER: PC Format: ASCII, length: 102\n"
          "-------------------------------------------------------------\n",
          "PC Format: Binary, length: ", " hsbw", " UNKNOWN_CMD(12,99)", " FLEX[", "]FLEX",
          " >> ERROR: can't find subr: 7 <<", " >> ERROR: expecting 17 flex points, found: 0 <<",
          "## Unable to find 'stranger' in the encoding vector. ## ",
          "Unexpected first byte: 'n' (0x6e).\nInvalid Type 1 font (2).\n"})
        EXPECT_NE(report.find(text), std::string::npos) << text << "\nin\n" << report;
    EXPECT_EQ(report.find("Invalid"), report.rfind("Invalid")) << "told while switched off";
}

TEST(Type1, FilesGoByTheirExtensionInAnyCase) {
    TinyType1 tiny;
    tiny.glyphs = {{"A", moveTo(3)}};
    const TempFolder folder;
    const auto write = [&](const char* name, const std::string& bytes) {
        const std::filesystem::path path = folder.path() / name;
        std::ofstream(path, std::ios::binary) << bytes;
        return path.string();
    };
    for (const char* name : {"a.pfa", "A.PFA", "b.pfb", "c.PfB"}) {
        const FontFile font(write(name, name[0] == 'a' || name[0] == 'A' ? tiny.pfa() : tiny.pfb()),
                            0);
        EXPECT_EQ(font.kind, FontFile::Kind::kType1) << name;
        EXPECT_EQ(font.glyphCount(), 1u) << name;
        InputProfile2 outline;
        font.makeCurves(font.glyphAt(0), outline, 2.0F);
        ASSERT_EQ(outline.paths.size(), 1u);
        EXPECT_EQ(outline.paths[0].curves[0].points()[0].x, 6.0);
    }
}

}  // namespace
}  // namespace orvin
