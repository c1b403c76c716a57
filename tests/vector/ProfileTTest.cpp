// Texts: where letters stand, what a project keeps of a text, and when it is laid out anew.
#include "vector/ProfileT.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <memory>

#include "scene/MemoryStream.h"
#include "scene/SceneX.h"
#include "tests/support/TempFolder.h"
#include "tests/vector/TinyTrueType.h"
#include "toolkit/platform/Platform.h"

namespace orvin {

void PrintTo(const Vec2& p, std::ostream* out) {
    *out << '(' << p.x << ' ' << p.y << ')';
}

namespace {

using namespace test;

// In percent of the font's height: A is 50 wide with a square, B 30 with a square, the space 20, M
// 60 with a bearing of 10; C has no advance. The box is 100 by 80, and the squares reach its sides.
class ProfileTTest : public testing::Test {
  protected:
    ProfileTTest() {
        TinyTrueType tiny;
        tiny.glyphs = {"", squareGlyph(0, 0, 800), squareGlyph(0, 0, 100),
                       "", squareGlyph(0, 0, 10),  squareGlyph(0, 0, 10)};
        tiny.metrics = {{0, 0}, {500, 0}, {300, 0}, {200, 0}, {600, 100}, {0, 0}};
        tiny.box = {0, -200, 800, 800};
        std::vector<int> map(255, 0);
        map['A'] = 1;
        map['B'] = 2;
        map[' '] = 3;
        map['M'] = 4;
        map['C'] = 5;
        tiny.cmap = trimmedMap(0, map);
        const std::string bytes = tiny.build();
        std::FILE* const file = platform::openFile(folder.path() / "tiny.ttf", "wb");
        std::fwrite(bytes.data(), 1, bytes.size(), file);
        std::fclose(file);
        EXPECT_EQ(text.setFont(fontPath(), 7), kSuccess);
    }

    std::string fontPath() const { return platform::textFromPath(folder.path()) + "/tiny.ttf"; }

    /// The lower left corners of the squares.
    static std::vector<Vec2> pens(ProfileT& profile) {
        std::vector<Vec2> points;
        for (const CompositeCurve2& path : profile.inputProfile()->paths)
            points.push_back(path.curves[0].points()[0]);
        return points;
    }

    static std::string written(ProfileT& profile) {
        MemoryStream stream(nullptr);
        EXPECT_EQ(stream.writeObject(profile), kSuccess);
        return stream.takeText();
    }

    static Result readInto(ProfileT& profile, const std::string& body) {
        MemoryStream stream(nullptr, body);
        return loadBlock(stream, profile);
    }

    static std::unique_ptr<ProfileT> readBack(SceneX& scene, const std::string& block) {
        auto profile = std::make_unique<ProfileT>(scene, "read");
        EXPECT_EQ(readInto(*profile, block.substr(block.find('\n'))), kSuccess);
        return profile;
    }

