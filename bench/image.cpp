// Texture kernels: decoding, summed-area tables, filtering, and paged buffers. One core.
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <vector>

#include "render/image/SgiReader.h"
#include "render/image/SummedImage.h"
#include "render/image/TgaReader.h"

namespace {

using orvin::ImageBuffer;
using orvin::PixelKind;
using Bytes = std::vector<std::uint8_t>;

constexpr int kSide = 2048;

// Half of the picture is flat runs of `packet` pixels, the other half texture.
bool isFlat(int x, int y, int packet) {
    return ((x / packet + y / packet) & 1) == 0;
}

std::uint8_t sample(int x, int y, int channel, int packet = 32) {
    if (isFlat(x, y, packet)) return static_cast<std::uint8_t>(x / packet * 16 + channel * 40);
    return static_cast<std::uint8_t>(x * 7 + y * 13 + channel * 50 + (x * y >> 3));
}

// Packets of `packet` pixels: runs in the flat parts, raw ones elsewhere.
Bytes tgaFile(int pixelBytes, int packet) {
    Bytes bytes(18);
    bytes[2] = 10;
    bytes[13] = bytes[15] = kSide >> 8;
    bytes[16] = static_cast<std::uint8_t>(pixelBytes * 8);
    bytes[17] = pixelBytes == 4 ? 8 : 0;
    for (int y = 0; y < kSide; ++y) {
        for (int x = 0; x < kSide; x += packet) {
            const bool run = isFlat(x, y, packet);
            bytes.push_back(static_cast<std::uint8_t>((packet - 1) | (run ? 0x80 : 0)));
            for (int i = 0; i < (run ? 1 : packet); ++i)
                for (int c = 0; c < pixelBytes; ++c)
                    bytes.push_back(sample(x + i, y, c, packet));
        }
    }
    return bytes;
}

void putWord(Bytes& bytes, std::size_t at, std::size_t value) {
    for (std::size_t i = 0; i < 4; ++i)
        bytes[at + i] = static_cast<std::uint8_t>(value >> (24 - 8 * i));
}

Bytes sgiFile(int channels, int packet) {
    const auto rows = static_cast<std::size_t>(kSide * channels);
    Bytes bytes(512 + rows * 8);
    bytes[0] = 1;
    bytes[1] = 218;
    bytes[2] = bytes[3] = 1;
    bytes[6] = bytes[8] = kSide >> 8;
    bytes[11] = static_cast<std::uint8_t>(channels);
    for (int c = 0; c < channels; ++c) {
        for (int y = 0; y < kSide; ++y) {
            const std::size_t entry = 512 + static_cast<std::size_t>(c * kSide + y) * 4;
            const std::size_t start = bytes.size();
            putWord(bytes, entry, start);
            for (int x = 0; x < kSide; x += packet) {
                const bool run = isFlat(x, y, packet);
                bytes.push_back(static_cast<std::uint8_t>(packet | (run ? 0 : 0x80)));
                for (int i = 0; i < (run ? 1 : packet); ++i)
                    bytes.push_back(sample(x + i, y, c, packet));
            }
            bytes.push_back(0);
            putWord(bytes, entry + rows * 4, bytes.size() - start);
        }
    }
    return bytes;
}

ImageBuffer picture(int side, PixelKind kind, std::uint64_t budget = 0) {
    ImageBuffer image(side, side, kind, budget);
    const int channels = static_cast<int>(image.pixelBytes());
    Bytes row(image.rowBytes());
    for (int y = 0; y < side; ++y) {
        std::size_t i = 0;
        for (int x = 0; x < side; ++x)
            for (int c = 0; c < channels; ++c)
                row[i++] = sample(x, y, c);
        image.writeRow(y, row);
    }
    return image;
}

void countPixels(benchmark::State& state, double perIteration) {
    state.counters["Mpixel/s"] =
        benchmark::Counter(perIteration * 1e-6, benchmark::Counter::kIsIterationInvariantRate);
}

void tga(benchmark::State& state) {
    const Bytes file = tgaFile(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    ImageBuffer image;
    for (auto _ : state)
        if (orvin::readTga(file, image) != orvin::kSuccess) state.SkipWithError("refused");
    countPixels(state, double{kSide} * kSide);
}
// Limit now: the branch per packet when packets are short, the store of three- and four-byte pixels
// one by one when they are long.
BENCHMARK(tga)
    ->ArgNames({"bytes", "packet"})
    ->ArgsProduct({{1, 3, 4}, {4, 32}})
    ->Unit(benchmark::kMillisecond);

void sgi(benchmark::State& state) {
    const Bytes file = sgiFile(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    ImageBuffer image;
    for (auto _ : state)
        if (orvin::readSgi(file, image) != orvin::kSuccess) state.SkipWithError("refused");
    countPixels(state, double{kSide} * kSide);
}
// Limit now: every channel is stored apart, a byte at a time at the distance of a pixel.
BENCHMARK(sgi)
    ->ArgNames({"channels", "packet"})
    ->ArgsProduct({{3, 4}, {4, 64}})
    ->Unit(benchmark::kMillisecond);

void summedBuild(benchmark::State& state) {
    const ImageBuffer image =
        picture(kSide, state.range(0) == 3 ? PixelKind::kRgb : PixelKind::kRgba);
    for (auto _ : state) {
        const orvin::SummedImage summed(image);
        benchmark::DoNotOptimize(summed.boxQuery(1, 1, 9, 9));
    }
    countPixels(state, double{kSide} * kSide);
}
// Limit now: first touch of the table's pages (large pages where the system has them; with small
// ones half the rate), then the chain of additions along a row.
BENCHMARK(summedBuild)->ArgName("channels")->Arg(3)->Arg(4)->Unit(benchmark::kMillisecond);

struct Box {
    int x0, y0, x1, y1;
};

std::vector<Box> boxes(int side) {
    std::mt19937 random(3);
    std::vector<Box> all(4096);
    for (auto& box : all) {
        const int size = static_cast<int>(random() % 40);
        box.x0 = static_cast<int>(random() % static_cast<unsigned>(side - 40));
        box.y0 = static_cast<int>(random() % static_cast<unsigned>(side - 40));
        box.x1 = box.x0 + size;
        box.y1 = box.y0 + size;
    }
    return all;
}

void boxQuery(benchmark::State& state) {
    const int side = static_cast<int>(state.range(0));
    const orvin::SummedImage summed(picture(side, PixelKind::kRgb));
    const auto all = boxes(side);
    for (auto _ : state)
        for (const auto& box : all)
            benchmark::DoNotOptimize(summed.boxQuery(box.x0, box.y0, box.x1, box.y1));
    state.counters["Mquery/s"] = benchmark::Counter(static_cast<double>(all.size()) * 1e-6,
                                                    benchmark::Counter::kIsIterationInvariantRate);
}
// Limit now: four unaligned loads and one division at side 512; cache misses at 2048 (a 50 MB
// table).
BENCHMARK(boxQuery)->ArgName("side")->Arg(512)->Arg(2048)->Unit(benchmark::kMicrosecond);

// A surface's walk through a texture, `texels` a side a sample.
void sampleBox(benchmark::State& state) {
    const orvin::SummedImage summed(picture(512, PixelKind::kRgb));
    const double size = static_cast<double>(state.range(0)) / 100.0;
    for (auto _ : state) {
        double s = 0.3;
        for (int i = 0; i < 4096; ++i) {
            s = s + 0.37 < 500.0 ? s + 0.37 : 0.3;
            benchmark::DoNotOptimize(summed.sampleBox(s, s * 0.7, s + size, s * 0.7 + size));
        }
    }
    state.counters["Msample/s"] =
        benchmark::Counter(4096e-6, benchmark::Counter::kIsIterationInvariantRate);
}
// Limit now: below a texel the three truncating mixes in a row, above it up to nine box queries
// with a division each.
BENCHMARK(sampleBox)
    ->ArgName("texels/100")
    ->Arg(30)
    ->Arg(130)
    ->Arg(370)
    ->Unit(benchmark::kMicrosecond);

// 64 MiB through 16 MiB of tiles: rows are written as a renderer does, or read as the output does.
void paged(benchmark::State& state) {
    constexpr std::uint64_t kBudget = 16 << 20;
    const bool write = state.range(0) != 0;
    ImageBuffer image(4096, 4096, PixelKind::kRgba, kBudget);
    Bytes row(image.rowBytes(), 7);
    for (int y = 0; y < image.height(); ++y)
        image.writeRow(y, row);
    for (auto _ : state) {
        for (int y = 0; y < image.height(); ++y) {
            const auto result = write ? image.writeRow(y, row) : image.readRow(y, std::span(row));
            if (result != orvin::kSuccess) state.SkipWithError("spill file failed");
        }
    }
    state.counters["MB/s"] = benchmark::Counter(static_cast<double>(row.size()) * 4096e-6,
                                                benchmark::Counter::kIsIterationInvariantRate);
}
// Limit now: the system's copies between tile and file cache, 10 KB a call; a row of tiles is moved
// once for its 50 rows.
BENCHMARK(paged)->ArgName("write")->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond);

}  // namespace
