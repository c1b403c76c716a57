// A cycling object is exported at every frame of the clock, another one once.
#include <gtest/gtest.h>

#include <algorithm>

#include "geometry/ObjectX.h"
#include "interchange/ModelFormats.h"
#include "scene/FrameClock.h"
#include "tests/interchange/ModelFixture.h"
#include "vector/ProfileM.h"
#include "vector/illustrator/ProfileI.h"

namespace orvin {
namespace {

TEST_F(ModelFiles, CyclingObjectsAreExportedAtEveryFrame) {
    auto& cycle = scene_.make<ProfileM>("cycle");
    for (int i = 0; i < 3; ++i) {
        auto& picture = scene_.make<ProfileI>("picture " + std::to_string(i));
        cycle.addFrame(picture);
        if (i == 1) continue;  // a picture of nothing
        const double x = 100.0 * (i + 1);
        CompositeCurve2& path = picture.inputProfile()->paths.emplace_back();
        path.curves.emplace_back(Curve2::Type::kLinear,
                                 std::vector<Vec2>{{x, 0}, {x + 9, 0}, {x + 9, 9}, {x, 0}});
        path.linkCurves();
    }
    auto& style = scene_.make<ObjectXStyle>("style", ObjectXStyle::kFront | ObjectXStyle::kBack);
    style.setBackMtl(4);
    auto& object = scene_.make<ObjectX>("logo");
    object.setFace("cycle");
    object.setStyle(style.name());
    setCurrentFrame(3);
    MeshObject* const objects[] = {&object, &triangle("still", {0})};
    const fs::path path = folder_ / "cycle.obj";
    testing::internal::CaptureStderr();
    ASSERT_EQ(exportModel(path, objects), kSuccess);
    const std::string log = testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 10) << log;
    EXPECT_EQ(log.find("write_obj: no geometry to export!\n"), 0U);
    EXPECT_EQ(currentFrame(), 3);
    EXPECT_EQ(object.localBounds().min.x, 100.0) << "the object shows its frame again";
    setCurrentFrame(0);

    const std::string text = contents(path);
    std::size_t at = 0;
    for (int frame = 0; frame < 30; ++frame) {
        if (frame % 3 == 1) continue;
        const std::string least = "v " + std::to_string(100 * (frame % 3 + 1)) + ".000000 ";
        const std::string number = std::to_string(frame + 1);
        const std::size_t title = text.find("\n# Object 'logo'\n# -Frame " + number + "\n", at);
        for (const char* const section : {"1", "5"}) {
            at = text.find("\ng logo-Frm" + number + "-Section " + section + "\n", at + 1);
            ASSERT_NE(at, std::string::npos) << frame;
        }
        EXPECT_LT(title, at) << frame;
        EXPECT_LT(text.find(least, title), at) << frame;
    }
    at = text.find("\ng ", at + 1);
    EXPECT_EQ(text.substr(at, 9), "\ng still\n");
    EXPECT_EQ(text.find("\ng ", at + 1), std::string::npos);
}

}  // namespace
}  // namespace orvin
