// Lines, areas and text on a Picture, antialiased. Coordinates are pixels from the upper left
// corner of the picture, x to the right and y down; a pixel's centre stands at one half.
//
// What lies outside the picture is cut off. Points that aren't finite draw nothing.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "common/Png.h"
#include "toolkit/math/Vec.h"

namespace orvin::apps {

struct Color {
    std::uint8_t red = 0, green = 0, blue = 0;
};

using Polyline = std::vector<Vec2>;

/// Opaque.
void fillPicture(Picture& picture, Color color);

/// Strokes of round ends and joints; where they cross, they are no darker. A line of one point is a
/// dot.
void drawLines(Picture& picture, std::span<const Polyline> lines, double width, Color color);

/// The inside of a closed polygon, by the even-odd rule.
void fillPolygon(Picture& picture, const Polyline& polygon, Color color);

/// Puts `source` over the picture with its upper left corner at (left, top), by its alpha.
void placePicture(Picture& picture, const Picture& source, int left, int top);

/// Text in strokes; `baseline` is where it starts, `height` that of capitals. Knows the letters and
/// digits of ASCII and ,.&+-; a box stands for any other byte.
void drawText(Picture& picture, std::string_view text, Vec2 baseline, double height, Color color);
double textWidth(std::string_view text, double height);

}  // namespace orvin::apps
