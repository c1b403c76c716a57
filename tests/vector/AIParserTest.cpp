// Illustrator art, written by hand: every operator, every way to divide a file into objects.
#include "vector/illustrator/AIParser.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <string>

#include "scene/SceneX.h"
#include "tests/support/TempFolder.h"

namespace orvin {
namespace {

constexpr std::string_view kHead = "%!PS-Adobe-3.0 EPSF-3.0\n%%EndProlog\n1 0 0 1 k\n%%EndSetup\n";

// A square of 10 at x, as lines that close, without its paint.
std::string square(int x = 0) {
    const std::string l = std::to_string(x), r = std::to_string(x + 10);
    return l + " 0 m\n" + r + " 0 L\n" + r + " 10 L\n" + l + " 10 L\n" + l + " 0 L\n";
}
std::string filled(int x = 0) {
    return square(x) + "f\n";
}
std::string stroked(int x = 0) {
    return square(x) + "s\n";
}
std::string layer(const std::string& name, const std::string& art, const char* visible = "1") {
    return "%AI5_BeginLayer\n" + std::string(visible) + " 1 1 1 0 0 0 79 128 255 Lb\n(" + name +
           ") Ln\n" + art + "LB\n%AI5_EndLayer--\n";
}

/// "L5" a run of lines of five points, "B4" a curve of four; "+" where it goes on into the next, a
/// closed path ends with "o".
std::string told(const CompositeCurve2& path) {
    std::string text;
    for (const Curve2& c : path.curves) {
        if (!text.empty() && text.back() != '+') text += ',';
        text += (c.type() == Curve2::Type::kLinear ? 'L' : 'B') + std::to_string(c.points().size());
        if (c.attachedTail && &c != &path.curves.back()) text += '+';
    }
    return text + (path.closed ? "o" : "");
}

/// "Name:F L5o B4" for an object with faces, "Name:R ..." for a ribbon; objects end with ";".
std::string told(AIParser& parser) {
    std::string text;
    for (const AIObjectRecord& record : parser.objectList()) {
        text += (text.empty() ? "" : " ") + record.name + (record.profile->keepFaces ? ":F" : ":R");
        for (const CompositeCurve2& path : record.profile->inputProfile()->paths)
            text += " " + told(path);
        text += ";";
    }
    return text;
}

std::string read(const std::string& art, const AIOptions& options = {}) {
    SceneX scene;
    AIParser parser(scene);
    EXPECT_TRUE(parser.parseText(std::string(kHead) + art, options));
    EXPECT_EQ(parser.objectList().size(), scene.count(MemberKind::kProfile));
    return told(parser);
}

AIOptions byLayers(std::optional<std::string> name = {}) {
    return {.loadByLayers = !name, .layerName = std::move(name)};
}

TEST(AIParser, Operators) {
    const struct {
        const char* art;
        const char* objects;
    } cases[] = {
        // Paints: which keep faces, and none adds a closing segment.
        {"0 0 m 9 9 L\n0 0 m\n10 0 L\n10 10 L\nf\n", "Object 1:F L3;"},
        {"0 0 m\n10 0 l\n10 10 l\n0 0 l\nF\n", "Object 1:F L4o;"},
        {"0 0 m\n10 0 L\n10 10 L\nb\n", "Object 1:F L3;"},
        {"0 0 m\n10 0 L\n10 10 L\nB\n", "Object 1:F L3;"},
        {"0 0 m\n10 0 L\n10 10 L\ns\n", "Object 1:R L3;"},
        {"0 0 m\n10 0 L\n10 10 L\nS\n", "Object 1:R L3;"},
        // Without layers what isn't painted counts as filled; with a layer's name it is dropped.
        {"0 0 m\n10 0 L\n10 10 L\nn\n", "Object 1:F L3;"},
        {"0 0 m\n10 0 L\n10 10 L\nN\n", "Object 1:F L3;"},
        {"0 0 m\n10 0 L\n10 10 L\n(N) *\n", ""},
        {"(A) Ln\n0 0 m\n10 0 L\n10 10 L\nn\n", ""},
        {"(A) Ln\n0 0 m\n10 0 L\n10 10 L\nN\n", ""},
        {"(A) Ln\nq\n0 0 m\n10 0 L\n10 10 L\nh\nW\nn\nQ\n0 0 m\n10 0 L\n10 10 L\nn\n",
         "Object 1:F L3;"},
        {"0 0 m\n(A) Ln\n10 0 L\n10 10 L\nn\n", "Object 1:F L3;"},
        // Curves: each one Bezier; both short forms have three points.
        {"0 0 m\n1 0 2 1 2 2 c\n2 3 1 4 0 4 C\nS\n", "Object 1:R B4+B4;"},
        {"0 0 m\n9 0 9 9 v\n9 20 0 0 y\nS\n", "Object 1:R B3+B3o;"},
        {"0 0 m\n9 0 9 9 V\n9 20 0 0 Y\nS\n", "Object 1:R B3+B3o;"},
        {"0 0 m\n5 0 L\n9 0 L\n9 5 5 9 0 9 c\n0 5 L\n0 0 L\nf\n", "Object 1:F L3+B4+L3o;"},
        // A moveto inside a path begins a new curve of the same path.
        {"0 0 m\n9 0 L\n20 0 m\n29 0 L\nS\n", "Object 1:R L2,L2;"},
        {"0 0 m\n5 5 m\n9 5 L\nS\n", "Object 1:R L2;"},
        // Ends within 0.0001 meet; what misses by more stays open.
        {"0 0 m\n10 0 L\n10 10 L\n0.00005 0 L\nf\n", "Object 1:F L4o;"},
        {"0 0 m\n10 0 L\n10 10 L\n0.0002 0 L\nf\n", "Object 1:F L4;"},
        // What is too short to be seen goes.
        {"0 0 m\n10 0 L\n10 0.05 L\n10 10 L\nf\n", "Object 1:F L3;"},
        {"0 0 m\n0.01 0 L\nS\n", "Object 1:R;"},
        // Nothing to draw with.
        {"0 0 m\nf\nf\n", ""},
        {"10 10 L\nf\n1 1 m\nf\n20 20 L\nf\n", ""},
        {"0 0 m\n9 L\nL\nx y L\n9 nan L\n1e300 0 L\n9 9 L\nS\n", "Object 1:R L2;"},
        // A comment draws nothing, whatever its last word; nor does what isn't known.
        {"0 0 m\n%% 5 5 L\n%_7 7 L\n8 8 Zz\n8 8 e\n9 9 L\nS\n%S\n", "Object 1:R L2;"},
        {"%AI3_BeginCrops\n0 0 m\n9 9 L\nS\n(A) Ln\n%AI3_EndCrops\n0 0 m\n9 9 L\nn\n",
         "Object 1:F L2;"},
        {"0 0 m\n9 9 L\nS\n%%PageTrailer\n0 0 m\n9 9 L\nS\n", "Object 1:R L2;"},
        {"0 0 m\n9 9 L\nS\n%%PageTrailer \n0 0 m\n9 9 L\nS\n", "Object 1:R L2; Object 2:R L2;"},
        // The end comes early.
        {"0 0 m\n9 9 L\nS\n0 0 m\n5 5 L\n", "Object 1:R L2;"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(read(c.art), c.objects) << c.art;
}

TEST(AIParser, GroupsAndCompoundPaths) {
    const AIOptions flat{.flattenGroups = true};
    const AIOptions single{.singleProfile = true};
    const struct {
        std::string art;
        AIOptions options;
        const char* objects;
    } cases[] = {
        {"u\n" + filled() + stroked(20) + "U\n" + filled(40),
         {},
         "Group 1:F L5o L5o; Object 1:F L5o;"},
        {"u\n" + stroked() + stroked(20) + "U\n", {}, "Group 1:R L5o L5o;"},
        {"u\nu\n" + filled() + "U\n" + stroked(20) + "U\n", {}, "Group 1:F L5o L5o;"},
        {"u\nU\nu\nu\nU\nU\n" + filled(), {}, "Object 1:F L5o;"},
        {"(A) Ln\nu\n" + square() + "N\n" + filled(20) + "U\n", {}, "Group 1:F L5o;"},
        {"u\n" + filled() + "U\n" + "u\n" + stroked() + "U\n", {}, "Group 1:F L5o; Group 2:R L5o;"},
        {"u\n" + filled() + "*u\n" + filled(20) + "*U\nU\n", {}, "Group 1:F L5o L5o;"},
        // A compound has faces, and holes in them, however it is painted.
        {"*u\n" + filled() + filled(2) + "*U\n", {}, "Object 1:F L5o L5o;"},
        {"*u\n" + stroked() + "*U\n*u\n*U\n", {}, "Object 1:F L5o;"},
        {"u\n" + filled() + "*u\n" + filled(20) + filled(22) + "*U\nU\n", flat,
         "Object 1:F L5o; Object 2:F L5o L5o;"},
        // Ends without a beginning; beginnings without an end.
        {"U\n*U\n" + filled() + "U\n" + filled(20), {}, "Object 1:F L5o; Object 2:F L5o;"},
        {"u\n" + filled() + "u\n" + stroked(20), {}, "Group 1:F L5o L5o;"},
        {"%AI5_BeginLayer\nu\nu\n" + filled() + "%AI5_EndLayer--\n" + filled(20),
         {},
         "Group 1:F L5o; Object 1:F L5o;"},
        // A group begins in the middle of a path: the path goes into the group.
        {"0 0 m\n9 0 L\nu\n9 9 L\nf\nU\n", {}, "Group 1:F L3;"},
        // Everything in one.
        {filled() + "u\n" + stroked(20) + "U\n*u\n" + stroked(40) + "*U\nu\nU\n", single,
         "Object 2:F L5o L5o L5o;"},
        {stroked() + stroked(20), single, "Object 2:R L5o L5o;"},
        {"(A) Ln\n" + filled() + square(20) + "N\n", single, "Object 2:F L5o;"},
        {layer("A", filled()) + layer("B", stroked()) + layer("C", filled(), "0"), single,
         "Object 2:F L5o L5o;"},
        {layer("A", "u\n" + filled()), single, "Group 1:F L5o;"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(read(c.art, c.options), c.objects) << c.art;
}

TEST(AIParser, Layers) {
    const std::string two = layer("Face", "u\n" + filled() + stroked(20) + "U\n") +
                            layer("Hidden", filled(), "0") + layer("Rim", stroked(40));
    const AIOptions wantedSingle{.layerName = "Rim", .singleProfile = true};
    const struct {
        std::string art;
        AIOptions options;
        const char* objects;
    } cases[] = {
        {two, {}, "Group 1:F L5o L5o; Object 1:R L5o;"},
        {two, byLayers(), "Face:F L5o L5o; Rim:R L5o;"},
        {two, byLayers("Rim"), "Rim:R L5o;"},
        {two, byLayers("Hidden"), ""},
        {two, byLayers("None"), ""},
        {two, wantedSingle, "Object 1:F L5o L5o L5o;"},
        // A blank picture of a cycle.
        {layer("A", filled()) + layer("Blank", "") + layer("B", "*u\n" + filled() + "*U\n"),
         byLayers(), "A:F L5o; Blank:R; B:F L5o;"},
        {layer("A", square() + "N\n"), byLayers(), "A:R;"},
        // Names are told apart by numbers.
        {layer("A", filled()) + layer("A", filled()) + layer("A", filled()), byLayers(),
         "A:F L5o; A1:F L5o; A2:F L5o;"},
        {layer("A", filled()) + layer("A7", filled()) + layer("A", filled()), byLayers(),
         "A:F L5o; A7:F L5o; A8:F L5o;"},
        // Escapes: octal bytes, any other character; double quotes turn into single ones.
        {layer("a\\(b\\)\\\\ \\101\\134 \\\"q\\\" \"", ""), byLayers(), "a(b)\\ A\\ 'q' ':R;"},
        {layer("12\\17 \\08\\", ""), byLayers(), "1217 08\\:R;"},
        {layer("cut\\000off", ""), byLayers(), "cut:R;"},
        // Without names, between layers, and cut off.
        {filled() + stroked(), byLayers(), "Object 1:F L5o L5o;"},
        {filled() + layer("A", stroked()), byLayers(), "Object 1:F L5o; A:R L5o;"},
        {layer("A", stroked()) + filled(), byLayers(), "A:R L5o; A1:F L5o;"},
        {layer("A", stroked()) + filled(), byLayers("B"), ""},
        {"%AI5_BeginLayer\n1 Lb\n(A) Ln\n" + filled(), byLayers(), "A:F L5o;"},
        {"%AI5_BeginLayer\n1 Lb\n(A) Ln\n" + filled() + layer("B", stroked()), byLayers(),
         "A:F L5o; B:R L5o;"},
        {"1 lb\n(A) ln\n" + stroked(), byLayers(), "A:R L5o;"},
        {"0 Lb\n(A) Ln\n" + stroked() + "1 Lb\n(B) Ln\n" + stroked(), byLayers(), "B:R L5o;"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(read(c.art, c.options), c.objects) << c.art;
}

TEST(AIParser, Colors) {
    const struct {
        const char* what;
        std::string art;
        std::vector<std::string> objects;  // fill and stroke, "-" where it wasn't set anew
        std::string list;
    } cases[] = {
        {"before any colour", filled(), {"-0.9,0.9,0.9 -0.9,0.9,0.9"}, ""},
        {"gray", "0.25 g\n0.5 G\n" + filled(), {"0.25,0.25,0.25 0.5,0.5,0.5"}, "0.25,0.25,0.25"},
        {"ink and black",
         "0.25 0.5 0 0.25 k\n0 0 1 0.75 K\n" + filled(),
         {"0.5,0.25,0.75 0.25,0.25,0"},
         "0.5,0.25,0.75"},
        {"more than all ink",
         "0.75 0 0 0.5 k\n" + filled(),
         {"0,0.5,0.5 -0.9,0.9,0.9"},
         "0,0.5,0.5"},
        {"named ink",
         "0.25 0.5 0 0.25 (Sky Blue) 0 x\n" + filled(),
         {"0.5,0.25,0.75 -0.9,0.9,0.9"},
         "0.5,0.25,0.75"},
        {"screen colours",
         "1 0.5 0.25 Xa\n0 0 1 XA\n" + filled(),
         {"1,0.5,0.25 0,0,1"},
         "1,0.5,0.25"},
        {"a longer form repeats the last three",
         "1 0.5 0.25 Xa\n0.125 0.25 0.5 (Lead) 0 1 XX\n" + filled(),
         {"1,0.5,0.25 1,0.5,0.25"},
         "1,0.5,0.25"},
        {"a colour stays in force; only the first object sets it",
         "1 0 0 Xa\n" + filled() + filled(20),
         {"1,0,0 -0.9,0.9,0.9", "-1,0,0 -0.9,0.9,0.9"},
         "1,0,0"},
        {"a group without paths ends an object",
         "1 0 0 Xa\nu\nU\n" + filled(),
         {"-1,0,0 -0.9,0.9,0.9"},
         "1,0,0"},
        {"equal colours are one, and a stroke lists the fill",
         "1 0 0 Xa\n0 g\n0 1 1 0 k\n0 0 1 XA\n0 g\n" + filled(),
         {"0,0,0 0,0,1"},
         "1,0,0 0,0,0"},
        {"a stroke comes first",
         "1 G\n1 0 0 Xa\n" + filled(),
         {"1,0,0 1,1,1"},
         "0.9,0.9,0.9 1,0,0"},
        {"a hidden layer sets nothing",
         layer("A", "0.5 g\n" + filled()) + layer("B", "0.25 g\n", "0") + layer("C", filled()),
         {"0.5,0.5,0.5 -0.9,0.9,0.9", "-0.5,0.5,0.5 -0.9,0.9,0.9"},
         "0.5,0.5,0.5"},
        {"no number",
         "red g\n1 0 0 k\n1 0 inf Xa\ng\n" + filled(),
         {"-0.9,0.9,0.9 -0.9,0.9,0.9"},
         ""},
    };
    const auto number = [](float value) {
        const int thousandths = static_cast<int>(std::lround(value * 1000.0F));
        if (thousandths % 1000 == 0) return std::to_string(thousandths / 1000);
        std::string text = "0." + std::to_string(1000 + thousandths).substr(1);
        text.erase(text.find_last_not_of('0') + 1);
        return text;
    };
    const auto color = [&](const AIColor& c) {
        EXPECT_EQ(c[3], 1.0F);
        return number(c[0]) + "," + number(c[1]) + "," + number(c[2]);
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        SceneX scene;
        AIParser parser(scene);
        ASSERT_TRUE(parser.parseText(std::string(kHead) + c.art, {}));
        std::vector<std::string> objects;
        for (const AIObjectRecord& record : parser.objectList())
            objects.push_back((record.noFill ? "-" : "") + color(record.fill) +
                              (record.noStroke ? " -" : " ") + color(record.stroke));
        EXPECT_EQ(objects, c.objects);
        std::string list;
        for (const AIColorRecord& entry : parser.colorList()) {
            EXPECT_EQ(entry.name, "AIColor " + std::to_string(&entry - &parser.colorList()[0] + 1));
            list += (list.empty() ? "" : " ") + color(entry.color);
        }
        EXPECT_EQ(list, c.list);
    }
}

TEST(AIParser, PointsAreThoseOfTheArt) {
    SceneX scene;
    AIParser parser(scene);
    ASSERT_TRUE(parser.parseText(
        std::string(kHead) + "  1.5\t-2 m\n+3 .25 L\n4 5 6 7 8 9 c\n10 11 1.5 -2 y\nf\n", {}));
    ASSERT_EQ(parser.objectList().size(), 1U);
    const auto& path = parser.objectList()[0].profile->inputProfile()->paths.at(0);
    const std::vector<std::vector<Vec2>> expected = {
        {{1.5, -2}, {3, 0.25}}, {{3, 0.25}, {4, 5}, {6, 7}, {8, 9}}, {{8, 9}, {10, 11}, {1.5, -2}}};
    ASSERT_EQ(path.curves.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const auto points = path.curves[i].points();
        EXPECT_TRUE(
            std::equal(points.begin(), points.end(), expected[i].begin(), expected[i].end()));
        EXPECT_GT(path.curves[i].length(), 0.0);
    }
}

TEST(AIParser, NamesKeepClearOfTheScene) {
    SceneX scene;
    scene.make<ProfileI>("Input 4");
    scene.make<ProfileI>("Object 9");
    scene.make<ProfileI>("A");
    AIParser parser(scene);
    ASSERT_TRUE(parser.parseText(std::string(kHead) + filled() + filled(), {}));
    EXPECT_EQ(told(parser), "Object 10:F L5o; Object 11:F L5o;");
    EXPECT_EQ(parser.objectList()[0].profile->name(), "Input 5");
    EXPECT_EQ(parser.objectList()[1].profile->name(), "Input 6");
    ASSERT_TRUE(parser.parseText(std::string(kHead) + layer("A", filled()) + layer("Input 8", ""),
                                 byLayers()));
    EXPECT_EQ(told(parser), "A1:F L5o; Input 81:R;") << "a profile of this parse has the name";
}

TEST(AIParser, LinesOfAllKinds) {
    const std::string art = std::string(kHead) + layer("A", "u\n" + filled() + "U\n") + filled(20);
    for (const std::string end : {"\n", "\r", "\r\n", "\n\r\r\n"}) {
        std::string text;
        for (const char c : art)
            text += c == '\n' ? end : std::string(1, c);
        SceneX scene;
        AIParser parser(scene);
        ASSERT_TRUE(parser.parseText(text, byLayers()));
        EXPECT_EQ(told(parser), "A:F L5o; A1:F L5o;");
    }
    // 259 characters are a line. The rest is the next one.
    const auto padded = [](std::size_t size, const char* op) {
        std::string line = "9 9";
        return line + std::string(size - line.size() - 1, ' ') + op;
    };
    EXPECT_EQ(read("0 0 m\n" + padded(259, "L") + "\nS\n"), "Object 1:R L2;");
    EXPECT_EQ(read("0 0 m\n" + padded(260, "L") + "\nS\n"), "");
    EXPECT_EQ(read("0 0 m\n%" + std::string(258, '-') + "9 9 L\nS\n"), "Object 1:R L2;");
    // So is every name of a layer that long: the rest of it is no line of use.
    EXPECT_EQ(read("(" + std::string(300, 'n') + ") Ln\n" + filled(), byLayers()),
              "Object 1:F L5o;");
}

TEST(AIParser, TracesWhatEachLineDid) {
    SceneX scene;
    AIParser parser(scene);
    std::string log;
    parser.setTrace([&](std::string_view what, std::string_view line) {
        log.append(what).append(line) += '\n';
    });
    ASSERT_TRUE(parser.parseText(
        std::string(kHead) + "%AI5_BeginLayer\n%%Note:\n0 0 m\n9 0 L\n9 1 8 9 0 9 c\ns\nf\n8 e\n"
                             "%AI5_EndLayer--\n%%PageTrailer\n0 0 m\n",
        {}));
    EXPECT_EQ(log,
              "Unknown-- %%EndSetup\nLayer begin\nData begin\nMove to--0 0 m\nNew profile\n"
              "Line to--9 0 L\nCurve to--9 1 8 9 0 9 c\nFinish profile\nFills\n"
              "Implemented (but no description)-- f\nUnknown-- 8 e\nLayer end\nPage end\n");
}

TEST(AIParser, WhatIsNoArt) {
    const test::TempFolder folder;
    const auto error = [&](const std::string& bytes) {
        const auto file = folder.path() / "art.ai";
        std::ofstream(file, std::ios::binary) << bytes;
        SceneX scene;
        AIParser parser(scene);
        parser.setFileSpec(file);
        const bool success = parser.parse({});
        EXPECT_EQ(success, parser.parseResult());
        EXPECT_EQ(success, parser.parserError() == AIParserError::kNone);
        return parser.parserError();
    };
    EXPECT_EQ(error(""), AIParserError::kNotIllustrator);
    EXPECT_EQ(error(" %!PS-Adobe\n%%EndSetup\n"), AIParserError::kNotIllustrator);
    EXPECT_EQ(error("%!PS-Adob"), AIParserError::kNotIllustrator);
    EXPECT_EQ(error("%!PS-Adobe-3.0\n%%EndProlog\n"), AIParserError::kNotIllustrator);
    EXPECT_EQ(error("%!PS-Adobe-3.0\n%%EndSetup"), AIParserError::kNone);
    // The end of the setup may lie anywhere, across what is read at a time too.
    for (const std::size_t size : {9970U, 10225U, 10236U, 10240U, 70000U})
        EXPECT_EQ(error("%!PS-Adobe\n" + std::string(size, 'x') + "%%EndSetup\r"),
                  AIParserError::kNone);
    SceneX scene;
    AIParser parser(scene);
    parser.setFileSpec(folder.path() / "missing.ai");
    EXPECT_FALSE(parser.parse({}));
    EXPECT_EQ(parser.parserError(), AIParserError::kNotOpened);
}

/// What the shape of an object encloses: holes, which turn the other way, taken off.
double area(const AIObjectRecord& record) {
    std::uint32_t stamp = 0;
    const Mesh2* const shape = record.profile->getShape(0.01, 20.0, stamp);
    double sum = 0.0;
    for (int f = 0; shape != nullptr && f < shape->faceCount(); ++f) {
        const auto loop = shape->face(f).vertices;
        for (std::size_t i = 0; i < loop.size(); ++i)
            sum += cross(shape->vertex(loop[i]), shape->vertex(loop[(i + 1) % loop.size()])) / 2.0;
    }
    return std::abs(sum);
}

TEST(AIParser, FilesOfOtherPrograms) {
    const struct {
        const char* file;
        const char* objects;
        std::vector<double> areas;  // on paper, from the drawing's radii and sides
    } cases[] = {
        // A ring of 80 and 50, a triangle of 60 by 60, a line of one curve.
        {"ring-ps2ai.ai",
         "Object 1:F B4+B4+B4+B4o L2+B4+B4+B4+B4+L2o; Object 2:F L4o; Object 3:R B4;",
         {kPi * (80.0 * 80.0 - 50.0 * 50.0), 1800.0}},
        // In points: a circle of 36, an ellipse of 54 by 21.6, a box of 57.6 by 36 with corners of
        // 7.2, a wave, a quarter of a circle of 72 and its chord, a triangle of 72 by 64.8.
        {"shapes-libplot.ai",
         "Object 1:F B4+B4+B4+B4o; Object 2:F B4+B4+B4+B4o; "
         "Object 3:F B4+L2+B4+L2+B4+L2+B4+L2o; Object 4:R B4+B4; Object 5:R B4; Object 6:R L4o;",
         {kPi * 36.0 * 36.0, kPi * 54.0 * 21.6, 57.6 * 36.0 - (4.0 - kPi) * 7.2 * 7.2, 0.0,
          72.0 * 72.0 * (kPi / 4.0 - 0.5), 72.0 * 64.8 / 2.0}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.file);
        SceneX scene;
        AIParser parser(scene);
        parser.setFileSpec(std::string(ORVIN_SOURCE_DIR "/tests/vector/art/") + c.file);
        ASSERT_TRUE(parser.parse({}));
        EXPECT_EQ(told(parser), c.objects);
        for (std::size_t i = 0; i < c.areas.size() && i < parser.objectList().size(); ++i)
            EXPECT_NEAR(area(parser.objectList()[i]), c.areas[i], c.areas[i] * 1e-3 + 0.5) << i;
    }
}

TEST(AIParser, LongFilesFromTheDisk) {
    const test::TempFolder folder;
    const auto file = folder.path() / "art.ai";
    {
        std::ofstream out(file, std::ios::binary);
        out << kHead;
        for (int i = 0; i < 2000; ++i)
            out << layer("L" + std::to_string(i), filled(i));
    }
    SceneX scene;
    AIParser parser(scene);
    parser.setFileSpec(file);
    ASSERT_TRUE(parser.parse(byLayers()));
    ASSERT_EQ(parser.objectList().size(), 2000U);
    for (int i = 0; i < 2000; ++i) {
        const AIObjectRecord& record = parser.objectList()[static_cast<std::size_t>(i)];
        ASSERT_EQ(record.name, "L" + std::to_string(i));
        ASSERT_EQ(record.profile->layerName(), record.name);
        ASSERT_EQ(record.profile->fileSpec(), file.string());
        ASSERT_EQ(record.profile->inputProfile()->paths.at(0).curves.at(0).points()[0].x, i);
    }
    ASSERT_TRUE(parser.parse(byLayers("L77")));
    ASSERT_EQ(parser.objectList().size(), 1U);
    EXPECT_EQ(parser.objectList()[0].name, "L77");
}

}  // namespace
}  // namespace orvin
