// From outlines to solids. The peers run in the same program on the same loops: GLU's tessellator
// for faces, Clipper for the removal of overlaps.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <polyclipping/clipper.hpp>

#include "bench/GluFaces.h"
#include "bench/OutlineShapes.h"
#include "bench/Word.h"
#include "geometry/outline/FacePeeler.h"
#include "geometry/outline/LoopOffset.h"

namespace orvin::benches {
namespace {

void setRate(benchmark::State& state, const char* unit, std::size_t count) {
    state.counters[unit] = benchmark::Counter(static_cast<double>(count),
                                              benchmark::Counter::kIsIterationInvariantRate);
}

/// Each letter of the alphabet and the digits by itself.
const std::vector<Loops>& letters() {
    static const std::vector<Loops> all = [] {
        const QuietOutput quiet;
        std::vector<Loops> shapes;
        for (const char c : std::string_view("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
                                             "0123456789&@%"))
            shapes.push_back(loopsOf(textShape(std::string(1, c), kSans, 0.05)));
        return shapes;
    }();
    return all;
}

std::size_t pointCount(const std::vector<Loops>& shapes) {
    std::size_t count = 0;
    for (const Loops& loops : shapes)
        count += benches::pointCount(loops);
    return count;
}

// ---- faces

std::vector<PolyShape2> weldedShapes(const std::vector<Loops>& shapes) {
    const QuietOutput quiet;
    std::vector<PolyShape2> welded;
    for (const Loops& loops : shapes) {
        welded.push_back(shapeOf(loops));
        welded.back().weld(0.001);
    }
    return welded;
}

void peel(benchmark::State& state, const std::vector<Loops>& shapes) {
    const std::vector<PolyShape2> welded = weldedShapes(shapes);
    const QuietOutput quiet;
    std::size_t polygons = 0;
    for (auto _ : state) {
        polygons = 0;
        for (const PolyShape2& shape : welded)
            FacePeeler(shape).forEachPolygon([&](std::span<const int> ids) {
                benchmark::DoNotOptimize(ids.data());
                ++polygons;
            });
    }
    setRate(state, "points/s", pointCount(shapes));
    state.counters["polygons"] = static_cast<double>(polygons);
}

void tessellate(benchmark::State& state, const std::vector<Loops>& shapes) {
    GluFaces glu;
    for (auto _ : state)
        for (const Loops& loops : shapes)
            benchmark::DoNotOptimize(glu.fill(loops).data());
    setRate(state, "points/s", pointCount(shapes));
}

void FacesLetters(benchmark::State& state) {
    peel(state, letters());
}
BENCHMARK(FacesLetters)->Unit(benchmark::kMicrosecond);

void FacesLettersGlu(benchmark::State& state) {
    tessellate(state, letters());
}
BENCHMARK(FacesLettersGlu)->Unit(benchmark::kMicrosecond);

// Points and holes.
void growth(benchmark::internal::Benchmark* bench) {
    for (const int holes : {0, 20, 200})
        for (const int points : {100, 300, 1000, 3000, 10000, 30000})
            if (points >= holes * 10) bench->Args({points, holes});
    bench->Unit(benchmark::kMicrosecond);
}

std::vector<Loops> disc(const benchmark::State& state) {
    return {holedDisc(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)))};
}

void FacesGrowth(benchmark::State& state) {
    peel(state, disc(state));
}
BENCHMARK(FacesGrowth)->Apply(growth);

void FacesGrowthGlu(benchmark::State& state) {
    tessellate(state, disc(state));
}
BENCHMARK(FacesGrowthGlu)->Apply(growth);

// ---- overlaps

/// Letters that run into each other, as an outward offset makes them: each place once.
Loops crowdedText() {
    const QuietOutput quiet;
    Loops loops;
    for (const Loop& loop : loopsOf(textShape("Twenty glyphs in line", kSans, 0.05))) {
        Loop moved = offsetLoop(loop, 6.0, OffsetRepair::kNone);
        const auto same = [](Vec2 a, Vec2 b) { return length(a - b) < 0.01; };
        moved.erase(std::unique(moved.begin(), moved.end(), same), moved.end());
        if (same(moved.front(), moved.back())) moved.pop_back();
        loops.push_back(std::move(moved));
    }
    return loops;
}

/// A closed line that crosses itself over and over: a rose with a wave on it.
Loops tangle(int points) {
    Loop loop;
    for (int i = 0; i < points; ++i) {
        const double t = 2.0 * kPi * i / points;
        const double r = 300.0 * (0.6 + 0.4 * std::cos(7.0 * t) + 0.02 * std::sin(101.0 * t));
        loop.push_back({r * std::cos(5.0 * t), r * std::sin(5.0 * t)});
    }
    return {loop};
}

