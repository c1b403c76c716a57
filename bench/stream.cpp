// The word stream against bare loops over the same data: a project of 25 MB whose bulk is mesh
// lines. "ratio" is the bare loop's time over ours, both measured in turns within this run.
#include <benchmark/benchmark.h>

#include <charconv>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "scene/FileStream.h"
#include "scene/HandleStream.h"
#include "toolkit/Numbers.h"
#include "toolkit/platform/Platform.h"

namespace orvin {
namespace {

using Clock = std::chrono::steady_clock;

double seconds(Clock::duration d) {
    return std::chrono::duration<double>(d).count();
}

/// Mesh lines as an object's geometry writes them.
class MeshLines : public Persistent {
  public:
    explicit MeshLines(std::size_t vertexCount) {
        std::uint32_t state = 1;
        const auto coordinate = [&state] {
            state = state * 1664525 + 1013904223;
            return static_cast<double>(state >> 8) / 1e5 - 80.0;
        };
        for (std::size_t i = 0; i < vertexCount; ++i) {
            vertices.push_back({coordinate(), coordinate(), coordinate()});
            normals.push_back(normalize(vertices.back()));
        }
    }
    MeshLines() = default;

    Result writeBody(SceneStream& stream) override {
        for (const Vec3& v : vertices)
            stream.putVector("v", v);
        for (const Vec3& n : normals)
            stream.putVector("vn", n);
        const auto count = static_cast<long long>(vertices.size());
        for (long long i = 1; i + 2 <= count; i += 1) {
            LineBuffer& line = stream.line().clear().text("f");
            for (long long corner = i; corner < i + 3; ++corner)
                line.character(' ').whole(corner).text("//").whole(corner);
            stream.putLine();
        }
        return stream.writeFailed() ? kFailure : kSuccess;
    }

    const CommandRegistry& commandRegistry() const override {
        static const auto kCommands = [] {
            auto commands = std::make_unique<CommandRegistry>();
            commands->lookupOrInsert("v", [](SceneStream& stream, Persistent& self) {
                return readInto(stream, static_cast<MeshLines&>(self).vertices);
            });
            commands->lookupOrInsert("vn", [](SceneStream& stream, Persistent& self) {
                return readInto(stream, static_cast<MeshLines&>(self).normals);
            });
            commands->lookupOrInsert("f", readFace);
            return commands;
        }();
        return *kCommands;
    }
    std::string_view className() const override { return "MeshLines"; }

    std::vector<Vec3> vertices;
    std::vector<Vec3> normals;
    std::vector<int> corners;

