#include "render/image/FileBytes.h"

#include <cstdio>
#include <memory>
#include <system_error>

#include "toolkit/platform/Platform.h"

namespace orvin {

std::optional<std::vector<std::uint8_t>> readWholeFile(const std::filesystem::path& path) {
    // A pipe or a device would never end.
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error) || error) return std::nullopt;
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    if (error || size > PTRDIFF_MAX) return std::nullopt;

    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    const std::unique_ptr<std::FILE, Close> file(platform::openFile(path, "rb"));
    if (!file) return std::nullopt;
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size));
    if (std::fread(bytes.data(), 1, bytes.size(), file.get()) != bytes.size()) return std::nullopt;
    return bytes;
}

}  // namespace orvin
