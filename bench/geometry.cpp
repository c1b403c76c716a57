// Meshes: shading normals and tangents over growing meshes (the rate must hold), and the stream
// block of a mesh. "allocs" counts calls of operator new in one run over 300,000 lines.
#include <benchmark/benchmark.h>

#include <array>
#include <atomic>
#include <cmath>
#include <cstdlib>
#include <new>
#include <string>

#include "geometry/GeometryCmd.h"
#include "geometry/SmoothNormals.h"
#include "geometry/Tangents.h"
#include "scene/MemoryStream.h"

namespace {
std::atomic<long> gAllocations{0};
}  // namespace

[[gnu::noinline]] void* operator new(std::size_t size) {
    gAllocations.fetch_add(1, std::memory_order_relaxed);
    if (void* const memory = std::malloc(size)) return memory;
    throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace orvin {
namespace {

// A wavy, textured sheet of about `faces` quads, without normals.
Mesh3 sheet(int faces) {
    const int side = static_cast<int>(std::sqrt(faces));
    Mesh3 mesh;
    for (int y = 0; y <= side; ++y)
        for (int x = 0; x <= side; ++x) {
            mesh.addVertex({x * 1.0, y * 1.0, 3.0 * std::sin(0.2 * x) * std::cos(0.15 * y)});
            mesh.addTexVertex({1.0 * x / side, 1.0 * y / side, 0.0});
        }
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x) {
            const int i = y * (side + 1) + x;
            const std::array<int, 4> corners{i, i + 1, i + side + 2, i + side + 1};
            mesh.addFace(ElementKind::kPolygon, 0, corners, corners);
        }
    return mesh;
}

void setFaceRate(benchmark::State& state, const Mesh3& mesh) {
    state.counters["faces/s"] = benchmark::Counter(static_cast<double>(mesh.faceCount()),
                                                   benchmark::Counter::kIsIterationInvariantRate);
}

// Limited by memory: corners are gathered by vertex, whose faces' normals lie apart.
void SmoothNormals(benchmark::State& state) {
    Mesh3 mesh = sheet(static_cast<int>(state.range(0)));
    for (auto _ : state)
        smoothNormals(mesh, 20.0);
    setFaceRate(state, mesh);
}
BENCHMARK(SmoothNormals)
    ->RangeMultiplier(10)
    ->Range(10'000, 1'000'000)
    ->Unit(benchmark::kMillisecond);

// One vertex of all faces, each too steep for its neighbour's group: limited by the grid's lists.
void SmoothNormalsOneVertex(benchmark::State& state) {
    Mesh3 mesh;
    mesh.addVertex({});
    const int count = static_cast<int>(state.range(0));
    for (int i = 0; i < count; ++i) {
        const double a = 2.0 * kPi * i / count;
        mesh.addVertex({std::cos(a), std::sin(a), 1.0});
    }
    for (int i = 0; i < count; ++i)
        mesh.addFace(ElementKind::kPolygon, 0, std::array<int, 3>{0, 1 + i, 1 + (i + 1) % count});
    for (auto _ : state)
        smoothNormals(mesh, 1e-4);
    setFaceRate(state, mesh);
}
BENCHMARK(SmoothNormalsOneVertex)
    ->RangeMultiplier(10)
    ->Range(10'000, 1'000'000)
    ->Unit(benchmark::kMillisecond);

// Limited by arithmetic: two triangles a face, each with a division and two roots.
void Tangents(benchmark::State& state) {
    const Mesh3 mesh = sheet(static_cast<int>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(surfaceTangents(mesh, 1e-5));
    setFaceRate(state, mesh);
}
BENCHMARK(Tangents)->RangeMultiplier(10)->Range(10'000, 1'000'000)->Unit(benchmark::kMillisecond);

constexpr int kBlockFaces = 100'000;

class NullStream final : public SceneStream {
  public:
    NullStream() : SceneStream(nullptr) {}
    Result writeBytes(std::span<const std::uint8_t>) override { return kSuccess; }
    Result readBytes(std::span<std::uint8_t>) override { return kFailure; }
    std::size_t bytes = 0;

  protected:
    Chunk nextChunk() override { return {}; }
    Result storeLine(std::string_view indentation, std::string_view line) override {
        bytes += indentation.size() + line.size() + 1;
        benchmark::DoNotOptimize(line.data());
        return kSuccess;
    }
};

// Limited by std::to_chars of the coordinates.
void GeometryWrite(benchmark::State& state) {
    Mesh3 mesh = sheet(kBlockFaces);
    smoothNormals(mesh, 20.0);
    GeometryCmd block(mesh);
    double bytes = 0.0;
    long allocations = 0;
    for (auto _ : state) {
        NullStream stream;
        const long before = gAllocations;
        block.writeBody(stream);
        allocations = gAllocations - before;
        bytes += static_cast<double>(stream.bytes);
    }
    state.counters["MB/s"] = benchmark::Counter(bytes / 1e6, benchmark::Counter::kIsRate);
    state.counters["allocs"] = static_cast<double>(allocations);
}
BENCHMARK(GeometryWrite)->Unit(benchmark::kMillisecond);

// Limited by the tokens: each is found, looked up or converted, by itself.
void GeometryRead(benchmark::State& state) {
    Mesh3 source = sheet(kBlockFaces);
    smoothNormals(source, 20.0);
    GeometryCmd writer(source);
    MemoryStream out(nullptr);
    writer.writeBody(out);
    const std::string text = out.takeText() + "end GeometryCmd\n";
    long allocations = 0;
    for (auto _ : state) {
        Mesh3 mesh;
        GeometryCmd block(mesh);
        MemoryStream in(nullptr, text);
        const long before = gAllocations;
        if (loadBlock(in, block) != kSuccess) state.SkipWithError("not read");
        allocations = gAllocations - before;
    }
    state.counters["MB/s"] = benchmark::Counter(static_cast<double>(text.size()) / 1e6,
                                                benchmark::Counter::kIsIterationInvariantRate);
    state.counters["allocs"] = static_cast<double>(allocations);
}
BENCHMARK(GeometryRead)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace orvin
