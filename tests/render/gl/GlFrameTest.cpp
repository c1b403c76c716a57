// Frames drawn with OpenGL, against the software renderer's and against values by hand.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <new>
#include <thread>

#include "render/gl/OrvinGLRender.h"
#include "render/gl/RenderWith.h"
#include "tests/render/TestScene.h"
#include "toolkit/Progress.h"

namespace orvin {
namespace {

using Pixel = std::array<int, 4>;

struct GlScene : TestScene {
    explicit GlScene(double unitsAcross = 10.0) : TestScene(unitsAcross) {
        params.width = 96;
        params.height = 64;
        params.antiAliasSize = 1;
    }
    Picture draw() {
        ImageBuffer picture(static_cast<int>(params.width), static_cast<int>(params.height),
                            PixelKind::kRgba);
        EXPECT_EQ(gl.renderFrame(scene, params, options, picture), kSuccess) << gl.failure();
        return Picture(picture);
    }
    /// A surface without highlights that answers light with its diffuse colour alone.
    MaterialX& matte(const std::string& name, const Rgba& color) {
        return material(name, color, 0.0);
    }

    OrvinGLRender gl;
    GlFrameOptions options;
};

struct Comparison {
    double uncommon = 0.0;  // share of the covered pixels that only one of the two covers
    double colour = 0.0;    // mean difference of a channel, in bytes, where both cover
    double worst = 0.0;
};

Comparison compare(const Picture& a, const Picture& b) {
    Comparison result;
    EXPECT_EQ(a.bytes.size(), b.bytes.size());
    double covered = 0.0;
    double common = 0.0;
    for (int y = 0; y < a.height; ++y)
        for (int x = 0; x < a.width; ++x) {
            const Pixel p = a.at(x, y);
            const Pixel q = b.at(x, y);
            if (p[3] == 0 && q[3] == 0) continue;
            covered += 1.0;
            if (p[3] == 0 || q[3] == 0) {
                result.uncommon += 1.0;
                continue;
            }
            common += 3.0;
            for (std::size_t i = 0; i < 3; ++i) {
                result.colour += std::abs(p[i] - q[i]);
                result.worst = std::max(result.worst, double(std::abs(p[i] - q[i])));
            }
        }
    EXPECT_GT(covered, 0.0);
    result.uncommon /= std::max(covered, 1.0);
    result.colour /= std::max(common, 1.0);
    return result;
}

int difference(const Pixel& a, const Pixel& b) {
    int most = 0;
    for (std::size_t i = 0; i < 4; ++i)
        most = std::max(most, std::abs(a[i] - b[i]));
    return most;
}

TEST(GlFrame, CoversWhatTheSoftwareRendererCovers) {
    struct Case {
        const char* what;
        Projection projection;
        float pixelAspect;
        bool scaleVertically;
        double aspect;
    };
    const Case cases[] = {
        {"orthographic", Projection::kOrthographic, 1.0F, false, 1.0},
        {"orthographic, wide camera", Projection::kOrthographic, 1.0F, false, 4.0},
        {"scaled vertically", Projection::kOrthographic, 1.0F, true, 1.0},
        {"perspective", Projection::kPerspective, 1.0F, false, 1.0},
        {"wide pixels", Projection::kPerspective, 2.0F, false, 1.0}};
    GlScene s;
    s.light(LightType::kAmbient);
    s.object(TestScene::ball(3.0, 24, 12)).transform().setTranslate({1, -0.5, 0});
    s.object(TestScene::rectangle(-4, -2, -1, 2, -1)).transform().setRotate({20, 30, 10});
    for (const Case& c : cases) {
        const bool perspective = c.projection == Projection::kPerspective;
        s.camera().setProjection(c.projection);
        s.camera().transform().setTranslate({0, 0, perspective ? 15.0 : 100.0});
        s.camera().setScaleVertically(c.scaleVertically);
        s.camera().setAspect(c.aspect);
        s.params.pixelAspect = c.pixelAspect;
        const Comparison seen = compare(s.draw(), s.render());
        EXPECT_LT(seen.uncommon, 0.02) << c.what;  // edges of a small picture
        EXPECT_LT(seen.colour, 1.0) << c.what;
    }
}

TEST(GlFrame, LightsFallAsTheSoftwareRenderersDo) {
    struct Case {
        const char* what;
        LightType type;
        bool advanced;
        double mean;  // allowed
        double worst;
    };
    const Case cases[] = {{"ambient", LightType::kAmbient, false, 0.6, 1.0},
                          {"directional", LightType::kDirectional, false, 1.0, 9.0},
                          {"point", LightType::kPoint, false, 2.0, 15.0},
                          {"spot by texture", LightType::kSpot, true, 2.0, 30.0}};
    for (const Case& c : cases) {
        GlScene s;
        s.matte("m", {0.8F, 0.5F, 0.3F, 1.0F});
        s.object(TestScene::ball(3.0, 64, 32), "m");
        s.object(TestScene::rectangle(-4.5, -2.5, 4.5, 2.5, -1.0), "m");
        LightX& light = s.light(c.type, 0.9);
        light.setColor({1.0F, 0.8F, 0.6F, 1.0F});
        light.transform().setTranslate({2, 1, 9});
        light.transform().setRotate({-8, 10, 0});
        light.setAngles(10, 22);
        s.options.advancedLighting = c.advanced;
        s.camera().setProjection(Projection::kPerspective);
        s.camera().transform().setTranslate({0, 0, 14});
        const Comparison seen = compare(s.draw(), s.render());
        EXPECT_LT(seen.colour, c.mean) << c.what;
        EXPECT_LE(seen.worst, c.worst) << c.what;
    }
}

TEST(GlFrame, AmbientLightAloneIsFlat) {
    GlScene s;
    MaterialX& m = s.matte("m", {0.8F, 0.4F, 0.2F, 1.0F});
    s.light(LightType::kAmbient, 0.5);
    s.object(TestScene::ball(4.0, 24, 12), "m");
    for (const bool own : {false, true}) {
        m.setFlag(MaterialX::kAmbient, own);
        m.setAmbient({0.2F, 1.0F, 0.4F, 1.0F});
        const Pixel expected = own ? Pixel{26, 128, 51, 255} : Pixel{102, 51, 26, 255};
        const Picture p = s.draw();
        for (int y = 0; y < p.height; ++y)
            for (int x = 0; x < p.width; ++x)
                if (p.at(x, y)[3] != 0) {
                    ASSERT_LE(difference(p.at(x, y), expected), 1) << x << ", " << y;
                }
        EXPECT_EQ(p.at(48, 32)[3], 255);
    }
    EXPECT_EQ(s.draw().at(0, 0), (Pixel{0, 0, 0, 0}));
    s.options.background = {1.0F, 0.0F, 0.2F};
    EXPECT_EQ(s.draw().at(0, 0), (Pixel{255, 0, 51, 0}));
}

// Each is lit from behind the camera; what mirrors or turns the back must not go dark.
TEST(GlFrame, MirroredAndTurnedSheetsAreLitOnTheSideThatShows) {
    GlScene s;
    s.matte("m", {1.0F, 1.0F, 1.0F, 1.0F});
    s.light(LightType::kDirectional, 0.8);
    ObjectP& sheet = s.object(TestScene::rectangle(-3, -3, 3, 3), "m");
    for (const Vec3 scale : {Vec3{1, 1, 1}, Vec3{-1, 1, 1}, Vec3{2, 0.5, -3}})
        for (const double turn : {0.0, 180.0}) {
            sheet.transform().setScale(scale);
            sheet.transform().setRotate({0, turn, 0});
            EXPECT_LE(difference(s.draw().at(48, 32), {204, 204, 204, 255}), 1)
                << scale.x << ' ' << scale.z << ' ' << turn;
        }
}

TEST(GlFrame, SpotsWithoutTextureStayInTheirCone) {
    GlScene s;
    s.matte("m", {1.0F, 1.0F, 1.0F, 1.0F});
    Mesh3 fine;
    for (int i = 0; i <= 40; ++i)
        for (int j = 0; j <= 40; ++j)
            fine.addVertex({i * 0.25 - 5.0, j * 0.25 - 5.0, 0.0});
    for (int i = 0; i < 40; ++i)
        for (int j = 0; j < 40; ++j) {
            const int a = i * 41 + j;
            fine.addFace(ElementKind::kPolygon, 0, std::array<int, 4>{a, a + 41, a + 42, a + 1});
        }
    s.object(std::move(fine), "m");
    LightX& spot = s.light(LightType::kSpot);
    spot.transform().setTranslate({0, 0, 5});
    spot.setAngles(10, 20);  // the cutoff of 21 degrees lies 1.92 units from the middle
    const Picture p = s.draw();
    EXPECT_GT(p.at(48, 32)[0], 230);
    const auto column = [](double x) { return static_cast<int>(48 + x * 9.6); };
    EXPECT_GT(p.at(column(1.4), 32)[0], 60);
    EXPECT_EQ(p.at(column(2.4), 32)[0], 0);
    EXPECT_EQ(p.at(column(2.4), 32)[3], 255);
}

TEST(GlFrame, TexturesMultiplyWhatIsLit) {
    GlScene s;
    MaterialX& m = s.matte("m", {0.5F, 1.0F, 1.0F, 1.0F});
    s.light(LightType::kAmbient);
    s.object(TestScene::rectangle(-4, -3, 4, 3), "m");
    m.setFlag(MaterialX::kColorMap, true);
    // Quarters: red, green, white, and one that is clear.
    m.setMap(MapUse::kColor, s.map(1, 64, 64, [](int x, int y) -> std::array<std::uint8_t, 4> {
        if (y < 32)
            return x < 32 ? std::array<std::uint8_t, 4>{255, 0, 0, 255}
                          : std::array<std::uint8_t, 4>{0, 255, 0, 255};
        return x < 32 ? std::array<std::uint8_t, 4>{255, 255, 255, 255}
                      : std::array<std::uint8_t, 4>{0, 0, 0, 0};
    }));
    const auto quarter = [](const Picture& p, bool right, bool top) {
        return p.at(right ? 66 : 30, top ? 46 : 18);
    };
    const Picture textured = s.draw();
    EXPECT_LE(difference(quarter(textured, false, false), {128, 0, 0, 255}), 1);
    EXPECT_LE(difference(quarter(textured, true, false), {0, 255, 0, 255}), 1);
    EXPECT_LE(difference(quarter(textured, false, true), {128, 255, 255, 255}), 1);
    EXPECT_LE(difference(quarter(textured, true, true), {128, 255, 255, 255}), 1);

    // Twice the extent from the left: only the picture's left half shows.
    s.scene.memberAs<ImageMap>(MemberKind::kImageMap, extMapName(1))->setDomain({0, 2, 0, 1});
    EXPECT_LE(difference(quarter(s.draw(), true, false), {128, 0, 0, 255}), 1);
    // Half the extent: beyond it the picture's edge goes on.
    s.scene.memberAs<ImageMap>(MemberKind::kImageMap, extMapName(1))->setDomain({0, 0.5, 0, 1});
    EXPECT_LE(difference(quarter(s.draw(), true, false), {0, 255, 0, 255}), 1);
    EXPECT_EQ(s.gl.texturesLoaded(), 1U);

    s.options.textures = false;
    EXPECT_LE(difference(quarter(s.draw(), false, false), {128, 255, 255, 255}), 1);
}

TEST(GlFrame, SpotsLightTexturesToo) {
    GlScene s;
    MaterialX& m = s.matte("m", {1.0F, 1.0F, 1.0F, 1.0F});
    s.object(TestScene::rectangle(-4, -3, 4, 3), "m");
    m.setFlag(MaterialX::kColorMap, true);
    m.setMap(MapUse::kColor, s.map(1, 8, 8, [](int, int) {
        return std::array<std::uint8_t, 4>{255, 51, 0, 255};
    }));
    for (int i = 0; i < 2; ++i) {
        LightX& spot = s.light(LightType::kSpot, 0.4);
        spot.transform().setTranslate({0, 0, 1000});
        spot.setAngles(0.05, 0.1);  // the one edge of light is 1.7 units away
    }
    s.options.advancedLighting = true;
    const Picture p = s.draw();
    EXPECT_LE(difference(p.at(48, 32), {204, 41, 0, 255}), 3);
    EXPECT_LE(difference(p.at(48 + 20, 32), {0, 0, 0, 255}), 1);
}

TEST(GlFrame, ReflectionsAddLightAndLeaveAlpha) {
    GlScene s;
    MaterialX& m = s.matte("m", {0.25F, 0.25F, 0.25F, 1.0F});
    s.light(LightType::kAmbient);
    s.object(TestScene::rectangle(-4, -3, 4, 3), "m");
    m.setFlag(MaterialX::kReflectionMap, true);
    m.setReflectivity(0.5);
    m.setMap(MapUse::kReflection, s.map(1, 8, 8, [](int, int) {
        return std::array<std::uint8_t, 4>{255, 0, 128, 255};
    }));
    EXPECT_LE(difference(s.draw().at(48, 32), {64 + 128, 64, 64 + 64, 255}), 2);
    m.setReflectivity(0.0);
    EXPECT_LE(difference(s.draw().at(48, 32), {64, 64, 64, 255}), 1);
}

TEST(GlFrame, ExtraPassesTouchVisiblePixelsOnly) {
    GlScene s;
    MaterialX& hidden = s.matte("hidden", {1.0F, 1.0F, 1.0F, 1.0F});
    s.matte("front", {0.5F, 0.5F, 0.5F, 1.0F});
    s.light(LightType::kAmbient);
    s.object(TestScene::rectangle(-4, -3, 4, 3, -2), "hidden");
    s.object(TestScene::rectangle(-4, -3, 0, 3, 0), "front");
    hidden.setFlag(MaterialX::kColorMap | MaterialX::kReflectionMap, true);
    const std::string map = s.map(1, 8, 8, [](int, int) {
        return std::array<std::uint8_t, 4>{0, 128, 0, 255};
    });
    hidden.setMap(MapUse::kColor, map);
    hidden.setMap(MapUse::kReflection, map);
    hidden.setReflectivity(1.0);
    const Picture p = s.draw();
    EXPECT_LE(difference(p.at(30, 32), {128, 128, 128, 255}), 1);
    EXPECT_LE(difference(p.at(66, 32), {0, 255, 0, 255}), 2);
}

// The side of a square as drawn: pixels of a colour along a row or column through the middle.
TEST(GlFrame, EdgesWithAndWithoutWhatIsHidden) {
    GlScene s;
    s.matte("front", {1.0F, 0.0F, 0.0F, 1.0F});
    s.matte("back", {0.0F, 1.0F, 0.0F, 1.0F});
    s.object(TestScene::rectangle(-2.02, -2.02, 2.02, 2.02, 1), "front");
    s.object(TestScene::rectangle(-1.02, -4.02, 1.02, 1.02, 0), "back");
    const auto count = [](const Picture& p, std::size_t channel) {
        int pixels = 0;
        for (int y = 0; y < p.height; ++y)
            for (int x = 0; x < p.width; ++x)
                pixels += p.at(x, y)[channel] == 255 && p.at(x, y)[3] == 255 ? 1 : 0;
        return pixels;
    };
    s.params.width = 100;  // a tenth of a unit each
    s.params.height = 100;
    s.options.style = Renderer::kVector;
    const Picture all = s.draw();
    EXPECT_NEAR(count(all, 0), 4 * 40, 6);
    EXPECT_NEAR(count(all, 1), 2 * (20 + 50), 8);
    EXPECT_EQ(all.at(50, 50), (Pixel{0, 0, 0, 0}));
    s.options.style = Renderer::kHiddenline;
    const Picture seen = s.draw();
    EXPECT_NEAR(count(seen, 0), 4 * 40, 6);
    EXPECT_NEAR(count(seen, 1), 20 + 2 * 20, 6);
    EXPECT_EQ(seen.at(50, 50), (Pixel{0, 0, 0, 0}));
}

TEST(GlFrame, MeshesAndTexturesLiveFromFrameToFrame) {
    GlScene s;
    MaterialX& m = s.matte("m", {1.0F, 1.0F, 1.0F, 1.0F});
    s.light(LightType::kAmbient);
    const auto grey = [](std::uint8_t value) {
        return [value](int, int) { return std::array<std::uint8_t, 4>{value, value, value, 255}; };
    };
    m.setFlag(MaterialX::kColorMap, true);
    m.setMap(MapUse::kColor, s.map(1, 4, 4, grey(100)));
    ObjectP* sheet = &s.object(TestScene::rectangle(-1, -1, 1, 1), "m");
    s.draw();
    sheet->transform().setTranslate({1, 0, 0});
    s.params.width = 50;  // another size has the same context
    s.draw();
    EXPECT_EQ(s.gl.meshesCompiled(), 1U);
    EXPECT_EQ(s.gl.texturesLoaded(), 1U);

    // What changes is made anew: the mesh, the layer's next picture, another object in its place.
    sheet->transform().setTranslate({0, 0, 0});
    sheet->setMesh(TestScene::rectangle(1, -1, 3, 1));
    EXPECT_EQ(s.draw().at(25, 32)[3], 0);
    EXPECT_EQ(s.gl.meshesCompiled(), 2U);
    ImageBuffer image(4, 4, PixelKind::kRgb);
    std::fill_n(image.direct(), 48, std::uint8_t{200});
    addLayerImage(extMapName(1), std::make_unique<SummedImage>(image));
    EXPECT_EQ(s.draw().at(35, 32)[0], 200);
    EXPECT_EQ(s.gl.texturesLoaded(), 2U);
    for (int i = 0; i < 20; ++i) {
        s.scene.destroy(*sheet);
        sheet = &s.object(TestScene::rectangle(-1, -1, i % 2 == 0 ? 1 : 0.2, 1), "m");
        EXPECT_EQ(s.draw().at(29, 32)[3], i % 2 == 0 ? 255 : 0) << i;
    }
    // A frame that breaks off leaves nothing, least of all textures without their pictures.
    s.options.overlay = [](const GlOverlay&) { throw std::bad_alloc(); };
    ImageBuffer none;
    EXPECT_THROW(s.gl.renderFrame(s.scene, s.params, s.options, none), std::bad_alloc);
    EXPECT_FALSE(s.gl.targetKind());
    s.options.overlay = nullptr;
    // A thread of its own may draw the next frame.
    std::thread([&s] { EXPECT_EQ(s.draw().at(24, 32)[3], 255); }).join();
    EXPECT_EQ(s.draw().at(24, 32)[3], 255);
    EXPECT_EQ(s.gl.meshesCompiled(), 23U);
}

TEST(GlFrame, WhatCantBeDrawnSaysSo) {
    GlScene s;
    s.light(LightType::kAmbient);
    s.object(TestScene::rectangle(-1, -1, 1, 1));
    ImageBuffer picture;
    for (const double size : {0.0, 0.99, -5.0, 40000.0, std::nan("")}) {
        s.params.width = size;
        EXPECT_EQ(s.gl.renderFrame(s.scene, s.params, s.options, picture), kFailure) << size;
        EXPECT_FALSE(s.gl.failure().empty());
        EXPECT_FALSE(s.gl.targetKind());
    }
    s.params.width = 1.0;
    s.params.height = 1.0;
    EXPECT_EQ(s.draw().at(0, 0)[3], 255);
    s.options.targets = {false, false, false};
    s.gl.reset();
    EXPECT_EQ(s.gl.renderFrame(s.scene, s.params, s.options, picture), kFailure);
    EXPECT_FALSE(s.gl.failure().empty());
    // The software renderer steps in.
    testing::internal::CaptureStderr();
    const auto instead = renderWith(s.gl, s.scene, s.params, s.options, {});
    EXPECT_NE(testing::internal::GetCapturedStderr().find("OpenGL is not available"),
              std::string::npos);
    ASSERT_TRUE(instead);
    EXPECT_EQ(Picture(*instead).at(0, 0)[3], 255);

    SceneX empty;
    EXPECT_EQ(s.gl.renderFrame(empty, s.params, GlFrameOptions(), picture), kFailure);
    EXPECT_NE(s.gl.failure().find("camera"), std::string::npos);
}

TEST(GlFrame, TheWidestPictureIsWholeOrRefused) {
    GlScene s;
    s.light(LightType::kAmbient);
    s.object(TestScene::rectangle(-5, -5, 5, 5));
    s.params.width = 32767;
    s.params.height = 2;
    ImageBuffer picture;
    if (s.gl.renderFrame(s.scene, s.params, s.options, picture) == kSuccess)
        EXPECT_EQ(Picture(picture).at(32766, 1)[3], 255);
    else
        EXPECT_NE(s.gl.failure().find("size"), std::string::npos);
    s.params.width = 16;
    EXPECT_EQ(s.draw().at(15, 1)[3], 255);
}

TEST(GlFrame, StopsWhenAskedTo) {
    GlScene s;
    s.light(LightType::kAmbient);
    s.object(TestScene::rectangle(-1, -1, 1, 1));
    ImageBuffer picture;
    setProgress([](int, int) { return 7; });
    EXPECT_EQ(s.gl.renderFrame(s.scene, s.params, s.options, picture), kFailure);
    EXPECT_TRUE(s.gl.failure().empty());
    EXPECT_EQ(renderWith(s.gl, s.scene, s.params, s.options, {}), nullptr);
    setProgress({});
    EXPECT_EQ(s.draw().at(48, 32)[3], 255);
}

TEST(GlFrame, FiltersLikeTheSoftwareRenderer) {
    GlScene s;
    s.light(LightType::kAmbient);
    s.matte("m", {1.0F, 0.5F, 0.0F, 1.0F});
    s.object(TestScene::rectangle(-2.02, -2.02, 2.02, 2.02), "m");
    s.params.blurOption = 1;
    s.params.blurRadius = 1.0F;
    const Comparison seen = compare(s.draw(), s.render());
    EXPECT_EQ(seen.uncommon, 0.0);
    EXPECT_LE(seen.worst, 1.0);
}

TEST(GlFrame, OddScenesDontHarm) {
    GlScene s;
    EXPECT_EQ(s.draw().at(48, 32), (Pixel{0, 0, 0, 0}));  // nothing at all
    for (int i = 0; i < 12; ++i)                          // more lights than there are
        s.light(i % 2 == 0 ? LightType::kSpot : LightType::kPoint, 0.01)
            .setAngles(0, 90.0 * (i % 3) / 2);
    Mesh3 mesh;
    mesh.addVertex({std::nan(""), 1e300, 0});
    mesh.addVertex({1, 0, 0});
    mesh.addVertex({0, 1, 0});
    mesh.addFace(ElementKind::kPolygon, -3, std::array<int, 3>{0, 1, 2});
    mesh.addFace(ElementKind::kPolygon, 7, std::array<int, 2>{1, 2});
    mesh.addFace(ElementKind::kPolygon, 7, std::array<int, 3>{1, 1, 1});
    s.object(std::move(mesh));
    s.object(TestScene::rectangle(-1, -1, 1, 1)).transform().setScale({0, 0, 0});
    s.options.advancedLighting = true;
    for (const Renderer style :
         {Renderer::kHiQualityOpenGl, Renderer::kHiddenline, Renderer::kVector}) {
        s.options.style = style;
        s.draw();
    }
    s.camera().transform().setScale({0, 0, 0});
    testing::internal::CaptureStdout();
    s.draw();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "BAD Camera INVERT!");
}

}  // namespace
}  // namespace orvin
