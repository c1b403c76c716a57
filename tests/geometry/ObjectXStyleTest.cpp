#include "geometry/ObjectXStyle.h"

#include <gtest/gtest.h>

#include "scene/MemoryStream.h"
#include "scene/SceneX.h"
#include "tests/geometry/Extrusions.h"

namespace orvin {
namespace {

using List = std::vector<MaterialInterval>;

void expectIntervals(const MaterialIntervals& actual, const List& expected) {
    EXPECT_TRUE(actual.sameAs(MaterialIntervals(expected)));
}

TEST(MaterialIntervals, InsertFitsIntoWhatIsThere) {
    const struct {
        List before;
        MaterialInterval interval;
        List after;
    } cases[] = {
        {{{0, 1, 0}}, {0, 1, 5}, {{0, 1, 5}}},
        {{{0, 1, 0}}, {0, 0.25, 5}, {{0, 0.25, 5}, {0.25, 1, 0}}},
        {{{0, 0.25, 1}, {0.25, 1, 0}}, {0.25, 1, 5}, {{0, 0.25, 1}, {0.25, 1, 5}}},
        {{{0, 0.25, 1}, {0.25, 1, 0}}, {0.25, 0.5, 5}, {{0, 0.25, 1}, {0.25, 0.5, 5}, {0.5, 1, 0}}},
        {{{0, 0.25, 1}, {0.25, 0.5, 2}, {0.5, 1, 3}},
         {0.25, 0.75, 5},
         {{0, 0.25, 1}, {0.25, 0.5, 2}, {0.5, 1, 3}}},
        {{{0, 0.5, 1}}, {0.5, 0.75, 2}, {{0, 0.5, 1}, {0.5, 0.75, 2}}},
        {{{0, 1, 0}}, {0.4, 0.6, 5}, {{0, 1, 0}}},
        {{}, {0, 1, 5}, {}},
    };
    for (const auto& c : cases) {
        MaterialIntervals list(c.before);
        list.insert(c.interval);
        expectIntervals(list, c.after);
    }
}

// Each of these goes in front of the others.
TEST(MaterialIntervals, DoNotGrowWithoutEnd) {
    MaterialIntervals list;
    for (int i = 0; i < 5000; ++i)
        list.insert({0.0, i % 2 == 0 ? 0.25 : 0.75, i});
    EXPECT_EQ(list.size(), MaterialIntervals::kMost);
    list.insert({0.0, list[0].end, 7});
    EXPECT_EQ(list[0].material, 7);
}

TEST(MaterialIntervals, BoundariesMoveWithinTheirNeighbours) {
    const MaterialIntervals start(List{{0, 0.25, 1}, {0.25, 0.5, 2}, {0.5, 1, 3}});
    double t = 0.002;
    EXPECT_FALSE(start.boundaryAllowed(0, t));
    EXPECT_EQ(t, 0.25);
    t = 0.3;
    EXPECT_TRUE(start.boundaryAllowed(0, t));
    t = 0.75;  // beyond both: inside another interval
    EXPECT_TRUE(start.boundaryAllowed(0, t));
    t = 0.501;
    EXPECT_FALSE(start.boundaryAllowed(-1, t));
    t = 0.5;
    EXPECT_FALSE(start.boundaryAllowed(-1, t));

    MaterialIntervals list = start;
    EXPECT_EQ(list.moveBoundary(0, 0.4, -1), 0);
    expectIntervals(list, {{0, 0.4, 1}, {0.4, 0.5, 2}, {0.5, 1, 3}});
    EXPECT_EQ(list.moveBoundary(0, 0.75, 7), 0);
    expectIntervals(list, {{0, 0.5, 7}, {0.5, 0.75, 3}, {0.75, 1, 3}});
    EXPECT_EQ(list.findBoundary(0.75), 1);
    EXPECT_EQ(list.findBoundary(1.0), -1);
    EXPECT_EQ(list.merge(0, -1), -1);
    EXPECT_EQ(list.merge(1, -1), 0);
    expectIntervals(list, {{0, 0.5, 7}, {0.5, 1, 3}});
    EXPECT_EQ(list.merge(1, 4), -1);
    EXPECT_EQ(list.split(0.5), -1);
    EXPECT_EQ(list.split(0.25), 0);
    expectIntervals(list, {{0, 0.25, 7}, {0.25, 0.5, 7}, {0.5, 1, 3}});
}

TEST(ObjectXStyle, SettersRaiseOnlyTheirRevisions) {
    using Setter = void (*)(ObjectXStyle&);
    const struct {
        const char* what;
        unsigned parts;
        Setter set;
        unsigned face, edge;  // how far the revisions rise
    } cases[] = {
        {"part", 15, [](ObjectXStyle& s) { s.setPart(true, 1); }, 1, 1},
        {"same mitre", 15, [](ObjectXStyle& s) { s.setMitreMethod(ObjectXStyle::Mitre::kFast); }, 0,
         0},
        {"mitre", 15, [](ObjectXStyle& s) { s.setMitreMethod(ObjectXStyle::Mitre::kComplex); }, 1,
         1},
        {"mitre, no edge", 11,
         [](ObjectXStyle& s) { s.setMitreMethod(ObjectXStyle::Mitre::kComplex); }, 0, 0},
        {"offset", 0, [](ObjectXStyle& s) { s.setFrontFaceOffset(1); }, 1, 1},
        {"x scale", 15, [](ObjectXStyle& s) { s.setPerimXScale(2); }, 0, 2},
        {"x scale, no holes", 7, [](ObjectXStyle& s) { s.setPerimXScale(2); }, 0, 1},
        {"hole x scale that tracks", 15, [](ObjectXStyle& s) { s.setHoleXScale(2); }, 0, 0},
        {"depth", 15, [](ObjectXStyle& s) { s.setDepth(2); }, 1, 0},
        {"depth of a front", 1, [](ObjectXStyle& s) { s.setDepth(2); }, 0, 0},
        {"perim", 15, [](ObjectXStyle& s) { s.setPerim("x"); }, 0, 2},
        {"perim, no edge", 3, [](ObjectXStyle& s) { s.setPerim("x"); }, 0, 0},
        {"hole that tracks", 15, [](ObjectXStyle& s) { s.setHole("x"); }, 0, 0},
        {"front material", 15, [](ObjectXStyle& s) { s.setFrontMtl(2); }, 1, 0},
        {"back material, no back", 13, [](ObjectXStyle& s) { s.setBackMtl(2); }, 0, 0},
        {"material", 15, [](ObjectXStyle& s) { s.setMaterial(5, "m"); }, 1, 0},
        {"material out of range", 15, [](ObjectXStyle& s) { s.setMaterial(6, "m"); }, 0, 0},
        {"intervals", 15, [](ObjectXStyle& s) { s.setPerimIntervalMaterial(2, {}); }, 0, 1},
        {"hole intervals that track", 15, [](ObjectXStyle& s) { s.setHoleIntervalMaterial(2, {}); },
         0, 0},
    };
    for (const auto& c : cases) {
        SceneX scene;
        auto& style = scene.make<ObjectXStyle>("style", c.parts);
        const auto face = style.faceRevision();
        const auto edge = style.edgeRevision();
        c.set(style);
        EXPECT_EQ(style.faceRevision() - face, c.face) << c.what;
        EXPECT_EQ(style.edgeRevision() - edge, c.edge) << c.what;
    }
}

TEST(ObjectXStyle, TheHoleFollowsUntilItDoesNot) {
    test::Extrusion x;
    x.straightEdge();
    auto& other = x.scene.make<test::CurveProfile>("other");
    EXPECT_EQ(x.style.holeProfile(), &x.edge);
    x.style.setPerimIntervalMaterial(0, MaterialIntervals(List{{0, 1, 4}}));
    EXPECT_EQ((*x.style.holeInterval(0))[0].material, 4);
    x.style.setTrackProfile(false);
    EXPECT_FALSE(x.style.trackProperties());
    x.style.setHole("other");
    EXPECT_EQ(x.style.holeProfile(), &other);
    EXPECT_EQ((*x.style.holeInterval(0))[0].material, 4);
    other.addLines({{0, 0}, {0, 50}}, false);
    other.addLines({{0, 50}, {0, 100}}, false);
    other.addLines({{5, 50}, {5, 100}}, false);
    x.style.ensureHoleEntries();
    EXPECT_EQ((*x.style.holeInterval(2))[0].material, 4);
    x.style.ensurePerimEntries();
    EXPECT_EQ(x.style.perimInterval(1), nullptr);
    x.style.setHoleIntervalMaterial(-1, MaterialIntervals(List{{0, 1, 2}}));
    EXPECT_EQ((*x.style.holeInterval(1))[0].material, 2);

    std::uint32_t serial = 0;
    const auto before = x.style.edgeRevision();
    EXPECT_NE(x.style.holeGeometry(0.5, 20, serial), nullptr);
    EXPECT_EQ(serial, other.changeCount());
    EXPECT_EQ(x.style.edgeRevision(), before + 1);
    x.style.holeGeometry(0.5, 20, serial);
    EXPECT_EQ(x.style.edgeRevision(), before + 1);
}

TEST(ObjectXStyle, StreamForm) {
    SceneX scene;
    auto& style = scene.make<ObjectXStyle>("s");
    MemoryStream out(nullptr);
    ASSERT_EQ(out.writeObject(style), kSuccess);
    EXPECT_EQ(out.text(),
              "begin ObjectXStyle\n name \"s\"\n trackProfile 1\n trackProperties 1\n"
              " trackXScale 1\n perim \"unnamed\"\n perimXScale 1.000000\n"
              " frontFaceOffset 0.000000\n spikeAngle 0.000000\n pullBackDistance 0.100000\n"
              " depth 30.000000\n frontPart 1\n backPart 1\n perimPart 1\n holePart 1\n"
              " frontMtlidx 0\n backMtlidx 0\n begin perimProperties\n"
              "  mtlInterval 0 0.000000 1.000000 0\n end perimProperties\n"
              " material 0 \"defaultMtl\"\n material 1 \"defaultMtl\"\n"
              " material 2 \"defaultMtl\"\n material 3 \"defaultMtl\"\n"
              " material 4 \"defaultMtl\"\n material 5 \"defaultMtl\"\n mitreMethod fast\n"
              "end ObjectXStyle\n");

    auto& read = scene.make<ObjectXStyle>("r");
    MemoryStream in(nullptr,
                    "trackProfile 0 trackProperties 0 perim \"p\" hole \"h\" holePart 0 "
                    "begin holeProperties mtlInterval 1 0 0.5 3 mtlInterval 1 0.5 1 4 "
                    "end holeProperties material 3 \"red\" mitreMethod complex end ObjectXStyle");
    ASSERT_EQ(loadBlock(in, read), kSuccess);
    EXPECT_EQ(read.holeName(), "h");
    EXPECT_EQ(read.parts(), 7U);
    EXPECT_EQ(read.materialName(3), "red");
    EXPECT_EQ(read.mitreMethod(), ObjectXStyle::Mitre::kComplex);
    ASSERT_NE(read.holeInterval(1), nullptr);
    expectIntervals(*read.holeInterval(1), {{0, 0.5, 3}, {0.5, 1, 4}});

    for (const char* text :
         {"begin perimProperties mtlInterval 0 0.5 0.5 1",
          "begin perimProperties mtlInterval 0 -0.5 0.5 1",
          "begin perimProperties mtlInterval 0 0.5 1.5 1",
          "begin perimProperties mtlInterval 0 nan 1 1", "begin otherProperties", "end ObjectX"}) {
        MemoryStream damaged(&read, text);
        Result result = kSuccess;
        while (result == kSuccess && damaged.depth() > 0 && damaged.hasMore())
            result = damaged.runTopCommand();
        EXPECT_EQ(result, kFailure) << text;
    }
}

}  // namespace
}  // namespace orvin
