// Any bytes as a Type 1 font, as they are and, so that the private part gets past the cipher, as
// plain text behind "PLAIN". What was read is turned into curves. The seeds are fonts of
// tests/vector/TinyType1.h.
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/Fuzzing.h"
#include "tests/vector/TinyType1.h"

namespace {

using namespace orvin;
using fuzzing::require;

void tryFont(const std::string& bytes) {
    const FontFile font = test::parsedType1(bytes);
    std::size_t budget = 5000;  // points to make curves of
    for (std::size_t i = 0; i < font.glyphCount(); ++i) {
        const FontGlyph& glyph = font.glyphAt(i);
        require(glyph.code >= 0 && glyph.code < 256);
        std::size_t points = 0;
        for (const GlyphContour& contour : font.table.contours(glyph)) {
            require(contour.count > 0);
            points += contour.count;
        }
        if (points > budget) continue;
        budget -= points;
        InputProfile2 profile;
        font.makeCurves(glyph, profile, 0.05f);
        require(profile.paths.size() == glyph.contourCount);
    }
    require(font.xMin <= 0 && font.xMax >= 0 && font.yMin <= 0 && font.yMax >= 0);
}

/// Charstrings are enciphered once more: those of "N RD {...}" in `plain` are.
std::string withCharstrings(const std::string& plain) {
    std::string text;
    std::size_t at = 0;
    for (std::size_t open; (open = plain.find('{', at)) != std::string::npos;) {
        const std::size_t close = std::min(plain.find('}', open), plain.size());
        const std::string code = test::encrypted(plain.substr(open + 1, close - open - 1), 4330, 4);
        text += plain.substr(at, open - at) + std::to_string(code.size()) + " RD " + code;
        at = std::min(close + 1, plain.size());
    }
    return text + plain.substr(at);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    if (const std::size_t mark = bytes.find("PLAIN"); mark != std::string::npos) {
        const std::string cipher =
            test::encrypted(withCharstrings(bytes.substr(mark + 5)), 55665, 4);
        tryFont(test::pfbSegment(1, bytes.substr(0, mark)) + test::pfbSegment(2, cipher));
    } else {
        tryFont(bytes);
    }
    return 0;
}
