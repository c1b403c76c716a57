#include "render/image/SummedImage.h"

#include <cmath>
#include <new>

#include "toolkit/Errors.h"

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

int mix(int a, int b, double part) {
    return static_cast<int>(a + (b - a) * part);
}

}  // namespace

SummedImage::SummedImage(const ImageBuffer& image)
    : width_(image.width()),
      height_(image.height()),
      channels_(image.pixelBytes()),
      path_(image.path()) {
    const bool colour = image.kind() == PixelKind::kRgb || image.kind() == PixelKind::kRgba;
    if (!colour || width_ <= 0 || height_ <= 0) throw kImageBufferFailed;
    stride_ = (static_cast<std::size_t>(width_) + 1) * channels_;
    const std::size_t rows = static_cast<std::size_t>(height_) + 1;
    if (rows > (table_.max_size() - 1) / stride_) throw std::bad_alloc();
    table_.resize(rows * stride_ + 1);

    std::vector<std::uint8_t> row(image.rowBytes());
    for (int y = 0; y < height_; ++y) {
        if (image.readRow(y, std::span<std::uint8_t>(row)) != kSuccess) throw kImageBufferFailed;
        const std::uint32_t* above = table_.data() + static_cast<std::size_t>(y) * stride_;
        std::uint32_t* sums = table_.data() + static_cast<std::size_t>(y + 1) * stride_;
        Sums left{};
        for (std::size_t i = 0; i < row.size(); i += channels_) {
            for (std::size_t c = 0; c < channels_; ++c) {
                left[c] += row[i + c];
                sums[channels_ + i + c] = above[channels_ + i + c] + left[c];
            }
        }
    }
}

std::array<float, 4> SummedImage::sampleBox(double s0, double t0, double s1, double t1) const {
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

    std::array<double, 4> colour{};
    if (boxPart < 1.0) {
        const Pair x(s0, du, width_);
        const Pair y(t0, dv, height_);
        const auto a = boxQuery(x.first, y.first, x.first, y.first);
        const auto b = boxQuery(x.second, y.first, x.second, y.first);
        const auto c = boxQuery(x.first, y.second, x.first, y.second);
        const auto d = boxQuery(x.second, y.second, x.second, y.second);
        for (std::size_t i = 0; i < 4; ++i) {
            const int byte = mix(mix(a[i], c[i], y.part), mix(b[i], d[i], y.part), x.part);
            colour[i] = (1.0 - boxPart) * byte;
        }
    }
    if (boxPart > 0.0) {
        const Axis columns(s0, s1);
        const Axis rows(t0, t1);
        for (std::size_t r = 0; r < rows.count; ++r) {
            const auto& row = rows.cells[r];
            for (std::size_t c = 0; c < columns.count; ++c) {
                const auto& column = columns.cells[c];
                const auto mean = boxQuery(column.first, row.first, column.last, row.last);
                const double weight = boxPart * column.weight * row.weight;
                for (std::size_t i = 0; i < 4; ++i)
                    colour[i] += weight * mean[i];
            }
        }
    }
    std::array<float, 4> result;
    for (std::size_t i = 0; i < 4; ++i)
        result[i] = std::min(static_cast<float>(colour[i]) * kByte, 1.0F);
    if (!hasAlpha()) result[3] = 1.0F;
    return result;
}

ImageBuffer SummedImage::toImage() const {
    ImageBuffer image(width_, height_, hasAlpha() ? PixelKind::kRgba : PixelKind::kRgb);
    std::vector<std::uint8_t> row(image.rowBytes());
    for (int y = 0; y < height_; ++y) {
        for (int x = 0; x < width_; ++x) {
            const auto pixel = boxQuery(x, y, x, y);
            std::copy_n(pixel.begin(), channels_,
                        row.begin() + static_cast<std::ptrdiff_t>(x) *
                                          static_cast<std::ptrdiff_t>(channels_));
        }
        image.writeRow(y, std::span<const std::uint8_t>(row));
    }
    image.setPath(path_);
    return image;
}

}  // namespace orvin
