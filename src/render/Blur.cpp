#include "render/Blur.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace orvin {

namespace {

constexpr double kMaxRadius = 64.0;

double usableRadius(double radius) {
    return radius > 0.0 ? std::min(radius, kMaxRadius) : 0.0;
}

int halfSize(double radius) {
    return std::max(0, static_cast<int>(std::ceil(radius - 0.5)));
}

// A flat area must keep its value although the weights sum to 1 only up to rounding.
std::uint8_t toByte(double value) {
    constexpr double kRounding = 1e-6;
    return static_cast<std::uint8_t>(std::clamp(value + kRounding, 0.0, 255.0));
}

int threshold(double value) {
    return value > 0.0 ? static_cast<int>(std::min(value, 255.0)) : 0;
}

class Blurrer {
  public:
    Blurrer(ImageBuffer& image, const BlurSettings& settings)
        : image_(image),
          settings_(settings),
          width_(image.width()),
          channels_(image.pixelBytes()),
          radius_(usableRadius(settings.radius)),
          half_(halfSize(radius_)),
          kernel_(blurKernel(radius_)),
          thresholds_{threshold(settings.contrast * 102.0), threshold(settings.contrast * 77.0),
                      threshold(settings.contrast * 153.0)},
          window_(kernel_.size()),
          output_(image.rowBytes()) {
        for (Row& row : window_) {
            row.pixels.resize(image.rowBytes());
            row.sums.resize(static_cast<std::size_t>(width_) * kSums);
        }
    }

    Result run(const std::function<int(int)>& pollRow) {
        for (int y = -half_; y < image_.height(); ++y) {
            // The window holds unfiltered rows: the next one is read before its turn to be written.
            if (const Result r = load(y + half_); r != kSuccess) return r;
            if (y < 0) continue;
            if (pollRow && pollRow(y) != 0) return kFailure;
            if (const Result r = filterRow(y); r != kSuccess) return r;
        }
        return kSuccess;
    }

  private:
    static constexpr std::size_t kSums = 5;  // R, G, B, A, weight of taps without alpha

    struct Row {
        std::vector<std::uint8_t> pixels;
        std::vector<double> sums;  // filtered along the row
        bool blank = true;
    };

    Row& rowAt(int y) {
        const int held = std::clamp(y, 0, image_.height() - 1);
        return window_[static_cast<std::size_t>(held) % window_.size()];
    }

    Result load(int y) {
        if (y >= image_.height()) return kSuccess;
        Row& row = rowAt(y);
        if (const Result r = image_.readRow(y, row.pixels); r != kSuccess) return r;
        row.blank = std::all_of(row.pixels.begin(), row.pixels.end(),
                                [](std::uint8_t byte) { return byte == 0; });
        if (!row.blank) filterAlong(row);
        return kSuccess;
    }

    void filterAlong(Row& row) {
        std::fill(row.sums.begin(), row.sums.end(), 0.0);
        for (int x = 0; x < width_; ++x) {
            double* sum = row.sums.data() + static_cast<std::size_t>(x) * kSums;
            for (std::size_t i = 0; i < kernel_.size(); ++i) {
                const int tap = std::clamp(x + static_cast<int>(i) - half_, 0, width_ - 1);
                const std::uint8_t* p =
                    row.pixels.data() + static_cast<std::size_t>(tap) * channels_;
                if (channels_ == 4 && p[3] == 0) {
                    sum[4] += kernel_[i];
                    continue;
                }
                for (std::size_t c = 0; c < channels_; ++c)
                    sum[c] += kernel_[i] * p[c];
            }
        }
    }

    Result filterRow(int y) {
        bool blank = true;
        for (int j = -half_; j <= half_; ++j)
            blank = blank && rowAt(y + j).blank;
        if (blank) return kSuccess;

        const std::vector<std::uint8_t>& own = rowAt(y).pixels;
        output_ = own;
        for (int x = 0; x < width_; ++x) {
            if (settings_.onlyContrast && !hasContrast(x, y)) continue;
            filterPixel(x, y);
        }
        return image_.writeRow(y, output_);
    }

    void filterPixel(int x, int y) {
        std::array<double, kSums> sum{};
        for (std::size_t j = 0; j < kernel_.size(); ++j) {
            const Row& row = rowAt(y + static_cast<int>(j) - half_);
            if (row.blank) {
                if (channels_ == 4) sum[4] += kernel_[j];
                continue;
            }
            const double* along = row.sums.data() + static_cast<std::size_t>(x) * kSums;
            for (std::size_t c = 0; c < kSums; ++c)
                sum[c] += kernel_[j] * along[c];
        }
        std::uint8_t* out = output_.data() + static_cast<std::size_t>(x) * channels_;
        const double kept = 1.0 - sum[4];
        const double gain = sum[4] > 0.0 && kept > 0.0 ? 1.0 / kept : 1.0;
        for (std::size_t c = 0; c < 3; ++c)
            out[c] = toByte(sum[c] * gain);
        if (channels_ == 4) out[3] = toByte(sum[3]);
    }

    // Looks at the diamond around the pixel without its own row and column: nothing below radius 2.
    bool hasContrast(int x, int y) {
        const int reach = static_cast<int>(std::floor(radius_));
        const std::uint8_t* own = rowAt(y).pixels.data() + static_cast<std::size_t>(x) * channels_;
        for (int dy = -reach; dy <= reach; ++dy) {
            if (dy == 0) continue;
            const std::vector<std::uint8_t>& pixels = rowAt(y + dy).pixels;
            for (int dx = std::abs(dy) - reach; dx <= reach - std::abs(dy); ++dx) {
                if (dx == 0) continue;
                const int tap = std::clamp(x + dx, 0, width_ - 1);
                const std::uint8_t* other =
                    pixels.data() + static_cast<std::size_t>(tap) * channels_;
                for (std::size_t c = 0; c < 3; ++c)
                    if (std::abs(int{own[c]} - int{other[c]}) > thresholds_[c]) return true;
            }
        }
        return false;
    }

    ImageBuffer& image_;
    BlurSettings settings_;
    int width_;
    std::size_t channels_;
    double radius_;
    int half_;
    std::vector<double> kernel_;
    std::array<int, 3> thresholds_;
    std::vector<Row> window_;  // rows y - half_ to y + half_, each in slot y modulo the size
    std::vector<std::uint8_t> output_;
};

}  // namespace

BlurSettings blurSettings(const RenderParams& params) {
    return {params.blurOption == 2, static_cast<double>(params.blurRadius),
            static_cast<double>(params.blurContrast)};
}

std::vector<double> blurKernel(double radius) {
    const double r = usableRadius(radius);
    const int half = halfSize(r);
    if (half == 0) return {1.0};
    std::vector<double> kernel(static_cast<std::size_t>(2 * half + 1));
    double sum = 0.0;
    for (std::size_t i = 0; i < kernel.size(); ++i) {
        const double x = static_cast<double>(i) / r - 1.0;
        kernel[i] = std::exp2(-2.0 * x * x);
        sum += kernel[i];
    }
    for (double& weight : kernel)
        weight /= sum;
    return kernel;
}

Result blurImage(ImageBuffer& image, const BlurSettings& settings,
                 const std::function<int(int row)>& pollRow) {
    const bool hasColour = image.kind() == PixelKind::kRgb || image.kind() == PixelKind::kRgba;
    if (!hasColour || image.width() <= 0 || image.height() <= 0) return kSuccess;
    return Blurrer(image, settings).run(pollRow);
}

}  // namespace orvin
