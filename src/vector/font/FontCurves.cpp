// From the points of a glyph to curves.
#include <span>
#include <vector>

#include "vector/font/FontFile.h"

namespace orvin {
namespace {

// Collects the points of one piece after the other: a run of straight segments, or one curve (for
// TrueType: a run of control points between two points on the outline).
class PieceBuilder {
  public:
    PieceBuilder(CompositeCurve2& path, bool quadratic) : path_(path), quadratic_(quadratic) {
        path_.curves.emplace_back();
    }

    void add(Vec2 point) { current().addPoint(point); }

    void finish(bool curved, bool last) {
        const std::span<const Vec2> points = current().points();
        if (curved && quadratic_ && points.size() > 3) {
            splitRun();
        } else if (curved) {
            current().setType(Curve2::Type::kBezier);
        }
        current().attachedTail = !last;
    }

    void startNext(Vec2 point) {
        path_.curves.emplace_back();
        current().attachedHead = true;
        add(point);
    }

    std::size_t pointCount() { return current().points().size(); }

  private:
    Curve2& current() { return path_.curves.back(); }

    // Between two control points the outline passes through the point halfway.
    void splitRun() {
        const std::vector<Vec2> run(current().points().begin(), current().points().end());
        current().clearPoints();
        Vec2 start = run[0];
        for (std::size_t i = 1; i + 1 < run.size(); ++i) {
            if (i > 1) {
                current().attachedTail = true;
                path_.curves.emplace_back();
                current().attachedHead = true;
            }
            const bool atEnd = i + 2 == run.size();
            const Vec2 end = atEnd ? run[i + 1] : (run[i] + run[i + 1]) * 0.5;
            current().setType(Curve2::Type::kBezier);
            add(start);
            add(run[i]);
            add(end);
            start = end;
        }
    }

    CompositeCurve2& path_;
    bool quadratic_;
};

CompositeCurve2 pathOfContour(std::span<const GlyphPoint> points, bool quadratic, double scale) {
    CompositeCurve2 path;
    path.closed = true;
    PieceBuilder piece(path, quadratic);
    const auto at = [&](std::size_t i) { return Vec2{points[i].x * scale, points[i].y * scale}; };
    bool curved = false;
    for (std::size_t i = 0; i < points.size(); ++i) {
        piece.add(at(i));
        if (i == 0) continue;
        if (points[i].onCurve == 0) {
            curved = true;
            continue;
        }
        if (i + 1 == points.size()) continue;
        if (points[i + 1].onCurve != 0 && !curved) continue;
        piece.finish(curved, false);
        piece.startNext(at(i));
        curved = false;
    }
    if (piece.pointCount() == 1) {
        piece.add(at(0));
    } else {
        piece.finish(curved, true);
    }
    if (path.curves.size() == 1) path.curves.front().closed = true;
    return path;
}

}  // namespace

void FontFile::makeCurves(const FontGlyph& glyph, InputProfile2& target, float scale) const {
    if (kind == Kind::kNone) return;
    for (const GlyphContour& contour : table.contours(glyph))
        target.paths.push_back(pathOfContour(table.points(contour), kind == Kind::kTrueType,
                                             static_cast<double>(scale)));
}

}  // namespace orvin
