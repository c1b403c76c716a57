// Fonts and texts. The peer is FreeType, which loads the same glyphs unscaled in the same program.
#include <benchmark/benchmark.h>
#include <ft2build.h>
#include FT_FREETYPE_H

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

#include "bench/QuietOutput.h"
#include "geometry/ObjectX.h"
#include "setup/DefaultScene.h"
#include "setup/StartUp.h"
#include "vector/ProfileT.h"
#include "vector/font/TrueTypeReader.h"

namespace orvin {
namespace {

constexpr const char* kTrueType = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";

std::string contentOf(const char* path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

void setRate(benchmark::State& state, const char* unit, double count) {
    state.counters[unit] = benchmark::Counter(count, benchmark::Counter::kIsIterationInvariantRate);
}

// Limited by the walk over the points' flags and bytes.
void TrueTypeRead(benchmark::State& state) {
    const std::string bytes = contentOf(kTrueType);
    if (bytes.empty()) return state.SkipWithError("no such font");
    long numGlyphs = 0;
    for (auto _ : state) {
        FontFile font;
        font.kind = FontFile::Kind::kTrueType;
        TrueTypeReader(font).parse(
            {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
        benchmark::DoNotOptimize(font.glyphCount());
    }
    FT_Library library = nullptr;
    FT_Face face = nullptr;
    FT_Init_FreeType(&library);
    if (FT_New_Face(library, kTrueType, 0, &face) == 0) numGlyphs = face->num_glyphs;
    FT_Done_FreeType(library);
    setRate(state, "glyphs/s", static_cast<double>(numGlyphs));
}
BENCHMARK(TrueTypeRead)->Unit(benchmark::kMillisecond);

void TrueTypeReadFreeType(benchmark::State& state) {
    const std::string bytes = contentOf(kTrueType);
    if (bytes.empty()) return state.SkipWithError("no such font");
    FT_Library library = nullptr;
    FT_Init_FreeType(&library);
    long glyphs = 0;
    for (auto _ : state) {
        FT_Face face = nullptr;
        FT_New_Memory_Face(library, reinterpret_cast<const FT_Byte*>(bytes.data()),
                           static_cast<FT_Long>(bytes.size()), 0, &face);
        glyphs = face->num_glyphs;
        for (FT_UInt i = 0; i < static_cast<FT_UInt>(glyphs); ++i) {
            FT_Load_Glyph(face, i, FT_LOAD_NO_SCALE);
            benchmark::DoNotOptimize(face->glyph->outline.points);
        }
        FT_Done_Face(face);
    }
    FT_Done_FreeType(library);
    setRate(state, "glyphs/s", static_cast<double>(glyphs));
}
BENCHMARK(TrueTypeReadFreeType)->Unit(benchmark::kMillisecond);

// A font file from disk to what a text keeps of it: limited by reading the whole file.
void ChooseFont(benchmark::State& state) {
    for (auto _ : state) {
        TextFont font;
        font.load(kTrueType, -1);
        benchmark::DoNotOptimize(font.outlineCount());
    }
}
BENCHMARK(ChooseFont)->Unit(benchmark::kMillisecond);

std::string page(std::size_t visible, std::size_t lineLength) {
    const std::string_view words =
        "The quick brown fox jumps over the lazy dog & 0123456789 times. ";
    std::string text;
    std::size_t letters = 0;
    std::size_t column = 0;
    for (std::size_t i = 0; letters < visible; ++i) {
        const char c = words[i % words.size()];
        letters += c != ' ' ? 1 : 0;
        text += c;
        if (++column % lineLength == 0) text += '\n';
    }
    return text;
}

// Places 4,000 letters; the curves themselves are copied only where somebody asks for them.
void Layout(benchmark::State& state) {
    SceneX scene;
    ProfileT text(scene, "text");
    text.setFont(kTrueType, -1);
    text.setText(page(static_cast<std::size_t>(state.range(0)) * 4 / 5, 80));
    text.setTextParms(1.2, 0.05);
    for (auto _ : state) {
        text.touch();
        benchmark::DoNotOptimize(text.letters().data());
    }
    setRate(state, "letters/s", static_cast<double>(text.text().size()));
}
BENCHMARK(Layout)->Arg(4000)->Unit(benchmark::kMillisecond);

// The same with the curves, for who wants them: limited by allocating each curve's points.
void LayoutCurves(benchmark::State& state) {
    SceneX scene;
    ProfileT text(scene, "text");
    text.setFont(kTrueType, -1);
    text.setText(page(static_cast<std::size_t>(state.range(0)) * 4 / 5, 80));
    for (auto _ : state) {
        text.touch();
        benchmark::DoNotOptimize(text.inputProfile());
    }
    setRate(state, "letters/s", static_cast<double>(text.text().size()));
}
BENCHMARK(LayoutCurves)->Arg(4000)->Unit(benchmark::kMillisecond);

// From the string to the render-quality mesh of a page of 500 visible letters: limited by what the
// solid itself costs (faces and sweep).
void PageOfText(benchmark::State& state) {
    registerMemberClasses();
    const auto scene = buildDefaultScene("page", true);
    auto& text = scene->make<ProfileT>("page text");
    text.setFont(kTrueType, -1);
    auto& object = scene->make<ObjectX>("page");
    object.setFace("page text");
    object.setStyle(scene->members(MemberKind::kStyle).front()->name());
    const std::string words = page(static_cast<std::size_t>(state.range(0)), 40);
    double vertices = 0;
    const benches::QuietOutput quiet;
    for (auto _ : state) {
        text.setText(words);
        std::uint32_t revision = 0;
        const Mesh3* const mesh = object.mesh(1, revision);
        if (mesh == nullptr) return state.SkipWithError("no mesh");
        vertices = mesh->vertexCount();
    }
    setRate(state, "vertices/s", vertices);
    state.counters["vertices"] = vertices;
}
BENCHMARK(PageOfText)->Arg(20)->Arg(100)->Arg(500)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace orvin
