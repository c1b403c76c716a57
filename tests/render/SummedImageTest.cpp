// Filtering against sums over every pixel, and against values worked out on paper.
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "render/image/ImageCache.h"
#include "render/image/PictureOf.h"
#include "render/image/SummedImage.h"
#include "toolkit/Errors.h"

namespace orvin {
namespace {

constexpr float kByte = 1.0F / 255.0F;

ImageBuffer noise(int width, int height, PixelKind kind) {
    ImageBuffer image(width, height, kind);
    std::mt19937 random(11);
    for (std::size_t i = 0; i < image.rowBytes() * static_cast<std::size_t>(height); ++i)
        image.direct()[i] = static_cast<std::uint8_t>(random());
    return image;
}

ImageBuffer grey(int width, const std::vector<std::uint8_t>& values) {
    const int height = static_cast<int>(values.size()) / width;
    ImageBuffer image(width, height, PixelKind::kRgb);
    for (std::size_t i = 0; i < values.size() * 3; ++i)
        image.direct()[i] = values[i / 3];
    return image;
}

TEST(SummedImage, BoxQueriesAreTruncatedMeans) {
    for (const PixelKind kind : {PixelKind::kRgb, PixelKind::kRgba}) {
        const ImageBuffer image = noise(37, 23, kind);
        const SummedImage summed(image);
        const std::size_t channels = image.pixelBytes();
        std::mt19937 random(5);
        for (int n = 0; n < 2000; ++n) {
            int x0 = static_cast<int>(random() % 37), x1 = static_cast<int>(random() % 37);
            int y0 = static_cast<int>(random() % 23), y1 = static_cast<int>(random() % 23);
            if (x1 < x0) std::swap(x0, x1);
            if (y1 < y0) std::swap(y0, y1);
            const auto mean = summed.boxQuery(x0, y0, x1, y1);
            for (std::size_t c = 0; c < channels; ++c) {
                int sum = 0;
                for (int y = y0; y <= y1; ++y)
                    for (int x = x0; x <= x1; ++x)
                        sum += image.direct()[static_cast<std::size_t>(y * 37 + x) * channels + c];
                ASSERT_EQ(mean[c], sum / ((x1 - x0 + 1) * (y1 - y0 + 1)));
            }
            if (channels == 3) {
                ASSERT_EQ(mean[3], 255);
            }
        }
    }
}

TEST(SummedImage, GivesThePictureBack) {
    ImageBuffer image = noise(31, 9, PixelKind::kRgba);
    image.setPath("here.tga");
    const SummedImage summed(image);
    const ImageBuffer back = summed.toImage();
    EXPECT_EQ(back.path(), "here.tga");
    // The corner of four pixels, alpha as well as the colours.
    const std::uint8_t* p = image.direct() + 3;
    const int left = (p[0] + p[31 * 4]) / 2;
    const int right = (p[4] + p[32 * 4]) / 2;
    EXPECT_NEAR(summed.sampleBox(1, 1, 1, 1)[3], (left + right) / 2 / 255.0, 1e-6);
    EXPECT_EQ(std::vector<std::uint8_t>(back.direct(), back.direct() + 31 * 9 * 4),
              std::vector<std::uint8_t>(image.direct(), image.direct() + 31 * 9 * 4));
    EXPECT_THROW(SummedImage{ImageBuffer()}, eBaseError);
    EXPECT_THROW(SummedImage{ImageBuffer(4, 4, PixelKind::kDepth)}, eBaseError);
    EXPECT_THROW(SummedImage{ImageBuffer(0, 4, PixelKind::kRgb)}, eBaseError);
}

// Pixels of 255 beyond 16.8 million wrap the sums; boxes stay right.
TEST(SummedImage, SumsMayWrap) {
    ImageBuffer image(4200, 4100, PixelKind::kRgb);
    std::fill_n(image.direct(), image.rowBytes() * 4100, std::uint8_t{255});
    image.direct()[image.rowBytes() * 4100 - 1] = 254;
    const SummedImage summed(image);
    EXPECT_EQ(summed.boxQuery(1000, 4000, 4199, 4099),
              (std::array<std::uint8_t, 4>{255, 255, 254, 255}));
}

TEST(SummedImage, HandWorkedSamples) {
    // 0 100 200
    // 40 80 120
    // 10 20 30
    const SummedImage image(grey(3, {0, 100, 200, 40, 80, 120, 10, 20, 30}));
    const struct {
        const char* caption;
        double s0, t0, s1, t1;
        double byte;
    } cases[] = {
        // Centre (1, 1) lies on the corner of four pixels.
        {"point between four", 1.0, 1.0, 1.0, 1.0, 55},
        {"point in a pixel's centre", 0.5, 0.5, 0.5, 0.5, 0},
        {"centre of the middle one", 1.25, 1.25, 1.75, 1.75, 80},
        {"quarter of the way", 0.75, 0.5, 0.75, 0.5, 25},
        {"each step truncates", 0.75, 0.75, 0.75, 0.75, 31},  // y: 0..40 10, 100..80 95; 31.25
        {"upper edge is clamped", 0.0, 0.0, 0.0, 0.0, 0},
        {"beyond the far edge", 7.0, 9.0, 8.0, 11.0,
         62},  // point (2, 2): halves of 80, 20 and 120, 30: 62.5
        {"before the near edge", -9.0, -9.0, -3.0, -2.0, 0},
        {"a box of four pixels", 0.0, 0.0, 2.0, 2.0, 55},
        {"cells with parts", 0.5, 0.0, 2.0, 1.0, 200.0 / 3.0},  // (0/2 + 100) / 1.5
        {"cells in both axes", 0.5, 0.5, 2.0, 2.0, (0 * .25 + 100 * .5 + 40 * .5 + 80) / 2.25},
        {"turned corners", 2.0, 2.0, 0.5, 0.5, (0 * .25 + 100 * .5 + 40 * .5 + 80) / 2.25},
        // One axis of 1 or more: a ramp. Bilinear at (1.25, 1): columns 0, 1 by 0.75, rows 0, 1 by
        // 0.5: 0..40 20, 100..80 90; 72. Box: row 1, columns 0.5 + 1 of 1.5: (20 + 80) / 1.5.
        {"half-way up the ramp, flat box", 0.5, 1.0, 2.0, 1.0, 0.5 * 72 + 0.5 * (100 / 1.5)},
        {"flat box of two", 0.0, 1.5, 2.0, 1.5, 60},
        {"upright flat box", 1.0, 0.0, 1.0, 2.0, 90},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.caption);
        const auto colour = image.sampleBox(c.s0, c.t0, c.s1, c.t1);
        for (std::size_t i = 0; i < 3; ++i)
            EXPECT_NEAR(colour[i], c.byte / 255.0, 1e-6);
        EXPECT_EQ(colour[3], 1.0F);
    }
}

// Whatever the box, a filter answers with a mean of what it may see.
TEST(SummedImage, HostileBoxesStayInRange) {
    const double inf = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double values[] = {-inf, -1e300, -1, -1e-300, 0, 1e-300, 0.3, 1,
                             2.5,  5,      6,  7,       9, 1e18,   inf, nan};
    const SummedImage flat(grey(7, std::vector<std::uint8_t>(35, 200)));
    const SummedImage dot(grey(1, {200}));
    for (const SummedImage* image : {&flat, &dot})
        for (const double s0 : values)
            for (const double t0 : values)
                for (const double s1 : values)
                    for (const double t1 : values)
                        ASSERT_NEAR(image->sampleBox(s0, t0, s1, t1)[1], 200 * kByte, 1e-6)
                            << s0 << ' ' << t0 << ' ' << s1 << ' ' << t1;
}

TEST(PictureOf, ShowsMeansWithTheFirstRowAtTheBottom) {
    const SummedImage image(grey(4, {10, 20, 30, 50, 30, 40, 50, 70}));
    const twPicture small = pictureOf(image, 2, 2);
    std::vector<std::uint8_t> row(6);
    ASSERT_TRUE(small.readRgbRow(0, row));
    EXPECT_EQ(row, (std::vector<std::uint8_t>{35, 35, 35, 60, 60, 60}));
    ASSERT_TRUE(small.readRgbRow(1, row));
    EXPECT_EQ(row, (std::vector<std::uint8_t>{15, 15, 15, 40, 40, 40}));
    const twPicture large = pictureOf(image);
    EXPECT_EQ(large.width(), 37);
    EXPECT_EQ(large.height(), 32);
    EXPECT_EQ(large.pixel(0, 0)[0], 30);
    EXPECT_EQ(large.pixel(36, 31)[0], 50);
}

TEST(ImageCache, KeepsFilesByPathUntilReleased) {
    releaseAllImages();
    const std::string path = std::string(ORVIN_SOURCE_DIR) + "/tests/render/fixtures/alpha-rle.tga";
    const SummedImage* image = findImage(path);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->path(), path);
    EXPECT_TRUE(image->hasAlpha());
    EXPECT_EQ(image->boxQuery(0, 0, 11, 8), (std::array<std::uint8_t, 4>{200, 40, 10, 255}));
    const auto revision = imageCacheRevision();
    EXPECT_EQ(findImage(path), image);
    EXPECT_EQ(findImage(""), nullptr);
    EXPECT_EQ(imageCacheRevision(), revision);
    EXPECT_EQ(findImage("nowhere.tga"), nullptr);
    EXPECT_EQ(findImage(path), image) << "other images move nothing";
    releaseImage(path);
    EXPECT_NE(imageCacheRevision(), revision);
    EXPECT_NE(findImage(path), nullptr);
    releaseAllImages();
}

