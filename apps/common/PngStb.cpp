#include "common/Files.h"
#include "common/Options.h"
#include "common/Png.h"

#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#define STBI_ONLY_PNG
#define STBI_NO_STDIO
#define STBI_MAX_DIMENSIONS 30000
#include <stb/stb_image.h>
#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STB_IMAGE_WRITE_STATIC
#define STBI_WRITE_NO_STDIO
#include <stb/stb_image_write.h>

#include <algorithm>
#include <memory>

namespace orvin::apps {
namespace {

void append(void* context, void* data, int size) {
    auto* bytes = static_cast<std::vector<std::uint8_t>*>(context);
    const auto* from = static_cast<const std::uint8_t*>(data);
    bytes->insert(bytes->end(), from, from + size);
}

}  // namespace

Picture readPng(const std::filesystem::path& path) {
    const std::vector<std::uint8_t> bytes = readFile(path);
    int width = 0;
    int height = 0;
    int channels = 0;
    const std::unique_ptr<stbi_uc, void (*)(void*)> pixels(
        stbi_load_from_memory(bytes.data(), static_cast<int>(bytes.size()), &width, &height,
                              &channels, 4),
        stbi_image_free);
    if (pixels == nullptr) throw Failure(path.string() + ": " + stbi_failure_reason());
    Picture picture(width, height);
    std::copy_n(pixels.get(), picture.rgba.size(), picture.rgba.data());
    return picture;
}

void writePng(const std::filesystem::path& path, const Picture& picture) {
    std::vector<std::uint8_t> bytes;
    stbi_write_png_compression_level = 4;
    if (stbi_write_png_to_func(append, &bytes, picture.width, picture.height, 4,
                               picture.rgba.data(), picture.width * 4) == 0)
        throw Failure(path.string() + ": can't be encoded");
    writeFile(path, bytes);
}

}  // namespace orvin::apps
