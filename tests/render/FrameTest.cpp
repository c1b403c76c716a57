#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <limits>

#include "render/VisibilityBuffer.h"
#include "tests/render/TestScene.h"
#include "toolkit/Errors.h"
#include "toolkit/Progress.h"

namespace orvin {
namespace {

using Pixel = std::array<int, 4>;

int largestDifference(const Picture& a, const Picture& b) {
    EXPECT_EQ(a.bytes.size(), b.bytes.size());
    int largest = 0;
    for (std::size_t i = 0; i < std::min(a.bytes.size(), b.bytes.size()); ++i)
        largest = std::max(largest, std::abs(int{a.bytes[i]} - int{b.bytes[i]}));
    return largest;
}

TEST(Frame, OrthographicCoverageByHand) {
    // A unit a pixel. The right edge at 2.3 lies in pixel 7, 0.6 of a subpixel into the first of
    // its two columns; row 0 is the bottom of the picture.
    TestScene s;
    s.light(LightType::kAmbient);
    s.material("m", {0.5F, 0.25F, 0.0F, 1.0F});
    s.object(TestScene::rectangle(-2.0, -5.0, 2.3, -2.6), "m");
    const Picture p = s.render();
    EXPECT_EQ(p.at(6, 0), (Pixel{128, 64, 0, 255}));
    EXPECT_EQ(p.at(7, 0), (Pixel{128, 64, 0, 128}));
    EXPECT_EQ(p.at(8, 0), (Pixel{0, 0, 0, 0}));
    EXPECT_EQ(p.at(2, 0), (Pixel{0, 0, 0, 0}));
    EXPECT_EQ(p.at(6, 2), (Pixel{128, 64, 0, 128}));
    EXPECT_EQ(p.at(7, 2), (Pixel{128, 64, 0, 64}));
    EXPECT_EQ(p.at(6, 3), (Pixel{0, 0, 0, 0}));

    s.params.unpremultiply = 0;
    EXPECT_EQ(s.render().at(7, 2), (Pixel{32, 16, 0, 64}));
}

TEST(Frame, OrthographicFitByAspect) {
    // 20 x 10 pixels, a camera of aspect 1 and 10 units across: the camera's height fills the
    // picture's height, squares stay square; scaled vertically the width is stretched.
    TestScene s;
    s.params.width = 20;
    s.params.antiAliasSize = 1;
    s.light(LightType::kAmbient);
    s.object(TestScene::rectangle(-2.1, -2.1, 2.1, 2.1));
    const auto extent = [](const Picture& p) {
        int columns = 0;
        int rows = 0;
        for (int x = 0; x < p.width; ++x)
            columns += p.at(x, p.height / 2)[3] != 0 ? 1 : 0;
        for (int y = 0; y < p.height; ++y)
            rows += p.at(p.width / 2, y)[3] != 0 ? 1 : 0;
        return std::pair(columns, rows);
    };
    // Aspect 1 is below the picture's 2: the scale is the width's, 2 pixels a unit.
    EXPECT_EQ(extent(s.render()), std::pair(8, 8));
    s.camera().setScaleVertically(true);
    EXPECT_EQ(extent(s.render()), std::pair(8, 4));
    s.camera().setScaleVertically(false);
    s.params.viewAspect = 4.0;  // wider than the picture: 2.5 units high
    EXPECT_EQ(extent(s.render()), std::pair(16, 10));
}

TEST(Frame, PerspectiveCoverageByHand) {
    // At depth 100 a film of 35 behind a lens of 50 sees 70 units: 100 pixels.
    TestScene s;
    s.camera().setProjection(Projection::kPerspective);
    s.params.width = 100;
    s.params.height = 50;
    s.params.antiAliasSize = 1;
    s.light(LightType::kAmbient);
    s.object(TestScene::rectangle(-17.6, -3.6, 17.6, 7.1));
    const Picture p = s.render();
    const int top = 25 + static_cast<int>(7.1 / 0.7) - 1;
    const int bottom = 25 - static_cast<int>(3.6 / 0.7);
    for (int y = 0; y < 50; ++y)
        for (int x = 0; x < 100; ++x) {
            const bool inside = x >= 25 && x <= 74 && y >= bottom && y <= top;
            EXPECT_EQ(p.at(x, y)[3], inside ? 255 : 0) << x << ", " << y;
        }
    s.params.pixelAspect = 2.0F;  // wide pixels: as many columns, twice the rows
    const Picture wide = s.render();
    EXPECT_EQ(wide.at(25, 25)[3], 255);
    EXPECT_EQ(wide.at(24, 25)[3], 0);
    EXPECT_EQ(wide.at(50, 25 + 19)[3], 255);  // 2 * 10.14 rows up
    EXPECT_EQ(wide.at(50, 25 + 20)[3], 0);
}

TEST(Frame, TransparentOverOpaqueIsThePlainOver) {
    TestScene s;
    s.light(LightType::kAmbient);
    s.material("back", {0.0F, 0.0F, 1.0F, 1.0F});
    s.material("front", {1.0F, 0.0F, 0.0F, 1.0F}, 0.25);
    s.material("veil", {0.0F, 1.0F, 0.0F, 1.0F}, 0.5);
    s.object(TestScene::rectangle(-5, -5, 2.5, 5), "back");
    s.object(TestScene::rectangle(-5, 0, 5, 5, 1.0), "front");
    EXPECT_EQ(s.render().at(1, 1), (Pixel{0, 0, 255, 255}));
    EXPECT_EQ(s.render().at(1, 8), (Pixel{192, 0, 64, 255}));
    EXPECT_EQ(s.render().at(9, 8), (Pixel{255, 0, 0, 192}));
    // Half a pixel of the back: its share of the pixel counts, not of the front.
    EXPECT_EQ(s.render().at(7, 8)[3], 224);
    s.object(TestScene::rectangle(-5, 0, 5, 5, 2.0), "veil");
    EXPECT_EQ(s.render().at(1, 8), (Pixel{96, 128, 32, 255}));
}

TEST(Frame, AbuttingTrianglesLeaveNoGapAndDontOverlap) {
    // A clear sheet of crooked triangles: a gap or an overlap would show in alpha.
    for (const bool perspective : {false, true}) {
        TestScene s;
        if (perspective) s.camera().setProjection(Projection::kPerspective);
        s.params.width = s.params.height = 80;
        s.params.antiAliasSize = 3;
        s.light(LightType::kAmbient);
        s.material("clear", {1.0F, 1.0F, 1.0F, 1.0F}, 0.5);
        Mesh3 mesh;
        const int cells = 40;
        for (int j = 0; j <= cells; ++j)
            for (int i = 0; i <= cells; ++i)
                mesh.addVertex({(i - 20 + 0.2 * std::sin(i * 12.9 + j * 78.2)) * 2.0,
                                (j - 20 + 0.2 * std::sin(i * 39.3 + j * 11.1)) * 2.0,
                                perspective ? 0.3 * std::sin(i * 7.7 + j * 3.1) : 0.0});
        for (int j = 0; j < cells; ++j)
            for (int i = 0; i < cells; ++i) {
                const int a = j * (cells + 1) + i;
                const std::array<int, 3> lower{a, a + 1, a + cells + 2};
                const std::array<int, 3> upper{a, a + cells + 2, a + cells + 1};
                mesh.addFace(ElementKind::kPolygon, 0, lower);
                mesh.addFace(ElementKind::kPolygon, 0, upper);
            }
        s.object(std::move(mesh), "clear");
        const Picture p = s.render();
        int wrong = 0;
        // The first row and column take what truncates to them from outside the picture.
        for (int y = 1; y < p.height; ++y)
            for (int x = 1; x < p.width; ++x)
                wrong += std::abs(p.at(x, y)[3] - 128) > 1 ? 1 : 0;
        EXPECT_EQ(wrong, 0);
    }
}

TEST(Frame, NearClipLeavesTheTextureWhereItWas) {
    // A floor that runs under and behind the eye, against the same floor cut off by hand in front
    // of the clip, with texture coordinates to match.
    const auto floor = [](double back) {
        const double far = 500.0;
        return TestScene::quad(
            {{{-300, -8, back}, {300, -8, back}, {300, -8, -far}, {-300, -8, -far}}}, back / far,
            -1.0);
    };
    const auto render = [&floor](double back) {
        TestScene s;
        s.camera().setProjection(Projection::kPerspective);
        s.camera().setClip(5.0, 1000.0);
        s.params.width = 64;
        s.params.height = 48;
        s.light(LightType::kAmbient);
        MaterialX& m = s.material("m", {0.0F, 0.0F, 0.0F, 1.0F});
        m.setFlag(MaterialX::kColorMap, true);
        m.setMap(MapUse::kColor, s.map(1, 64, 256, [](int x, int y) {
            return std::array<std::uint8_t, 4>{static_cast<std::uint8_t>(x * 4),
                                               static_cast<std::uint8_t>(y), 99, 255};
        }));
        for (SceneMember* member : s.scene.members(MemberKind::kImageMap))
            static_cast<ImageMap*>(member)->setDomain({0.0, 1.0, -1.0, 0.4});
        s.object(floor(back), "m");
        return s.render();
    };
    const Picture clipped = render(150.0);
    EXPECT_EQ(clipped.at(32, 2)[3], 255);
    EXPECT_LE(largestDifference(clipped, render(94.0)), 1);
}

TEST(Frame, TilesOfAnySizeGiveTheSameBytes) {
    TestScene s(60.0);
    s.camera().setProjection(Projection::kPerspective);
    s.params.width = 93;
    s.params.height = 71;
    s.params.antiAliasSize = 3;
    s.light(LightType::kDirectional);
    s.light(LightType::kAmbient, 0.2);
    s.material("glass", {0.3F, 0.9F, 0.5F, 1.0F}, 0.6);
    s.object(TestScene::ball(20, 40, 20));
    s.object(TestScene::rectangle(-40, -9, 30, 9, 15), "glass").transform().setRotate({20, 50, 5});
    s.params.maxTileArea = std::numeric_limits<int>::max();
    const Picture whole = s.render();
    for (const int area : {10000, 400, 49, 1, 0, -7}) {
        s.params.maxTileArea = area;
        EXPECT_EQ(s.render(), whole) << area;
    }
}

TEST(Frame, PagedPictureHasTheSameBytes) {
    TestScene s;
    s.params.width = 600;
    s.params.height = 500;
    s.params.antiAliasSize = 1;
    s.params.blurOption = 1;
    s.params.blurRadius = 1.0F;
    s.light(LightType::kDirectional);
    s.object(TestScene::ball(4, 40, 20));
    SoftwareRenderOptions options;
    options.memoryBudget = 2 * (0xfa000 + 100000);
    const auto image = renderSoftware(s.scene, s.params, options);
    EXPECT_TRUE(image->isPaged());
    EXPECT_EQ(Picture(*image), s.render());
    options.memoryBudget = 1000;
    EXPECT_THROW(renderSoftware(s.scene, s.params, options), std::bad_alloc);
}

TEST(Frame, EveryNormalFacesTheEye) {
    // Front, back and mirrored sides of a lit sheet all show the same brightness.
    struct Case {
        const char* what;
        Vec3 scale;
        double turn;
    };
    const Case cases[] = {{"front", {1, 1, 1}, 0},
                          {"back", {1, 1, 1}, 180},
                          {"mirrored", {-1, 1, 1}, 0},
                          {"mirrored, back", {-1, 1, 1}, 180},
                          {"turned inside out", {1, 1, -1}, 0}};
    for (const bool perspective : {false, true})
        for (const Case& c : cases) {
            TestScene s;
            if (perspective) s.camera().setProjection(Projection::kPerspective);
            s.light(LightType::kDirectional, 0.5);
            s.material("m", {1.0F, 1.0F, 1.0F, 1.0F});
            ObjectP& sheet = s.object(TestScene::rectangle(-50, -50, 50, 50), "m");
            sheet.transform().setScale(c.scale);
            sheet.transform().setRotate({0, c.turn, 0});
            EXPECT_EQ(s.render().at(4, 4), (Pixel{128, 128, 128, 255})) << c.what;
        }
    // And the shading of a mirrored ball is that of the ball.
    const auto ball = [](double scale) {
        TestScene s;
        s.params.width = s.params.height = 40;
        s.light(LightType::kDirectional).transform().setRotate({-30, 60, 0});
        s.object(TestScene::ball(4, 32, 16)).transform().setScale({scale, 1, 1});
        return s.render();
    };
    EXPECT_LE(largestDifference(ball(1), ball(-1)), 1);
}

TEST(Frame, BumpDoesNotDependOnHowTheObjectIsTurned) {
    // The same surface in the world: once as it is, once built turned and turned back.
    const auto render = [](bool turned) {
        TestScene s;
        s.params.width = s.params.height = 40;
        s.light(LightType::kDirectional).transform().setRotate({-20, 50, 0});
        MaterialX& m = s.material("m", {1.0F, 1.0F, 1.0F, 1.0F});
        MaterialX::Look look = m.look();
        look.flags |= MaterialX::kBumpMap;
        look.bumpScale = 1.0;
        m.setLook(look);
        m.setMap(MapUse::kBump, s.map(1, 32, 32, [](int x, int y) {
            return std::array<std::uint8_t, 4>{
                0, 0, 0, static_cast<std::uint8_t>((x * x + 3 * y * x) & 255)};
        }));
        const double k = turned ? 1.0 : 0.0;
        const auto corner = [k](double x, double y) {
            return k != 0.0 ? Vec3{y, -x, 0} : Vec3{x, y, 0};
        };
        ObjectP& o = s.object(
            TestScene::quad({{corner(-4, -4), corner(4, -4), corner(4, 4), corner(-4, 4)}}), "m");
        if (turned) o.transform().setRotate({0, 0, 90});
        return s.render();
    };
    const Picture straight = render(false);
    EXPECT_LE(largestDifference(straight, render(true)), 1);
    // It is there at all: the flat sheet would be of one brightness.
    EXPECT_NE(straight.at(15, 15)[0], straight.at(25, 22)[0]);
}

TEST(Frame, FacesWithoutMaterialAndOtherElements) {
    TestScene s;
    s.light(LightType::kAmbient, 0.5);
    Mesh3 mesh = TestScene::rectangle(-5, -5, 5, 0);
    const std::array<int, 4> order{0, 1, 2, 3};
    mesh.addVertex({5, 5, 0});
    mesh.addFace(ElementKind::kLine, 0, order);
    mesh.addFace(ElementKind::kPointList, 0, order);
    s.object(mesh, "nobody");
    const int own = static_cast<int>(0.9F * 0.5F * 256);
    EXPECT_EQ(s.render().at(2, 2), (Pixel{own, own, own, 255}));
    EXPECT_EQ(s.render().at(2, 8), (Pixel{0, 0, 0, 0}));
    s.object(TestScene::rectangle(-5, -5, 5, 5, 5)).setEnabled(false);
    EXPECT_EQ(s.render().at(2, 8), (Pixel{0, 0, 0, 0}));
}

TEST(Frame, BadGeometryNeitherShowsNorHarms) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    for (const bool perspective : {false, true}) {
        TestScene s;
        if (perspective) s.camera().setProjection(Projection::kPerspective);
        s.light(LightType::kAmbient);
        s.light(LightType::kPoint);
        s.object(TestScene::rectangle(-5, -5, 5, 5));
        const Picture good = s.render();
        for (const double bad : {nan, inf, -inf, 1e200, 1e308}) {
            s.object(TestScene::quad({{{bad, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}}));
            s.object(TestScene::quad({{{0, 0, bad}, {1, 0, 50}, {1, 1, 50}, {0, 1, bad}}}));
        }
        s.object(TestScene::quad({{{1, 1, 50}, {1, 1, 50}, {1, 1, 50}, {1, 1, 50}}}));
        s.object(TestScene::quad({{{0, 0, 50}, {1, 1, 50}, {2, 2, 50}, {3, 3, 50}}}));
        s.object(TestScene::rectangle(-5, -5, 5, 5, 100.0));  // in the eye's plane
        s.object(TestScene::rectangle(-5, -5, 5, 5, 99.5));   // before the clip
        EXPECT_EQ(s.render().at(8, 2), good.at(8, 2));
        EXPECT_EQ(s.render().at(1, 1), good.at(1, 1));
    }
}

TEST(Frame, ManyLayersNeedNoStack) {
    TestScene s;
    s.params.width = s.params.height = 2;
    s.params.antiAliasSize = 1;
    s.light(LightType::kAmbient);
    s.material("air", {1.0F, 1.0F, 1.0F, 1.0F}, 1.0);
    s.material("wall", {0.25F, 0.5F, 0.75F, 1.0F});
    Mesh3 air;
    for (int i = 0; i < 100000; ++i) {
        const double z = -50.0 + i * 1e-3;
        const std::array<int, 3> corners{air.addVertex({-50, -50, z}), air.addVertex({50, -50, z}),
                                         air.addVertex({0, 90, z})};
        air.addFace(ElementKind::kPolygon, 0, corners);
    }
    s.object(TestScene::rectangle(-50, -50, 50, 50, -60), "wall");
    s.object(std::move(air), "air");
    EXPECT_EQ(s.render().at(1, 1), (Pixel{64, 128, 192, 255}));
}

TEST(Frame, TilesTooDeepForMemoryArePaintedInParts) {
    // 16 clear layers over 90,000 subpixels don't fit at once; the picture is that of small tiles.
    TestScene s(5.0);
    s.params.width = s.params.height = 100;
    s.params.antiAliasSize = 3;
    s.light(LightType::kAmbient);
    s.material("haze", {1.0F, 0.5F, 0.25F, 1.0F}, 0.9);
    for (int i = 0; i < 8; ++i)
        s.object(TestScene::ball(4.0 + i * 0.01, 12, 6), "haze");
    int last = 0;
    setProgress([&last](int current, int total) {
        EXPECT_LE(current, total);
        EXPECT_GE(current, last);
        last = current;
        return 0;
    });
    const Picture deep = s.render();
    setProgress({});
    s.params.maxTileArea = 225;
    EXPECT_EQ(s.render(), deep);

    VisibilityTile tile;
    s.params.maxTileArea = 10000;
    const VisibilityBuffer visibility(s.scene, nullptr, s.params);
    int parts = 0;
    int pixels = 0;
    EXPECT_TRUE(visibility.visitTile(0, tile, [&](const VisibilityTile& part) {
        ++parts;
        pixels += part.pixelRect().width() * part.pixelRect().height();
        return true;
    }));
    EXPECT_GT(parts, 1);
    EXPECT_EQ(pixels, 100 * 100);
}

TEST(Frame, OddSizesAndEmptyScenes) {
    TestScene s;
    EXPECT_EQ(s.render().bytes, std::vector<std::uint8_t>(400, 0));
    s.light(LightType::kAmbient);
    s.object(TestScene::rectangle(-5, -5, 5, 5));
    for (const int n : {0, 1, 5, 255}) {
        s.params.antiAliasSize = static_cast<std::uint8_t>(n);
        s.params.width = s.params.height = 1;
        EXPECT_EQ(s.render().at(0, 0)[3], 255);
    }
    s.params.antiAliasSize = 3;
    s.params.width = 10.9;  // a part of a pixel more than the picture has
    s.params.height = 10;
    EXPECT_EQ(s.render().width, 10);
    s.params.height = 0;
    EXPECT_EQ(s.render().bytes.size(), 0U);
    for (const double size : {-1.0, 1e9, std::numeric_limits<double>::quiet_NaN()}) {
        s.params.width = size;
        EXPECT_THROW(s.render(), eBaseError);
    }
    TestScene blind;
    blind.object(TestScene::rectangle(-5, -5, 5, 5));
    blind.scene.destroy(blind.camera());
    testing::internal::CaptureStderr();
    EXPECT_EQ(blind.render().bytes, std::vector<std::uint8_t>(400, 0));
    EXPECT_NE(testing::internal::GetCapturedStderr().find("dflt_cam"), std::string::npos);
}

TEST(Frame, TellsWhatItDoes) {
    TestScene s;
    s.params.width = 250;
    s.params.height = 120;
    s.light(LightType::kAmbient);
    s.object(TestScene::rectangle(-2, -1, 1, 1));  // 25 pixels a unit: columns 75 to 149
    testing::internal::CaptureStdout();
    s.render();
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "creating visibility tiles...\n"
              "Maximum Tile Area set to 10000 subpixels.\n"
              "Screen tiled to 6 sections.\n"
              "Scene contains 2 triangles.\n"
              "setup done...\n"
              "getting tile 0\n"
              "getting tile 1\n");
}

TEST(Frame, StopsWhereverItIsAsked) {
    TestScene s;
    s.params.setAntiAliasLevel(4);
    s.light(LightType::kDirectional);
    s.object(TestScene::rectangle(-5, -5, 5, 5));
    int polls = 0;
    int last = 0;
    setProgress([&](int current, int total) {
        ++polls;
        EXPECT_GE(current, 0);
        EXPECT_LE(current, total);
        last = current * 100 / total;
        return 0;
    });
    ASSERT_NE(renderSoftware(s.scene, s.params), nullptr);
    EXPECT_EQ(last, 100);
    const int all = polls;
    EXPECT_GE(all, 1 + 10 + 1 + 10);  // a light, rows, a tile, rows of the filter
    std::vector<bool> cursor;
    SoftwareRenderOptions options;
    options.busyCursor = [&cursor](bool busy) { cursor.push_back(busy); };
    for (int stop = 1; stop <= all; ++stop) {
        polls = 0;
        setProgress([&](int, int) { return ++polls == stop ? 1 : 0; });
        EXPECT_EQ(renderSoftware(s.scene, s.params, options), nullptr) << stop;
        EXPECT_EQ(polls, stop);
        // A stop is over with its frame.
        setProgress({});
        EXPECT_NE(renderSoftware(s.scene, s.params), nullptr);
    }
    for (std::size_t i = 0; i < cursor.size(); ++i)
        EXPECT_EQ(cursor[i], i % 2 == 0);
    EXPECT_EQ(cursor.size(), 2 * static_cast<std::size_t>(all));
}

TEST(RenderParams, AntiAliasLevels) {
    struct Case {
        int level, n, blur;
        float radius;
    };
    const Case cases[] = {{0, 1, 0, 0.0F},  {1, 1, 0, 0.0F},  {2, 2, 0, 0.0F},  {3, 2, 1, 0.6F},
                          {4, 2, 1, 1.0F},  {5, 2, 1, 1.5F},  {6, 3, 0, 0.0F},  {11, 4, 1, 0.6F},
                          {14, 5, 0, 0.0F}, {17, 5, 1, 1.5F}, {18, 1, 0, 0.0F}, {-3, 1, 0, 0.0F}};
    for (const Case& c : cases) {
        RenderParams params;
        params.setAntiAliasLevel(c.level);
        EXPECT_EQ(params.antiAliasSize, c.n) << c.level;
        EXPECT_EQ(params.blurOption, c.blur) << c.level;
        EXPECT_EQ(params.blurRadius, c.radius) << c.level;
        EXPECT_EQ(params.blurContrast, 0.0F) << c.level;
    }
}

}  // namespace
}  // namespace orvin
