// orvinhost as its user has it: command lines, files and exit statuses, with the test effect.
#include "common/Files.h"
#include "common/Png.h"
#include "orvinhost/Commands.h"
#include "orvinhost/Flat.h"
#include "orvinhost/Module.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace orvin::stand_in {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

constexpr PF_Cmd kChooseFault = 1000;

class Program : public testing::Test {
  protected:
    void SetUp() override {
        apps::writeText(file("empty.twp"), " Version \"none\"\n begin SceneX\n end SceneX\n");
        choose("");
    }
    void TearDown() override { choose(""); }

    std::string file(const std::string& name) const { return (folder_.path() / name).string(); }
    void choose(std::string fault) {
        module_.entry()(kChooseFault, nullptr, nullptr, nullptr, nullptr, fault.data());
    }
    static int run(std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), {"--module", ORVIN_TEST_EFFECT_PATH, "--quiet"});
        return runProgram(arguments);
    }
    int render(std::vector<std::string> more) {
        std::vector<std::string> arguments{"render", file("empty.twp"), "--size", "6x4"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return run(arguments);
    }
    json readJsonFile(const std::string& name) const {
        return json::parse(apps::readText(file(name)));
    }
    // The test effect paints one colour.
    std::vector<int> color(const std::string& name) const {
        const apps::Picture picture = apps::readPng(file(name));
        const std::uint8_t* p = picture.pixel(picture.width - 1, picture.height - 1);
        return {p[0], p[1], p[2], p[3]};
    }

  private:
    const Module module_{ORVIN_TEST_EFFECT_PATH};
    const test::TempFolder folder_;
};

TEST_F(Program, RendersKeyFrames) {
    apps::writeText(file("keys.json"), R"({"Size": [[0, 10], [4, 50]], "Kind": "Three"})");
    EXPECT_EQ(render({"--keys", file("keys.json"), "--frames", "0-4:2", "--out", file("f-%02d.png"),
                      "--report", file("report.json")}),
              0);
    EXPECT_EQ(color("f-00.png"), (std::vector<int>{10, 0, 0, 255}));
    EXPECT_EQ(color("f-02.png"), (std::vector<int>{30, 0, 0, 255}));
    EXPECT_EQ(color("f-04.png"), (std::vector<int>{50, 0, 0, 255}));
    EXPECT_FALSE(fs::exists(file("f-01.png")));
    const json report = readJsonFile("report.json");
    EXPECT_EQ(report["frames"].size(), 3u);
    EXPECT_EQ(report["broken"], 0);
}

TEST_F(Program, ShowsTheCompToTheEffect) {
    apps::writeText(file("comp.json"),
                    R"({"layerStart": 2, "camera": {"position": [[0, [10, 20, 0]],
                        [4, [50, 60, 0]]], "zoom": 99}})");
    apps::writeText(file("keys.json"), R"({"Switch": true})");
    for (const char* host : {"13.28", "13.2", "12.10"}) {
        EXPECT_EQ(render({"--comp", file("comp.json"), "--keys", file("keys.json"), "--host", host,
                          "--out", file("comp.png")}),
                  0);
        EXPECT_EQ(color("comp.png"), (std::vector<int>{30, 40, 99, 255})) << host;
    }
}

TEST_F(Program, HandsOutLayersAndScalesThemDown) {
    apps::Picture picture(8, 8);
    for (std::size_t i = 0; i < picture.rgba.size(); i += 4) {
        picture.rgba[i + 1] = 77;
        picture.rgba[i + 3] = 255;
    }
    apps::writePng(file("map.png"), picture);
    EXPECT_EQ(render({"--layer-map", "1=" + file("map.png"), "--downsample", "4", "--out",
                      file("out.png")}),
              0);
    EXPECT_EQ(color("out.png"), (std::vector<int>{50, 77, 0, 255}));
    EXPECT_EQ(apps::readPng(file("out.png")).width, 2);
    EXPECT_EQ(render({"--input", file("map.png"), "--composite", "--out", file("out.png")}), 0);
    EXPECT_EQ(color("out.png"), (std::vector<int>{0, 77, 0, 255}));
}

TEST_F(Program, FlatDataComesBackAsItWent) {
    EXPECT_EQ(render({"--out", file("a.png"), "--save-flat", file("flat"), "--reload"}), 0);
    EXPECT_TRUE(looksFlat(apps::readFile(file("flat"))));
    EXPECT_EQ(run({"render", "--flat", file("flat"), "--size", "6x4", "--out", file("b.png")}), 0);
    EXPECT_EQ(color("a.png"), color("b.png"));
    EXPECT_EQ(run({"render", "--flat", file("empty.twp"), "--out", file("c.png")}), 1);
}

