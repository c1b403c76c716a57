// twPicture: a device-independent bitmap of 24 (B, G, R) or 32 (B, G, R, A) bits a pixel, the
// thumbnail of materials, lights, styles and images. The rows are those of the bitmap: bottom row
// first, each padded to a multiple of 4 bytes. y counts from the top.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace orvin {

class twPicture {
  public:
    /// Longest side of a picture that is accepted from outside.
    static constexpr int kLargestSide = 32768;

    /// No picture: 0 x 0.
    twPicture() = default;

    /// Black and clear. A size that isn't positive gives an empty picture. 32 bits where
    /// `bitsPerPixel` is 32, else 24. Throws std::bad_alloc.
    twPicture(int width, int height, int bitsPerPixel = 24);

    /// Reads a packed bitmap, a header of 40 bytes (BITMAPINFOHEADER) or 12 (core header), palette
    /// and pixels: uncompressed, 1, 4, 8, 24 or 32 bits, bottom-up or, with a negative height,
    /// top-down. Palettes are resolved. Null for anything else, or where bytes are missing. Throws
    /// std::bad_alloc.
    static std::unique_ptr<twPicture> fromPackedBitmap(std::span<const std::uint8_t> bitmap);

    /// BITMAPINFOHEADER and pixels, as native drawing takes them. Empty for an empty picture.
    std::vector<std::uint8_t> packedBitmap() const;

    int width() const { return width_; }
    int height() const { return height_; }
    int bitsPerPixel() const { return bitsPerPixel_; }
    bool empty() const { return bits_.empty(); }

    /// From one row to the next, padding included; bytes of all rows.
    std::size_t rowBytes() const;
    std::size_t sizeInBytes() const { return bits_.size(); }

    /// The pixel's bytes, the rest of its row behind them. Null outside.
    std::uint8_t* pixel(int x, int y);
    const std::uint8_t* pixel(int x, int y) const;

    /// All rows, bottom row first.
    std::span<std::uint8_t> bits() { return bits_; }
    std::span<const std::uint8_t> bits() const { return bits_; }

    /// A row as R, G, B bytes, width() x 3 of them. A 32-bit picture's alpha is left out, and set
    /// to 255. False for a row outside or a shorter span.
    bool readRgbRow(int y, std::span<std::uint8_t> rgb) const;
    bool writeRgbRow(int y, std::span<const std::uint8_t> rgb);

    /// The same picture with 24 or 32 bits; alpha 255 where there was none.
    twPicture converted(int bitsPerPixel) const;

  private:
    std::size_t pixelBytes() const { return static_cast<std::size_t>(bitsPerPixel_) / 8; }

    int width_ = 0;
    int height_ = 0;
    int bitsPerPixel_ = 24;
    std::vector<std::uint8_t> bits_;
};

}  // namespace orvin
