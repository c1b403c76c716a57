// Where the pixels of an ImageBuffer are: in one array, or paged to a temporary file. One pixel is
// 3, 4 or 8 bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "render/image/PagedStore.h"
#include "toolkit/Result.h"

namespace orvin {

class Raster {
  public:
    virtual ~Raster() = default;

    /// Copies pixels between `row` and the start of row y: row.size() bytes, whole pixels, at most
    /// a row. The caller checks y and the size. -1 where the temporary file fails.
    virtual Result readRow(int y, std::span<std::uint8_t> row) = 0;
    virtual Result writeRow(int y, std::span<const std::uint8_t> row) = 0;

    /// The bytes of one pixel, or null where the temporary file fails. The caller checks x and y.
    virtual std::uint8_t* pixel(int x, int y, bool forWriting) = 0;

    /// All pixels in one array; null when paged.
    virtual std::uint8_t* direct() { return nullptr; }
};

/// Pixels in one array, its own or the caller's.
class PlainRaster : public Raster {
  public:
    PlainRaster(int width, int height, std::size_t pixelBytes);  // all 0; throws std::bad_alloc
    PlainRaster(int width, std::size_t pixelBytes, std::uint8_t* pixels);

    Result readRow(int y, std::span<std::uint8_t> row) override;
    Result writeRow(int y, std::span<const std::uint8_t> row) override;
    std::uint8_t* pixel(int x, int y, bool forWriting) override;
    std::uint8_t* direct() override { return pixels_; }

  private:
    struct Free {
        void operator()(void* memory) const;
    };

    std::size_t pixelBytes_;
    std::size_t rowBytes_;
    std::unique_ptr<std::uint8_t, Free> owned_;
    std::uint8_t* pixels_;
};

class PagedRaster : public Raster {
  public:
    /// See PagedStore.
    PagedRaster(int width, int height, std::size_t pixelBytes, std::size_t maxTiles,
                PagedStore::File file);

    Result readRow(int y, std::span<std::uint8_t> row) override;
    Result writeRow(int y, std::span<const std::uint8_t> row) override;
    std::uint8_t* pixel(int x, int y, bool forWriting) override;

  private:
    std::size_t pixelBytes_;
    PagedStore store_;
};

}  // namespace orvin
