// Whole frames of the software renderer, and where their time goes. One core.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <memory>
#include <string>

#include "geometry/ObjectP.h"
#include "render/Blur.h"
#include "render/CameraX.h"
#include "render/LightX.h"
#include "render/MaterialX.h"
#include "render/PixelTree.h"
#include "render/PixelWriter.h"
#include "render/SoftwareRenderer.h"
#include "render/TileGrid.h"
#include "render/TilePainter.h"
#include "render/TriangleSetup.h"
#include "render/VisibilityBuffer.h"
#include "scene/SceneX.h"

namespace {

using namespace orvin;

constexpr double kMiB = 1024.0 * 1024.0;

// The renderer tells on standard output what it does: not among the figures.
class Hush {
  public:
    Hush() {
        std::fflush(stdout);
        kept_ = ::dup(1);
        const int sink = ::open("/dev/null", O_WRONLY);
        ::dup2(sink, 1);
        ::close(sink);
    }
    ~Hush() {
        std::fflush(stdout);
        ::dup2(kept_, 1);
        ::close(kept_);
    }
    Hush(const Hush&) = delete;
    Hush& operator=(const Hush&) = delete;

  private:
    int kept_;
};

// A wavy sheet of cells x cells x 2 triangles, all of which show.
Mesh3 sheet(int cells, double width, double height) {
    Mesh3 mesh;
    for (int j = 0; j <= cells; ++j)
        for (int i = 0; i <= cells; ++i) {
            const double u = static_cast<double>(i) / cells;
            const double v = static_cast<double>(j) / cells;
            const double phase = 2.0 * kPi * (3.0 * u + 2.0 * v);
            mesh.addVertex({(u - 0.5) * width, (v - 0.5) * height, 4.0 * std::sin(phase)});
            const double slope = 8.0 * kPi * std::cos(phase);
            mesh.addNormal(normalize(Vec3{-3.0 * slope / width, -2.0 * slope / height, 1.0}));
            mesh.addTexVertex({u, v, 0.0});
        }
    for (int j = 0; j < cells; ++j)
        for (int i = 0; i < cells; ++i) {
            const int a = j * (cells + 1) + i;
            const int b = a + cells + 1;
            const std::array<int, 3> lower{a, a + 1, b + 1};
            const std::array<int, 3> upper{a, b + 1, b};
            for (const auto& corners : {lower, upper})
                mesh.addFace(ElementKind::kPolygon, 0, corners, corners, corners);
        }
    return mesh;
}

/// Three lights and 20,000 triangles that fill a third of the picture.
struct BenchScene {
    BenchScene(int width, int height, int cells = 100) {
        params.width = width;
        params.height = height;
        params.setAntiAliasLevel(6);
        auto& camera = scene.make<CameraX>(kDefaultCamera);
        camera.transform().setTranslate({0, 0, 100});
        scene.make<MaterialX>(kDefaultMaterial);
        auto& sun = scene.make<LightX>("sun");
        sun.setType(LightType::kDirectional);
        sun.transform().setRotate({-30, 30, 0});
        sun.setIntensity(0.6);
        auto& lamp = scene.make<LightX>("lamp");
        lamp.transform().setTranslate({-40, 30, 60});
        lamp.setIntensity(0.4);
        auto& spot = scene.make<LightX>("spot");
        spot.setType(LightType::kSpot);
        spot.transform().setTranslate({0, 0, 90});
        spot.setAngles(20, 30);
        spot.setIntensity(0.5);
        // The picture is 70 units wide at the sheet's distance.
        const double share = std::sqrt(1.0 / 3.0);
        scene.make<ObjectP>("sheet").setMesh(
            sheet(cells, 70.0 * share, 70.0 * height / width * share));
    }