  private:
    static Result readInto(SceneStream& stream, std::vector<Vec3>& list) {
        Vec3 value;
        if (stream.readVector3(value) != kSuccess) return kFailure;
        list.push_back(value);
        return kSuccess;
    }
    static Result readFace(SceneStream& stream, Persistent& self) {
        for (int i = 0; i < 3; ++i) {
            std::string_view corner;
            if (stream.nextToken(corner) != kSuccess) return kFailure;
            int vertex = 0;
            int normal = 0;
            const char* const end = corner.data() + corner.size();
            const auto first = std::from_chars(corner.data(), end, vertex);
            if (end - first.ptr > 2) std::from_chars(first.ptr + 2, end, normal);
            static_cast<MeshLines&>(self).corners.push_back(vertex);
            static_cast<MeshLines&>(self).corners.push_back(normal);
        }
        return kSuccess;
    }
};

constexpr std::size_t kVertexCount = 230000;

const std::string& projectText() {
    static const std::string kText = [] {
        MeshLines mesh(kVertexCount);
        PlainHandleMemory memory;
        const Handle handle = memory.allocate(32 << 20);
        HandleStream stream(memory, nullptr);
        stream.openWrite(handle, 0);
        mesh.writeBody(stream);
        return std::string(static_cast<const char*>(*handle), stream.used());
    }();
    return kText;
}

// The least that reading this text can be: words, and numbers out of those that are.
double splitAndConvert(std::string_view text) {
    double sum = 0.0;
    const char* p = text.data();
    const char* const end = p + text.size();
    const auto isSpace = [](char c) { return c == ' ' || c == '\n' || c == '\t' || c == '\r'; };
    while (p != end) {
        while (p != end && isSpace(*p))
            ++p;
        const char* const word = p;
        while (p != end && !isSpace(*p))
            ++p;
        if (word == p || *word > '9') continue;
        double value = 0.0;
        std::from_chars(word, p, value);
        sum += value;
    }
    return sum;
}

// The least that writing its numbers can be.
std::size_t convertAll(const MeshLines& mesh, std::vector<char>& buffer) {
    std::size_t total = 0;
    char* out = buffer.data();
    const auto put = [&](double value) {
        out = std::to_chars(out, out + kMaxNumberText, value, std::chars_format::fixed, 6).ptr;
        *out++ = ' ';
        if (out - buffer.data() < 60000) return;
        total += static_cast<std::size_t>(out - buffer.data());
        benchmark::DoNotOptimize(buffer.data());
        out = buffer.data();
    };
    for (const auto* list : {&mesh.vertices, &mesh.normals})
        for (const Vec3& v : *list) {
            put(v.x);
            put(v.y);
            put(v.z);
        }
    const auto putWhole = [&](long long value) {
        out = std::to_chars(out, out + 24, value).ptr;
        *out++ = '/';
        if (out - buffer.data() < 60000) return;
        total += static_cast<std::size_t>(out - buffer.data());
        out = buffer.data();
    };
    const auto count = static_cast<long long>(mesh.vertices.size());
    for (long long i = 1; i + 2 <= count; ++i)
        for (long long corner = i; corner < i + 3; ++corner) {
            putWhole(corner);
            putWhole(corner);
        }
    return total;
}

void report(benchmark::State& state, double ours, double bare) {
    const auto bytes =
        static_cast<double>(projectText().size()) * static_cast<double>(state.iterations());
    state.counters["MB/s"] = bytes / ours / 1e6;
    state.counters["bare MB/s"] = bytes / bare / 1e6;
    state.counters["ratio"] = bare / ours;
}

template <typename Run, typename Bare>
void compare(benchmark::State& state, Run&& run, Bare&& bare) {
    double ours = 0.0;
    double theirs = 0.0;
    for (auto _ : state) {
        const auto start = Clock::now();
        run();
        const auto middle = Clock::now();
        bare();
        theirs += seconds(Clock::now() - middle);
        ours += seconds(middle - start);
        state.SetIterationTime(seconds(middle - start));
    }
    report(state, ours, theirs);
}

bool readAll(SceneStream& stream, MeshLines& mesh) {
    while (stream.hasMore())
        if (stream.runTopCommand() != kSuccess) return false;
    return mesh.vertices.size() == kVertexCount && sceneErrorText().empty();
}

void reserve(MeshLines& mesh) {
    mesh.vertices.reserve(kVertexCount);
    mesh.normals.reserve(kVertexCount);
    mesh.corners.reserve(6 * kVertexCount);
}

// Limit now: std::from_chars of the coordinates takes more than half of the time, then the byte
// loop that looks for the end of a token.
void readFile(benchmark::State& state) {
    const std::string& text = projectText();
    std::FILE* const file = platform::openTemporaryFile();
    std::fwrite(text.data(), 1, text.size(), file);
    compare(
        state,
        [&] {
            std::rewind(file);
            MeshLines mesh;
            reserve(mesh);
            FileStream stream(&mesh, file, nullptr);
            if (!readAll(stream, mesh)) state.SkipWithError("not read");
        },
        [&] { benchmark::DoNotOptimize(splitAndConvert(text)); });
    std::fclose(file);
}
BENCHMARK(readFile)->UseManualTime()->Unit(benchmark::kMillisecond);

// Limit now: as for files, and a search for the end of each line.
void readHandle(benchmark::State& state) {
    const std::string& text = projectText();
    PlainHandleMemory memory;
    const Handle handle = memory.allocate(text.size());
    std::copy(text.begin(), text.end(), static_cast<char*>(*handle));
    compare(
        state,
        [&] {
            MeshLines mesh;
            reserve(mesh);
            HandleStream stream(memory, &mesh);
            stream.openRead(handle, 0);
            if (!readAll(stream, mesh)) state.SkipWithError("not read");
        },
        [&] { benchmark::DoNotOptimize(splitAndConvert(text)); });
}
BENCHMARK(readHandle)->UseManualTime()->Unit(benchmark::kMillisecond);

// Limit now: std::to_chars in fixed form with six decimals; then the kernel's copy of the file.
void writeFile(benchmark::State& state) {
    MeshLines mesh(kVertexCount);
    std::vector<char> buffer(65536);
    std::FILE* const file = platform::openTemporaryFile();
    compare(
        state,
        [&] {
            std::rewind(file);
            FileStream stream(nullptr, nullptr, file);
            if (mesh.writeBody(stream) != kSuccess || stream.flush() != kSuccess)
                state.SkipWithError("not written");
        },
        [&] { benchmark::DoNotOptimize(convertAll(mesh, buffer)); });
    std::fclose(file);
}
BENCHMARK(writeFile)->UseManualTime()->Unit(benchmark::kMillisecond);

// Limit now: std::to_chars; the growth of the handle is part of it, in steps of 4 MB.
void writeHandle(benchmark::State& state) {
    MeshLines mesh(kVertexCount);
    std::vector<char> buffer(65536);
    PlainHandleMemory memory;
    compare(
        state,
        [&] {
            const Handle handle = memory.allocate(4 << 20);
            {
                HandleStream stream(memory, nullptr);
                stream.openWrite(handle, 0);
                if (mesh.writeBody(stream) != kSuccess || stream.finish() != kSuccess)
                    state.SkipWithError("not written");
            }
            memory.dispose(handle);
        },
        [&] { benchmark::DoNotOptimize(convertAll(mesh, buffer)); });
}
BENCHMARK(writeHandle)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace orvin
