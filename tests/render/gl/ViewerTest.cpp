// The viewers' drawing and picking.
#include <gtest/gtest.h>

#include "render/gl/viewer/Picking.h"
#include "render/gl/viewer/TinyFont.h"
#include "render/gl/viewer/ViewerDrawing.h"
#include "setup/StartUp.h"
#include "tests/render/TestScene.h"

namespace orvin {
namespace {

TEST(Picking, RaysByHand) {
    TestScene s;  // orthographic, 10 units across, 100 in front of the origin
    CameraX& camera = s.camera();
    const auto ray = [&](int x, int y) { return *pixelRay(camera, x, y, 101, 101); };
    EXPECT_EQ(ray(50, 50).origin, (Vec3{0, 0, 99}));
    EXPECT_EQ(ray(50, 50).direction, (Vec3{0, 0, -1}));
    EXPECT_NEAR(ray(0, 0).origin.x, -5.0, 1e-12);
    EXPECT_NEAR(ray(0, 0).origin.y, 5.0, 1e-12);  // y counts downwards
    EXPECT_NEAR(ray(100, 100).origin.x, 5.0, 1e-12);

    // A film of 35 behind a lens of 50: the corner lies 35 units out at a depth of 100.
    camera.setProjection(Projection::kPerspective);
    const Ray corner = ray(100, 0);
    EXPECT_NEAR(corner.direction.x / -corner.direction.z, 0.35, 1e-12);
    EXPECT_NEAR(corner.direction.y / -corner.direction.z, 0.35, 1e-12);
    EXPECT_EQ(ray(50, 50).origin, (Vec3{0, 0, 99}));
    camera.transform().setRotate({0, 90, 0});
    EXPECT_NEAR(ray(50, 50).direction.x, -1.0, 1e-12);
    EXPECT_FALSE(pixelRay(camera, 0, 0, 0, 10));
    EXPECT_TRUE(pixelRay(camera, 0, 0, 1, 1));
    camera.setAperture(0.0);
    EXPECT_FALSE(pixelRay(camera, 0, 0, 10, 10));
}

TEST(Picking, TheFirstFaceFromEitherSide) {
    TestScene s;
    ObjectP& far = s.object(TestScene::rectangle(-3, -3, 3, 3, -2));
    ObjectP& near = s.object(TestScene::rectangle(0, 0, 2, 2, 1));
    near.transform().setRotate({0, 180, 0});  // its back shows, at x -2 to 0 and z -1
    near.transform().setScale({2, 1, 1});
    const auto hit = [&](int x, int y) {
        return pickObject(s.scene, *pixelRay(s.camera(), x, y, 101, 101));
    };
    ASSERT_TRUE(hit(25, 40));  // (-2.5, 1)
    EXPECT_EQ(hit(25, 40)->object, &near);
    EXPECT_NEAR(hit(25, 40)->point.x, -2.5, 1e-9);
    EXPECT_NEAR(hit(25, 40)->point.z, -1.0, 1e-9);
    EXPECT_NEAR(hit(25, 40)->distance, 100.0, 1e-9);
    EXPECT_EQ(hit(75, 60)->object, &far);
    EXPECT_FALSE(hit(99, 50));
    near.setEnabled(false);
    EXPECT_EQ(hit(25, 40)->object, &far);
    far.transform().setScale({1, 1, 0});  // nothing can be put back from a flat world
    EXPECT_FALSE(hit(75, 60));
    // What lies behind the eye isn't seen.
    near.setEnabled(true);
    near.transform().setTranslate({0, 0, 200});
    EXPECT_FALSE(hit(25, 40));
}

TEST(Picking, ABoxIsNotItsContent) {
    TestScene s;
    Mesh3 triangle;
    triangle.addVertex({-4, -4, 0});
    triangle.addVertex({4, -4, 0});
    triangle.addVertex({-4, 4, 0});
    triangle.addFace(ElementKind::kPolygon, 0, std::array<int, 3>{0, 1, 2});
    s.object(std::move(triangle));
    EXPECT_TRUE(pickObject(s.scene, *pixelRay(s.camera(), 20, 80, 101, 101)));
    EXPECT_FALSE(pickObject(s.scene, *pixelRay(s.camera(), 80, 20, 101, 101)));
}

TEST(Picking, LightsByTheirIcons) {
    TestScene s(100.0);
    LightX& lamp = s.light(LightType::kPoint);
    lamp.transform().setTranslate({20, 10, 5});
    LightX& sun = s.light(LightType::kDirectional);
    sun.transform().setRotate({-90, 0, 0});  // from above
    Box3 bounds;
    bounds.add({-6, -6, -6});
    bounds.add({6, 6, 6});
    const auto marks = lightMarks(s.scene, s.camera(), bounds);
    ASSERT_EQ(marks.size(), 2U);
    EXPECT_NEAR(marks[1].place.x, 0.0, 1e-9);
    EXPECT_GT(marks[1].place.y, 6.0);
    const auto at = [&](double x, double y) { return pickLight(marks, {{x, y, 90}, {0, 0, -3}}); };
    EXPECT_EQ(at(20 + marks[0].radius * 0.9, 10), &lamp);
    EXPECT_EQ(at(20 + marks[0].radius * 1.1, 10), nullptr);
    EXPECT_EQ(at(0, marks[1].place.y), &sun);
}

TEST(GuideLabels, HaveTheirSizesAndLetters) {
    const struct {
        GuideLabel label;
        int width, height;
    } cases[] = {{GuideLabel::kLeftEdge, 10, 57},
                 {GuideLabel::kVerticalAxis, 10, 81},
                 {GuideLabel::kFront, 35, 9},
                 {GuideLabel::kGround, 46, 9}};
    for (const auto& c : cases) {
        const LabelPicture p = labelPicture(c.label, {255, 0, 0}, {0, 0, 255});
        EXPECT_EQ(p.width, c.width);
        EXPECT_EQ(p.height, c.height);
        ASSERT_EQ(p.rgb.size(), static_cast<std::size_t>(c.width * c.height * 3));
        int inked = 0;
        for (std::size_t i = 0; i < p.rgb.size(); i += 3)
            inked += p.rgb[i] == 255 ? 1 : 0;
        EXPECT_GT(inked, 40);
    }
    // The F of "Front": a full stem, and the bar on top of it.
    const LabelPicture front = labelPicture(GuideLabel::kFront, {1, 1, 1}, {0, 0, 0});
    const auto ink = [&front](int x, int y) {
        return front.rgb[static_cast<std::size_t>((y * front.width + x) * 3)] == 1;
    };
    const int left = (35 - tinyfont::textWidth("Front")) / 2;
    for (int y = 2; y < 9; ++y)
        EXPECT_TRUE(ink(left, y)) << y;
    for (int x = 0; x < 5; ++x)
        EXPECT_TRUE(ink(left + x, 8)) << x;
    EXPECT_FALSE(ink(left + 4, 2));
}

struct ViewerScene : TestScene {
    ViewerScene() : TestScene(400.0) {
        registerMemberClasses();  // brings the icons
        light(LightType::kAmbient);
        material("m", {0.0F, 0.0F, 1.0F, 1.0F});
        camera().transform().setTranslate({0, 60, 300});
        camera().transform().setRotate({-10, 0, 0});
        options.furniture = {false, 0.0, false, 0.0, 0.0, false, false, false, false};
        options.background = {0.25F, 0.25F, 0.25F};
    }
    Picture draw() {
        ImageBuffer picture(300, 300, PixelKind::kRgba);
        EXPECT_EQ(drawViewer(gl, scene, 300, 300, options, picture), kSuccess) << gl.failure();
        return Picture(picture);
    }
    /// Pixels of which `is` holds.
    template <typename Is>
    static int count(const Picture& p, Is is) {
        int pixels = 0;
        for (int y = 0; y < p.height; ++y)
            for (int x = 0; x < p.width; ++x)
                pixels += is(p.at(x, y)) ? 1 : 0;
        return pixels;
    }
    static int changed(const Picture& a, const Picture& b) {
        int pixels = 0;
        for (int y = 0; y < a.height; ++y)
            for (int x = 0; x < a.width; ++x)
                pixels += a.at(x, y) != b.at(x, y) ? 1 : 0;
        return pixels;
    }

