#include "vector/text/TextFont.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "geometry/outline/Line2.h"
#include "vector/font/FontFile.h"

namespace orvin {
namespace {

constexpr double kHeight = 100.0;
constexpr std::size_t kNameLimit = 127;

std::string_view fileNameOf(std::string_view path) {
    return path.substr(path.find_last_of("\\/") + 1).substr(0, kNameLimit);
}

Box2 boxOf(const InputProfile2& outline) {
    Box2 box;
    for (const CompositeCurve2& path : outline.paths)
        for (const Curve2& curve : path.curves)
            for (const Vec2 p : curve.points())
                box.add(p);
    return box;
}

}  // namespace

bool TextFont::Glyph::isAstray() const {
    constexpr double kFar = 10.0 * kHeight;
    const Box2 box = boxOf(outline);
    return !box.empty() &&
           !(box.xmin >= -kFar && box.xmax <= kFar && box.ymin >= -kFar && box.ymax <= kFar);
}

Result TextFont::load(std::string_view path, int fontParam) {
    setFontDiagnostics(false);
    const FontFile font(path, fontParam);
    if (font.hasError()) return kFailure;
    for (Glyph& glyph : glyphs_)
        glyph.outline.clear();
    if (const auto units = static_cast<double>(font.heightUnits()); units != 0.0) {
        const double scale = kHeight / units;
        height = static_cast<float>(units * scale);
        width = static_cast<float>(static_cast<double>(font.widthUnits()) * scale);
        for (std::size_t i = 0; i < font.glyphCount(); ++i) {
            const FontGlyph& source = font.glyphAt(i);
            if (source.code < 0 || source.code >= static_cast<int>(kCodes)) continue;
            Glyph& glyph = glyphs_[static_cast<std::size_t>(source.code)];
            glyph.outline.clear();
            glyph.advance = static_cast<float>(source.advanceWidth * scale);
            glyph.bearing = static_cast<float>(source.leftSideBearing * scale);
            font.makeCurves(source, glyph.outline, static_cast<float>(scale));
        }
    } else {
        height = width = std::numeric_limits<float>::quiet_NaN();
    }
    const Glyph& em = glyphs_['M'];
    emWidth = static_cast<double>(em.bearing + em.advance);
    name = fileNameOf(path);
    hasName = true;
    param = fontParam;
    return kSuccess;
}

std::size_t TextFont::outlineCount() const {
    return static_cast<std::size_t>(
        std::count_if(glyphs_.begin(), glyphs_.end(),
                      [](const Glyph& glyph) { return !glyph.outline.paths.empty(); }));
}

TextFont::Measures TextFont::measures() const {
    constexpr float kLargest = 1e6f;  // the high half of a number's bits is beyond it
    if (height > 0.0f && height < kLargest && std::abs(width) < kLargest)
        return {static_cast<double>(height), static_cast<double>(width)};
    Box2 box;
    for (const Glyph& glyph : glyphs_)
        if (const Box2 own = boxOf(glyph.outline); !own.empty() && !glyph.isAstray()) {
            box.add({own.xmin, own.ymin});
            box.add({own.xmax, own.ymax});
        }
    return {kHeight, box.empty() ? 0.0 : box.width()};
}

}  // namespace orvin
