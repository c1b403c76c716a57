#include "common/Files.h"
#include "common/Options.h"
#include "common/Png.h"

#include <png.h>

namespace orvin::apps {

Picture readPng(const std::filesystem::path& path) {
    const std::vector<std::uint8_t> bytes = readFile(path);
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_memory(&image, bytes.data(), bytes.size()) == 0)
        throw Failure(path.string() + ": " + image.message);
    if (image.width > kMaxPictureSide || image.height > kMaxPictureSide) {
        png_image_free(&image);
        throw Failure(path.string() + ": larger than 30000 pixels");
    }
    image.format = PNG_FORMAT_RGBA;
    // 16-bit files without a gamma chunk are taken as sRGB, like those with 8 bits.
    image.flags |= PNG_IMAGE_FLAG_16BIT_sRGB;
    Picture picture(static_cast<int>(image.width), static_cast<int>(image.height));
    if (png_image_finish_read(&image, nullptr, picture.rgba.data(), 0, nullptr) == 0)
        throw Failure(path.string() + ": " + image.message);
    return picture;
}

void writePng(const std::filesystem::path& path, const Picture& picture) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(picture.width);
    image.height = static_cast<png_uint_32>(picture.height);
    image.format = PNG_FORMAT_RGBA;
    image.flags = PNG_IMAGE_FLAG_FAST;
    png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
    std::vector<std::uint8_t> bytes(size);
    if (png_image_write_to_memory(&image, bytes.data(), &size, 0, picture.rgba.data(), 0,
                                  nullptr) == 0)
        throw Failure(path.string() + ": " + image.message);
    bytes.resize(size);
    writeFile(path, bytes);
}

}  // namespace orvin::apps
