#include "vector/edges/CustomEdges.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "setup/StartUp.h"
#include "tests/support/TempFolder.h"
#include "vector/illustrator/ProfileI.h"

namespace orvin {
namespace {

std::string art(std::string_view layers) {
    return "%!PS-Adobe-3.0\n%%Creator: Adobe Illustrator(R) 8.0\n%%EndComments\n%%EndProlog\n"
           "%%BeginSetup\n%%EndSetup\n" +
           std::string(layers) + "%%PageTrailer\n%%Trailer\n%%EOF\n";
}
std::string layer(std::string_view name, std::string_view path) {
    return "%AI5_BeginLayer\n1 1 1 1 0 0 0 79 128 255 Lb\n(" + std::string(name) + ") Ln\n" +
           std::string(path) + "S\nLB\n%AI5_EndLayer--\n";
}

class CustomEdgesTest : public testing::Test {
  protected:
    CustomEdgesTest() { registerMemberClasses(); }
    void write(const char* name, std::string_view text) {
        std::ofstream(folder.path() / name, std::ios::binary) << text;
    }
    test::TempFolder folder;
    CustomEdges edges;
};

// The same section, drawn down and up, with ends that miss the faces by a little.
constexpr const char* kUp = "0.1 0.2 m\n30 50 L\n0.0 99.97 L\n";
constexpr const char* kDown = "0.2 100.3 m\n30 50 L\n-0.3 0.4 L\n";

TEST_F(CustomEdgesTest, LayersOfAllFilesInOrderOfTheirNames) {
    write("b.ai", art(layer("Notch", kUp) + layer("Ridge", kDown)));
    write("a.ai", art(layer("Notch", kDown)));
    std::filesystem::create_directories(folder.path() / "0 folder");
    edges.reload(folder.path());
    EXPECT_EQ(edges.scene().name(), "UserEdgeStyles");
    ASSERT_EQ(edges.count(), 3);
    const char* const names[] = {"Notch", "Notch1", "Ridge"};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(edges.edge(i)->name(), names[i]);
        const auto& paths = edges.edge(i)->inputProfile()->paths;
        ASSERT_EQ(paths.size(), 1U);
        EXPECT_EQ(paths[0].curves.front().points().front(), (Vec2{0.0, 0.0}));
        EXPECT_EQ(paths[0].curves.back().points().back(), (Vec2{0.0, 100.0}));
    }
    EXPECT_EQ(edges.edge(0)->layerName(), "Notch");
    EXPECT_EQ(edges.find("Ridge"), edges.edge(2));
    EXPECT_EQ(edges.find("ridge"), nullptr);
    EXPECT_EQ(edges.edge(3), nullptr);
    EXPECT_EQ(edges.edge(-1), nullptr);
}

TEST_F(CustomEdgesTest, WhatMakesNoSolidsIsListedAllTheSame) {
    const std::string straight = "0 0 m\n0 100 L\n";
    write("a.ai", art(layer("Notch", kUp) + layer("Guides", "") + layer("Flat", straight) +
                      layer("Two", kUp + std::string("S\n") + kUp) +
                      layer("Notch and Flat", kUp + ("S\n" + straight))));
    edges.reload(folder.path());
    const bool makeSolids[] = {true, false, false, true, false};
    ASSERT_EQ(edges.count(), 5);
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(makesSolids(*edges.edge(i)), makeSolids[i]) << edges.edge(i)->name();
}

TEST_F(CustomEdgesTest, ReloadForgetsWhatIsGone) {
    write("one.ai", art(layer("One", kUp)));
    edges.reload(folder.path());
    EXPECT_EQ(edges.count(), 1);
    std::filesystem::remove(folder.path() / "one.ai");
    edges.reload(folder.path());
    EXPECT_EQ(edges.count(), 0);
    EXPECT_EQ(edges.scene().name(), "UserEdgeStyles");
    edges.reload(folder.path() / "nowhere");
    EXPECT_EQ(edges.count(), 0);
}

TEST_F(CustomEdgesTest, WhatIsNoArtIsLeftOut) {
    const std::string good = art(layer("Good", kUp));
    write("1.ai", std::string("\x00\xff\x13 binary", 10));
    write("2.txt", "A note to myself.\n");
    write("3.ai", "");
    write("4.ai", good);
    write("5.ai", good.substr(0, good.size() / 8));
    testing::internal::CaptureStderr();
    edges.reload(folder.path());
    const std::string log = testing::internal::GetCapturedStderr();
    ASSERT_EQ(edges.count(), 1);
    EXPECT_EQ(edges.edge(0)->name(), "Good");
    for (const char* name : {"1.ai", "2.txt", "3.ai", "5.ai"})
        EXPECT_NE(log.find(name), std::string::npos) << name << "\n" << log;
    EXPECT_EQ(log.find("4.ai"), std::string::npos);
}

}  // namespace
}  // namespace orvin
