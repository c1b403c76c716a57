#include "render/image/Rasters.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

namespace orvin {

void PlainRaster::Free::operator()(void* memory) const {
    std::free(memory);
}

// calloc: the system hands out large zeroed pages without anybody writing them twice.
PlainRaster::PlainRaster(int width, int height, std::size_t pixelBytes)
    : pixelBytes_(pixelBytes),
      rowBytes_(static_cast<std::size_t>(width) * pixelBytes),
      owned_(static_cast<std::uint8_t*>(
          std::calloc(std::max<std::size_t>(static_cast<std::size_t>(height), 1),
                      std::max<std::size_t>(rowBytes_, 1)))),
      pixels_(owned_.get()) {
    if (!owned_) throw std::bad_alloc();
}

PlainRaster::PlainRaster(int width, std::size_t pixelBytes, std::uint8_t* pixels)
    : pixelBytes_(pixelBytes),
      rowBytes_(static_cast<std::size_t>(width) * pixelBytes),
      pixels_(pixels) {}

Result PlainRaster::readRow(int y, std::span<std::uint8_t> row) {
    std::memcpy(row.data(), pixel(0, y, false), row.size());
    return kSuccess;
}

Result PlainRaster::writeRow(int y, std::span<const std::uint8_t> row) {
    std::memcpy(pixel(0, y, true), row.data(), row.size());
    return kSuccess;
}

std::uint8_t* PlainRaster::pixel(int x, int y, bool) {
    return pixels_ + static_cast<std::size_t>(y) * rowBytes_ +
           static_cast<std::size_t>(x) * pixelBytes_;
}

PagedRaster::PagedRaster(int width, int height, std::size_t pixelBytes, std::size_t maxTiles,
                         PagedStore::File file)
    : pixelBytes_(pixelBytes), store_(width, height, pixelBytes, maxTiles, std::move(file)) {}

Result PagedRaster::readRow(int y, std::span<std::uint8_t> row) {
    const std::size_t step = std::size_t{PagedStore::kTileSide} * pixelBytes_;
    for (int x = 0; !row.empty(); x += PagedStore::kTileSide) {
        const std::uint8_t* from = pixel(x, y, false);
        if (from == nullptr) return kFailure;
        const std::size_t bytes = std::min(step, row.size());
        std::memcpy(row.data(), from, bytes);
        row = row.subspan(bytes);
    }
    return kSuccess;
}

Result PagedRaster::writeRow(int y, std::span<const std::uint8_t> row) {
    const std::size_t step = std::size_t{PagedStore::kTileSide} * pixelBytes_;
    for (int x = 0; !row.empty(); x += PagedStore::kTileSide) {
        std::uint8_t* to = pixel(x, y, true);
        if (to == nullptr) return kFailure;
        const std::size_t bytes = std::min(step, row.size());
        std::memcpy(to, row.data(), bytes);
        row = row.subspan(bytes);
    }
    return kSuccess;
}

std::uint8_t* PagedRaster::pixel(int x, int y, bool forWriting) {
    constexpr int kSide = PagedStore::kTileSide;
    std::uint8_t* tile = store_.tile(x / kSide, y / kSide, forWriting);
    if (tile == nullptr) return nullptr;
    return tile + static_cast<std::size_t>(y % kSide * kSide + x % kSide) * pixelBytes_;
}

}  // namespace orvin