TEST_F(Program, RendersOnAThreadOfItsOwn) {
    EXPECT_EQ(render({"--render-thread", "--frames", "0-3", "--out", file("t-%d.png")}), 0);
    EXPECT_EQ(color("t-3.png"), (std::vector<int>{50, 0, 0, 255}));
    EXPECT_EQ(render({"--render-thread", "--abort-after", "1", "--out", file("x.png")}), 1);
}

TEST_F(Program, DrawsThePanelAndDrags) {
    EXPECT_EQ(run({"panel", file("empty.twp"), "--out", file("panel.png"), "--click", "3,3",
                   "--drag", "12,3"}),
              0);
    const apps::Picture panel = apps::readPng(file("panel.png"));
    const std::uint8_t* p = panel.pixel(9, 20);  // second pixel of the control, which is BGRA
    EXPECT_EQ(p[0], 10);
    EXPECT_EQ(p[1], 20);
    EXPECT_EQ(p[2], 30);
}

TEST_F(Program, ListsParameters) {
    EXPECT_EQ(run({"params", "--out", file("params.json")}), 0);
    const json params = readJsonFile("params.json");
    ASSERT_EQ(params.size(), 10u);
    EXPECT_EQ(params[4]["choices"], (json{"One", "Two", "Three"}));
    EXPECT_EQ(params[5]["default"], 50.0);
    EXPECT_EQ(params[5]["valid"], (json{0.0, 100.0}));
}

TEST_F(Program, SaysWhatWentWrongByItsStatus) {
    const struct {
        std::vector<std::string> more;
        int status;
    } cases[] = {
        {{}, 2},                                              // no --out
        {{"--out", "x.png", "--frames", "0-3"}, 2},           // no number
        {{"--out", "x.png", "--size", "0x4"}, 2},             //
        {{"--out", "x.png", "--host", "14.0"}, 2},            //
        {{"--out", "x.png", "--keys", "none.json"}, 1},       // no such file
        {{"--out", file("x.png"), "--abort-after", "2"}, 1},  // stopped
        {{"--out", file("x.png"), "--refuse-handle", "SEQUENCE_RESETUP:1"}, 1},
        {{"--out", file("empty.twp") + "/x.png"}, 1},  // can't be written
        {{"--out", file("x.jpg")}, 2},                 // pictures are PNG
        {{"--out", file("x.png"), "--input", file("x.png")}, 2},
        {{"--out", file("x.png"), "--layer-map", "1=" + file("none.png")}, 1},
    };
    for (const auto& c : cases)
        EXPECT_EQ(render(c.more), c.status);
    EXPECT_EQ(runProgram(std::vector<std::string>{"nonsense"}), 2);
    EXPECT_EQ(run({"render", file("none.twp"), "--out", "x.png"}), 1);
    apps::writeText(file("story.twp"), "Once upon a time");
    EXPECT_EQ(run({"render", file("story.twp"), "--out", file("story.png")}), 1);
    EXPECT_FALSE(fs::exists(file("story.png")));

    choose("output.unwritten");
    EXPECT_EQ(render({"--out", file("x.png")}), 1);
    EXPECT_EQ(render({"--out", file("x.png"), "--strict", "off"}), 0);
}

TEST_F(Program, RefusesKeysThatDoNotFit) {
    for (const char* bad :
         {R"({"Size": 101})", R"({"Nothing": 1})", R"({"Kind": "Four"})", R"({"Kind": 1.5})",
          R"({"Kind": [[0, 1], [5, 2]]})", R"({"Group": 1})", R"({"Tint": [1, 2]})",
          R"({"Size": [[0, 1], [1]]})", "[1]", "{", R"({"Layer Map 1": "none"})"}) {
        apps::writeText(file("keys.json"), bad);
        EXPECT_EQ(render({"--keys", file("keys.json"), "--out", file("x.png")}), 1) << bad;
    }
    apps::writeText(file("keys.json"), R"({"5": 20, "Tint": "#ff8000", "Layer Map 1": null})");
    EXPECT_EQ(render({"--keys", file("keys.json"), "--out", file("x.png")}), 0);
}

}  // namespace
}  // namespace orvin::stand_in
