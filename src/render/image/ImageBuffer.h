// ImageBuffer: the pixel buffer that renderers write and texture readers fill. Pixels are rows of
// R, G, B (kRgb), R, G, B, A (kRgba) bytes or one double (kDepth). Row 0 is the first row stored:
// of a texture the file's first, of a rendered picture the bottom one.
//
// With a memory budget too small for its pixels a buffer lives in a temporary file, and only a
// number of its tiles in memory. Nothing but direct() and the speed shows the difference.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <utility>

#include "toolkit/Result.h"

namespace orvin {

class Raster;

enum class PixelKind { kRgb = 0, kRgba = 1, kDepth = 2, kNone = 3 };

constexpr std::size_t bytesPerPixel(PixelKind kind) {
    switch (kind) {
        case PixelKind::kRgb:
            return 3;
        case PixelKind::kRgba:
            return 4;
        case PixelKind::kDepth:
            return sizeof(double);
        case PixelKind::kNone:
            break;
    }
    return 0;
}

class ImageBuffer {
  public:
    /// Part of a memory budget that a paged buffer leaves to others; a smaller budget is refused.
    static constexpr std::uint64_t kBudgetReserve = 0xfa000;

    /// What the machine has free now, less the reserve; never 0.
    static std::uint64_t freeBudget();

    /// No picture: kind kNone, 0 x 0.
    ImageBuffer();

    /// All pixels 0. `memoryBudget` in bytes: 0, or more than the pixels take, keeps them in
    /// memory; otherwise they are paged, with tiles for what exceeds kBudgetReserve and at least
    /// one. Throws std::bad_alloc where memory is short or a budget that matters is below
    /// kBudgetReserve, eBaseError 101 for a negative size, kNone, or a temporary file that can't be
    /// made.
    ImageBuffer(int width, int height, PixelKind kind, std::uint64_t memoryBudget = 0);

    /// A view of pixels that the caller keeps, width x height x bytesPerPixel(kind) bytes without
    /// gaps between rows. Throws eBaseError 101 where `pixels` is shorter.
    ImageBuffer(int width, int height, PixelKind kind, std::span<std::uint8_t> pixels);

    /// By channels and bits: 3 x 8, 4 x 8, or 1 x 32 (kDepth); anything else throws eBaseError 101.
    static ImageBuffer withBits(int width, int height, int channels, int bitsPerChannel,
                                std::uint64_t memoryBudget = 0);

    ~ImageBuffer();
    ImageBuffer(ImageBuffer&& other) noexcept;
    ImageBuffer& operator=(ImageBuffer&& other) noexcept;

    int width() const { return width_; }
    int height() const { return height_; }
    PixelKind kind() const { return kind_; }
    std::size_t pixelBytes() const { return bytesPerPixel(kind_); }
    std::size_t rowBytes() const { return static_cast<std::size_t>(width_) * pixelBytes(); }
    bool isPaged() const;

    // Rows and pixels. -1 for a position outside, a span shorter than the row or pixel, and for a
    // temporary file that fails; 0 otherwise.
    Result readRow(int y, std::span<std::uint8_t> row) const;
    Result writeRow(int y, std::span<const std::uint8_t> row);
    Result readPixel(int x, int y, std::span<std::uint8_t> pixel) const;
    Result writePixel(int x, int y, std::span<const std::uint8_t> pixel);

    // The same for kDepth; -1 for every other kind.
    Result readRow(int y, std::span<double> row) const;
    Result writeRow(int y, std::span<const double> row);
    Result readPixel(int x, int y, double& value) const;
    Result writePixel(int x, int y, double value);

    /// All pixels, row by row without gaps; null when paged or empty.
    std::uint8_t* direct();
    const std::uint8_t* direct() const;

    /// Where the picture was loaded from; empty for others.
    const std::string& path() const { return path_; }
    void setPath(std::string path) { path_ = std::move(path); }

  private:
    int width_ = 0;
    int height_ = 0;
    PixelKind kind_ = PixelKind::kNone;
    std::unique_ptr<Raster> raster_;  // null for kNone
    std::string path_;
};

}  // namespace orvin
