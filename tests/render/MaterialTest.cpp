#include "render/MaterialX.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <vector>

#include "render/ImageFile.h"
#include "render/image/ImageCache.h"
#include "scene/SceneX.h"
#include "tests/support/TempFolder.h"

namespace orvin {
namespace {

/// A picture whose texel (x, y) is the bytes `fill(x, y)`.
template <typename Fill>
std::unique_ptr<SummedImage> picture(int width, int height, PixelKind kind, Fill fill) {
    ImageBuffer buffer(width, height, kind);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const std::array<std::uint8_t, 4> bytes = fill(x, y);
            buffer.writePixel(x, y, std::span(bytes).first(buffer.pixelBytes()));
        }
    return std::make_unique<SummedImage>(buffer);
}

/// A scene with one map on the host's Layer Map 2, and the layer images swept up afterwards.
class MapTest : public testing::Test {
  protected:
    ~MapTest() override { clearLayerImages(); }

    SceneX scene;
    ImageMap map{scene, "|ExtMap2"};
    MaterialX material{scene, "m"};
};

TEST_F(MapTest, NothingToFindIsNoMap) {
    bool found = true;
    Rgba color{9, 9, 9, 9};
    EXPECT_EQ(map.colorAt({0, 0, 1, 1}, found, color), kFailure);
    EXPECT_FALSE(found);
    EXPECT_EQ(color, (Rgba{9, 9, 9, 9}));
    EXPECT_FALSE(map.resolve());
    material.setMap(MapUse::kColor, "nobody");
    material.setFlag(MaterialX::kColorMap, true);
    EXPECT_FALSE(material.resolveMaps().color);
    ImageMap other(scene, "other");  // a file that isn't there
    ImageFile file(scene, "file");
    file.setPath("no such picture.tga");
    other.setImageFile("file");
    EXPECT_FALSE(other.resolve());
    float value = 0.0F;
    EXPECT_EQ(other.channelAt({0, 0, 1, 1}, 3, found, value), kFailure);
}

TEST_F(MapTest, DomainIsStretchedOverThePicture) {
    // 11 columns, red rising by 20 each; rows don't matter.
    addLayerImage("|ExtMap2", picture(11, 3, PixelKind::kRgb, [](int x, int) {
                      return std::array<std::uint8_t, 4>{static_cast<std::uint8_t>(20 * x), 60, 0};
                  }));
    map.setDomain({-1.0, 1.0, 0.0, 2.0});
    const ResolvedMap resolved = map.resolve();
    ASSERT_TRUE(resolved);
    // The whole picture spans texels 0..10: full columns 0 to 9, none of column 10.
    Rgba color;
    EXPECT_TRUE(resolved.color({-1, 0, 1, 2}, color));
    EXPECT_NEAR(color[0], 90.0 / 255.0, 0.005);
    EXPECT_NEAR(color[1], 60.0 / 255.0, 0.005);
    EXPECT_EQ(color[3], 1.0F);
    // s from 0 to 0.8: texels 5 to 9, reds 100 to 160.
    EXPECT_TRUE(resolved.color({0, 0, 0.8, 2}, color));
    EXPECT_NEAR(color[0], 130.0 / 255.0, 0.005);
    // Far outside is held at the edge, and a domain without width yields colours still.
    EXPECT_TRUE(resolved.color({50, 0, 60, 2}, color));
    EXPECT_NEAR(color[0], 200.0 / 255.0, 0.005);
    map.setDomain({1.0, 1.0, 0.0, 1.0});
    EXPECT_TRUE(map.resolve().color({1.0, 0, 1.0, 1}, color));
    EXPECT_TRUE(isFinite(color));
}

TEST_F(MapTest, FourthChannelIsAlphaOrLuminance) {
    const auto plain = [](int, int) { return std::array<std::uint8_t, 4>{255, 102, 51, 128}; };
    bool found = false;
    float value = 0.0F;
    addLayerImage("|ExtMap2", picture(4, 4, PixelKind::kRgba, plain));
    EXPECT_EQ(map.channelAt({0, 0, 1, 1}, 3, found, value), kSuccess);
    EXPECT_NEAR(value, 128.0 / 255.0, 0.005);
    addLayerImage("|ExtMap2", picture(4, 4, PixelKind::kRgb, plain));
    EXPECT_EQ(map.channelAt({0, 0, 1, 1}, 3, found, value), kSuccess);
    EXPECT_NEAR(value, 0.299 + 0.587 * 0.4 + 0.114 * 0.2, 0.005);
    EXPECT_EQ(map.channelAt({0, 0, 1, 1}, 1, found, value), kSuccess);
    EXPECT_NEAR(value, 0.4, 0.005);
    EXPECT_EQ(map.channelAt({0, 0, 1, 1}, 4, found, value), kFailure);
}

TEST_F(MapTest, PlacementTurnsReflectionsAsNormals) {
    addLayerImage("|ExtMap2", picture(2, 2, PixelKind::kRgb,
                                      [](int, int) { return std::array<std::uint8_t, 4>{}; }));
    map.placement().setTranslate({100, 100, 100});
    map.placement().setRotate({0, 90, 0});
    Vec3 r = map.resolve().reflection({0, 0, 1});
    EXPECT_NEAR(r.x, 1.0, 1e-12);
    EXPECT_NEAR(r.z, 0.0, 1e-12);
    map.placement().setRotate({});
    map.placement().setScale({4, 1, 1});
    r = map.resolve().reflection({1, 1, 0});
    EXPECT_NEAR(r.x, 0.25, 1e-12);
    EXPECT_NEAR(r.y, 1.0, 1e-12);
}

TEST_F(MapTest, KnowsItsLayerMaps) {
    material.setMap(MapUse::kBump, "|ExtMap2");
    ImageFile file(scene, "file");  // a file of that name behind an ordinary map
    file.setPath("|ExtMap10");
    ImageMap ordinary(scene, "ordinary");
    ordinary.setImageFile("file");
    material.setMap(MapUse::kColor, "ordinary");
    for (int number = 1; number <= 20; ++number)
        EXPECT_EQ(material.usesExtMap(number), number == 2 || number == 10) << number;
}

TEST_F(MapTest, MarksWhatItUsesToTheFile) {
    ImageFile file(scene, "file");
    ImageFile loose(scene, "loose");
    map.setImageFile("file");
    material.setMap(MapUse::kTransparency, "|ExtMap2");
    material.markUsed();
    EXPECT_TRUE(material.marked);
    EXPECT_TRUE(map.marked);
    EXPECT_TRUE(file.marked);
    EXPECT_FALSE(loose.marked);
}

TEST(ImageFiles, AreLocatedOneByOne) {
    const test::TempFolder folder;
    const std::string here = (folder.path() / "here.tga").string();
    const std::string moved = (folder.path() / "moved.tga").string();
    // 2 x 2 uncompressed, 24 bits, blue-green-red: a red row below a green one.
    std::vector<char> bytes{0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2, 0, 2, 0, 24, 0};
    const char full = static_cast<char>(0xff);
    for (const char byte : {'\0', '\0', full, '\0', '\0', full, '\0', full, '\0', '\0', full, '\0'})
        bytes.push_back(byte);
    for (const std::string& path : {here, moved})
        std::ofstream(path, std::ios::binary).write(bytes.data(), std::ssize(bytes));

    SceneX scene;
    ImageFile layer(scene, "layer");
    layer.setPath("|ExtMap3");
    ImageFile gone(scene, "gone");
    gone.setPath("/nowhere/gone.tga");
    ImageFile found(scene, "found");
    found.setPath("/nowhere/moved.tga");
    ImageFile present(scene, "present");
    present.setPath(here);

    std::vector<std::string> asked;
    const auto locate = [&](const std::string& path) -> std::optional<std::string> {
        asked.push_back(path);
        if (path.ends_with("moved.tga")) return moved;
        return std::nullopt;
    };
    EXPECT_EQ(reloadImages(scene, locate), kFailure);  // and the others were done all the same
    EXPECT_EQ(asked, (std::vector<std::string>{"/nowhere/gone.tga", "/nowhere/moved.tga"}));
    EXPECT_EQ(gone.path(), "/nowhere/gone.tga");
    EXPECT_EQ(found.path(), moved);
    EXPECT_EQ(present.path(), here);
    EXPECT_EQ(gone.thumbnail(), nullptr);
    ASSERT_NE(found.thumbnail(), nullptr);
    EXPECT_EQ(found.thumbnail()->width(), 37);
    EXPECT_EQ(found.thumbnail()->height(), 32);
    std::array<std::uint8_t, 37 * 3> row{};
    EXPECT_TRUE(found.thumbnail()->readRgbRow(0, row));  // the upper half of the file, green
    EXPECT_EQ(row[0], 0);
    EXPECT_EQ(row[37 * 3 - 2], 255);
    EXPECT_TRUE(found.thumbnail()->readRgbRow(31, row));
    EXPECT_EQ(row[0], 255);

    ImageMap map(scene, "map");
    map.setImageFile("found");
    bool hit = false;
    Rgba color;
    const TextureBox lower{0, 0, 1, 0};
    EXPECT_EQ(map.colorAt(lower, hit, color), kSuccess);
    EXPECT_EQ(color, (Rgba{1, 0, 0, 1}));
    // A changed file is seen after its release, not before.
    std::fill(bytes.begin() + 18, bytes.end(), full);
    std::ofstream(moved, std::ios::binary).write(bytes.data(), std::ssize(bytes));
    map.colorAt(lower, hit, color);
    EXPECT_EQ(color, (Rgba{1, 0, 0, 1}));
    MaterialX material(scene, "m");
    material.setMap(MapUse::kReflection, "map");
    material.releaseImages();
    map.colorAt(lower, hit, color);
    EXPECT_EQ(color, (Rgba{1, 1, 1, 1}));
    releaseAllImages();
}

}  // namespace
}  // namespace orvin
