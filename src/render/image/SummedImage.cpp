#include "render/image/SummedImage.h"

#include <algorithm>
#include <new>
#include <span>
#include <vector>

#include "toolkit/Errors.h"
#include "toolkit/platform/Platform.h"

namespace orvin {

namespace {

constexpr float kByte = 1.0F / 255.0F;

// NaN compares false and becomes 0.
double clampCorner(double value, int size) {
    const double last = size - 1;
    return value > 0.0 ? (value < last ? value : last) : 0.0;
}

// One axis of a box: up to three cells of pixels, weighted by what the box covers of them, as
// shares of the box's length.
struct Axis {
    struct Cell {
        int first;
        int last;
        double weight;
    };
    std::array<Cell, 3> cells;
    std::size_t count = 0;

    Axis(double low, double high) {
        const int first = static_cast<int>(low);  // never negative
        const int last = static_cast<int>(high);
        const double length = high - low;
        if (first == last) {
            // Within one pixel, which is then all of the box, also where the box has no length.
            cells[0] = {first, first, 1.0};
            count = 1;
            return;
        }
        const double share = 1.0 / length;
        cells[count++] = {first, first, (first + 1 - low) * share};
        if (last - first > 1) cells[count++] = {first + 1, last - 1, (last - first - 1) * share};
        if (high > last) cells[count++] = {last, last, (high - last) * share};
    }
};

// One axis of a bilinear look-up: two neighbouring pixels and the second one's part.
struct Pair {
    int first;
    int second;
    double part;

    Pair(double low, double length, int size) {
        const int nearest = static_cast<int>(low + 0.5);
        part = (low - nearest) + length / 2.0;
        if (part < 0.5) {
            first = std::max(nearest - 1, 0);
            second = nearest;
            part += 0.5;
        } else {
            first = nearest;
            second = std::min(nearest + 1, size - 1);
            part -= 0.5;
        }
        part = std::clamp(part, 0.0, 1.0);
    }
};

// Between bytes, truncated. Equal ones stay as they are.
RealLanes mix(RealLanes a, RealLanes b, double part) {
    return truncated(a + (b - a) * part);
}

}  // namespace

SummedImage::SummedImage(const ImageBuffer& image)
    : width_(image.width()),
      height_(image.height()),
      hasAlpha_(image.kind() == PixelKind::kRgba),
      path_(image.path()) {
    const bool colour = hasAlpha_ || image.kind() == PixelKind::kRgb;
    if (!colour || width_ <= 0 || height_ <= 0) throw kImageBufferFailed;
    if (hasAlpha_) {
        build<4>(image);
    } else {
        build<3>(image);
    }
}

template <std::size_t kChannels>
void SummedImage::build(const ImageBuffer& image) {
    stride_ = (static_cast<std::size_t>(width_) + 1) * kChannels;
    const std::size_t rows = static_cast<std::size_t>(height_) + 1;
    if (rows > PTRDIFF_MAX / sizeof(std::uint32_t) / stride_) throw std::bad_alloc();
    const std::size_t entries = rows * stride_ + 1;
    table_.reset(new std::uint32_t[entries]);  // every one is written below
    platform::preferLargePages(table_.get(), entries * sizeof(std::uint32_t));
    table_[entries - 1] = 0;
    std::fill_n(table_.get(), stride_, 0U);

    std::vector<std::uint8_t> row(image.rowBytes());
    for (int y = 0; y < height_; ++y) {
        if (image.readRow(y, std::span<std::uint8_t>(row)) != kSuccess) throw kImageBufferFailed;
        const std::uint32_t* above = table_.get() + static_cast<std::size_t>(y) * stride_;
        std::uint32_t* sums = table_.get() + static_cast<std::size_t>(y + 1) * stride_;
        std::array<std::uint32_t, kChannels> left{};
        std::copy_n(left.begin(), kChannels, sums);
        const std::uint8_t* in = row.data();
        for (std::size_t i = kChannels; i < stride_; i += kChannels) {
            for (std::size_t c = 0; c < kChannels; ++c) {
                left[c] += *in++;
                sums[i + c] = above[i + c] + left[c];
            }
        }
    }
}

std::array<float, 4> SummedImage::sampleBox(double s0, double t0, double s1, double t1) const {
    return hasAlpha_ ? sample<4>(s0, t0, s1, t1) : sample<3>(s0, t0, s1, t1);
}

template <std::size_t kChannels>
std::array<float, 4> SummedImage::sample(double s0, double t0, double s1, double t1) const {
    s0 = clampCorner(s0, width_);
    s1 = clampCorner(s1, width_);
    t0 = clampCorner(t0, height_);
    t1 = clampCorner(t1, height_);
    if (s1 < s0) std::swap(s0, s1);
    if (t1 < t0) std::swap(t0, t1);
    const double du = s1 - s0;
    const double dv = t1 - t0;
    const double big = std::max(du, dv);
    const double boxPart = big < 1.0                               ? 0.0
                           : (du >= 1.0 && dv >= 1.0) || big > 2.0 ? 1.0
                                                                   : big - 1.0;

    RealLanes colour{};
    if (boxPart < 1.0) {
        const Pair x(s0, du, width_);
        const Pair y(t0, dv, height_);
        const auto pixel = [this](int column, int row) {
            return toReal(boxSum<kChannels>(column, row, column, row));
        };
        const RealLanes left = mix(pixel(x.first, y.first), pixel(x.first, y.second), y.part);
        const RealLanes right = mix(pixel(x.second, y.first), pixel(x.second, y.second), y.part);
        colour = mix(left, right, x.part) * (1.0 - boxPart);
    }
    if (boxPart > 0.0) {
        const Axis columns(s0, s1);
        const Axis rows(t0, t1);
        for (std::size_t r = 0; r < rows.count; ++r) {
            const auto& row = rows.cells[r];
            for (std::size_t c = 0; c < columns.count; ++c) {
                const auto& column = columns.cells[c];
                const double weight = boxPart * column.weight * row.weight;
                colour =
                    colour +
                    boxMean<kChannels>(column.first, row.first, column.last, row.last) * weight;
            }
        }
    }
    const auto fraction = [](double value) {
        return std::min(static_cast<float>(value) * kByte, 1.0F);
    };
    return {fraction(colour.low[0]), fraction(colour.low[1]), fraction(colour.high[0]),
            kChannels == 4 ? fraction(colour.high[1]) : 1.0F};
}

ImageBuffer SummedImage::toImage() const {
    ImageBuffer image(width_, height_, hasAlpha() ? PixelKind::kRgba : PixelKind::kRgb);
    const std::size_t channels = image.pixelBytes();
    std::vector<std::uint8_t> row(image.rowBytes());
    for (int y = 0; y < height_; ++y) {
        for (int x = 0; x < width_; ++x) {
            const auto bytes = boxQuery(x, y, x, y);
            std::copy_n(bytes.begin(), channels,
                        row.data() + static_cast<std::size_t>(x) * channels);
        }
        image.writeRow(y, std::span<const std::uint8_t>(row));
    }
    image.setPath(path_);
    return image;
}

}  // namespace orvin
