#include "setup/BallScene.h"

#include <gtest/gtest.h>

#include <array>

#include "render/ImageFile.h"
#include "render/LightX.h"
#include "render/MaterialX.h"
#include "render/image/ImageCache.h"
#include "scene/SceneX.h"
#include "setup/StartUp.h"

namespace orvin {
namespace {

class BallScene : public testing::Test {
  protected:
    BallScene() { registerMemberClasses(); }
    ~BallScene() override { clearLayerImages(); }

    static std::array<int, 3> at(const twPicture& picture, int x, int y) {
        std::array<std::uint8_t, 3 * 64> row{};
        picture.readRgbRow(y, std::span(row).first(static_cast<std::size_t>(picture.width()) * 3));
        const auto p = static_cast<std::size_t>(x) * 3;
        return {row[p], row[p + 1], row[p + 2]};
    }

    SceneX scene;
};

TEST_F(BallScene, ShowsTheMaterialOnAPieceOfBackground) {
    MaterialX& red = scene.make<MaterialX>("defaultMtl");
    red.setDiffuse({1.0F, 0.0F, 0.0F, 1.0F});
    red.setFlag(MaterialX::kSpecular, false);
    const auto picture = renderMaterialBall(red, 40, 40, {0.0F, 0.0F, 1.0F});
    ASSERT_TRUE(picture);
    ASSERT_EQ(picture->width(), 40);
    EXPECT_EQ(picture->bitsPerPixel(), 24);
    for (const auto& [x, y] : {std::pair(0, 0), std::pair(39, 0), std::pair(0, 39)})
        EXPECT_EQ(at(*picture, x, y), (std::array<int, 3>{0, 0, 255}));
    EXPECT_GT(at(*picture, 20, 20)[0], 60);
    EXPECT_EQ(at(*picture, 20, 20)[2], 0);
    int ball = 0;
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 40; ++x)
            ball += at(*picture, x, y)[2] < 128 ? 1 : 0;
    EXPECT_GT(ball, 700);  // of 1600 pixels; a full circle would have 1257
    EXPECT_LT(ball, 1257);
    EXPECT_TRUE(renderMaterialBall(red, 0, 5)->empty());
    EXPECT_EQ(scene.count(MemberKind::kObject), 0U);
}

TEST_F(BallScene, BringsTheMapsOfTheMaterial) {
    ImageBuffer image(4, 4, PixelKind::kRgb);
    for (int i = 0; i < 48; ++i)
        image.direct()[i] = i % 3 == 1 ? 255 : 0;  // green
    addLayerImage(extMapName(1), std::make_unique<SummedImage>(image));
    scene.make<ImageMap>(extMapName(1));
    MaterialX& mapped = scene.make<MaterialX>("mapped");
    mapped.setFlag(MaterialX::kColorMap, true);
    mapped.setFlag(MaterialX::kSpecular, false);
    mapped.setMap(MapUse::kColor, extMapName(1));
    const auto picture = renderMaterialBall(mapped, 32, 32);
    EXPECT_GT(at(*picture, 16, 16)[1], 60);
    EXPECT_EQ(at(*picture, 16, 16)[0], 0);
}

TEST_F(BallScene, ShowsWhereALightComesFrom) {
    LightX& light = scene.make<LightX>("Light 1");
    light.setType(LightType::kDirectional);
    light.setColor({0.0F, 1.0F, 0.0F, 1.0F});
    light.transform().setRotate({0, 80, 0});  // from the right
    light.setEnabled(false);
    const auto picture = renderLightBall(light, 40, 40);
    EXPECT_GT(at(*picture, 34, 20)[1], 120);
    EXPECT_EQ(at(*picture, 34, 20)[0], 0);
    EXPECT_LT(at(*picture, 6, 20)[1], 10);
}

}  // namespace
}  // namespace orvin
