#include <gtest/gtest.h>

#include "render/CameraX.h"
#include "tests/setup/ProjectFixture.h"

namespace orvin {
namespace {

class CameraView : public ProjectFixture {
  protected:
    CameraX& camera() {
        return *manager.mainScene()->memberAs<CameraX>(MemberKind::kCamera, kDefaultCamera);
    }
    static void expectSamePlace(const Matrix4& a, const Matrix4& b, double tolerance) {
        for (int row = 0; row < 4; ++row)
            EXPECT_LT(length(a.row(row) - b.row(row)), tolerance) << "row " << row;
    }
};

TEST_F(CameraView, BringsACameraOfEveryModeBack) {
    manager.startDefaultProject();
    for (const CameraMode mode :
         {CameraMode::kOrbit, CameraMode::kHandHeld, CameraMode::kLookAt, CameraMode::kTransform}) {
        SCOPED_TRACE(cameraModeName(mode));
        CameraPose pose;
        pose.eye = {30.0, 40.0, 50.0};
        pose.target = {1.0, 2.0, -3.0};
        pose.distance = 120.0;
        pose.tumbleLeftRight = 35.0;
        pose.tumbleUpDown = -20.0;
        pose.roll = 7.0;
        camera().setMode(mode);
        camera().setPose(pose);
        camera().setOrthoWidth(250.0);
        if (mode == CameraMode::kTransform) camera().transform().setRotate({10.0, 20.0, 30.0});
        const Matrix4 before = camera().world();

        OrvinCameraView view;
        ASSERT_TRUE(fillFromCamera(view, &camera()));
        EXPECT_EQ(view.name, "tempname");
        camera().setPose({});
        camera().transform().setTranslate({9.0, 9.0, 9.0});
        camera().setOrthoWidth(1.0);
        ASSERT_TRUE(applyView(view, &camera()));
        EXPECT_EQ(camera().mode(), mode);
        EXPECT_EQ(camera().orthoWidth(), 250.0);
        expectSamePlace(camera().world(), before, 1e-3);
    }
}

TEST_F(CameraView, ALensTypeSetsTheLens) {
    manager.startDefaultProject();
    const struct {
        const char* type;
        double lens;
        Projection projection;
    } cases[] = {{"Wildlife (1000mm)", 1000.0, Projection::kPerspective},
                 {"Orthographic", 1000.0, Projection::kOrthographic},
                 {"35 mm", 35.0, Projection::kPerspective},
                 {"Mystery", 35.0, Projection::kPerspective},
                 {"mm", 35.0, Projection::kPerspective},
                 {"99999999999999999mm", 35.0, Projection::kPerspective},
                 {"Fisheye (12mm)", 12.0, Projection::kPerspective}};
    for (const auto& c : cases) {
        OrvinCameraView view;
        ASSERT_TRUE(fillFromCamera(view, &camera()));
        view.lensType = c.type;
        EXPECT_TRUE(applyView(view, &camera()));
        EXPECT_EQ(camera().lensType(), c.type);
        EXPECT_EQ(camera().lens(), c.lens) << c.type;
        EXPECT_EQ(camera().projection(), c.projection) << c.type;
    }
    OrvinCameraView view;
    EXPECT_FALSE(fillFromCamera(view, nullptr));
    EXPECT_FALSE(applyView(view, nullptr));
    view.roll = std::nan("");
    const Matrix4 before = camera().world();
    EXPECT_FALSE(applyView(view, &camera()));
    EXPECT_EQ(camera().world(), before);
}

TEST_F(CameraView, TheCurrentPoseSurvivesAProject) {
    manager.startDefaultProject();
    camera().setTumble(40.0, 10.0);
    const std::string saved = text();
    EXPECT_NE(saved.find(" begin OrvinCameraView\n"
                         "  Name \"##OrvinCurrentCameraView##\"\n"
                         "  Lens-type \"\"\n"),
              std::string::npos);
    EXPECT_TRUE(sections.cameraViews().menuNames().empty());

    // The view decides where it differs from the camera's block; without one the block does.
    std::string moved = saved;
    const std::size_t line = moved.find("Tumble-left-right 40.000000");
    moved.replace(line, 27, "Tumble-left-right 55.000000");
    ASSERT_EQ(read(moved), kSuccess);
    EXPECT_EQ(camera().tumbleLeftRight(), 55.0);
    std::string without = saved;
    const std::size_t start = without.find(" begin OrvinCameraView");
    const std::string endLine = "end OrvinCameraView\n";
    without.erase(start, without.find(endLine) + endLine.size() - start);
    ASSERT_EQ(read(without), kSuccess);
    EXPECT_EQ(camera().tumbleLeftRight(), 40.0);
    EXPECT_EQ(text(), saved);
}

TEST_F(CameraView, OpeningDoesntMoveACameraWithAPlaceOfItsOwn) {
    manager.startDefaultProject();
    camera().setMode(CameraMode::kTransform);
    camera().transform().setTranslate({10.0, 20.0, 30.0});
    camera().transform().setRotate({90.0, 0.0, 12.0});  // straight down: angles are degenerate
    camera().transform().setScale({2.0, 2.0, -2.0});
    const std::string saved = text();
    ASSERT_EQ(read(saved), kSuccess);
    EXPECT_EQ(text(), saved);
    EXPECT_EQ(camera().transform().scale(), (Vec3{2.0, 2.0, -2.0}));
}

}  // namespace
}  // namespace orvin
