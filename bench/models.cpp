// Reading DXF, LightWave and FACT files, the first two against assimp: the same wavy tubes in eight
// groups, written by our own writers, read from the same file in turns within this run. "ratio" is
// its time over ours; "memory" is what was allocated at most, as a multiple of the file.
//
// Both end with polygon meshes by group. LightWave: assimp makes normals by itself, so smooth ones
// are asked for here as well; once more without, of a file without smoothing, where assimp gives
// each face its own.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <assimp/scene.h>
#include <algorithm>
#include <assimp/Importer.hpp>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <new>
#include <string>
#include <vector>

#include "geometry/GeometryClasses.h"
#include "geometry/SmoothNormals.h"
#include "interchange/ModelFormats.h"
#include "interchange/dxf/DxfReader.h"
#include "interchange/fact/FactReader.h"
#include "interchange/lightwave/LwoReader.h"
#include "scene/SceneX.h"

namespace {

std::atomic<std::size_t> allocated{0};
std::atomic<std::size_t> most{0};

void* counted(void* memory) {
    if (memory == nullptr) throw std::bad_alloc();
    const std::size_t now = allocated += malloc_usable_size(memory);
    if (now > most) most = now;
    return memory;
}

void uncounted(void* memory) {
    if (memory != nullptr) allocated -= malloc_usable_size(memory);
    std::free(memory);
}

}  // namespace

[[gnu::noinline]] void* operator new(std::size_t size) {
    return counted(std::malloc(size));
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    uncounted(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
    uncounted(memory);
}

namespace orvin {
namespace {

constexpr int kGroups = 8;
constexpr int kRows = 100;
constexpr int kColumns = 400;
constexpr double kAngle = 20.0;  // hard shading

/// Tubes of triangles, textured, each on a material of its own.
void addTubes(SceneX& scene, double hardShadingAngle) {
    for (int g = 0; g < kGroups; ++g) {
        Mesh3 mesh;
        for (int r = 0; r <= kRows; ++r)
            for (int c = 0; c < kColumns; ++c) {
                const double a = 2.0 * kPi * c / kColumns;
                const double radius = 40.0 + 5.0 * std::sin(0.3 * r + 3.0 * a);
                mesh.addVertex({radius * std::cos(a) + 100.0 * g, radius * std::sin(a), r * 1.25});
            }
        for (int r = 0; r < kRows; ++r)
            for (int c = 0; c < kColumns; ++c) {
                const int next = (c + 1) % kColumns;
                const int here = r * kColumns;
                const int above = here + kColumns;
                mesh.addFace(ElementKind::kPolygon, 0,
                             std::array{here + c, here + next, above + c});
                mesh.addFace(ElementKind::kPolygon, 0,
                             std::array{here + next, above + next, above + c});
            }
        auto& tube = scene.make<ObjectP>("tube" + std::to_string(g));
        tube.setMesh(std::move(mesh));
        tube.setHardShadingAngle(hardShadingAngle, false);
    }
}

/// The tubes as a file, removed at the end.
class TubeFile {
  public:
    TubeFile(const char* extension, double hardShadingAngle)
        : path_(std::filesystem::temp_directory_path() / (std::string("orvin-bench") + extension)) {
        registerGeometryClasses();
        SceneX scene;
        addTubes(scene, hardShadingAngle);
        exportModel(path_, objectsToExport(scene, false));
    }
    ~TubeFile() { std::filesystem::remove(path_); }
    TubeFile(const TubeFile&) = delete;
    TubeFile& operator=(const TubeFile&) = delete;

    const std::filesystem::path& path() const { return path_; }
    double bytes() const { return static_cast<double>(std::filesystem::file_size(path_)); }

  private:
    std::filesystem::path path_;
};

std::size_t assimpFaces(const std::filesystem::path& path) {
    Assimp::Importer importer;
    const aiScene* const scene = importer.ReadFile(path.string(), 0);
    std::size_t faces = 0;
    for (unsigned i = 0; scene != nullptr && i < scene->mNumMeshes; ++i)
        faces += scene->mMeshes[i]->mNumFaces;
    return faces;
}

using Read = Result (*)(const std::filesystem::path&, ImportedGroups&);

std::size_t ourFaces(Read read, bool normals, const std::filesystem::path& path) {
    ImportedGroups model;
    read(path, model);
    for (ImportedGroup& group : model.groups)
        if (normals) completeNormals(group.mesh, kAngle);
    return model.faceCount();
}

struct Turn {
    double time = 0.0;
    double memory = 0.0;

    template <typename Work>
    std::size_t take(Work&& work) {
        using Clock = std::chrono::steady_clock;
        const std::size_t before = allocated;
        most = before;
        const auto start = Clock::now();
        const std::size_t faces = work();
        time += std::chrono::duration<double>(Clock::now() - start).count();
        memory = std::max(memory, static_cast<double>(most - before));
        return faces;
    }
};

void compare(benchmark::State& state, const char* extension, Read read, bool normals, bool peer) {
    const TubeFile file(extension, normals ? kAngle : -1.0);
    Turn ours;
    Turn theirs;
    for (auto _ : state) {
        const double before = ours.time;
        const std::size_t faces = ours.take([&] { return ourFaces(read, normals, file.path()); });
        state.SetIterationTime(ours.time - before);
        if (peer && theirs.take([&] { return assimpFaces(file.path()); }) != faces)
            state.SkipWithError("the readers disagree on the faces");
    }
    const double megabytes = file.bytes() * static_cast<double>(state.iterations()) / 1e6;
    state.counters["MB"] = file.bytes() / 1e6;
    state.counters["MB/s"] = megabytes / ours.time;
    state.counters["memory"] = ours.memory / file.bytes();
    if (!peer) return;
    state.counters["peer MB/s"] = megabytes / theirs.time;
    state.counters["ratio"] = theirs.time / ours.time;
    state.counters["peer memory"] = theirs.memory / file.bytes();
}

// Limited by line ends and digits, then by looking up each corner's vertex.
void DxfFile(benchmark::State& state) {
    compare(state, ".dxf", readDxf, false, true);
}
BENCHMARK(DxfFile)->UseManualTime()->Unit(benchmark::kMillisecond);

// Limited by the faces' normals: gathering corners by vertex misses the cache.
void LightWaveFileWithNormals(benchmark::State& state) {
    compare(state, ".lwo", readLwo, true, true);
}
BENCHMARK(LightWaveFileWithNormals)->UseManualTime()->Unit(benchmark::kMillisecond);

// Limited by memory writes of faces and corners.
void LightWaveFile(benchmark::State& state) {
    compare(state, ".lwo", readLwo, false, true);
}
BENCHMARK(LightWaveFile)->UseManualTime()->Unit(benchmark::kMillisecond);

// The same.
void FactFile(benchmark::State& state) {
    compare(state, ".fac", readFact, false, false);
}
BENCHMARK(FactFile)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace orvin
