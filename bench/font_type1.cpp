// Type 1 fonts: reading a font whole. The peer is FreeType, which opens it and loads the same
// glyphs unscaled in the same program.
#include <benchmark/benchmark.h>
#include <ft2build.h>
#include FT_FREETYPE_H

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "vector/font/Type1Reader.h"

namespace orvin {
namespace {

constexpr const char* kFont = "/usr/share/fonts/X11/Type1/NimbusSans-Regular.pfb";
constexpr std::size_t kCodes = 256;

std::string contentOf(const char* path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

FT_Face openFace(FT_Library library, const std::string& bytes) {
    FT_Face face = nullptr;
    FT_New_Memory_Face(library, reinterpret_cast<const FT_Byte*>(bytes.data()),
                       static_cast<FT_Long>(bytes.size()), 0, &face);
    return face;
}

/// The font's 850 glyphs, in as many fonts as it takes to give each a code.
std::vector<std::string> recoded(const std::string& bytes) {
    FT_Library library = nullptr;
    FT_Init_FreeType(&library);
    FT_Face face = openFace(library, bytes);
    const std::size_t clearEnd = bytes.find("\x80\x02");
    const std::string clear = bytes.substr(6, clearEnd - 6);
    const std::size_t at = clear.find("/Encoding");
    std::vector<std::string> fonts;
    const auto count = static_cast<std::size_t>(face->num_glyphs);
    for (std::size_t first = 0; first < count; first += kCodes) {
        std::string vector = "/Encoding 256 array\n";
        for (std::size_t i = first; i < std::min(first + kCodes, count); ++i) {
            char name[256];
            FT_Get_Glyph_Name(face, static_cast<FT_UInt>(i), name, sizeof name);
            vector += "dup " + std::to_string(i - first) + " /" + name + " put\n";
        }
        const std::string text = clear.substr(0, at) + vector + "def\n" + "currentfile eexec\n";
        std::string header = {'\x80', '\x01'};
        for (unsigned i = 0; i < 4; ++i)
            header += static_cast<char>(text.size() >> 8 * i & 255);
        fonts.push_back(header + text + bytes.substr(clearEnd));
    }
    FT_Done_Face(face);
    FT_Done_FreeType(library);
    return fonts;
}

void setRate(benchmark::State& state, double glyphs) {
    state.counters["glyphs/s"] =
        benchmark::Counter(glyphs, benchmark::Counter::kIsIterationInvariantRate);
}

std::size_t parse(const std::string& bytes) {
    FontFile font;
    font.kind = FontFile::Kind::kType1;
    Type1Reader(font).parse({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
    benchmark::DoNotOptimize(font.xMax);
    return font.glyphCount();
}

// As a text loads it: the glyphs that have a code. Limited by the cipher, whose every byte waits
// for the one before.
void Type1Read(benchmark::State& state) {
    const std::string bytes = contentOf(kFont);
    if (bytes.empty()) return state.SkipWithError("no such font");
    std::size_t glyphs = 0;
    for (auto _ : state)
        glyphs = parse(bytes);
    setRate(state, static_cast<double>(glyphs));
}
BENCHMARK(Type1Read)->Unit(benchmark::kMillisecond);

// All 850 glyphs, by reading the whole font four times with other codes. Limited by the cipher.
void Type1ReadAllGlyphs(benchmark::State& state) {
    const std::string bytes = contentOf(kFont);
    if (bytes.empty()) return state.SkipWithError("no such font");
    const std::vector<std::string> fonts = recoded(bytes);
    std::size_t glyphs = 0;
    for (auto _ : state) {
        glyphs = 0;
        for (const std::string& font : fonts)
            glyphs += parse(font);
    }
    setRate(state, static_cast<double>(glyphs));
}
BENCHMARK(Type1ReadAllGlyphs)->Unit(benchmark::kMillisecond);

/// `open`: the face is opened anew each time, as a reader that keeps nothing does.
void freeType(benchmark::State& state, bool open) {
    const std::string bytes = contentOf(kFont);
    if (bytes.empty()) return state.SkipWithError("no such font");
    FT_Library library = nullptr;
    FT_Init_FreeType(&library);
    FT_Face face = openFace(library, bytes);
    FT_Long glyphs = 0;
    for (auto _ : state) {
        if (open) {
            FT_Done_Face(face);
            face = openFace(library, bytes);
        }
        glyphs = face->num_glyphs;
        for (FT_UInt i = 0; i < static_cast<FT_UInt>(glyphs); ++i) {
            FT_Load_Glyph(face, i, FT_LOAD_NO_SCALE);
            benchmark::DoNotOptimize(face->glyph->outline.n_points);
        }
    }
    FT_Done_Face(face);
    FT_Done_FreeType(library);
    setRate(state, static_cast<double>(glyphs));
}
void FreeTypeOpensAndLoads(benchmark::State& state) {
    freeType(state, true);
}
void FreeTypeLoads(benchmark::State& state) {
    freeType(state, false);
}
BENCHMARK(FreeTypeOpensAndLoads)->Unit(benchmark::kMillisecond);
BENCHMARK(FreeTypeLoads)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace orvin
