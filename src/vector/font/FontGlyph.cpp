#include "vector/font/FontGlyph.h"

namespace orvin {

bool GlyphTable::prepareToAdd(FontGlyph& glyph, std::size_t pointCount) {
    const bool move =
        glyph.contourCount > 0 && glyph.firstContour + glyph.contourCount != contours_.size();
    const std::size_t moved = move ? glyph.contourCount : 0;
    const std::size_t used = points_.size() + contours_.size();
    if (used > capacity_ || pointCount + moved + 1 > capacity_ - used) return false;
    if (move) {
        contours_.reserve(contours_.size() + moved + 1);
        for (std::size_t i = 0; i < moved; ++i)
            contours_.push_back(contours_[glyph.firstContour + i]);
        glyph.firstContour = contours_.size() - moved;
    } else if (glyph.contourCount == 0) {
        glyph.firstContour = contours_.size();
    }
    return true;
}

bool GlyphTable::addContour(FontGlyph& glyph, std::span<const GlyphPoint> points) {
    if (!prepareToAdd(glyph, points.size())) return false;
    contours_.push_back({points_.size(), points.size()});
    points_.insert(points_.end(), points.begin(), points.end());
    ++glyph.contourCount;
    return true;
}

bool GlyphTable::addLoop(FontGlyph& glyph, std::span<const GlyphPoint> points) {
    if (points.empty()) return addContour(glyph, points);
    if (!prepareToAdd(glyph, points.size() + 1)) return false;
    contours_.push_back({points_.size(), points.size() + 1});
    points_.insert(points_.end(), points.begin(), points.end());
    points_.push_back(points.front());
    ++glyph.contourCount;
    return true;
}

bool GlyphTable::addCopies(FontGlyph& glyph, const FontGlyph& source, std::int32_t dx,
                           std::int32_t dy) {
    const auto moved = [](std::int32_t v, std::int32_t d) {
        return static_cast<std::int32_t>(static_cast<std::uint32_t>(v) +
                                         static_cast<std::uint32_t>(d));
    };
    const std::size_t first = source.firstContour;
    const std::size_t count = source.contourCount;
    std::vector<GlyphPoint> copy;
    for (std::size_t i = 0; i < count; ++i) {
        const std::span<const GlyphPoint> from = points(contours_[first + i]);
        copy.assign(from.begin(), from.end());
        for (GlyphPoint& point : copy)
            point = {moved(point.x, dx), moved(point.y, dy), point.onCurve};
        if (!addContour(glyph, copy)) return false;
    }
    return true;
}

}  // namespace orvin
