// PNG files in and out: libpng natively, the stb headers on Windows; the same pixels either way.
#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

namespace orvin::apps {

/// Rows from the top; four bytes a pixel: red, green, blue, alpha; colour not premultiplied.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rgba;

    Picture() = default;
    Picture(int w, int h)
        : width(w),
          height(h),
          rgba(static_cast<std::size_t>(w) * static_cast<std::size_t>(h) * 4) {}
    std::uint8_t* pixel(int x, int y) { return rgba.data() + offset(x, y); }
    const std::uint8_t* pixel(int x, int y) const { return rgba.data() + offset(x, y); }

  private:
    std::size_t offset(int x, int y) const {
        return (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                static_cast<std::size_t>(x)) *
               4;
    }
};

/// Any PNG becomes 8-bit RGBA (grey and palettes widened, 16 bits cut to 8).
/// Throws Failure with the file's name on anything that isn't a readable PNG, or on a side above
/// 30000 pixels.
Picture readPng(const std::filesystem::path& path);

/// Writes an RGBA PNG, by way of a temporary file beside it. Throws Failure.
void writePng(const std::filesystem::path& path, const Picture& picture);

}  // namespace orvin::apps
