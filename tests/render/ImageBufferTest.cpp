// Pixel buffers: in memory and paged to a file, which nobody may be able to tell apart.
#include <gtest/gtest.h>

#include <cstdio>
#include <new>
#include <random>
#include <vector>

#include "render/image/ImageBuffer.h"
#include "render/image/PagedStore.h"
#include "render/image/Rasters.h"
#include "tests/support/TempFolder.h"
#include "toolkit/Errors.h"
#include "toolkit/platform/Platform.h"

namespace orvin {
namespace {

constexpr std::uint64_t kReserve = ImageBuffer::kBudgetReserve;

template <typename Make>
int errorOf(Make make) {
    try {
        make();
    } catch (eBaseError error) {
        return error;
    } catch (const std::bad_alloc&) {
        return -1;
    }
    return 0;
}

TEST(ImageBuffer, KindsFollowChannelsAndBits) {
    EXPECT_EQ(ImageBuffer::withBits(2, 3, 1, 32).kind(), PixelKind::kDepth);
    const int refused[][2] = {{1, 8}, {3, 16}, {4, 32}, {0, 0}, {4, -8}};
    for (const auto& pair : refused)
        EXPECT_EQ(errorOf([&] { ImageBuffer::withBits(2, 3, pair[0], pair[1]); }), 101);
    EXPECT_EQ(errorOf([] { ImageBuffer(-1, 3, PixelKind::kRgb); }), 101);
    EXPECT_EQ(errorOf([] { ImageBuffer(0x7fffffff, 0x7fffffff, PixelKind::kDepth); }), -1);
}

TEST(ImageBuffer, BudgetDecidesWhereThePixelsAre) {
    const struct {
        int side;
        std::uint64_t budget;
        int error;
        bool paged;
    } cases[] = {
        {600, 0, 0, false},
        {600, 600 * 600 * 4 + 1, 0, false},
        {600, 600 * 600 * 4, 0, true},  // exactly its size is not enough
        {600, kReserve, 0, true},       // one tile
        {600, kReserve - 1, -1, false},
        {600, 1, -1, false},
        {10, 401, 0, false},  // a small budget is enough for a small picture
        {10, 400, -1, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.budget);
        bool paged = false;
        EXPECT_EQ(errorOf([&] {
                      ImageBuffer image(c.side, c.side, PixelKind::kRgba, c.budget);
                      paged = image.isPaged();
                      EXPECT_EQ(image.direct() == nullptr, paged);
                  }),
                  c.error);
        EXPECT_EQ(paged, c.paged);
    }
}

TEST(ImageBuffer, PagedAndPlainHoldTheSameBytes) {
    constexpr int kWidth = 1033;  // neither side a multiple of a tile's
    constexpr int kHeight = 421;
    for (const PixelKind kind : {PixelKind::kRgb, PixelKind::kRgba, PixelKind::kDepth}) {
        const std::size_t bytes = bytesPerPixel(kind);
        // Seven tiles for rows of 21: every row moves tiles out and in.
        ImageBuffer paged(kWidth, kHeight, kind, kReserve + 7 * 2500 * bytes + 100);
        ImageBuffer plain(kWidth, kHeight, kind);
        ASSERT_TRUE(paged.isPaged());
        std::mt19937 random(7);
        std::vector<std::uint8_t> row(plain.rowBytes());
        for (int step = 0; step < 3000; ++step) {
            const int x = static_cast<int>(random() % kWidth);
            const int y = static_cast<int>(random() % (kHeight - 60));  // the rest is never written
            const bool whole = step % 40 == 0;
            for (auto& byte : std::span(row).first(whole ? row.size() : bytes))
                byte = static_cast<std::uint8_t>(random());
            if (whole) {
                ASSERT_EQ(paged.writeRow(y, row), kSuccess);
                ASSERT_EQ(plain.writeRow(y, row), kSuccess);
            } else {
                const auto pixel = std::span<const std::uint8_t>(row).first(bytes);
                ASSERT_EQ(paged.writePixel(x, y, pixel), kSuccess);
                ASSERT_EQ(plain.writePixel(x, y, pixel), kSuccess);
                std::vector<std::uint8_t> back(bytes);
                ASSERT_EQ(paged.readPixel(x, y, back), kSuccess);
                ASSERT_TRUE(std::equal(back.begin(), back.end(), row.begin()));
            }
        }
        std::vector<std::uint8_t> other(plain.rowBytes());
        for (int y = 0; y < kHeight; ++y) {
            ASSERT_EQ(paged.readRow(y, std::span(row)), kSuccess);
            ASSERT_EQ(plain.readRow(y, std::span(other)), kSuccess);
            ASSERT_EQ(row, other) << y;
        }
    }
}

TEST(ImageBuffer, PositionsOutsideFail) {
    ImageBuffer image(4, 3, PixelKind::kRgb);
    std::vector<std::uint8_t> row(12);
    for (const int y : {-1, 3}) {
        EXPECT_EQ(image.readRow(y, std::span(row)), kFailure);
        EXPECT_EQ(image.writeRow(y, std::span<const std::uint8_t>(row)), kFailure);
        EXPECT_EQ(image.readPixel(0, y, row), kFailure);
    }
    EXPECT_EQ(image.readRow(0, std::span(row).first(11)), kFailure);
    EXPECT_EQ(image.writePixel(4, 0, row), kFailure);
    EXPECT_EQ(image.writePixel(-1, 0, row), kFailure);
    double value = 0.0;
    EXPECT_EQ(image.readPixel(0, 0, value), kFailure) << "no depth in colours";
}

TEST(ImageBuffer, WhatWasMovedFromIsNoPicture) {
    std::vector<std::uint8_t> pixels(24);
    ImageBuffer from(3, 2, PixelKind::kRgba, pixels);  // the caller's
    const ImageBuffer to = std::move(from);
    EXPECT_EQ(to.direct(), pixels.data());
    EXPECT_EQ(from.kind(), PixelKind::kNone);  // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(from.readRow(0, std::span(pixels)), kFailure);
    EXPECT_EQ(from.direct(), nullptr);
    EXPECT_EQ(errorOf([&] { ImageBuffer(3, 3, PixelKind::kRgba, pixels); }), 101);
}

// The file turns read-only under the raster: tiles that must be saved can't be.
TEST(PagedRaster, ReportsAFailingFileAndLosesNothing) {
    const test::TempFolder folder;
    const std::string name = (folder.path() / "spill.bin").string();
    PagedStore::File owned(platform::openFile(name, "w+b"));
    ASSERT_TRUE(owned);
    std::FILE* file = owned.get();
    PagedRaster raster(150, 50, 3, 1, std::move(owned));
    *raster.pixel(0, 0, true) = 77;
    ASSERT_NE(std::freopen(name.c_str(), "rb", file), nullptr);
    EXPECT_EQ(raster.pixel(60, 0, false), nullptr);
    std::vector<std::uint8_t> row(450);
    EXPECT_EQ(raster.readRow(0, row), kFailure);
    EXPECT_EQ(raster.writeRow(0, row), kFailure);
    ASSERT_NE(raster.pixel(1, 0, false), nullptr);
    EXPECT_EQ(*raster.pixel(1, 1, false), 0);
}

TEST(PagedRaster, RefusesAFileItCannotFill) {
    EXPECT_EQ(errorOf([] { PagedRaster(60, 60, 3, 1, nullptr); }), 101);
    const test::TempFolder folder;
    const auto name = folder.path() / "empty.bin";
    std::fclose(platform::openFile(name, "wb"));
    EXPECT_EQ(errorOf([&] {
                  PagedRaster(60, 60, 3, 1, PagedStore::File(platform::openFile(name, "rb")));
              }),
              101);
}

}  // namespace
}  // namespace orvin
