// The pieces of the programs by themselves: options, names, files, time, poses, memory.
#include "common/Files.h"
#include "common/Options.h"
#include "common/Png.h"
#include "orvinhost/Comp.h"
#include "orvinhost/Flat.h"
#include "orvinhost/HandleTable.h"
#include "orvinhost/JsonValue.h"
#include "orvinhost/PiplCheck.h"
#include "orvinhost/World.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <cstring>

namespace orvin::stand_in {
namespace {

namespace fs = std::filesystem;

std::vector<std::uint8_t> bytesOf(std::string_view text) {
    return std::vector<std::uint8_t>(text.begin(), text.end());
}

TEST(Options, ReadsRatios) {
    const struct {
        const char* text;
        int num;
        int den;
    } cases[] = {{"24", 24, 1},          {"29.97", 30000, 1001}, {"23.976", 24000, 1001},
                 {"59.94", 60000, 1001}, {"10/11", 10, 11},      {"12.5", 25, 2},
                 {"0.9091", 909, 1000}};
    for (const auto& c : cases) {
        const apps::Ratio ratio = apps::ratioOption(c.text, "--fps");
        EXPECT_EQ(ratio.num, c.num) << c.text;
        EXPECT_EQ(ratio.den, c.den) << c.text;
    }
    for (const char* bad : {"", "0", "-1", "1/0", "x", "24fps", "nan", "1e9"})
        EXPECT_THROW(apps::ratioOption(bad, "--fps"), apps::UsageError) << bad;
}

TEST(Options, ReadsFrameRanges) {
    const apps::FrameRange range = apps::frameRangeOption("-5-10:3", "--frames");
    EXPECT_EQ(range.first, -5);
    EXPECT_EQ(range.last, 10);
    EXPECT_EQ(range.step, 3);
    EXPECT_EQ(apps::frameRangeOption("7", "--frames").last, 7);
    for (const char* bad : {"", "5-4", "1-2:0", "1-", "a-b", "1-2-3"})
        EXPECT_THROW(apps::frameRangeOption(bad, "--frames"), apps::UsageError) << bad;
}

TEST(Options, ParsesACommandLine) {
    const apps::CommandSpec spec{
        "render", "FILE", 1, 1, "", {{"--size", "WxH", ""}, {"--quiet", "", ""}}, {}};
    const std::vector<std::string> line{"--size=3x4", "--quiet", "--", "--odd name"};
    const apps::ParsedOptions parsed = apps::parseOptions(spec, line);
    EXPECT_EQ(parsed.value("--size"), "3x4");
    EXPECT_TRUE(parsed.has("--quiet"));
    EXPECT_EQ(parsed.positional(), std::vector<std::string>{"--odd name"});
    const std::vector<std::vector<std::string>> bad{
        {}, {"a", "b"}, {"a", "--size"}, {"a", "--none"}, {"a", "--quiet=1"}};
    for (const auto& arguments : bad)
        EXPECT_THROW(apps::parseOptions(spec, arguments), apps::UsageError);
}

TEST(FramePattern, NumbersFiles) {
    EXPECT_EQ(apps::FramePattern("a-%04d.png").path(7), "a-0007.png");
    EXPECT_EQ(apps::FramePattern("a-%04d.png").path(-7), "a--007.png");
    EXPECT_EQ(apps::FramePattern("a%d").path(12345), "a12345");
    EXPECT_EQ(apps::FramePattern("100%%.png").path(1), "100%.png");
    for (const char* bad : {"%s", "%d%d", "%", "%04", "%x"})
        EXPECT_THROW(apps::FramePattern{bad}, apps::UsageError) << bad;
}

TEST(Png, KeepsEveryPixelAndRefusesOtherFiles) {
    apps::Picture picture(3, 2);
    for (std::size_t i = 0; i < picture.rgba.size(); ++i)
        picture.rgba[i] = static_cast<std::uint8_t>(i * 11);
    const test::TempFolder folder;
    const fs::path path = folder.path() / "made on the way" / "picture.png";
    apps::writePng(path, picture);
    const apps::Picture back = apps::readPng(path);
    EXPECT_EQ(back.width, 3);
    EXPECT_EQ(back.height, 2);
    EXPECT_EQ(back.rgba, picture.rgba);
    apps::writeText(path, "no picture");
    EXPECT_THROW(apps::readPng(path), apps::Failure);
    EXPECT_THROW(apps::readPng(path / "none"), apps::Failure);
}

TEST(Track, MovesInStraightLinesOrSteps) {
    const nlohmann::json keys = nlohmann::json::parse("[[10, 100], [0, 0], [20, 50]]");
    Track track = jsonTrack(keys, 1, "test");
    EXPECT_EQ(track.at(-3.0), Values{0.0});
    EXPECT_EQ(track.at(2.5), Values{25.0});
    EXPECT_EQ(track.at(15.0), Values{75.0});
    EXPECT_EQ(track.at(99.0), Values{50.0});
    track.holdKeys();
    EXPECT_EQ(track.at(9.99), Values{0.0});
    EXPECT_EQ(track.at(10.0), Values{100.0});
    for (const char* bad : {"[[0]]", "[[0, 1, 2]]", "\"x\"", "[1, 2]", "[[0, [1, 2]]]", "{}"})
        EXPECT_THROW(jsonTrack(nlohmann::json::parse(bad), 1, "test"), apps::Failure) << bad;
}

TEST(Track, MovesSmoothly) {
    const auto track = [](const char* keys) {
        return jsonTrack(nlohmann::json::parse(keys), 1, "test");
    };
    // From rest to rest: the cubic 3 t^2 - 2 t^3.
    const Track two = track(R"(["smooth", [10, 0], [20, 64]])");
    EXPECT_EQ(two.at(10.0), Values{0.0});
    EXPECT_DOUBLE_EQ(two.at(12.5)[0], 10.0);
    EXPECT_DOUBLE_EQ(two.at(15.0)[0], 32.0);
    EXPECT_EQ(two.at(20.0), Values{64.0});
    // Through its keys, without a corner at the middle one, rising all the way and flat on top.
    const Track many = track(R"(["smooth", [0, 0], [10, 10], [14, 40], [20, 40], [30, 0]])");
    EXPECT_DOUBLE_EQ(many.at(10.0)[0], 10.0);
    EXPECT_NEAR(many.at(10.0)[0] - many.at(9.999)[0], many.at(10.001)[0] - many.at(10.0)[0], 1e-5);
    EXPECT_GT(many.at(10.001)[0], 10.001);
    for (double frame = 0.0; frame < 14.0; frame += 0.25)
        EXPECT_LT(many.at(frame)[0], many.at(frame + 0.25)[0]) << frame;
    EXPECT_DOUBLE_EQ(many.at(17.0)[0], 40.0);
    EXPECT_THROW(track(R"(["smooth"])"), apps::Failure);
    EXPECT_THROW(track(R"(["bumpy", [0, 1]])"), apps::Failure);
}

TEST(Comp, PosesCamerasAndLights) {
    const nlohmann::json json = nlohmann::json::parse(R"({
        "size": [100, 80], "layerStart": 12,
        "camera": {"position": [50, 40, -200], "pointOfInterest": [250, 40, 0], "zoom": 140},
        "lights": [{"type": "spot", "position": [[0, [0, 0, 0]], [10, [10, 20, 30]]],
                    "rotation": [0, 0, 90], "coneAngle": 45, "active": [[0, 1], [5, 0]]}]})");
    const Comp comp(json, "comp.json", 64, 48);
    ASSERT_EQ(comp.layers().size(), 3u);
    EXPECT_EQ(comp.effectLayer(), 2);
    EXPECT_EQ(comp.activeCamera(0), 0);
    // The camera looks along the diagonal of x and z; its own y stays down.
    const Matrix4 camera = comp.layers()[0].worldFromLayer(0);
    const Vec3 ahead = camera.direction({0, 0, 1});
    EXPECT_NEAR(ahead.x, std::sqrt(0.5), 1e-12);
    EXPECT_NEAR(ahead.z, std::sqrt(0.5), 1e-12);
    EXPECT_NEAR(camera.direction({0, 1, 0}).y, 1.0, 1e-12);
    EXPECT_NEAR(camera.determinant3(), 1.0, 1e-12);
    EXPECT_EQ(camera.origin(), (Vec3{50, 40, -200}));
    // A quarter turn about z carries x to y: clockwise on the screen.
    const CompLayer& light = comp.layers()[1];
    EXPECT_NEAR(light.worldFromLayer(0).direction({1, 0, 0}).y, 1.0, 1e-12);
    EXPECT_EQ(light.worldFromLayer(5).origin(), (Vec3{5, 10, 15}));
    EXPECT_TRUE(light.activeAt(4.9));
    EXPECT_FALSE(light.activeAt(5));
    AEGP_StreamVal value;
    AEGP_StreamType kind = AEGP_StreamType_NO_DATA;
    EXPECT_TRUE(light.streamValue(AEGP_LayerStream_CONE_ANGLE, 0, value, kind));
    EXPECT_EQ(value.one_d, 45.0);
    EXPECT_FALSE(light.streamValue(AEGP_LayerStream_ZOOM, 0, value, kind));

