#include "vector/font/TrueTypeOutlines.h"

#include <algorithm>

#include "vector/font/FontDiagnostics.h"

namespace orvin {
namespace {

// Flags of a point.
constexpr unsigned kOnCurve = 1;
constexpr unsigned kXByte = 2;
constexpr unsigned kYByte = 4;
constexpr unsigned kRepeat = 8;
constexpr unsigned kXSameOrPositive = 16;
constexpr unsigned kYSameOrPositive = 32;

// Flags of a component.
constexpr unsigned kWordArguments = 1;
constexpr unsigned kArgumentsAreOffsets = 2;
constexpr unsigned kOneScale = 8;
constexpr unsigned kMoreComponents = 32;
constexpr unsigned kTwoScales = 64;
constexpr unsigned kMatrix = 128;

constexpr std::int32_t kOne = 65536;  // 1 in 16.16

std::int32_t wrapped(std::uint32_t v) {
    return static_cast<std::int32_t>(v);
}

std::int32_t sum(std::int32_t a, std::int32_t b) {
    return wrapped(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

std::int32_t difference(std::int32_t a, std::int32_t b) {
    return wrapped(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

// v times the 16.16 number m. Sound for m of 0 or more only: a negative one gives a wrong magnitude
// and not the other sign. Saved scenes hold outlines made like this, so it stays.
std::int32_t fixedProduct(std::int32_t v, std::int32_t m) {
    const auto magnitude = static_cast<std::uint32_t>(v < 0 ? difference(0, v) : v);
    const std::uint32_t product = (magnitude * static_cast<std::uint32_t>(m) + 32768) >> 16;
    return v < 0 ? wrapped(0 - product) : wrapped(product);
}

// The next delta of one axis, as the point's flags for that axis say.
int coordinate(SfntCursor& in, bool isByte, bool sameOrPositive) {
    if (isByte) return sameOrPositive ? in.u8() : -in.u8();
    return sameOrPositive ? 0 : in.i16();
}

}  // namespace

TrueTypeOutlines::TrueTypeOutlines(std::span<const std::uint8_t> file, GlyphTable& table)
    : file_(file), table_(table), workLeft_(file.size() * std::uint64_t{8} + (1 << 20)) {
    constexpr std::size_t kMostPoints = std::size_t{1} << 25;
    table_.setCapacity(std::min(file.size() * 4 + (1 << 17), kMostPoints));
}

bool TrueTypeOutlines::spend(std::uint64_t work) {
    const bool enough = work <= workLeft_;
    workLeft_ = enough ? workLeft_ - work : 0;
    return enough;
}

void TrueTypeOutlines::read(std::uint64_t glyfTable, std::span<const GlyphLocation> locations) {
    table_.glyphs.reserve(table_.glyphs.size() + locations.size());
    for (std::size_t i = 0; i < locations.size(); ++i) {
        const int number = static_cast<int>(i);
        FontGlyph& glyph = table_.glyphs.emplace_back();
        glyph.code = number;
        if (locations[i].length < 1) {
            fontReport("  %3d empty glyph (A)\n", number);
            continue;
        }
        SfntCursor in(file_, glyfTable + locations[i].offset);
        const std::uint64_t start = in.position();
        const int contourCount = in.i16();
        const Box box{in.i16(), in.i16(), in.i16(), in.i16()};
        if (contourCount > 0) {
            if (workLeft_ > 0) readSimple(in, glyph, contourCount, box);
        } else if (contourCount == 0) {
            fontReport("  %3d empty glyph (B)\n", number);
        } else if (contourCount == -1) {
            fontReport("  %3d composite glyph\n", number);
            if (workLeft_ > 0) readComponents(in, number);
        } else {
            fontReport("  unrecognized glyph type (numCountours: %d)\n", contourCount);
        }
        spend(in.position() - start);
    }
    for (const Component& component : components_)
        resolve(component);
}

void TrueTypeOutlines::readSimple(SfntCursor& in, FontGlyph& glyph, int contourCount,
                                  const Box& box) {
    ends_.clear();
    for (int i = 0; i < contourCount && !in.pastEnd(); ++i)
        ends_.push_back(in.u16());
    if (in.pastEnd()) return;
    in.skip(in.u16());  // instructions
    const std::size_t pointCount = ends_.back() + 1;
    fontReport("  %3d simple glyph (%d curves, %d points)\n", glyph.code, contourCount,
               static_cast<int>(pointCount));
    if (in.pastEnd()) return;
    readFlags(in, pointCount);
    const std::size_t held = readCoordinates(in, std::min(pointCount, flags_.size()));
    if (!spend(pointCount + ends_.size())) return;

    std::size_t first = 0;
    for (const std::size_t lastPoint : ends_) {
        // A list of ends that doesn't rise makes loops without points.
        const std::size_t end = std::min(lastPoint + 1, held);
        const std::size_t count = end > first ? end - first : 0;
        const auto loop = std::span(points_).subspan(std::min(first, held), count);
        first = lastPoint + 1;
        if (!table_.addLoop(glyph, loop)) {
            spend(workLeft_);
            return;
        }
        if (!fontDiagnostics()) continue;
        fontReport("    { ");
        for (const GlyphPoint& p : loop) {
            const bool inside =
                p.x >= box.xMin && p.x <= box.xMax && p.y >= box.yMin && p.y <= box.yMax;
            fontReport("[%d %d] %s %s", p.x, p.y, p.onCurve != 0 ? "()" : "[]",
                       inside ? "" : "!! ");
        }
        fontReport("}\n");
    }
}

// The count is looked at before each flag only, so the last run may overshoot it.
void TrueTypeOutlines::readFlags(SfntCursor& in, std::size_t pointCount) {
    flags_.clear();
    while (flags_.size() < pointCount && !in.atEnd()) {
        const std::uint8_t flag = in.u8();
        flags_.push_back(flag);
        if ((flag & kRepeat) != 0) flags_.insert(flags_.end(), in.u8(), flag);
    }
}

// Returns how many points are there in full.
std::size_t TrueTypeOutlines::readCoordinates(SfntCursor& in, std::size_t pointCount) {
    points_.resize(pointCount);
    std::int32_t x = 0;
    for (std::size_t i = 0; i < pointCount; ++i) {
        const unsigned flag = flags_[i];
        x += coordinate(in, (flag & kXByte) != 0, (flag & kXSameOrPositive) != 0);
        points_[i] = {x, 0, static_cast<std::uint8_t>(flag & kOnCurve)};
    }
    std::int32_t y = 0;
    for (std::size_t i = 0; i < pointCount; ++i) {
        const unsigned flag = flags_[i];
        y += coordinate(in, (flag & kYByte) != 0, (flag & kYSameOrPositive) != 0);
        if (in.pastEnd()) return i;
        points_[i].y = y;
    }
    return pointCount;
}

void TrueTypeOutlines::readComponents(SfntCursor& in, int parent) {
    Component component{};
    do {
        if (!spend(1)) return;
        component = {parent, in.u16(), in.u16(), 0, 0, kOne, 0, 0, kOne};
        fontReport("      subglyph: %3d\n", component.glyph);
        const unsigned flags = component.flags;
        if ((flags & kWordArguments) != 0) {
            component.argument1 = in.i16();
            component.argument2 = in.i16();
        } else {  // unsigned, unlike the format's: outlines of saved scenes lie like this
            component.argument1 = in.u8();
            component.argument2 = in.u8();
        }
        const auto term = [&in] { return in.i16() * 4; };  // from 2.14
        if ((flags & kOneScale) != 0) {
            component.a = component.d = term();
        } else if ((flags & kTwoScales) != 0) {
            component.a = term();
            component.d = term();
        } else if ((flags & kMatrix) != 0) {
            component.a = term();
            component.b = term();
            component.c = term();
            component.d = term();
        }
        components_.push_back(component);
    } while ((component.flags & kMoreComponents) != 0 && !in.atEnd());
}

// The points of one glyph lie in one piece, all contours in order, closing repeats included.
GlyphPoint TrueTypeOutlines::pointOf(const FontGlyph& glyph, int number) const {
    const std::span<const GlyphContour> contours = table_.contours(glyph);
    if (contours.empty() || number < 0) return {0, 0};
    const std::size_t first = contours.front().first;
    const auto points =
        table_.points({first, contours.back().first + contours.back().count - first});
    const auto at = static_cast<std::size_t>(number);
    return at < points.size() ? points[at] : GlyphPoint{0, 0};
}

void TrueTypeOutlines::resolve(const Component& component) {
    if (component.glyph >= table_.glyphs.size()) return;
    FontGlyph& parent = table_.glyphs[static_cast<std::size_t>(component.parent)];
    const FontGlyph source = table_.glyphs[component.glyph];  // as it was before, if it is `parent`

    std::int32_t dx = component.argument1;
    std::int32_t dy = component.argument2;
    if ((component.flags & kArgumentsAreOffsets) == 0) {
        const GlyphPoint anchor = pointOf(parent, component.argument1);
        const GlyphPoint own = pointOf(source, component.argument2);
        dx = difference(anchor.x, own.x);
        dy = difference(anchor.y, own.y);
    }
    const bool scaled = (component.flags & (kOneScale | kTwoScales | kMatrix)) != 0;
    for (std::size_t i = 0; i < source.contourCount; ++i) {
        const auto points = table_.points(table_.contours(source)[i]);
        points_.assign(points.begin(), points.end());
        for (GlyphPoint& p : points_) {
            if (scaled) {
                p = {sum(fixedProduct(p.x, component.a), fixedProduct(p.y, component.c)),
                     sum(fixedProduct(p.x, component.b), fixedProduct(p.y, component.d)),
                     p.onCurve};
            }
            p.x = sum(p.x, dx);
            p.y = sum(p.y, dy);
        }
        if (!table_.addContour(parent, points_)) return;
    }
}

}  // namespace orvin