TEST(ImageCache, LayerImagesFallBackOnTheFirst) {
    const auto make = [](std::uint8_t value) {
        return std::make_unique<SummedImage>(grey(1, {value}));
    };
    const auto value = [](const char* name) {
        const SummedImage* image = findImage(name);
        return image == nullptr ? -1 : int{image->boxQuery(0, 0, 0, 0)[0]};
    };
    clearLayerImages();
    EXPECT_EQ(value("|ExtMap3"), -1);
    addLayerImage("|ExtMap1", make(1));
    addLayerImage("|ExtMap2", make(2));
    EXPECT_EQ(value("|ExtMap2"), 2);
    EXPECT_EQ(value("|ExtMap3"), 1);
    addLayerImage("|ExtMap2", make(22));
    EXPECT_EQ(value("|ExtMap2"), 22);
    addLayerImage(kPlaceholderLayer, make(9));
    EXPECT_EQ(value("|ExtMap3"), 9);
    clearLayerImages();
    EXPECT_EQ(value("|ExtMap1"), 9);
    releaseAllImages();
    EXPECT_EQ(value("|ExtMap0"), 9);
    addLayerImage(kPlaceholderLayer, nullptr);
    EXPECT_EQ(value("|ExtMap0"), -1);
}

}  // namespace
}  // namespace orvin