    OrvinGLRender gl;
    ViewerOptions options;
};

TEST(ViewerDrawing, EachPieceOfFurnitureShows) {
    ViewerScene s;
    s.scene.make<CameraX>("other").transform().setTranslate({-90, 20, 0});
    LightX& lamp = s.light(LightType::kSpot);
    lamp.setColor({0.0F, 1.0F, 0.0F, 1.0F});
    lamp.transform().setTranslate({90, 60, 0});
    ObjectP& box = s.object(TestScene::rectangle(-40, -40, 40, 40), "m");
    const Picture plain = s.draw();
    FurnitureOptions& f = s.options.furniture;
    const struct {
        const char* what;
        bool* flag;
        int least;
    } pieces[] = {{"ground", &f.groundPlane, 800},
                  {"guides", &f.guides, 200},
                  {"lights", &f.lights, 100},
                  {"cameras", &f.cameras, 30}};
    for (const auto& piece : pieces) {
        *piece.flag = true;
        EXPECT_GT(ViewerScene::changed(plain, s.draw()), piece.least) << piece.what;
        *piece.flag = false;
    }
    f.selection = true;
    EXPECT_EQ(ViewerScene::changed(plain, s.draw()), 0);
    s.scene.select(&box);
    const Picture marked = s.draw();
    EXPECT_GT(ViewerScene::changed(plain, marked), 60);
    f.names = true;
    EXPECT_GT(ViewerScene::changed(marked, s.draw()), 30);
    f.selection = false;
    f.frameWidth = 200;
    f.frameHeight = 100;
    f.guides = true;
    const Picture framed = s.draw();
    f.frameWidth = 0;
    EXPECT_GT(ViewerScene::changed(framed, s.draw()), 200);
    EXPECT_EQ(s.gl.meshesCompiled(), 3U);  // the object, the lamp and the ball, once each
}

TEST(ViewerDrawing, TheSceneHidesTheGroundButNotTheMarks) {
    ViewerScene s;
    ObjectP& wall = s.object(TestScene::rectangle(-150, -150, 150, 150, 100), "m");
    const Picture plain = s.draw();
    const auto isWall = [](const std::array<int, 4>& p) { return p[2] == 255 && p[0] == 0; };
    const int covered = ViewerScene::count(plain, isWall);
    ASSERT_GT(covered, 30000);
    s.options.furniture.groundPlane = true;
    s.options.furniture.groundLevel = 20.0;
    s.options.furniture.names = false;
    const Picture ground = s.draw();
    // Only the part of the plane in front of the wall: 100 units less than half of it.
    const int lost = covered - ViewerScene::count(ground, isWall);
    EXPECT_GT(lost, 0);
    EXPECT_LT(lost, covered / 5);
    s.options.furniture.groundPlane = false;
    s.options.furniture.selection = true;
    s.scene.select(&wall);
    const auto isMark = [](const std::array<int, 4>& p) {
        return p[0] == 255 && p[1] > 200 && p[2] < 80;
    };
    EXPECT_GT(ViewerScene::count(s.draw(), isMark), 100);
    // In front of it all stands another wall, and the marks still show.
    s.object(TestScene::rectangle(-190, -190, 190, 190, 150), "m");
    EXPECT_GT(ViewerScene::count(s.draw(), isMark), 100);
    EXPECT_EQ(s.gl.emptyDepth(), 1.0F);
}

TEST(ViewerDrawing, LightIconsStandWherePickingFindsThem) {
    ViewerScene s;
    LightX& lamp = s.light(LightType::kPoint);
    lamp.transform().setTranslate({90, 60, 0});
    lamp.setColor({0.0F, 1.0F, 0.0F, 1.0F});
    s.options.furniture.lights = true;
    const Picture p = s.draw();
    double x = 0.0;
    double y = 0.0;
    double pixels = 0.0;
    for (int row = 0; row < p.height; ++row)
        for (int column = 0; column < p.width; ++column)
            if (p.at(column, row)[1] > p.at(column, row)[0] + 60) {
                x += column;
                y += p.height - 1 - row;
                pixels += 1.0;
            }
    ASSERT_GT(pixels, 20.0);
    const auto marks = lightMarks(s.scene, s.camera(), furnitureBounds(s.scene, 0));
    const Ray ray = *pixelRay(s.camera(), static_cast<int>(x / pixels),
                              static_cast<int>(y / pixels), p.width, p.height);
    EXPECT_EQ(pickLight(marks, ray), &lamp);
}

TEST(ViewerDrawing, EmptyScenesAndSizes) {
    ViewerScene s;
    s.options.furniture = FurnitureOptions();
    const Picture p = s.draw();
    EXPECT_GT(ViewerScene::count(p, [](const std::array<int, 4>& c) { return c[3] != 0; }), 500);
    ImageBuffer picture;
    EXPECT_EQ(drawViewer(s.gl, s.scene, 0, 10, s.options, picture), kFailure);
    EXPECT_FALSE(s.gl.failure().empty());
    SceneX empty;
    EXPECT_EQ(drawViewer(s.gl, empty, 10, 10, ViewerOptions(), picture), kFailure);
}

}  // namespace
}  // namespace orvin
