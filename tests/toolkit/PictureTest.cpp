// Packed bitmaps made by hand, and the picture's rows.
#include <gtest/gtest.h>

#include <vector>

#include "toolkit/twPicture.h"

namespace orvin {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes operator+(Bytes a, const Bytes& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

Bytes info(int width, int height, int bits, int compression = 0, int colours = 0) {
    Bytes header(40);
    const auto put = [&](std::size_t at, int value) {
        for (std::size_t i = 0; i < 4; ++i)
            header[at + i] = static_cast<std::uint8_t>(static_cast<unsigned>(value) >> (8 * i));
    };
    put(0, 40);
    put(4, width);
    put(8, height);
    put(12, 1 | bits << 16);
    put(16, compression);
    put(32, colours);
    return header;
}

Bytes rowsOf(const twPicture& picture) {
    Bytes all;
    for (int y = 0; y < picture.height(); ++y) {
        Bytes row(static_cast<std::size_t>(picture.width()) * 3);
        EXPECT_TRUE(picture.readRgbRow(y, row));
        all = all + row;
    }
    return all;
}

TEST(Picture, ReadsPackedBitmaps) {
    const Bytes core = {12, 0, 0, 0, 1, 0, 2, 0, 1, 0, 24, 0};
    const Bytes palette = {1, 2, 3, 0, 4, 5, 6, 0};
    const Bytes two = {6, 5, 4, 0, 3, 2, 1, 0};
    const Bytes turned = {4, 5, 6, 1, 2, 3};
    const struct {
        const char* caption;
        Bytes bitmap;
        Bytes rgb;  // empty: refused
    } cases[] = {
        {"bottom-up", info(1, 2, 24) + Bytes{3, 2, 1, 0, 6, 5, 4, 0}, turned},
        {"top-down", info(1, -2, 24) + two, turned},
        {"core header", core + Bytes{3, 2, 1, 0, 6, 5, 4, 0}, turned},
        {"32 bits", info(2, 1, 32) + two, turned},
        {"one bit", info(3, 1, 1) + palette + Bytes{0xa0, 0, 0, 0}, {6, 5, 4, 3, 2, 1, 6, 5, 4}},
        {"four bits",
         info(3, 1, 4, 0, 2) + palette + Bytes{0x10, 0x10, 0, 0},
         {6, 5, 4, 3, 2, 1, 6, 5, 4}},
        {"number beyond the palette",
         info(2, 1, 8, 0, 2) + palette + Bytes{9, 1, 0, 0},
         {0, 0, 0, 6, 5, 4}},
        {"nothing", {}, {}},
        {"half a header", Bytes{40, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 24, 0}, {}},
        {"unpadded row", info(1, 2, 24) + Bytes{3, 2, 1, 6, 5, 4}, {}},
        {"compressed", info(2, 1, 32, 3) + two, {}},
        {"sixteen bits", info(2, 1, 16) + two, {}},
        {"no width", info(0, 1, 24) + two, {}},
        {"smallest height", info(1, -0x7fffffff - 1, 24) + two, {}},
        {"absurd size", info(30000, 30000, 32) + two, {}},
        {"absurd palette", info(1, 1, 8, 0, 0x7fffffff) + two, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.caption);
        const auto picture = twPicture::fromPackedBitmap(c.bitmap);
        ASSERT_EQ(picture == nullptr, c.rgb.empty());
        if (picture) {
            EXPECT_EQ(rowsOf(*picture), c.rgb);
        }
    }
}

TEST(Picture, RowsArePaddedAndBottomUp) {
    twPicture picture(3, 2);
    EXPECT_EQ(picture.rowBytes(), 12U);
    EXPECT_EQ(picture.sizeInBytes(), 24U);
    const Bytes row = {1, 2, 3, 4, 5, 6, 7, 8, 9};
    EXPECT_TRUE(picture.writeRgbRow(0, row));
    EXPECT_EQ(Bytes(picture.bits().begin() + 12, picture.bits().end()),
              (Bytes{3, 2, 1, 6, 5, 4, 9, 8, 7, 0, 0, 0}));
    EXPECT_EQ(picture.pixel(2, 0)[2], 7);
    EXPECT_EQ(picture.pixel(3, 0), nullptr);
    EXPECT_EQ(picture.pixel(0, -1), nullptr);
    EXPECT_FALSE(picture.writeRgbRow(2, row));
    EXPECT_FALSE(picture.writeRgbRow(0, std::span(row).first(8)));

    const auto copy = twPicture::fromPackedBitmap(picture.packedBitmap());
    ASSERT_TRUE(copy);
    EXPECT_EQ(rowsOf(*copy), rowsOf(picture));
    const twPicture wide = picture.converted(32);
    EXPECT_EQ(wide.sizeInBytes(), 24U);
    EXPECT_EQ(wide.pixel(1, 0)[3], 255);
    EXPECT_EQ(rowsOf(wide.converted(24)), rowsOf(picture));
    EXPECT_TRUE(twPicture(0, 9).packedBitmap().empty());
    EXPECT_TRUE(twPicture(-4, 9).empty());
}

}  // namespace
}  // namespace orvin
