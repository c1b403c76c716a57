#include "render/CameraX.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "scene/SceneX.h"

namespace orvin {
namespace {

const double kNan = std::numeric_limits<double>::quiet_NaN();

void expectNear(Vec3 actual, Vec3 expected, double tolerance = 1e-9) {
    EXPECT_NEAR(actual.x, expected.x, tolerance);
    EXPECT_NEAR(actual.y, expected.y, tolerance);
    EXPECT_NEAR(actual.z, expected.z, tolerance);
}

void expectSamePlace(CameraX& camera, const Matrix4& before) {
    const Matrix4& world = camera.world();
    for (int row = 0; row < 4; ++row)
        expectNear(world.row(row), before.row(row), 1e-7);
}

TEST(Camera, StandsWhereItsModeSays) {
    const double c = std::sqrt(0.75);
    const auto kOrbit = CameraMode::kOrbit;
    const auto kHandHeld = CameraMode::kHandHeld;
    const auto kLookAt = CameraMode::kLookAt;
    const struct {
        const char* caption;
        CameraMode mode;
        CameraPose pose;  // eye, target, distance, left-right, up-down, roll
        Vec3 eye, right, up;
    } cases[] = {
        {"turned", kOrbit, {{}, {1, 2, 3}, 100, 90, 0, 0}, {101, 2, 3}, {0, 0, -1}, {0, 1, 0}},
        // The horizon stays level.
        {"lifted", kOrbit, {{}, {}, 100, 90, -30, 0}, {100 * c, 50, 0}, {0, 0, -1}, {-0.5, c, 0}},
        {"upwards", kHandHeld, {{1, 2, 3}, {}, 9, 0, 90, 0}, {1, 2, 3}, {1, 0, 0}, {0, 0, 1}},
        {"along +x", kHandHeld, {{1, 2, 3}, {}, 9, -90, 0, 0}, {1, 2, 3}, {0, 0, 1}, {0, 1, 0}},
        {"level", kLookAt, {{3, 0, 4}, {}, 9, 0, 0, 0}, {3, 0, 4}, {0.8, 0, -0.6}, {0, 1, 0}},
        {"on its target", kLookAt, {{}, {}, 9, 0, 0, 0}, {}, {1, 0, 0}, {0, 1, 0}},
        {"above", kLookAt, {{0, 50, 0}, {}, 9, 0, 0, 0}, {0, 50, 0}, {1, 0, 0}, {0, 0, -1}},
        {"below", kLookAt, {{0, -50, 0}, {}, 9, 0, 0, 0}, {0, -50, 0}, {1, 0, 0}, {0, 0, 1}},
        {"orbit, rolled", kOrbit, {{}, {}, 9, 0, 0, 90}, {0, 0, 9}, {0, 1, 0}, {-1, 0, 0}},
        {"hand, rolled", kHandHeld, {{0, 0, 9}, {}, 1, 0, 0, 90}, {0, 0, 9}, {0, 1, 0}, {-1, 0, 0}},
        {"the other way", kLookAt, {{0, 0, 9}, {}, 1, 0, 0, 90}, {0, 0, 9}, {0, -1, 0}, {1, 0, 0}},
    };
    for (const auto& place : cases) {
        SCOPED_TRACE(place.caption);
        SceneX scene;
        CameraX camera(scene, "c");
        EXPECT_EQ(camera.world(), Matrix4::identity());
        camera.setPose(place.pose);
        EXPECT_EQ(camera.world(), Matrix4::identity()) << "TRANSFORM takes the node only";
        camera.setMode(place.mode);
        expectNear(camera.world().origin(), place.eye);
        expectNear(camera.world().direction({1, 0, 0}), place.right);
        expectNear(camera.world().direction({0, 1, 0}), place.up);
        expectNear(camera.world().direction({0, 0, 1}), cross(place.right, place.up));
    }
}

TEST(Camera, SwitchingModesLeavesThePictureAlone) {
    const CameraPose poses[] = {
        {{300, 500, 500}, {0, 0, -15}, 907, 30, -20, 0}, {{5, 6, 7}, {1, 2, 3}, 40, -200, 100, 33},
        {{0, 50, 0}, {0, 0, 0}, 50, 10, -90, 25},        {{0, 0, 0}, {0, 0, 0}, 0, 20, 30, 40},
        {{1, 1, 1}, {1, 1, 9}, -25, 70, 20, -10},
    };
    const CameraMode modes[] = {CameraMode::kOrbit, CameraMode::kHandHeld, CameraMode::kLookAt,
                                CameraMode::kTransform};
    SceneX scene;
    CameraX camera(scene, "c");
    for (const CameraPose& pose : poses)
        for (const CameraMode from : modes)
            for (const CameraMode to : modes) {
                SCOPED_TRACE(testing::Message()
                             << "distance " << pose.distance << ", from " << cameraModeName(from)
                             << " to " << cameraModeName(to));
                camera.setPose(pose);
                camera.setMode(from);
                if (from == CameraMode::kTransform)
                    camera.transform().setMatrix(
                        Matrix4::rotation({20, 130, 40}, "zyx") *
                        Matrix4::translation({pose.eye.x, pose.eye.y, pose.eye.z}));
                const Matrix4 before = camera.world();
                EXPECT_EQ(camera.switchMode(to), kSuccess);
                expectSamePlace(camera, before);
                EXPECT_EQ(camera.switchMode(from), kSuccess);
                expectSamePlace(camera, before);
            }
}

TEST(Camera, AModeKeepsItsOwnValuesToTheBit) {
    SceneX scene;
    CameraX camera(scene, "c");
    CameraPose pose{{300, 500, 500}, {0, 0, -15}, 907, 390, -120, 15};
    camera.setPose(pose);
    camera.setMode(CameraMode::kOrbit);
    pose.eye = camera.world().origin();
    EXPECT_EQ(camera.pose(), pose);
}

TEST(Camera, FollowsSlidersThroughEveryModeChange) {
    SceneX scene;
    CameraX camera(scene, "c");
    const CameraPose sliders{{300, 500, 500}, {0, 0, -15}, 907, 30, -20, 5};
    camera.drive(CameraMode::kOrbit, sliders);
    // Sliders that agree with the picture of one mode are no reason to skip them in the next.
    const CameraPose same = camera.pose();
    camera.drive(CameraMode::kLookAt, same);
    expectNear(camera.world().origin(), same.eye);
    camera.drive(CameraMode::kHandHeld, sliders);
    expectNear(camera.world().origin(), sliders.eye);
    CameraPose rounded = sliders;
    rounded.tumbleUpDown += 1e-9;
    camera.drive(CameraMode::kHandHeld, rounded);
    EXPECT_EQ(camera.tumbleUpDown(), -20.0);
}

TEST(Camera, DerivesItsValuesFromAMatrixGivenFromOutside) {
    SceneX scene;
    CameraX camera(scene, "c");
    // A composition's camera: scaled by a parent, turned, moved.
    camera.transform().setMatrix(Matrix4::scaling({2, 2, 2}) *
                                 Matrix4::rotation({-20, 30, 0}, "zyx") *
                                 Matrix4::translation({7, 8, 9}));
    camera.deriveFromNode();
    EXPECT_EQ(camera.mode(), CameraMode::kTransform);
    expectNear(camera.eye(), {7, 8, 9});
    EXPECT_NEAR(camera.tumbleLeftRight(), 30, 1e-9);
    EXPECT_NEAR(camera.tumbleUpDown(), -20, 1e-9);
    EXPECT_NEAR(camera.roll(), 0, 1e-9);
    // The target lies `distance` in front.
    const Vec3 back = normalize(camera.world().direction({0, 0, 1}));
    expectNear(camera.target(), Vec3{7, 8, 9} - back * 100.0);
}

TEST(Camera, RefusesWhatMakesNoPicture) {
    SceneX scene;
    CameraX camera(scene, "c");
    for (const double angle : {-10.0, 0.0, 180.0, kNan})
        EXPECT_EQ(camera.setFieldOfView(angle), kFailure);
    EXPECT_EQ(camera.setOrthoWidth(0), kFailure);
    EXPECT_EQ(camera.setMode(static_cast<CameraMode>(4)), kFailure);
    EXPECT_EQ(camera.lens(), 50.0);
    EXPECT_EQ(camera.setAperture(0), kSuccess);
}

TEST(Camera, ViewAngleIsKeptAsAFocalLength) {
    SceneX scene;
    CameraX camera(scene, "c");
    EXPECT_NEAR(camera.fieldOfView(), 38.58, 0.01);
    EXPECT_EQ(camera.setFieldOfView(90), kSuccess);
    EXPECT_NEAR(camera.lens(), 17.5, 1e-5);
    EXPECT_NEAR(camera.fieldOfView(), 90.0, 1e-5);
}

/// Clip-space position after the perspective division.
Vec3 project(const Matrix4& clip, Vec3 p) {
    const double w = p.x * clip.m[0][3] + p.y * clip.m[1][3] + p.z * clip.m[2][3] + clip.m[3][3];
    return clip.point(p) * (1.0 / w);
}

TEST(Camera, ProjectsTheFilmOntoTheScreen) {
    SceneX scene;
    CameraX camera(scene, "c");
    camera.setAperture(40);
    camera.setLens(20);  // at depth d the picture is 2 d wide
    camera.setClip(2, 1000);
    const Matrix4 clip = camera.projectionMatrix(2.0);
    const Vec3 corner = project(clip, {100, 50, -100});
    EXPECT_NEAR(corner.x, 1.0, 1e-12);
    EXPECT_NEAR(corner.y, 1.0, 1e-12);
    EXPECT_EQ(clip.m[2][2], -1.0);
    EXPECT_EQ(clip.m[2][3], -1.0);
    // Half a window to the right puts the picture's centre on the screen's left edge; pixels twice
    // as wide as high show half as much in height; under-scan shows more.
    EXPECT_NEAR(project(camera.projectionMatrix(2.0, 1.0, 0.5), {0, 0, -10}).x, -1.0, 1e-12);
    EXPECT_NEAR(project(camera.projectionMatrix(2.0, 2.0), {100, 25, -100}).y, 1.0, 1e-12);
    camera.setUnderScan(0.25);
    EXPECT_NEAR(project(camera.projectionMatrix(2.0), {125, 0, -100}).x, 1.0, 1e-12);

    const auto [onNear, onFar] = camera.frustumCorners(1.0, 0.0, 2.0);
    expectNear(onNear, {2.5, -1.25, -2});
    expectNear(onFar, {1250, -625, -1000});
}

TEST(Camera, OrthographicKeepsSquaresUnlessTold) {
    struct Case {
        double screen;
        bool stretch;
        double halfWidth, halfHeight;
    };
    SceneX scene;
    CameraX camera(scene, "c");
    camera.setProjection(Projection::kOrthographic);
    camera.setOrthoWidth(200);
    camera.setAspect(2.0);
    camera.setClip(1, 101);
    for (const Case& c :
         {Case{1.0, false, 50, 50}, Case{2.0, false, 100, 50}, Case{4.0, false, 100, 25},
          Case{1.0, true, 100, 50}, Case{4.0, true, 100, 50}}) {
        SCOPED_TRACE(c.screen);
        camera.setScaleVertically(c.stretch);
        const ViewWindow window = camera.viewWindow(c.screen);
        EXPECT_NEAR(window.right, c.halfWidth, 1e-12);
        EXPECT_NEAR(window.top, c.halfHeight, 1e-12);
        const Matrix4 clip = camera.projectionMatrix(c.screen);
        expectNear(project(clip, {c.halfWidth, -c.halfHeight, -1}), {1, -1, -1});
        expectNear(project(clip, {0, 0, -101}), {0, 0, 1});
    }
}

TEST(Camera, FitsItsAspectIntoAViewport) {
    SceneX scene;
    CameraX camera(scene, "c");
    camera.setAspect(2.0);
    EXPECT_EQ(camera.fitInto(100, 100), (ViewportRect{0, 25, 100, 50}));
    EXPECT_EQ(camera.fitInto(300, 100), (ViewportRect{50, 0, 200, 100}));
    EXPECT_EQ(camera.fitInto(200, 100), (ViewportRect{0, 0, 200, 100}));
    EXPECT_EQ(camera.fitInto(0, 100), (ViewportRect{0, 0, 0, 100}));
}

}  // namespace
}  // namespace orvin