    SceneX scene;
    TempFolder folder;
    ProfileT text{scene, "text"};
};

TEST_F(ProfileTTest, LettersStandAtThePen) {
    struct Case {
        const char* text;
        Justify justify;
        double leading;
        double spacing;
        double size;
        std::vector<Vec2> expected;
    };
    constexpr auto kLeft = Justify::kLeft;
    constexpr auto kCenter = Justify::kCenter;
    constexpr auto kRight = Justify::kRight;
    const Case cases[] = {
        {"", kLeft, 1, 0, 100, {}},
        {"  \n ", kCenter, 1, 0, 100, {}},
        {"AB A", kLeft, 1, 0, 100, {{0, 0}, {50, 0}, {100, 0}}},
        {"AB", kCenter, 1, 0, 100, {{-40, 0}, {10, 0}}},
        {"AB", kRight, 1, 0, 100, {{-80, 0}, {-30, 0}}},
        {"A\nB", kLeft, 1.5, 0, 100, {{0, 0}, {0, -150}}},
        {"A\r\nB\n\nA", kLeft, 1, 0, 100, {{0, 0}, {0, -100}, {0, -300}}},
        {"A\rB", kLeft, 1, 0, 100, {{0, 0}, {0, 0}}},
        {"\nA", kLeft, 1, 0, 100, {{0, -100}}},
        // Invisible characters take neither advance nor spacing.
        {"ACxB", kLeft, 1, 0.1, 100, {{0, 0}, {58, 0}}},
        {"ACxB", kRight, 1, 0.1, 100, {{-88, 0}, {-30, 0}}},
        {"AAA", kLeft, 1, -1, 100, {{0, 0}, {-30, 0}, {-60, 0}}},
        // Leading and spacing don't follow the size.
        {"AA\nB", kLeft, 1, 0.5, 50, {{0, 0}, {65, 0}, {0, -100}}},
        {"AA", kCenter, 1, 0.5, 50, {{-45, 0}, {20, 0}}},
        // Another number goes on where the pen stopped.
        {"A\nB", static_cast<Justify>(3), 1, 0, 100, {{0, 0}, {50, -100}}},
    };
    for (const Case& c : cases) {
        text.setText(c.text);
        text.setJustify(c.justify);
        text.setPointSize(c.size);
        text.setTextParms(c.leading, c.spacing);
        const std::vector<Vec2> found = pens(text);
        ASSERT_EQ(found.size(), c.expected.size()) << c.text;
        std::uint32_t stamp = 0;
        const Mesh2* const shape = text.getShape(0.1, 20.0, stamp);
        ASSERT_NE(shape, nullptr);
        ASSERT_EQ(shape->faceCount(), static_cast<int>(found.size())) << c.text;
        for (std::size_t i = 0; i < found.size(); ++i) {
            EXPECT_NEAR(length(found[i] - c.expected[i]), 0.0, 1e-5) << c.text << ' ' << i;
            const FaceView loop = shape->face(static_cast<int>(i));
            EXPECT_EQ(loop.kind, ElementKind::kPolygon);
            EXPECT_NEAR(length(shape->vertex(loop.vertices[0]) - found[i]), 0.0, 1e-5);
        }
    }
}

TEST_F(ProfileTTest, KerningMovesThePenBehindALetter) {
    text.setText("AA\nAA");
    text.setJustify(Justify::kLeft);
    text.setKerningLength(3);
    text.setKerningAt(0, 0.1);
    text.setKerningAt(2, -0.5);
    text.setKerningAt(3, 9.0);  // nowhere
    text.touch();
    const double em = 70.0;  // advance and bearing of M
    EXPECT_NEAR(text.font().emWidth, em, 1e-5);
    std::vector<Vec2> found = pens(text);
    ASSERT_EQ(found.size(), 4u);
    EXPECT_NEAR(found[1].x, 50 + 0.1 * em, 1e-5);
    EXPECT_NEAR(found[3].x, 50 - 0.5 * em, 1e-5);  // line ends aren't counted

    // The width of a line takes the value of the letter itself where the one before has any: here
    // of the second, which is 0, and of the fourth, which is past the end.
    text.setJustify(Justify::kRight);
    found = pens(text);
    EXPECT_NEAR(found[0].x, -100, 1e-5);
    EXPECT_NEAR(found[2].x, -100, 1e-5);
    text.setKerningAt(1, 0.2);
    text.touch();
    EXPECT_NEAR(pens(text)[0].x, -100 - 0.2 * em, 1e-5);
}

TEST_F(ProfileTTest, ShapesAreKeptUntilSomethingChanges) {
    text.setText("AB");
    std::uint32_t first = 0;
    std::uint32_t stamp = 0;
    ASSERT_NE(text.getShape(0.1, 20, first), nullptr);
    EXPECT_NEAR(text.bounds().xmin, -40, 1e-5);
    EXPECT_NEAR(text.bounds().ymax, 80, 1e-5);
    text.setPointSize(50);  // waits for touch()
    text.getShape(0.1, 20, stamp);
    EXPECT_EQ(stamp, first);
    EXPECT_EQ(text.changeCount(), first);
    text.getShape(0.3, 20, stamp);  // flattened anew, laid out as before
    EXPECT_NEAR(text.bounds().ymax, 80, 1e-5);
    EXPECT_NEAR(text.inputProfile()->paths[0].curves[0].points()[2].y, 80, 1e-5);
    text.touch();
    text.getShape(0.1, 20, stamp);
    EXPECT_NE(stamp, first);
    EXPECT_NEAR(text.bounds().xmin, -20, 1e-5);
    text.getShape(0.2, 20, first);
    EXPECT_NE(stamp, first);

    ProfileT copy(scene, text, "copy");
    EXPECT_EQ(pens(copy), pens(text));
    EXPECT_EQ(copy.font().param, 7);
    text.setText("A");
    EXPECT_EQ(pens(copy).size(), 2u);
}

TEST_F(ProfileTTest, WritesWhatProjectsHold) {
    text.setText("A\tB\r\n\"C\"");
    text.setKerningLength(11);
    text.setKerningAt(10, 0.25);
    const std::string block = written(text);
    std::size_t at = 0;
    for (const char* line :
         {"begin ProfileT\n name \"text\"\n text \"A\\tB\\r\\n\\\"C\\\"\"\n kerningLen 11\n"
          " kerning 0 10 0.000000 0.000000 ",
          " kerning 10 1 0.250000\n justify \"center\"\n textParms 1.200000 0.000000\n"
          " fontName tiny.ttf 7\n fontParms 0 1079574528\n fontPSize 100.000000\n"
          " ip 0 0.000000 0.000000 0\n ip 1 ",
          " ip 66 30.000000 0.000000 1\n cc 1 1\n c 4 0 5\n p 0 0.000000 0.000000\n"
          " p 1 0.000000 10.000000\n",
          " ip 255 0.000000 0.000000 0\n eMWidth 70.000000\nend ProfileT\n"}) {
        const std::size_t found = block.find(line, at);
        EXPECT_NE(found, std::string::npos) << line;
        if (found != std::string::npos) at = found;
    }
    text.setJustify(static_cast<Justify>(5));
    EXPECT_EQ(written(text).find("justify"), std::string::npos);
    EXPECT_EQ(written(text).find("\n text"), block.find("\n text"));
}

TEST_F(ProfileTTest, ComesBackFromAProjectAsItWas) {
    text.setText("AB \"quoted\"\nBA\t");
    text.setJustify(Justify::kRight);
    text.setTextParms(1.5, 0.25);
    text.setPointSize(80);
    const std::vector<Vec2> before = pens(text);
    const std::string block = written(text);

    // The file holds two halves of a number for height and width. Both are kept, and a layout that
    // meets them still has lines and spaces between letters.
    const auto once = readBack(scene, block);
    EXPECT_EQ(once->font().height, 0.0f);
    EXPECT_EQ(once->font().width, 1079574528.0f);
    EXPECT_EQ(once->font().name, "tiny.ttf");
    EXPECT_EQ(once->font().param, 7);
    EXPECT_EQ(once->text(), text.text());
    // A letter that lies far outside widens nothing.
    std::string astray = block;
    astray.replace(astray.find(" ip 255"), 0,
                   " ip 254 50 0 1\n cc 1 1\n c 4 0 2\n p 0 0 0\n p 1 65532 0\n");
    EXPECT_EQ(pens(*readBack(scene, astray)), pens(*once));
    const auto twice = readBack(scene, written(*once));
    for (ProfileT* const read : {once.get(), twice.get()}) {
        const std::vector<Vec2> after = pens(*read);
        ASSERT_EQ(after.size(), before.size());
        for (std::size_t i = 0; i < after.size(); ++i)
            EXPECT_NEAR(length(after[i] - before[i]), 0.0, 1e-4);
    }
}

TEST_F(ProfileTTest, LongTextsAreRefusedAndOddOnesKept) {
    const std::string longest(ProfileT::kLongestText, 'A');
    for (const std::string& odd : {std::string(), longest, std::string("#no comment"),
                                   std::string("\x01\x80\xff \"\\"), std::string(2042, '\n')}) {
        text.setText(odd);
        const auto read = readBack(scene, written(text));
        // A backslash at the end can't be quoted: a blank comes behind it.
        EXPECT_EQ(read->text(), odd.ends_with('\\') ? odd + ' ' : odd);
    }
    for (const std::string& tooLong : {longest + 'A', std::string(2043, '\n')}) {
        text.setText(tooLong);
        MemoryStream stream(nullptr);
        EXPECT_EQ(stream.writeObject(text), kFailure);
        EXPECT_EQ(stream.text(), "begin ProfileT\n name \"text\"\n");
    }
}

TEST_F(ProfileTTest, AFontThatIsNotThereLeavesNoOutlines) {
    ProfileT fresh(scene, "fresh");
    EXPECT_EQ(fresh.font().name, "Arial.ttf");
    fresh.setText("AB");
    std::uint32_t stamp = 0;
    text.setText("AB\nA");
    const std::string folderName = platform::textFromPath(folder.path());
    EXPECT_EQ(text.setFont(folderName + "\\missing name.ttf", 3), kSuccess);
    EXPECT_EQ(text.font().name, "missing name.ttf");
    EXPECT_TRUE(std::isnan(text.font().height));
    EXPECT_EQ(text.font().glyph('A').advance, 50.0f);  // metrics stay
    const Mesh2* const shape = text.getShape(0.1, 20, stamp);
    ASSERT_NE(shape, nullptr);
    EXPECT_EQ(shape->faceCount(), 0);
    EXPECT_NE(written(text).find(" fontName \"missing name.ttf\" 3\n"), std::string::npos);
}

TEST_F(ProfileTTest, ReadsGlyphsWithCareAndRefusesNonsense) {
    struct Case {
        const char* lines;
        Result expected;
        int loops;  // of "A" afterwards
    };
    const Case cases[] = {
        {"ip 65 50 0 1 cc 1 1 c 4 0 3 p 0 0 0 p 1 9 0 p 2 9 9", kSuccess, 1},
        {"ip 65 50 0 999999999 cc 0 999999999 c 0 0 3 p 0 0 0 p 1 9 0", kSuccess, 1},
        {"ip 65 50 0 1 cc 1 1 c 4 0 999999999 p 999999998 0 0", kFailure, 0},
        {"ip 65 50 0 1 cc 1 1 c 4 1 3", kFailure, 0},
        {"ip 256 50 0 1 cc 1 1 c 4 0 1 p 0 0 0", kSuccess, 1},
        {"cc 1 1 c 4 0 1 p 0 0 0 kerningLength 5 kerning 0 1 0.5 kerning -3 2 1 1", kSuccess, 1},
        {"kerning 0 2000000000 1 2 3", kFailure, 1},
        {"kerningLength -1", kFailure, 1},
        {"justify middle", kFailure, 1},
        {"fontParms 100 x", kFailure, 1},
        {"text", kFailure, 1},
    };
    for (const Case& c : cases) {
        SceneX other;
        ProfileT read(other, text, "read");
        read.setText("A");
        testing::internal::CaptureStderr();
        EXPECT_EQ(
            readInto(read, std::string(c.lines) + (c.expected == kSuccess ? " end ProfileT" : "")),
            c.expected)
            << c.lines;
        testing::internal::GetCapturedStderr();
        std::uint32_t stamp = 0;
        if (c.expected != kSuccess) continue;
        const Mesh2* const shape = read.getShape(0.1, 20, stamp);
        ASSERT_NE(shape, nullptr) << c.lines;
        EXPECT_EQ(shape->faceCount(), c.loops) << c.lines;
    }
}

}  // namespace
}  // namespace orvin
