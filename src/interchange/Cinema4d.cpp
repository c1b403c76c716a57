#include "interchange/Cinema4d.h"

#include <array>
#include <cstdio>
#include <string_view>
#include <system_error>

#include "toolkit/platform/Platform.h"

namespace orvin {

namespace {

constexpr std::size_t kHead = 64;  // bytes in which a tag must stand

}  // namespace

bool isCinema4dFile(const std::filesystem::path& path) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) return false;
    std::FILE* const file = platform::openFile(path, "rb");
    if (file == nullptr) return false;
    std::array<char, kHead> bytes{};
    const std::size_t size = std::fread(bytes.data(), 1, bytes.size(), file);
    std::fclose(file);
    const std::string_view head(bytes.data(), size);
    return head.find("MC50") != std::string_view::npos ||
           head.find("DOK5") != std::string_view::npos;
}

}  // namespace orvin
