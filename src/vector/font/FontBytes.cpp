#include "vector/font/FontBytes.h"

#include <cstdio>

#include "toolkit/platform/Platform.h"

namespace orvin {

std::optional<std::vector<std::uint8_t>> readFontBytes(std::string_view path) {
    constexpr std::size_t kLargest = std::size_t{1} << 29;
    std::FILE* const file = platform::openFile(platform::pathFromText(path), "rb");
    if (file == nullptr) return std::nullopt;
    std::vector<std::uint8_t> bytes(1 << 16);
    std::size_t size = 0;
    while (const std::size_t got = std::fread(bytes.data() + size, 1, bytes.size() - size, file)) {
        size += got;
        if (size < bytes.size()) continue;
        if (size >= kLargest) break;
        bytes.resize(size * 2);
    }
    std::fclose(file);
    bytes.resize(size);
    return bytes;
}

}  // namespace orvin
