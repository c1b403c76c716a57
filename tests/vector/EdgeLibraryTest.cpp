// The edge library as a whole: names and their order, menus, failure, icons; and ProfileL.
#include "vector/edges/EdgeLibrary.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <set>
#include <string>
#include <vector>

#include "geometry/ObjectP.h"
#include "scene/MemoryStream.h"
#include "setup/StartUp.h"
#include "tests/geometry/Extrusions.h"
#include "tests/vector/EdgeNames.h"
#include "vector/edges/EdgeMenu.h"
#include "vector/edges/ProfileL.h"
#include "vector/illustrator/ProfileI.h"

namespace orvin {
namespace {

class EdgeLibrary : public testing::Test {
  protected:
    EdgeLibrary() { registerMemberClasses(); }
};

TEST_F(EdgeLibrary, HasItsEdgesInOrder) {
    ASSERT_EQ(edgeCount(), 107);
    for (int i = 0; i < 107; ++i) {
        EXPECT_STREQ(edgeName(i), test::kEdgeNames[i]) << i;
        EXPECT_EQ(findEdge(edgeName(i)), i);
    }
    for (const int outside : {-1, 107, 1 << 30}) {
        EXPECT_EQ(edgeName(outside), nullptr);
        EXPECT_EQ(edgeAt(outside), nullptr);
    }
    EXPECT_STREQ(edgeAt(106)->name().c_str(), "Wavey");
}

TEST_F(EdgeLibrary, IsBuiltOnce) {
    const ProfileI* const before = edgeAt(0);
    EXPECT_EQ(loadEdgeLibrary(), kFailure);
    EXPECT_EQ(edgeCount(), 107);
    EXPECT_EQ(edgeAt(0), before);
}

TEST_F(EdgeLibrary, ShownNamesLeadToTheirEdges) {
    const struct {
        const char* library;
        const char* shown;
    } rows[] = {{"Bead, Double Edge", "Half Pipe, Double"},
                {"Circle, Shallow Scooped", "Shallow Half Pipe, Scooped"},
                {"Piping, Large", "Pipe, Large"},
                {"Semicircle", "Half Pipe"},
                {"Semicircle, 4 Stripe", "Half Pipe, 3 Stripe"},
                {"Pipe, Full", "Pipe, Full"}};
    for (const auto& row : rows) {
        EXPECT_EQ(shownEdgeName(row.library), row.shown);
        EXPECT_EQ(findEdge(row.shown), findEdge(row.library));
    }
    std::set<std::string_view> shown;
    int renamed = 0;
    for (int i = 0; i < edgeCount(); ++i) {
        shown.insert(shownEdgeName(edgeName(i)));
        renamed += shownEdgeName(edgeName(i)) != edgeName(i) ? 1 : 0;
    }
    EXPECT_EQ(shown.size(), 107U);
    EXPECT_EQ(renamed, 13);
    EXPECT_EQ(findEdge("Half Pipe, 4 Stripe"), -1);
    EXPECT_EQ(findEdge(""), -1);
}

TEST_F(EdgeLibrary, EachEdgeStandsInOneSubmenu) {
    const struct {
        const char* name;
        std::size_t count;
        const char* first;
        const char* last;  // as shown
    } menus[] = {{"Bevels", 19, "Basic, Flat Sides", "Round, Bumper"},
                 {"Inset Face", 17, "Bevel, Power", "Wavey"},
                 {"Pipes and Half Pipes", 14, "Half Pipe, Double", "Pipe, Full"},
                 {"Sharp", 14, "Pleats, 2", "Threads"},
                 {"Stacks", 8, "Fins, Thin", "Tiers, Rounded"},
                 {"Woodwork", 11, "Grooves, Beveled", "Tongue, Large"},
                 {"Special Purpose", 16, "Bowl, Crescent", "VexCave, Pouting"},
                 {"Chiseled", 8, "Chiseled", "Chiseled, Steps"}};
    ASSERT_EQ(edgeCategories().size(), std::size(menus));
    std::set<int> seen;
    for (std::size_t i = 0; i < std::size(menus); ++i) {
        const EdgeCategory& category = edgeCategories()[i];
        EXPECT_EQ(category.name, menus[i].name);
        EXPECT_EQ(category.edges.size(), menus[i].count);
        EXPECT_EQ(shownEdgeName(category.edges.front()), menus[i].first);
        EXPECT_EQ(shownEdgeName(category.edges.back()), menus[i].last);
        for (const std::string_view edge : category.edges) {
            EXPECT_TRUE(seen.insert(findEdge(edge)).second) << edge;
            EXPECT_EQ(edgeCategory(edge), static_cast<int>(i));
        }
    }
    EXPECT_EQ(seen.size(), 107U);
    EXPECT_EQ(*seen.begin(), 0);
    EXPECT_EQ(edgeCategory("Half Pipe"), -1);  // a name of menus alone
}

/// The first two edges, with one line changed.
std::unique_ptr<SceneX> buildWith(const char* from, const char* to) {
    std::vector<const char*> lines;
    int ends = 0;
    for (const char* const* line = builtInEdgeTexts().edges; ends < 2; ++line) {
        if (std::strstr(*line, "end ProfileI") != nullptr) ++ends;
        if (std::strstr(*line, from) == nullptr)
            lines.push_back(*line);
        else if (to != nullptr)
            lines.push_back(to);
    }
    lines.push_back(nullptr);
    return buildEdgeLibrary(
        {lines.data(), builtInEdgeTexts().sphere, builtInEdgeTexts().lightIcon});
}

TEST_F(EdgeLibrary, ABrokenTextGivesNone) {
    const auto whole = buildWith("none such", nullptr);
    ASSERT_NE(whole, nullptr);
    EXPECT_EQ(whole->count(MemberKind::kProfile), 2U);
    EXPECT_EQ(whole->count(MemberKind::kObject), 2U);

    testing::internal::CaptureStderr();
    EXPECT_EQ(buildWith("begin ProfileI", "begin Profile"), nullptr);
    EXPECT_EQ(buildWith("type Linear", "type Spline"), nullptr);
    EXPECT_EQ(buildWith(" p 0.000000", "p 0.0 zero"), nullptr);
    EXPECT_EQ(buildWith("attachedHead", "attachedhead 0"), nullptr);
    EXPECT_EQ(buildWith("end ProfileI", nullptr), nullptr);
    const char* const cut[] = {"begin ObjectP", " name \"sphere\"", nullptr};
    EXPECT_EQ(buildEdgeLibrary({builtInEdgeTexts().edges, cut, builtInEdgeTexts().lightIcon}),
              nullptr);
    const std::string log = testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 6) << log;
    EXPECT_EQ(edgeCount(), 107);
}

TEST_F(EdgeLibrary, IconsAreSolidsWithNormalsOutwards) {
    std::uint32_t revision = 0;
    for (ObjectP* const icon : {sphereIcon(), lightIcon()}) {
        ASSERT_NE(icon, nullptr);
        const Mesh3& mesh = *icon->mesh(1, revision);
        const test::Solid solid = test::examine(mesh);
        EXPECT_EQ(solid.openEdges, 0) << icon->name();
        EXPECT_EQ(solid.inwardCorners, 0) << icon->name();
        EXPECT_GT(solid.volume, 0.5) << icon->name();
        for (int t = 0; t < mesh.texVertexCount(); ++t)
            for (const double value : {mesh.texVertex(t).x, mesh.texVertex(t).y})
                EXPECT_TRUE(value >= 0.0 && value <= 1.0) << icon->name();
    }
    const Mesh3& ball = *sphereIcon()->mesh(1, revision);
    for (int f = 0; f < ball.faceCount(); ++f) {
        const FaceView face = ball.face(f);
        for (std::size_t i = 0; i < face.vertices.size(); ++i) {
            const Vec3 p = ball.vertex(face.vertices[i]);
            EXPECT_NEAR(length(p), 1.0, 1e-5);
            EXPECT_NEAR(dot(p, ball.normal(face.normals[i])), 1.0, 1e-5);
        }
    }
    const Box3 lamp = lightIcon()->localBounds();
    EXPECT_NEAR(lamp.min.z, -1.0, 1e-6);
    EXPECT_NEAR(lamp.max.z, 1.0, 1e-6);
}

// ---- ProfileL

Result readText(SceneX& scene, const std::string& text) {
    MemoryStream stream(&scene, text);
    while (stream.hasMore())
        if (const Result result = stream.runTopCommand(); result != kSuccess) return result;
    return kSuccess;
}

Result readMember(SceneX& scene, const std::string& body) {
    return readText(scene, "begin ProfileL\n" + body + "end ProfileL\n");
}

TEST_F(EdgeLibrary, ProfileLKeepsItsIndexAlone) {
    SceneX scene;
    ASSERT_EQ(readMember(scene, "name \"my edge\"\nlibIdx 8\nload\n"), kSuccess);
    auto* const edge = scene.memberAs<ProfileL>(MemberKind::kProfile, "my edge");
    ASSERT_NE(edge, nullptr);
    EXPECT_EQ(edge->libIdx(), 8);
    MemoryStream written(nullptr);
    ASSERT_EQ(written.writeObject(*edge), kSuccess);
    EXPECT_EQ(written.text(),
              "begin ProfileL\n name \"my edge\"\n libIdx 8\n load\nend ProfileL\n");
    // A copy of the curves, not the library's own.
    ASSERT_NE(edge->inputProfile(), edgeAt(8)->inputProfile());
    MemoryStream own(nullptr);
    MemoryStream librarys(nullptr);
    ASSERT_EQ(own.writeObject(*edge->inputProfile()), kSuccess);
    ASSERT_EQ(librarys.writeObject(*edgeAt(8)->inputProfile()), kSuccess);
    EXPECT_EQ(own.text(), librarys.text());
}

TEST_F(EdgeLibrary, ProfileLWithoutAnEdgeComesBackFromItsOwnFile) {
    for (const int index : {-1, 107}) {
        SceneX scene;
        scene.make<ProfileL>("edge").setLibIdx(index);
        MemoryStream written(nullptr);
        ASSERT_EQ(written.writeObject(*scene.memberByName("edge")), kSuccess);
        SceneX other;
        ASSERT_EQ(readText(other, written.text()), kSuccess) << written.text();
        auto* const back = other.memberAs<ProfileL>(MemberKind::kProfile, "edge");
        ASSERT_NE(back, nullptr);
        EXPECT_EQ(back->libIdx(), index);
    }
}

TEST_F(EdgeLibrary, ProfileLRefusesWhatTheLibraryLacks) {
    const struct {
        const char* body;
        Result result;
    } rows[] = {{"libIdx 106\nload\n", kSuccess}, {"libIdx 107\nload\n", kFailure},
                {"libIdx -1\nload\n", kFailure},  {"load\nlibIdx 3\n", kFailure},
                {"libIdx x\n", kFailure},         {"libIdx 107\n", kSuccess}};
    for (const auto& row : rows) {
        SceneX scene;
        EXPECT_EQ(readMember(scene, row.body), row.result) << row.body;
    }
}

TEST_F(EdgeLibrary, ProfileLFollowsItsIndexOnLoad) {
    SceneX scene;
    auto& edge = scene.make<ProfileL>("edge");
    EXPECT_EQ(edge.libIdx(), -1);
    EXPECT_EQ(edge.load(), kFailure);
    edge.setLibIdx(findEdge("Basic, Flat Sides"));
    ASSERT_EQ(edge.load(), kSuccess);

    // The straight line encloses nothing and is a shape all the same.
    std::uint32_t stamp = 0;
    const Mesh2* const shape = edge.getShape(0.5, 20.0, stamp);
    ASSERT_NE(shape, nullptr);
    ASSERT_EQ(shape->vertexCount(), 2);
    EXPECT_EQ(shape->vertex(0), (Vec2{0.0, 0.0}));
    EXPECT_EQ(shape->vertex(1), (Vec2{0.0, 100.0}));
    std::uint32_t again = 0;
    edge.getShape(0.5, 20.0, again);
    EXPECT_EQ(again, stamp);

    auto* const copy = dynamic_cast<ProfileL*>(scene.cloneMember(edge, "copy"));
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->libIdx(), edge.libIdx());
    EXPECT_EQ(copy->bounds().ymax, 100.0);

    edge.setLibIdx(findEdge("Wavey"));
    ASSERT_EQ(edge.load(), kSuccess);
    // A scene has one member for an edge, whatever the names of its members.
    EXPECT_EQ(useLibraryEdge(scene, findEdge("Wavey")), &edge);
    scene.make<ProfileI>("Heart");
    ProfileL* const heart = useLibraryEdge(scene, findEdge("Heart"));
    ASSERT_NE(heart, nullptr);
    EXPECT_NE(heart->name(), "Heart");
    EXPECT_EQ(useLibraryEdge(scene, findEdge("Heart")), heart);
    EXPECT_EQ(useLibraryEdge(scene, 107), nullptr);
    edge.getShape(0.5, 20.0, again);
    EXPECT_NE(again, stamp);
    EXPECT_GT(edge.bounds().xmax, 1.0);
    EXPECT_EQ(copy->inputProfile()->paths[0].curves[0].points().size(), 2U);
}

}  // namespace
}  // namespace orvin
