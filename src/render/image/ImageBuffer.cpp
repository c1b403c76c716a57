#include "render/image/ImageBuffer.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "render/image/Rasters.h"
#include "toolkit/Errors.h"
#include "toolkit/platform/Platform.h"

namespace orvin {

namespace {

// Bytes of a picture. Throws for sizes that no picture has and for those that no memory holds.
std::uint64_t checkedBytes(int width, int height, PixelKind kind) {
    if (width < 0 || height < 0 || kind == PixelKind::kNone) throw kImageBufferFailed;
    const auto w = static_cast<std::uint64_t>(width);
    const auto h = static_cast<std::uint64_t>(height);
    const std::uint64_t perRow = w * bytesPerPixel(kind);
    if (h != 0 && perRow > PTRDIFF_MAX / h) throw std::bad_alloc();
    return perRow * h;
}

std::span<std::uint8_t> asBytes(std::span<double> values) {
    return {reinterpret_cast<std::uint8_t*>(values.data()), values.size_bytes()};
}

std::span<const std::uint8_t> asBytes(std::span<const double> values) {
    return {reinterpret_cast<const std::uint8_t*>(values.data()), values.size_bytes()};
}

}  // namespace

std::uint64_t ImageBuffer::freeBudget() {
    const std::uint64_t free = platform::freePhysicalMemory();
    return free > kBudgetReserve ? free - kBudgetReserve : 1;
}

ImageBuffer::ImageBuffer() = default;
ImageBuffer::~ImageBuffer() = default;

ImageBuffer::ImageBuffer(ImageBuffer&& other) noexcept {
    *this = std::move(other);
}

// What was moved from is no picture any more.
ImageBuffer& ImageBuffer::operator=(ImageBuffer&& other) noexcept {
    width_ = std::exchange(other.width_, 0);
    height_ = std::exchange(other.height_, 0);
    kind_ = std::exchange(other.kind_, PixelKind::kNone);
    raster_ = std::exchange(other.raster_, nullptr);
    path_ = std::exchange(other.path_, {});
    return *this;
}

ImageBuffer::ImageBuffer(int width, int height, PixelKind kind, std::uint64_t memoryBudget)
    : width_(width), height_(height), kind_(kind) {
    const std::uint64_t bytes = checkedBytes(width, height, kind);
    if (memoryBudget == 0 || memoryBudget > bytes) {
        raster_ = std::make_unique<PlainRaster>(width, height, pixelBytes());
        return;
    }
    if (memoryBudget < kBudgetReserve) throw std::bad_alloc();
    const std::uint64_t tiles =
        (memoryBudget - kBudgetReserve) / (PagedStore::kTilePixels * pixelBytes());
    raster_ = std::make_unique<PagedRaster>(
        width, height, pixelBytes(), static_cast<std::size_t>(std::max<std::uint64_t>(tiles, 1)),
        PagedStore::File(platform::openTemporaryFile()));
}

ImageBuffer::ImageBuffer(int width, int height, PixelKind kind, std::span<std::uint8_t> pixels)
    : width_(width), height_(height), kind_(kind) {
    if (checkedBytes(width, height, kind) > pixels.size()) throw kImageBufferFailed;
    raster_ = std::make_unique<PlainRaster>(width, pixelBytes(), pixels.data());
}

ImageBuffer ImageBuffer::withBits(int width, int height, int channels, int bitsPerChannel,
                                  std::uint64_t memoryBudget) {
    PixelKind kind = PixelKind::kNone;
    if (channels == 3 && bitsPerChannel == 8) kind = PixelKind::kRgb;
    if (channels == 4 && bitsPerChannel == 8) kind = PixelKind::kRgba;
    if (channels == 1 && bitsPerChannel == 32) kind = PixelKind::kDepth;
    return {width, height, kind, memoryBudget};
}

bool ImageBuffer::isPaged() const {
    return raster_ && rowBytes() != 0 && height_ != 0 && raster_->direct() == nullptr;
}

Result ImageBuffer::readRow(int y, std::span<std::uint8_t> row) const {
    if (y < 0 || y >= height_ || row.size() < rowBytes()) return kFailure;
    return raster_->readRow(y, row.first(rowBytes()));
}

Result ImageBuffer::writeRow(int y, std::span<const std::uint8_t> row) {
    if (y < 0 || y >= height_ || row.size() < rowBytes()) return kFailure;
    return raster_->writeRow(y, row.first(rowBytes()));
}

Result ImageBuffer::readPixel(int x, int y, std::span<std::uint8_t> pixel) const {
    if (x < 0 || x >= width_ || y < 0 || y >= height_ || pixel.size() < pixelBytes())
        return kFailure;
    const std::uint8_t* from = raster_->pixel(x, y, false);
    if (from == nullptr) return kFailure;
    std::memcpy(pixel.data(), from, pixelBytes());
    return kSuccess;
}

Result ImageBuffer::writePixel(int x, int y, std::span<const std::uint8_t> pixel) {
    if (x < 0 || x >= width_ || y < 0 || y >= height_ || pixel.size() < pixelBytes())
        return kFailure;
    std::uint8_t* to = raster_->pixel(x, y, true);
    if (to == nullptr) return kFailure;
    std::memcpy(to, pixel.data(), pixelBytes());
    return kSuccess;
}

Result ImageBuffer::readRow(int y, std::span<double> row) const {
    return kind_ == PixelKind::kDepth ? readRow(y, asBytes(row)) : kFailure;
}

Result ImageBuffer::writeRow(int y, std::span<const double> row) {
    return kind_ == PixelKind::kDepth ? writeRow(y, asBytes(row)) : kFailure;
}

Result ImageBuffer::readPixel(int x, int y, double& value) const {
    return readPixel(x, y,
                     kind_ == PixelKind::kDepth ? asBytes(std::span<double>(&value, 1))
                                                : std::span<std::uint8_t>{});
}

Result ImageBuffer::writePixel(int x, int y, double value) {
    return writePixel(x, y,
                      kind_ == PixelKind::kDepth ? asBytes(std::span<const double>(&value, 1))
                                                 : std::span<const std::uint8_t>{});
}

std::uint8_t* ImageBuffer::direct() {
    return raster_ && width_ > 0 && height_ > 0 ? raster_->direct() : nullptr;
}

const std::uint8_t* ImageBuffer::direct() const {
    return raster_ && width_ > 0 && height_ > 0 ? raster_->direct() : nullptr;
}

}  // namespace orvin
