#include "render/Blur.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace orvin {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes noise(int width, int height, int channels, unsigned seed) {
    Bytes pixels(static_cast<std::size_t>(width * height * channels));
    for (std::uint8_t& byte : pixels) {
        seed = seed * 1664525U + 1013904223U;
        byte = static_cast<std::uint8_t>(seed >> 24);
    }
    if (channels == 4)  // a third of the pixels has no alpha
        for (std::size_t i = 3; i < pixels.size(); i += 4)
            if (pixels[i] < 85) pixels[i] = 0;
    return pixels;
}

ImageBuffer imageOf(int width, int height, PixelKind kind, const Bytes& pixels) {
    ImageBuffer image(width, height, kind);
    const std::size_t row = image.rowBytes();
    for (int y = 0; y < height; ++y)
        image.writeRow(y, std::span(pixels).subspan(static_cast<std::size_t>(y) * row, row));
    return image;
}

Bytes bytesOf(const ImageBuffer& image) {
    Bytes all(image.rowBytes() * static_cast<std::size_t>(image.height()));
    for (int y = 0; y < image.height(); ++y)
        image.readRow(y, std::span(all).subspan(static_cast<std::size_t>(y) * image.rowBytes(),
                                                image.rowBytes()));
    return all;
}

// The filter as it is defined, tap by tap from a copy of the picture.
Bytes bruteForce(const Bytes& in, int width, int height, int channels, double radius) {
    const int half = static_cast<int>(std::ceil(radius - 0.5));
    const int size = 2 * half + 1;
    std::vector<long double> weights;
    long double total = 0;
    for (int j = 0; j < size; ++j)
        for (int i = 0; i < size; ++i) {
            const long double x = i / static_cast<long double>(radius) - 1;
            const long double y = j / static_cast<long double>(radius) - 1;
            weights.push_back(half == 0 ? 1 : std::exp2(-2 * (x * x + y * y)));
            total += weights.back();
        }
    Bytes out = in;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            long double sum[4] = {0, 0, 0, 0};
            long double lost = 0;
            for (int j = 0; j < size; ++j)
                for (int i = 0; i < size; ++i) {
                    const int tx = std::clamp(x + i - half, 0, width - 1);
                    const int ty = std::clamp(y + j - half, 0, height - 1);
                    const long double w = weights[static_cast<std::size_t>(j * size + i)] / total;
                    const std::uint8_t* p =
                        &in[static_cast<std::size_t>((ty * width + tx) * channels)];
                    if (channels == 4 && p[3] == 0) {
                        lost += w;
                        continue;
                    }
                    for (int c = 0; c < channels; ++c)
                        sum[c] += w * p[c];
                }
            for (int c = 0; c < channels; ++c) {
                long double value = sum[c];
                if (c < 3 && lost > 0 && lost < 0.999999L) value /= 1 - lost;
                out[static_cast<std::size_t>((y * width + x) * channels + c)] =
                    static_cast<std::uint8_t>(std::clamp(value + 1e-6L, 0.0L, 255.0L));
            }
        }
    return out;
}

TEST(Blur, AgreesWithItsDefinitionForAllRadiiAndKinds) {
    const double radii[] = {0.3, 0.6, 1.0, 1.5, 2.5, 4.2};
    for (const int channels : {3, 4})
        for (const double radius : radii) {
            const int width = 23;
            const int height = 17;
            const Bytes in = noise(width, height, channels, 7);
            ImageBuffer image =
                imageOf(width, height, channels == 3 ? PixelKind::kRgb : PixelKind::kRgba, in);
            ASSERT_EQ(blurImage(image, {false, radius, 0.0}), 0);
            EXPECT_EQ(bytesOf(image), bruteForce(in, width, height, channels, radius))
                << channels << " channels, radius " << radius;
        }
}

TEST(Blur, HoldsOddRadii) {
    for (const double odd : {0.0, -3.0, std::nan("")})
        EXPECT_EQ(blurKernel(odd), std::vector<double>{1.0});
    EXPECT_EQ(blurKernel(1e300).size(), 129U);
}

TEST(Blur, KeepsFlatAreas) {
    for (const double radius : {0.6, 1.0, 1.5}) {
        Bytes flat;
        for (int i = 0; i < 9 * 9; ++i)
            flat.insert(flat.end(), {255, 77, 1, 255});
        ImageBuffer image = imageOf(9, 9, PixelKind::kRgba, flat);
        blurImage(image, {false, radius, 0.0});
        EXPECT_EQ(bytesOf(image), flat) << radius;
    }
}

TEST(Blur, ContrastOptionLooksAtTheDiamondOnly) {
    // A bright pixel one step off both axes is seen from radius 2 on; on the axis it never is.
    struct Case {
        double radius;
        int dx, dy;
        bool filtered;
    };
    const Case cases[] = {
        {1.9, 1, 1, false}, {2.0, 1, 1, true}, {2.0, 1, 0, false},
        {2.0, 2, 1, false}, {3.0, 2, 1, true},
    };
    for (const Case& c : cases) {
        Bytes in(15 * 15 * 3, 10);
        const int at = (7 + c.dy) * 15 + 7 + c.dx;
        in[static_cast<std::size_t>(at * 3)] = 200;
        ImageBuffer image = imageOf(15, 15, PixelKind::kRgb, in);
        blurImage(image, {true, c.radius, 1.0});
        const Bytes out = bytesOf(image);
        EXPECT_EQ(out[(7 * 15 + 7) * 3] != 10, c.filtered) << c.radius << " " << c.dx << c.dy;
    }
    // Just the threshold of red, 102, isn't above it.
    Bytes in(9 * 9 * 3, 0);
    in[(5 * 9 + 5) * 3] = 102;
    ImageBuffer image = imageOf(9, 9, PixelKind::kRgb, in);
    blurImage(image, {true, 2.0, 1.0});
    EXPECT_EQ(bytesOf(image), in);
}

}  // namespace
}  // namespace orvin
