// Reading OBJ against tinyobjloader (double coordinates are ours, float its own): the same 25 MB
// text of textured quads with normals, in eight groups. "ratio" is its time over ours, measured in
// turns within this run.
//
// Memory: both read text that lies in memory (tinyobjloader through a stream buffer set on it, no
// copy) and give whole arrays and faces, not triangulated. File: both start at the file's name.
// Import: ours goes on to one mesh per group with only the points it uses; tinyobjloader's work
// stays the same, and ends before that.
#include <benchmark/benchmark.h>

#define TINYOBJLOADER_IMPLEMENTATION
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wall"
#pragma GCC diagnostic ignored "-Wextra"
#pragma GCC diagnostic ignored "-Wconversion"
#pragma GCC diagnostic ignored "-Wshadow"
#pragma GCC diagnostic ignored "-Wold-style-cast"
#pragma GCC diagnostic ignored "-Wdouble-promotion"
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#pragma GCC diagnostic ignored "-Wcast-align"
#pragma GCC diagnostic ignored "-Wmissing-field-initializers"
#include <tiny_obj_loader.h>
#pragma GCC diagnostic pop

#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <istream>
#include <streambuf>
#include <string>
#include <vector>

#include "interchange/ObjReader.h"
#include "toolkit/Numbers.h"
#include "toolkit/platform/Platform.h"

namespace orvin {
namespace {

constexpr int kGroups = 8;
constexpr int kRows = 21;
constexpr int kColumns = 440;

void appendPoint(std::string& text, std::string_view key, std::initializer_list<double> values) {
    char number[kMaxNumberText];
    text += key;
    for (const double value : values) {
        text += ' ';
        text.append(number, writeFixed(number, value));
    }
    text += '\n';
}

// A wavy tube per group.
const std::string& objText() {
    static const std::string kText = [] {
        std::string text = "# bench\n";
        int first = 1;
        for (int g = 0; g < kGroups; ++g) {
            for (int r = 0; r <= kRows * 2; ++r)
                for (int c = 0; c < kColumns; ++c) {
                    const double a = 2.0 * kPi * c / kColumns;
                    const double radius = 40.0 + 5.0 * std::sin(0.3 * r + 3.0 * a);
                    appendPoint(text, "v",
                                {radius * std::cos(a) + 100.0 * g, radius * std::sin(a), r * 1.25});
                    appendPoint(text, "vt", {1.0 * c / kColumns, 0.5 * r / kRows});
                    appendPoint(text, "vn", {std::cos(a), std::sin(a), 0.1});
                }
            text += "g tube" + std::to_string(g) + "\n";
            for (int r = 0; r < kRows * 2; ++r)
                for (int c = 0; c < kColumns; ++c) {
                    const int next = (c + 1) % kColumns;
                    text += 'f';
                    for (const int corner : {r * kColumns + c, r * kColumns + next,
                                             (r + 1) * kColumns + next, (r + 1) * kColumns + c}) {
                        const std::string index = std::to_string(first + corner);
                        text += ' ' + index + '/' + index + '/' + index;
                    }
                    text += '\n';
                }
            first += (kRows * 2 + 1) * kColumns;
        }
        return text;
    }();
    return kText;
}

class MemoryBuffer final : public std::streambuf {
  public:
    explicit MemoryBuffer(const std::string& text) {
        char* const start = const_cast<char*>(text.data());
        setg(start, start, start + text.size());
    }
};

std::size_t peerFromMemory() {
    MemoryBuffer buffer(objText());
    std::istream stream(&buffer);
    tinyobj::attrib_t attributes;
    std::vector<tinyobj::shape_t> shapes;
    std::vector<tinyobj::material_t> materials;
    std::string warning;
    std::string error;
    tinyobj::LoadObj(&attributes, &shapes, &materials, &warning, &error, &stream, nullptr, false,
                     false);
    std::size_t faces = 0;
    for (const auto& shape : shapes)
        faces += shape.mesh.num_face_vertices.size();
    return faces;
}

std::size_t peerFromFile(const std::filesystem::path& path) {
    tinyobj::attrib_t attributes;
    std::vector<tinyobj::shape_t> shapes;
    std::vector<tinyobj::material_t> materials;
    std::string warning;
    std::string error;
    tinyobj::LoadObj(&attributes, &shapes, &materials, &warning, &error, path.string().c_str(),
                     nullptr, false, false);
    std::size_t faces = 0;
    for (const auto& shape : shapes)
        faces += shape.mesh.num_face_vertices.size();
    return faces;
}

template <typename Ours, typename Peer>
void compare(benchmark::State& state, Ours&& ours, Peer&& peer) {
    using Clock = std::chrono::steady_clock;
    const auto timed = [](auto&& work, std::size_t& faces) {
        const auto start = Clock::now();
        faces = work();
        return std::chrono::duration<double>(Clock::now() - start).count();
    };
    double ourTime = 0.0;
    double peerTime = 0.0;
    for (auto _ : state) {
        std::size_t ourFaces = 0;
        std::size_t peerFaces = 0;
        const double t = timed(ours, ourFaces);
        ourTime += t;
        peerTime += timed(peer, peerFaces);
        if (ourFaces != peerFaces) state.SkipWithError("the readers disagree on the faces");
        state.SetIterationTime(t);
    }
    const double megabytes =
        static_cast<double>(objText().size()) * static_cast<double>(state.iterations()) / 1e6;
    state.counters["MB"] = static_cast<double>(objText().size()) / 1e6;
    state.counters["MB/s"] = megabytes / ourTime;
    state.counters["peer MB/s"] = megabytes / peerTime;
    state.counters["ratio"] = peerTime / ourTime;
}

// Limited by digits: each byte is looked at once to find its number's end and value.
void ObjFromMemory(benchmark::State& state) {
    compare(
        state,
        [] {
            ImportedModel model;
            ModelInput input(objText());
            parseObj(input, model);
            return static_cast<std::size_t>(model.mesh.faceCount());
        },
        peerFromMemory);
}
BENCHMARK(ObjFromMemory)->UseManualTime()->Unit(benchmark::kMillisecond);

// As above, and the pages of the file's copy that are touched for the first time.
void ObjFromFile(benchmark::State& state) {
    const auto path = std::filesystem::temp_directory_path() / "orvin-bench.obj";
    if (std::FILE* const file = platform::openFile(path, "wb")) {
        std::fwrite(objText().data(), 1, objText().size(), file);
        std::fclose(file);
    }
    compare(
        state,
        [&path] {
            ImportedModel model;
            readObj(path, model);
            return static_cast<std::size_t>(model.mesh.faceCount());
        },
        [&path] { return peerFromFile(path); });
    std::filesystem::remove(path);
}
BENCHMARK(ObjFromFile)->UseManualTime()->Unit(benchmark::kMillisecond);

// The same reading, then memory: every index and point is read and written once more.
void ObjImport(benchmark::State& state) {
    compare(
        state,
        [] {
            ImportedModel model;
            ModelInput input(objText());
            parseObj(input, model);
            std::size_t faces = 0;
            for (const Mesh3& mesh : splitByGroup(std::move(model)))
                faces += static_cast<std::size_t>(mesh.faceCount());
            return faces;
        },
        peerFromMemory);
}
BENCHMARK(ObjImport)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace orvin