    SceneX scene;
    RenderParams params;
};

// Memory of this process in bytes: "VmRSS" now, "VmHWM" the peak since resetPeak().
double memory(const std::string& field) {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
        if (word == field + ":") {
            double kilobytes = 0.0;
            status >> kilobytes;
            return kilobytes * 1024.0;
        }
    return 0.0;
}

void resetPeak() {
    std::ofstream("/proc/self/clear_refs") << "5";
}

// Time that this thread was running, whatever else the machine does.
double cpuSeconds() {
    timespec now{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

void renderFrames(benchmark::State& state, BenchScene& bench, std::uint64_t budget) {
    SoftwareRenderOptions options;
    options.memoryBudget = budget;
    double grown = 0.0;
    std::uint64_t hash = 0;
    double covered = 0.0;
    const Hush hush;
    for (auto _ : state) {
        resetPeak();
        const double before = memory("VmRSS");
        const auto picture = renderSoftware(bench.scene, bench.params, options);
        grown = std::max(grown, memory("VmHWM") - before);
        state.PauseTiming();
        hash = 1469598103934665603ULL;
        covered = 0.0;
        std::vector<std::uint8_t> row(picture->rowBytes());
        for (int y = 0; y < picture->height(); ++y) {
            picture->readRow(y, row);
            for (std::size_t i = 0; i < row.size(); ++i) {
                hash = (hash ^ row[i]) * 1099511628211ULL;
                covered += i % 4 == 3 ? row[i] / 255.0 : 0.0;
            }
        }
        state.ResumeTiming();
    }
    // Everything beyond the scene, what the picture touches of its own memory included.
    state.counters["MiB_with_image"] = grown / kMiB;
    state.counters["covered"] = covered / (bench.params.width * bench.params.height);
    state.SetLabel("bytes " + std::to_string(hash));
}

// Limit: shading, two thirds of the time: square roots and divisions of the lights' vectors, once
// for each of the several triangles that most pixels show.
void BM_Frame1080p(benchmark::State& state) {
    BenchScene bench(1920, 1080);
    renderFrames(state, bench, std::uint64_t{1} << 30);
}
BENCHMARK(BM_Frame1080p)->Unit(benchmark::kMillisecond)->MinTime(2.0);

// Limit: shading, as above; the pages and their file add a twelfth to a picture in memory.
void BM_Frame4096Paged(benchmark::State& state) {
    BenchScene bench(4096, 4096);
    renderFrames(state, bench, 32U << 20);
}
BENCHMARK(BM_Frame4096Paged)->Unit(benchmark::kMillisecond)->Iterations(1);

// The finest grid and the widest filter: the most that a frame takes at once. Limit: as above.
void BM_Frame4096Finest(benchmark::State& state) {
    BenchScene bench(4096, 4096);
    bench.params.setAntiAliasLevel(17);
    renderFrames(state, bench, std::uint64_t{1} << 30);
}
BENCHMARK(BM_Frame4096Finest)->Unit(benchmark::kMillisecond)->Iterations(1);

// The passes of a frame one after the other, tile by tile; each pixel's tree is built once more for
// shading, which the trees' own time is taken off.
void BM_Shares1080p(benchmark::State& state) {
    BenchScene bench(1920, 1080);
    for (SceneMember* member : bench.scene.members(MemberKind::kLight))
        static_cast<LightX*>(member)->prepare();
    enum Stage { kSetUp, kScan, kTrees, kShading, kStoring, kStages };
    std::array<double, kStages> spent{};
    std::array<double, kStages> clock;
    std::vector<Rgba> colours;
    const Hush hush;
    for (auto _ : state) {
        clock[0] = cpuSeconds();
        const VisibilityBuffer visibility(bench.scene, nullptr, bench.params);
        const FrameShading shading(visibility, bench.scene);
        ImageBuffer image(1920, 1080, PixelKind::kRgba);
        PixelWriter writer(image, true);
        spent[kSetUp] += cpuSeconds() - clock[0];
        VisibilityTile tile;
        TilePainter painter(shading);
        PixelTree tree;
        for (std::size_t k = 0; k < visibility.tileCount(); ++k) {
            const auto eachPixel = [&tile](auto&& visit) {
                const GridRect pixels = tile.pixelRect();
                for (int y = pixels.top; y <= pixels.bottom; ++y)
                    for (int x = pixels.left; x <= pixels.right; ++x)
                        visit(x, y);
            };
            clock[0] = cpuSeconds();
            tile.scan(visibility.triangles(), visibility.tileTriangles(k), visibility.tileRect(k),
                      visibility.subpixels(), visibility.perspective());
            clock[1] = cpuSeconds();
            eachPixel([&](int x, int y) { benchmark::DoNotOptimize(tree.build(tile, x, y)); });
            clock[2] = cpuSeconds();
            colours.clear();
            painter.begin(tile);
            eachPixel([&](int x, int y) {
                colours.push_back(tree.build(tile, x, y) ? painter.paint(tree) : Rgba{});
            });
            clock[3] = cpuSeconds();
            std::size_t next = 0;
            eachPixel([&](int x, int y) {
                const Rgba& colour = colours[next++];
                if (colour[3] != 0.0F) writer.write(x, y, colour);
            });
            clock[4] = cpuSeconds();
            const auto between = [&clock](std::size_t i) { return clock[i + 1] - clock[i]; };
            spent[kScan] += between(0);
            spent[kTrees] += between(1);
            spent[kShading] += between(2) - between(1);
            spent[kStoring] += between(3);
        }
    }
    const char* names[kStages] = {"1_setup_ms", "2_scan_ms", "3_trees_ms", "4_shading_ms",
                                  "5_storing_ms"};
    for (std::size_t i = 0; i < kStages; ++i)
        state.counters[names[i]] =
            benchmark::Counter(spent[i] * 1e3, benchmark::Counter::kAvgIterations);
}
BENCHMARK(BM_Shares1080p)->Unit(benchmark::kMillisecond)->MinTime(1.0);

// Limit: arithmetic of the planes (three divisions a triangle), then writing what comes of it.
void BM_TriangleSetup(benchmark::State& state) {
    BenchScene bench(1920, 1080);
    auto* camera = bench.scene.memberAs<CameraX>(MemberKind::kCamera, kDefaultCamera);
    const Mesh3 mesh = sheet(400, 40.0, 22.0);
    const ScreenProjection projection(*camera, bench.params);
    const TileGrid grid(projection.subWidth, projection.subHeight, bench.params.maxTileArea, 3);
    for (auto _ : state) {
        TriangleSetup setup(projection, grid, false);
        setup.setVertices(mesh.vertices(), camera->viewMatrix());
        for (int i = 0; i < mesh.faceCount(); ++i)
            setup.addPolygon(mesh.face(i).vertices, {});
        benchmark::DoNotOptimize(setup.takeTriangles().data());
    }
    state.counters["triangles/s"] = benchmark::Counter(
        static_cast<double>(state.iterations()) * mesh.faceCount(), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_TriangleSetup)->Unit(benchmark::kMillisecond);

// The same with fetching the mesh and its world-space lists, and sorting into tiles.
void BM_BuildVisibility(benchmark::State& state) {
    BenchScene bench(1920, 1080, 400);
    const Hush hush;
    for (auto _ : state) {
        const VisibilityBuffer visibility(bench.scene, nullptr, bench.params);
        benchmark::DoNotOptimize(visibility.tileCount());
    }
    state.counters["triangles/s"] = benchmark::Counter(
        static_cast<double>(state.iterations()) * 400 * 400 * 2, benchmark::Counter::kIsRate);
}
BENCHMARK(BM_BuildVisibility)->Unit(benchmark::kMillisecond);

// Limit: converting and adding three taps of five sums, once along and once across.
void BM_Blur1080p(benchmark::State& state) {
    ImageBuffer image(1920, 1080, PixelKind::kRgba);
    std::uint8_t* bytes = image.direct();
    for (std::size_t i = 0; i < image.rowBytes() * 1080; ++i)
        bytes[i] = static_cast<std::uint8_t>(i * 31 >> 3);
    for (auto _ : state)
        blurImage(image, {false, 1.5, 0.0});
    state.counters["Mpixel/s"] = benchmark::Counter(
        static_cast<double>(state.iterations()) * 1920 * 1080 / 1e6, benchmark::Counter::kIsRate);
}
BENCHMARK(BM_Blur1080p)->Unit(benchmark::kMillisecond);

}  // namespace
