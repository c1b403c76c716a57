// ProfileI: its block of the stream, and which loops its shape leaves out.
#include "vector/illustrator/ProfileI.h"

#include <gtest/gtest.h>

#include <string>

#include "scene/MemoryStream.h"
#include "scene/SceneX.h"
#include "vector/VectorClasses.h"

namespace orvin {
namespace {

std::string square(double x, double y, double size, bool closed = true) {
    std::string text = " begin CompositeCurve2 closed ";
    text += closed ? "1" : "0";
    text += " begin Curve2 type Linear";
    const double corners[][2] = {{0, 0}, {size, 0}, {size, size}, {0, size}, {0, 0}};
    for (const auto& c : corners)
        text += " p " + std::to_string(x + c[0]) + " " + std::to_string(y + c[1]);
    return text + " end Curve2 end CompositeCurve2";
}

Result readInto(ProfileI& profile, const std::string& body) {
    MemoryStream stream(nullptr, body);
    return loadBlock(stream, profile);
}

Result readOutline(ProfileI& profile, const std::string& paths) {
    return readInto(profile, "begin InputProfile2" + paths + " end InputProfile2 end ProfileI");
}

TEST(ProfileI, ReadsBackWhatItWrites) {
    SceneX scene;
    registerVectorClasses();
    const std::string block =
        "begin ProfileI\n"
        " name \"Input 1\"\n"
        " filename \"art/\\\"odd\\\" name.ai\"\n"
        " layer \"Layer 1\"\n"
        " begin InputProfile2\n"
        "  begin CompositeCurve2\n"
        "   closed 0\n"
        "   begin Curve2\n"
        "    type Bezier\n"
        "    p 0.000000 0.000000\n"
        "    p 1.000000 0.000000\n"
        "    p 1.000000 2.500000\n"
        "    attachedHead 0\n"
        "    attachedTail 1\n"
        "    closed 0\n"
        "   end Curve2\n"
        "  end CompositeCurve2\n"
        " end InputProfile2\n"
        "end ProfileI\n";
    MemoryStream in(&scene, block);
    ASSERT_EQ(loadBlock(in, scene), kSuccess);
    auto* const profile = scene.memberAs<ProfileI>(MemberKind::kProfile, "Input 1");
    ASSERT_NE(profile, nullptr);
    EXPECT_EQ(profile->fileSpec(), "art/\"odd\" name.ai");
    MemoryStream out(nullptr);
    ASSERT_EQ(out.writeObject(*profile), kSuccess);
    EXPECT_EQ(out.text(), block);

    // A copy has everything, curves included.
    profile->keepFaces = false;
    auto* const copy = dynamic_cast<ProfileI*>(scene.cloneMember(*profile, "Input 1"));
    EXPECT_EQ(copy, nullptr) << "a name that is taken";
    auto* const second = dynamic_cast<ProfileI*>(scene.cloneMember(*profile, "Input 2"));
    ASSERT_NE(second, nullptr);
    EXPECT_FALSE(second->keepFaces);
    EXPECT_EQ(second->layerName(), "Layer 1");
    EXPECT_EQ(second->inputProfile()->paths.size(), 1U);
}

TEST(ProfileI, RefusesOtherBlocksAndLoad) {
    SceneX scene;
    ProfileI profile(scene, "p");
    EXPECT_EQ(readInto(profile, "begin CompositeCurve2 end CompositeCurve2 end ProfileI"),
              kFailure);
    EXPECT_EQ(readInto(profile, "load end ProfileI"), kFailure);
    EXPECT_EQ(readInto(profile, "end ProfileL"), kFailure);
}

TEST(ProfileI, LoopsWithoutAreaAreNoPartOfTheShape) {
    const struct {
        const char* what;
        std::string paths;
        int loops;  // 0: there is no shape
    } cases[] = {
        {"a square", square(0, 0, 10), 1},
        {"0.0009 square units", square(0, 0, 0.03), 0},
        {"0.0016 square units", square(0, 0, 0.04), 1},
        {"a tiny one between two", square(0, 0, 10) + square(20, 0, 0.02) + square(40, 0, 5), 2},
        {"an open path that encloses something", square(0, 0, 10, false), 1},
        {"a straight line",
         " begin CompositeCurve2 begin Curve2 type Linear p 0 0 p 100 0"
         " end Curve2 end CompositeCurve2",
         0},
        {"nothing", "", 0},
        {"no numbers",
         " begin CompositeCurve2 begin Curve2 type Linear p nan 0 p 100 nan p 7 8"
         " end Curve2 end CompositeCurve2",
         0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        SceneX scene;
        ProfileI profile(scene, "p");
        ASSERT_EQ(readOutline(profile, c.paths), kSuccess);
        std::uint32_t stamp = 0;
        const Mesh2* const shape = profile.getShape(0.5, 20.0, stamp);
        ASSERT_EQ(shape != nullptr, c.loops > 0);
        if (shape == nullptr) continue;
        EXPECT_EQ(shape->faceCount(), c.loops);
        EXPECT_EQ(stamp, profile.changeCount());
        EXPECT_EQ(static_cast<std::size_t>(shape->vertexCount()), shape->cornerCount())
            << "what is left out leaves no vertices behind";
        // The same again without a change; a touch raises the revision.
        const std::uint32_t before = stamp;
        EXPECT_EQ(profile.getShape(0.5, 20.0, stamp), shape);
        EXPECT_EQ(stamp, before);
        profile.touch();
        profile.getShape(0.5, 20.0, stamp);
        EXPECT_NE(stamp, before);
    }
}

}  // namespace
}  // namespace orvin
