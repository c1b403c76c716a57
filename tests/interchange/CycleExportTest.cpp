// A cycling object is exported at every frame of the clock.
#include <gtest/gtest.h>

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
        const double x = 100.0 * (i + 1);
        CompositeCurve2& path = picture.inputProfile()->paths.emplace_back();
        path.curves.emplace_back(Curve2::Type::kLinear,
                                 std::vector<Vec2>{{x, 0}, {x + 9, 0}, {x + 9, 9}, {x, 0}});
        path.linkCurves();
        cycle.addFrame(picture);
    }
    auto& style = scene_.make<ObjectXStyle>("style", ObjectXStyle::kFront);
    auto& object = scene_.make<ObjectX>("logo");
    object.setFace("cycle");
    object.setStyle(style.name());
    setCurrentFrame(4);
    MeshObject* const objects[] = {&object};
    const fs::path path = folder_ / "cycle.obj";
    ASSERT_EQ(exportModel(path, objects), kSuccess);
    EXPECT_EQ(currentFrame(), 4);
    EXPECT_EQ(object.localBounds().min.x, 200.0) << "the object shows its frame again";
    setCurrentFrame(0);

    const std::string text = contents(path);
    std::size_t at = 0;
    for (int frame = 0; frame < 30; ++frame) {
        const std::string least = "v " + std::to_string(100 * (frame % 3 + 1)) + ".000000 ";
        const std::size_t group = text.find("\ng logo-Frm" + std::to_string(frame + 1) + "\n", at);
        ASSERT_NE(group, std::string::npos) << frame;
        EXPECT_LT(text.find(least, at), group) << frame;
        at = group;
    }
    EXPECT_EQ(text.find("\ng ", at + 1), std::string::npos);
}

}  // namespace
}  // namespace orvin