    for (const char* bad :
         {R"({"lights": [{"type": "sun"}]})", R"({"camera": {"zom": 1}})", R"({"sise": [1, 1]})",
          R"({"size": [0, 5]})", R"({"layers": [{}]})", R"({"lights": 3})"})
        EXPECT_THROW(Comp(nlohmann::json::parse(bad), "comp.json", 64, 48), apps::Failure) << bad;
}

TEST(World, MakesPicturesSmallerByTheirVisibleColour) {
    apps::Picture picture(3, 1);
    const std::uint8_t pixels[12] = {200, 0, 0, 255, 0, 99, 0, 0, 10, 20, 30, 128};
    std::memcpy(picture.rgba.data(), pixels, sizeof pixels);
    const World world(picture, 2);
    ASSERT_EQ(world.width(), 2);
    ASSERT_EQ(world.height(), 1);
    EXPECT_EQ(world.row(0)[0].red, 200);  // the transparent green doesn't bleed in
    EXPECT_EQ(world.row(0)[0].green, 0);
    EXPECT_EQ(world.row(0)[0].alpha, 128);
    EXPECT_EQ(world.row(0)[1].blue, 30);
}

TEST(Flat, WrapsAProjectWithItsEndMarkOnce) {
    for (const char* text : {" Version \"x\"\n", " Version \"x\"\n**EndOfStream**\n"}) {
        const std::vector<std::uint8_t> flat = flatFromProject(text);
        ASSERT_TRUE(looksFlat(flat));
        EXPECT_EQ(flat[4], flat.size());
        EXPECT_EQ(std::vector<std::uint8_t>(flat.begin() + 8, flat.end()),
                  bytesOf(std::string(" Version \"x\"\n**EndOfStream**\n") + '\0'))
            << text;
    }
    EXPECT_FALSE(looksFlat(bytesOf("LIVE    ")));
}

TEST(HandleTable, MovesDataAndRefusesOnRequest) {
    std::vector<Rule> reported;
    HandleTable table([&reported](Rule rule, const std::string&) { reported.push_back(rule); });
    const PF_Handle handle = table.allocate(8);
    void* first = table.lock(handle);
    std::memcpy(first, "content", 8);
    table.unlock(handle);
    void* second = table.lock(handle);
    EXPECT_NE(first, second);
    EXPECT_STREQ(static_cast<char*>(second), "content");
    table.unlock(handle);

    PF_Handle grown = handle;
    EXPECT_EQ(table.resize(100, &grown), PF_Err_NONE);
    EXPECT_EQ(table.size(grown), 100u);
    EXPECT_EQ(std::memcmp(*grown, "content", 8), 0);
    table.refuseRequest(2);
    EXPECT_EQ(table.resize(50, &grown), PF_Err_NONE);  // shrinking asks for nothing
    const PF_Handle other = table.allocate(1);
    EXPECT_NE(other, nullptr);
    EXPECT_EQ(table.allocate(1), nullptr);
    EXPECT_TRUE(table.refused());
    EXPECT_NE(table.allocate(0), nullptr);
    EXPECT_TRUE(reported.empty());
    table.checkAtEnd();
    EXPECT_EQ(reported, std::vector<Rule>(3, Rule::kHandleLeak));
}

// Header, then properties of vendor, key, id, length and data.
std::vector<std::uint8_t> resource(std::uint32_t flags) {
    std::vector<std::uint8_t> bytes{1, 0, 0, 0, 0, 0, 4, 0, 0, 0};
    const auto word = [&bytes](std::uint32_t value) {
        for (int shift = 0; shift < 32; shift += 8)
            bytes.push_back(static_cast<std::uint8_t>(value >> shift & 255u));
    };
    const std::uint32_t properties[][2] = {
        {0x6B696E64, 0x65464B54}, {0x65474C4F, flags}, {0x65474C32, 7}, {0x65564552, 0x100000}};
    for (const auto& property : properties) {
        word(0x3842494D);
        word(property[0]);
        word(0);
        word(4);
        word(property[1]);
    }
    return bytes;
}

TEST(PiplCheck, ComparesAndSurvivesDamage) {
    const ReportedIdentity reported{0x4008435, 7, 0x100000};
    std::vector<std::uint8_t> good = resource(0x4008435);
    EXPECT_TRUE(piplFaults(good, reported).empty());
    EXPECT_EQ(piplFaults(resource(1), reported).size(), 1u);
    for (std::size_t size = 0; size < good.size(); ++size)
        EXPECT_FALSE(piplFaults({good.data(), size}, reported).empty()) << size;
}

}  // namespace
}  // namespace orvin::stand_in
