#include "tests/support/Golden.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace orvin::test {

namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kHeader = 18;

// An uncompressed 32-bit TGA: B, G, R, A, bottom row first.
void writeTga(const fs::path& path, int width, int height, std::span<const std::uint8_t> rgba) {
    Bytes bytes(kHeader, 0);
    bytes[2] = 2;
    bytes[12] = static_cast<std::uint8_t>(width & 255);
    bytes[13] = static_cast<std::uint8_t>(width >> 8);
    bytes[14] = static_cast<std::uint8_t>(height & 255);
    bytes[15] = static_cast<std::uint8_t>(height >> 8);
    bytes[16] = 32;
    bytes[17] = 8;
    for (std::size_t i = 0; i + 3 < rgba.size(); i += 4)
        bytes.insert(bytes.end(), {rgba[i + 2], rgba[i + 1], rgba[i], rgba[i + 3]});
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
}

// Only what writeTga writes; empty for anything else.
Bytes readTga(const fs::path& path, int width, int height) {
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> raw{std::istreambuf_iterator<char>(file), {}};
    const Bytes bytes(raw.begin(), raw.end());
    const std::size_t size = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4;
    if (bytes.size() != kHeader + size || bytes[12] + 256 * bytes[13] != width) return {};
    Bytes rgba(bytes.begin() + kHeader, bytes.end());
    for (std::size_t i = 0; i < rgba.size(); i += 4)
        std::swap(rgba[i], rgba[i + 2]);
    return rgba;
}

}  // namespace

testing::AssertionResult matchesGolden(const std::string& name, int width, int height,
                                       std::span<const std::uint8_t> rgba) {
    const fs::path golden = fs::path(ORVIN_SOURCE_DIR) / "tests/golden" / (name + ".tga");
    const fs::path left = fs::current_path() / "golden-failures";
    const Bytes expected = readTga(golden, width, height);
    std::size_t off = 0;
    int worst = 0;
    Bytes difference(rgba.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const int d = std::abs(int{expected[i]} - int{rgba[i]});
        off += d > 0.004 * 255 ? 1 : 0;
        worst = std::max(worst, d);
        difference[i] = i % 4 == 3 ? 255 : static_cast<std::uint8_t>(std::min(20 * d, 255));
    }
    const bool few = static_cast<double>(off) <= 0.0002 * static_cast<double>(rgba.size());
    if (!expected.empty() && few && worst <= 0.012 * 255) return testing::AssertionSuccess();

    fs::create_directories(left);
    writeTga(left / (name + "-actual.tga"), width, height, rgba);
    if (expected.empty())
        return testing::AssertionFailure()
               << golden.string() << " isn't there or of another size; the picture is in "
               << left.string();
    writeTga(left / (name + "-difference.tga"), width, height, difference);
    return testing::AssertionFailure()
           << off << " of " << rgba.size() << " values differ, the worst by " << worst
           << " of 255; pictures are in " << left.string();
}

}  // namespace orvin::test
