// Any bytes as a TrueType font. What was read is turned into curves and flattened, as a text would
// do. The seeds are fonts of tests/vector/TinyTrueType.h.
#include <cstddef>
#include <cstdint>

#include "fuzz/Fuzzing.h"
#include "vector/font/TrueTypeReader.h"

namespace {

using namespace orvin;
using fuzzing::require;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FontFile font;
    font.kind = FontFile::Kind::kTrueType;
    TrueTypeReader(font).parse({data, size});
    std::size_t budget = 5000;  // points to flatten; copies of a glyph share theirs
    for (std::size_t i = 0; i < font.glyphCount(); ++i) {
        const FontGlyph& glyph = font.glyphAt(i);
        std::size_t points = 0;
        for (const GlyphContour& contour : font.table.contours(glyph)) {
            const auto loop = font.table.points(contour);
            require(loop.empty() || loop.front() == loop.back());
            points += loop.size();
        }
        require(points < size * 4 + (1 << 18));
        if (points > budget) continue;
        budget -= points;
        InputProfile2 profile;
        font.makeCurves(glyph, profile, 0.05f);
        require(profile.paths.size() == glyph.contourCount);
        Mesh2 mesh;
        require(profile.emitAll(0.5, 20.0, mesh) == kSuccess);
        require(mesh.vertexCount() == mesh.normalCount());
    }
    return 0;
}