void resolve(benchmark::State& state, const Loops& loops) {
    const PolyShape2 shape = shapeOf(loops);
    const QuietOutput quiet;
    std::size_t left = 0;
    for (auto _ : state) {
        PolyShape2 copy = shape;
        copy.resolveOverlaps();
        left = copy.precs.size();
        benchmark::DoNotOptimize(copy.precs.data());
    }
    setRate(state, "points/s", benches::pointCount(loops));
    state.counters["left"] = static_cast<double>(left);
}

void unite(benchmark::State& state, const Loops& loops) {
    constexpr double kScale = 1e6;  // to whole numbers
    std::size_t left = 0;
    for (auto _ : state) {
        ClipperLib::Paths paths;
        for (const Loop& loop : loops) {
            ClipperLib::Path& path = paths.emplace_back();
            for (const Vec2 p : loop)
                path.emplace_back(static_cast<ClipperLib::cInt>(p.x * kScale),
                                  static_cast<ClipperLib::cInt>(p.y * kScale));
        }
        ClipperLib::Clipper clipper;
        clipper.AddPaths(paths, ClipperLib::ptSubject, true);
        ClipperLib::Paths result;
        clipper.Execute(ClipperLib::ctUnion, result, ClipperLib::pftPositive,
                        ClipperLib::pftPositive);
        left = 0;
        for (const ClipperLib::Path& path : result)
            left += path.size();
        benchmark::DoNotOptimize(result.data());
    }
    setRate(state, "points/s", benches::pointCount(loops));
    state.counters["left"] = static_cast<double>(left);
}

void OverlapsText(benchmark::State& state) {
    resolve(state, crowdedText());
}
BENCHMARK(OverlapsText)->Unit(benchmark::kMicrosecond);

void OverlapsTextClipper(benchmark::State& state) {
    unite(state, crowdedText());
}
BENCHMARK(OverlapsTextClipper)->Unit(benchmark::kMicrosecond);

void OverlapsTangle(benchmark::State& state) {
    resolve(state, tangle(static_cast<int>(state.range(0))));
}
BENCHMARK(OverlapsTangle)->Arg(1000)->Arg(4000)->Arg(16000)->Unit(benchmark::kMicrosecond);

void OverlapsTangleClipper(benchmark::State& state) {
    unite(state, tangle(static_cast<int>(state.range(0))));
}
BENCHMARK(OverlapsTangleClipper)->Arg(1000)->Arg(4000)->Arg(16000)->Unit(benchmark::kMicrosecond);

// ---- offsets

void offset(benchmark::State& state, const Loops& loops, OffsetRepair repair) {
    const QuietOutput quiet;
    for (auto _ : state)
        for (const Loop& loop : loops)
            benchmark::DoNotOptimize(offsetLoop(loop, 2.0, repair).data());
    setRate(state, "points/s", benches::pointCount(loops));
}

void OffsetText(benchmark::State& state) {
    offset(state, loopsOf(textShape("Twenty glyphs in line", kSans, 0.05)), OffsetRepair::kNone);
}
BENCHMARK(OffsetText)->Unit(benchmark::kMicrosecond);

void OffsetTextRepaired(benchmark::State& state) {
    offset(state, loopsOf(textShape("Twenty glyphs in line", kSans, 0.05)), OffsetRepair::kFans);
}
BENCHMARK(OffsetTextRepaired)->Unit(benchmark::kMicrosecond);

void OffsetGrowth(benchmark::State& state) {
    offset(state, holedDisc(static_cast<int>(state.range(0)), 0), OffsetRepair::kNone);
}
BENCHMARK(OffsetGrowth)->RangeMultiplier(10)->Range(100, 100000)->Unit(benchmark::kMicrosecond);

void OffsetGrowthRepaired(benchmark::State& state) {
    offset(state, holedDisc(static_cast<int>(state.range(0)), 0), OffsetRepair::kFans);
}
BENCHMARK(OffsetGrowthRepaired)
    ->RangeMultiplier(10)
    ->Range(100, 100000)
    ->Unit(benchmark::kMicrosecond);

// ---- solids

template <typename Change>
void build(benchmark::State& state, Change&& change) {
    const QuietOutput quiet;
    Word word(kSans, "Extraordinarilybevel", 0.1);
    int vertices = word.build();
    for (auto _ : state) {
        change(word);
        vertices = word.build();
    }
    setRate(state, "vertices/s", static_cast<std::size_t>(vertices));
    state.counters["vertices"] = vertices;
}

void SolidOutlineChanged(benchmark::State& state) {
    build(state, [](Word& word) { word.text.touch(); });
}
BENCHMARK(SolidOutlineChanged)->Unit(benchmark::kMicrosecond);

// The faces are those of the build before.
void SolidEdgeChanged(benchmark::State& state) {
    build(state, [](Word& word) { word.edge.touch(); });
}
BENCHMARK(SolidEdgeChanged)->Unit(benchmark::kMicrosecond);

void SolidUnchanged(benchmark::State& state) {
    build(state, [](Word&) {});
}
BENCHMARK(SolidUnchanged)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace orvin::benches
