#include "common/Drawing.h"

#include <algorithm>
#include <cmath>

#include "common/StrokeFont.h"

namespace orvin::apps {

namespace {

constexpr int kSubRows = 4;  // of a pixel, for areas

struct PixelBox {
    int left, top, right, bottom;  // the last two are outside
    bool empty() const { return left >= right || top >= bottom; }
    int width() const { return right - left; }
};

int pixelAt(double value, int limit) {
    return static_cast<int>(std::clamp(value, 0.0, static_cast<double>(limit)));
}

PixelBox boxAround(const Picture& picture, Vec2 low, Vec2 high, double margin) {
    return {pixelAt(std::floor(low.x - margin), picture.width),
            pixelAt(std::floor(low.y - margin), picture.height),
            pixelAt(std::ceil(high.x + margin), picture.width),
            pixelAt(std::ceil(high.y + margin), picture.height)};
}

bool isFinite(const Polyline& line) {
    return std::all_of(line.begin(), line.end(),
                       [](Vec2 p) { return std::isfinite(p.x) && std::isfinite(p.y); });
}

Vec2 lowest(Vec2 a, Vec2 b) {
    return {std::min(a.x, b.x), std::min(a.y, b.y)};
}
Vec2 highest(Vec2 a, Vec2 b) {
    return {std::max(a.x, b.x), std::max(a.y, b.y)};
}

double distanceToSegment(Vec2 p, Vec2 a, Vec2 b) {
    const Vec2 ab = b - a;
    const double square = dot(ab, ab);
    const double t = square > 0.0 ? std::clamp(dot(p - a, ab) / square, 0.0, 1.0) : 0.0;
    return length(p - (a + ab * t));
}

void blend(std::uint8_t* pixel, Color color, double coverage) {
    const std::uint8_t over[3] = {color.red, color.green, color.blue};
    for (int c = 0; c < 3; ++c)
        pixel[c] =
            static_cast<std::uint8_t>(std::lround(pixel[c] + (over[c] - pixel[c]) * coverage));
}

/// Coverage of the pixels of a box, largest value wins.
class CoverageMap {
  public:
    explicit CoverageMap(PixelBox box)
        : box_(box),
          values_(static_cast<std::size_t>(box.width()) *
                  static_cast<std::size_t>(box.bottom - box.top)) {}

    float& at(int x, int y) {
        return values_[static_cast<std::size_t>(y - box_.top) *
                           static_cast<std::size_t>(box_.width()) +
                       static_cast<std::size_t>(x - box_.left)];
    }
    void paint(Picture& picture, Color color) {
        for (int y = box_.top; y < box_.bottom; ++y)
            for (int x = box_.left; x < box_.right; ++x)
                if (const float coverage = at(x, y); coverage > 0.0F)
                    blend(picture.pixel(x, y), color, static_cast<double>(coverage));
    }

  private:
    PixelBox box_;
    std::vector<float> values_;
};

/// Adds to each pixel of a row the part of it that lies between x0 and x1.
void addSpan(CoverageMap& map, const PixelBox& box, int y, double x0, double x1, float weight) {
    for (int x = std::max(box.left, pixelAt(x0, box.right)); x < box.right && x < x1; ++x) {
        const double covered = std::min(x1, x + 1.0) - std::max(x0, static_cast<double>(x));
        if (covered > 0.0) map.at(x, y) += static_cast<float>(covered) * weight;
    }
}

}  // namespace

void fillPicture(Picture& picture, Color color) {
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x) {
            std::uint8_t* const pixel = picture.pixel(x, y);
            pixel[0] = color.red;
            pixel[1] = color.green;
            pixel[2] = color.blue;
            pixel[3] = 255;
        }
}

void drawLines(Picture& picture, std::span<const Polyline> lines, double width, Color color) {
    const double radius = width / 2.0;
    PixelBox all{picture.width, picture.height, 0, 0};
    for (const Polyline& line : lines) {
        if (!isFinite(line)) continue;
        for (const Vec2 p : line) {
            const PixelBox box = boxAround(picture, p, p, radius + 1.0);
            all = {std::min(all.left, box.left), std::min(all.top, box.top),
                   std::max(all.right, box.right), std::max(all.bottom, box.bottom)};
        }
    }
    if (all.empty()) return;
    CoverageMap map(all);
    for (const Polyline& line : lines) {
        if (!isFinite(line)) continue;
        for (std::size_t i = line.size() > 1 ? 1 : 0; i < line.size(); ++i) {
            const Vec2 a = line[i > 0 ? i - 1 : 0];
            const Vec2 b = line[i];
            const PixelBox box = boxAround(picture, lowest(a, b), highest(a, b), radius + 1.0);
            for (int y = box.top; y < box.bottom; ++y)
                for (int x = box.left; x < box.right; ++x) {
                    const double d = distanceToSegment({x + 0.5, y + 0.5}, a, b);
                    const auto coverage =
                        static_cast<float>(std::clamp(radius + 0.5 - d, 0.0, 1.0));
                    map.at(x, y) = std::max(map.at(x, y), coverage);
                }
        }
    }
    map.paint(picture, color);
}

void fillPolygon(Picture& picture, const Polyline& polygon, Color color) {
    if (polygon.size() < 3 || !isFinite(polygon)) return;
    Vec2 low = polygon[0];
    Vec2 high = low;
    for (const Vec2 p : polygon) {
        low = lowest(low, p);
        high = highest(high, p);
    }
    const PixelBox box = boxAround(picture, low, high, 0.0);
    if (box.empty()) return;
    CoverageMap map(box);
    std::vector<double> crossings;
    for (int row = box.top * kSubRows; row < box.bottom * kSubRows; ++row) {
        const double y = (row + 0.5) / kSubRows;
        crossings.clear();
        for (std::size_t i = 0; i < polygon.size(); ++i) {
            const Vec2 a = polygon[i];
            const Vec2 b = polygon[(i + 1) % polygon.size()];
            if ((a.y <= y) != (b.y <= y))
                crossings.push_back(a.x + (b.x - a.x) * (y - a.y) / (b.y - a.y));
        }
        std::sort(crossings.begin(), crossings.end());
        for (std::size_t i = 0; i + 1 < crossings.size(); i += 2)
            addSpan(map, box, row / kSubRows, crossings[i], crossings[i + 1], 1.0F / kSubRows);
    }
    map.paint(picture, color);
}

void placePicture(Picture& picture, const Picture& source, int left, int top) {
    for (int y = std::max(0, -top); y < source.height && y + top < picture.height; ++y)
        for (int x = std::max(0, -left); x < source.width && x + left < picture.width; ++x) {
            const std::uint8_t* const from = source.pixel(x, y);
            blend(picture.pixel(x + left, y + top), {from[0], from[1], from[2]}, from[3] / 255.0);
        }
}

void drawText(Picture& picture, std::string_view text, Vec2 baseline, double height, Color color) {
    const double unit = height / kStrokeCapHeight;
    std::vector<Polyline> lines;
    double x = baseline.x;
    for (const char c : text) {
        const StrokeGlyph glyph = strokeGlyph(c);
        for (const Polyline& stroke : glyph.strokes) {
            Polyline& line = lines.emplace_back(stroke);
            for (Vec2& p : line)
                p = {x + p.x * unit, baseline.y - p.y * unit};
        }
        x += glyph.advance * unit;
    }
    drawLines(picture, lines, std::max(1.0, height * 0.12), color);
}

double textWidth(std::string_view text, double height) {
    double width = 0.0;
    for (const char c : text)
        width += strokeGlyph(c).advance;
    return width * height / kStrokeCapHeight;
}

}  // namespace orvin::apps
