// The parts of the OpenGL road that need no context.
#include <gtest/gtest.h>

#include <cmath>

#include "render/RendererChoice.h"
#include "render/gl/ConeTexels.h"
#include "render/gl/ExtensionWords.h"
#include "render/gl/FixedPipeline.h"
#include "render/gl/GlView.h"
#include "render/gl/MeshArrays.h"
#include "render/gl/WindowPlace.h"
#include "tests/render/TestScene.h"

namespace orvin {
namespace {

TEST(RendererChoice, TwoToFourAreOpenGl) {
    for (const int method : {-7, 0, 1, 5, 1 << 30})
        EXPECT_FALSE(drawsWithOpenGl(rendererFor(method))) << method;
    EXPECT_EQ(rendererFor(2), Renderer::kHiQualityOpenGl);
    EXPECT_EQ(rendererName(rendererFor(3)), "Hiddenline Renderer");
    EXPECT_EQ(rendererName(rendererFor(4)), "Vector Renderer");
    EXPECT_EQ(rendererName(rendererFor(9)), "Orvinex Renderer");
}

TEST(ExtensionWords, OnlyWholeWordsCount) {
    const char* name = "WGL_ARB_pbuffer";
    EXPECT_TRUE(hasExtension("WGL_ARB_pbuffer", name));
    EXPECT_TRUE(hasExtension("A WGL_ARB_pbuffer B", name));
    EXPECT_TRUE(hasExtension("WGL_ARB_pbuffer_2 WGL_ARB_pbuffer", name));
    EXPECT_FALSE(hasExtension("WGL_ARB_pbuffer_2 WGL_ARB_pbuffers", name));
    EXPECT_FALSE(hasExtension("XWGL_ARB_pbuffer", name));
    EXPECT_FALSE(hasExtension("", name));
    EXPECT_FALSE(hasExtension("A B", ""));
}

TEST(WindowPlace, StandsInTheCornerOrDoesntFit) {
    const DesktopRect desk{0, 20, 1024, 740};
    const WindowFrame frame{3, 4, 18};
    EXPECT_EQ(renderWindowPlace(640, 480, frame, desk),
              (DesktopRect{1024 - 646, 740 - 506, 1024, 740}));
    EXPECT_TRUE(renderWindowPlace(1018, 694, frame, desk));
    EXPECT_FALSE(renderWindowPlace(1019, 694, frame, desk));
    EXPECT_FALSE(renderWindowPlace(1018, 695, frame, desk));
    EXPECT_FALSE(renderWindowPlace(2147483647, 1, frame, desk));
}

TEST(FixedPipeline, SpotsWithoutTextures) {
    EXPECT_EQ(spotCutoff(30.0), 31.0);
    EXPECT_EQ(spotCutoff(89.0), 90.0);
    EXPECT_EQ(spotCutoff(90.0), 90.0);
    EXPECT_EQ(spotCutoff(0.0), 1.0);
    // Half way between the angles nine tenths of the light are left.
    const double exponent = spotExponent(40.0, 60.0);
    EXPECT_NEAR(std::pow(std::cos(radians(50.0)), exponent), 0.9, 1e-12);
    EXPECT_EQ(spotExponent(0.0, 0.0), 128.0);
    EXPECT_EQ(spotExponent(0.0, 1.0), 128.0);
    EXPECT_NEAR(spotExponent(90.0, 90.0), 0.0, 0.01);
}

TEST(FixedPipeline, LightsWhereFramesDontTell) {
    TestScene s;
    LightX& light = s.light(LightType::kSpot, 0.5);
    light.setAngles(20.0, 90.0);
    EXPECT_NEAR(fixedLight(light, false).cutoff, 90.0F, 1e-4F);
    EXPECT_EQ(fixedLight(light, true).cutoff, 89.5F);
    EXPECT_EQ(fixedLight(light, true).exponent, 0.0F);
    // A lamp that takes light away is none, but ambient light may.
    light.setIntensity(-0.5);
    EXPECT_EQ(fixedLight(light, false).diffuse, (Rgba{0.0F, 0.0F, 0.0F, 1.0F}));
    light.setType(LightType::kAmbient);
    EXPECT_EQ(fixedLight(light, false).ambient, (Rgba{-0.5F, -0.5F, -0.5F, 1.0F}));
}

TEST(FixedPipeline, MaterialsByFlags) {
    MaterialX::Look look;
    look.diffuse = {0.5F, 0.25F, 1.0F, 0.75F};
    look.transparency = 0.25;
    look.specularExponent = 500.0;
    look.specularAmount = 0.5;
    FixedMaterial fixed = fixedMaterial(look);
    EXPECT_EQ(fixed.ambient, (Rgba{0.5F, 0.25F, 1.0F, 0.75F}));
    EXPECT_EQ(fixed.diffuse, (Rgba{0.5F, 0.25F, 1.0F, 1.0F}));
    EXPECT_EQ(fixed.specular[1], 0.5F);
    EXPECT_EQ(fixed.shininess, 128.0F);
    look.flags = MaterialX::kAmbient;
    look.ambient = {0.125F, 0.25F, 0.5F, 1.0F};
    fixed = fixedMaterial(look);
    EXPECT_EQ(fixed.ambient, (Rgba{0.125F, 0.25F, 0.5F, 0.75F}));
    EXPECT_EQ(fixed.diffuse, (Rgba{1.0F, 1.0F, 1.0F, 1.0F}));
    EXPECT_EQ(fixed.specular[0], 0.0F);
    EXPECT_EQ(fixed.shininess, 0.0F);
    look.flags = MaterialX::kSpecular;
    look.specularExponent = std::nan("");
    EXPECT_EQ(fixedMaterial(look).shininess, 0.0F);
}

TEST(ConeTexels, FollowTheLightsOwnStep) {
    // 64 x 64 texels over tangents of -1 to 1: the row above the middle runs along the axis.
    const double inner = radians(20.0);
    const double outer = radians(45.0);
    const auto texels = coneTexels(inner, outer, 64);
    LightX* light = nullptr;
    TestScene s;
    light = &s.light(LightType::kSpot);
    light->setAngles(20.0, 45.0);
    light->prepare();
    for (int x = 1; x < 63; ++x) {
        const double across = (x + 0.5) / 32.0 - 1.0;
        LightX::Incidence lit;
        const bool any = light->incidence({across, 0.5 / 32.0, -1.0}, lit);
        EXPECT_NEAR(texels[static_cast<std::size_t>(32 * 64 + x)], any ? 255.0 * lit.strength : 0.0,
                    0.51)
            << x;
    }
    for (std::size_t i = 0; i < 64; ++i)
        EXPECT_EQ(texels[i] + texels[i * 64] + texels[i * 64 + 63] + texels[63 * 64 + i], 0);
    // A hard edge, and angles without a picture of their own.
    EXPECT_EQ(coneTexels(outer, outer, 64)[32 * 64 + 5], 255);
    EXPECT_EQ(coneTexels(outer, outer, 64)[5 * 64 + 5], 0);
    EXPECT_NEAR(degrees(coneAngle(radians(90.0))), 89.0, 1e-9);
    EXPECT_NEAR(degrees(coneAngle(0.0)), 0.1, 1e-9);
}

// A cube of quads, each with vertices of its own or all with the same eight.
Mesh3 cube(bool shared) {
    Mesh3 mesh;
    const auto at = [](int i) {
        return Vec3{i & 1 ? 1.0 : -1.0, i & 2 ? 1.0 : -1.0, i & 4 ? 1.0 : -1.0};
    };
    for (int i = 0; i < 8; ++i)
        mesh.addVertex(at(i));
    const std::array<std::array<int, 4>, 6> faces{
        {{0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4}, {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}}};
    for (std::array<int, 4> face : faces) {
        if (!shared)
            for (int& corner : face)
                corner = mesh.addVertex(at(corner));
        mesh.addFace(ElementKind::kPolygon, 0, face);
    }
    return mesh;
}

TEST(MeshArrays, FlatFacesOfACube) {
    const MeshArrays arrays = surfaceArrays(cube(true));
    EXPECT_EQ(arrays.vertices.size(), 24U);  // three normals at each corner
    EXPECT_EQ(arrays.triangles.size(), 36U);
    for (std::size_t i = 0; i < arrays.triangles.size(); i += 3) {
        const auto& a = arrays.vertices[arrays.triangles[i]];
        const auto& b = arrays.vertices[arrays.triangles[i + 1]];
        const auto& c = arrays.vertices[arrays.triangles[i + 2]];
        const Vec3 n = normalize(cross({double{b.x - a.x}, double{b.y - a.y}, double{b.z - a.z}},
                                       {double{c.x - a.x}, double{c.y - a.y}, double{c.z - a.z}}));
        EXPECT_NEAR(n.x, a.nx, 1e-6);
        EXPECT_NEAR(n.y, a.ny, 1e-6);
        EXPECT_NEAR(n.z, a.nz, 1e-6);
    }
    for (const bool shared : {true, false})
        EXPECT_EQ(edgeArrays(cube(shared)).lines.size(), 24U);
}

TEST(MeshArrays, SlotsLinesAndFlatJoints) {
    Mesh3 mesh = TestScene::ball(2.0, 8, 4);
    const MeshArrays ball = surfaceArrays(mesh);
    EXPECT_EQ(ball.vertices.size(), 45U);  // smooth: as many as the mesh has

    // Two squares in one plane, a third bent up, and a line of another slot.
    Mesh3 sheet;
    for (int i = 0; i < 4; ++i)
        for (const double y : {0.0, 1.0})
            sheet.addVertex({i < 3 ? i : 2.0, y, i < 3 ? 0.0 : 1.0});
    for (int i = 0; i < 3; ++i)
        sheet.addFace(ElementKind::kPolygon, i == 2 ? 5 : 0,
                      std::array<int, 4>{2 * i, 2 * i + 2, 2 * i + 3, 2 * i + 1});
    sheet.addFace(ElementKind::kLine, 5, std::array<int, 3>{0, 3, 4});
    sheet.addFace(ElementKind::kPointList, 5, std::array<int, 1>{0});
    const MeshArrays arrays = edgeArrays(sheet);
    ASSERT_EQ(arrays.lineRuns.size(), 2U);
    // 10 edges of squares less the flat joint; the bent one belongs to the face that came first.
    EXPECT_EQ(arrays.lineRuns[0].count, 2U * 6U);
    EXPECT_EQ(arrays.lineRuns[1].count, 2U * (3U + 2U));
    EXPECT_EQ(arrays.lineRuns[1].face, 2);
    ASSERT_EQ(surfaceArrays(sheet).triangleRuns.size(), 2U);
    EXPECT_EQ(surfaceArrays(sheet).triangleRuns[1].count, 6U);

    EXPECT_TRUE(surfaceArrays(Mesh3()).triangleRuns.empty());
    EXPECT_TRUE(edgeArrays(Mesh3()).lineRuns.empty());
}

TEST(GlView, IsTheCamerasProjectionButForDepth) {
    TestScene s;
    CameraX& camera = s.camera();
    for (const Projection projection : {Projection::kPerspective, Projection::kOrthographic}) {
        camera.setProjection(projection);
        camera.setUnderScan(0.25);
        const Matrix4 own = camera.projectionMatrix(2.0, 1.5);
        const GlView view = makeGlView(camera, 200, 100, 1.5, {});
        for (std::size_t row = 0; row < 4; ++row)
            for (const std::size_t column : {0U, 1U, 3U})
                EXPECT_NEAR(view.clipFromCamera.m[row][column], own.m[row][column], 1e-9);
    }
    // What is shown begins 60 units away and ends at 140: depth is spent on that.
    camera.setProjection(Projection::kPerspective);
    Box3 shown;
    shown.add({0, 0, 40});
    shown.add({0, 0, -40});
    const auto depth = [](const GlView& view, double z) {
        const auto& m = view.clipFromCamera.m;
        return (z * m[2][2] + m[3][2]) / (z * m[2][3] + m[3][3]);
    };
    const GlView fitted = makeGlView(camera, 200, 100, 1.0, shown);
    EXPECT_NEAR(depth(fitted, -60.0), -1.0, 0.01);
    EXPECT_LT(depth(fitted, -1e6), 1.0);
    EXPECT_NEAR(depth(makeGlView(camera, 200, 100, 1.0, {}), -1.0), -1.0, 1e-9);
    camera.setAperture(0.0);
    EXPECT_FALSE(makeGlView(camera, 200, 100, 1.0, shown).isUsable());
}

}  // namespace
}  // namespace orvin
