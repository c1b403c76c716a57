#include "common/Drawing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

namespace orvin::apps {
namespace {

constexpr int kSide = 64;

Picture paper() {
    Picture picture(kSide, kSide);
    fillPicture(picture, {255, 255, 255});
    return picture;
}

/// How many pixels' worth of black there is.
double ink(const Picture& picture) {
    double sum = 0.0;
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
            sum += (255 - picture.pixel(x, y)[1]) / 255.0;
    return sum;
}

TEST(Drawing, CoversWhatTheGeometrySays) {
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    const struct {
        const char* what;
        Polyline points;
        double width;  // 0: an area
        double expected;
    } rows[] = {
        {"square off the grid", {{10.25, 9.5}, {30.75, 9.5}, {30.75, 29.5}, {10.25, 29.5}}, 0, 410},
        {"triangle", {{4, 4}, {60, 20}, {20, 50}}, 0, 1160},
        {"half outside", {{-20, 10}, {20, 10}, {20, 30}, {-20, 30}}, 0, 400},
        {"bow tie", {{10, 10}, {30, 30}, {30, 10}, {10, 30}}, 0, 200},
        {"all outside", {{70, 10}, {90, 10}, {90, 30}}, 0, 0},
        {"two points", {{10, 10}, {30, 30}}, 0, 0},
        {"not a number", {{10, 10}, {kNan, 30}, {30, 10}}, 0, 0},
        {"dot", {{32.2, 31.7}}, 20, kPi * 100},
        {"bar with round ends", {{20, 20}, {50, 43}}, 6, std::hypot(30, 23) * 6 + kPi * 9},
        {"there and back", {{20, 20}, {50, 43}, {20, 20}}, 6, std::hypot(30, 23) * 6 + kPi * 9},
        {"far away", {{1e300, 20}, {2e300, 43}}, 6, 0},
        {"not a number", {{10, kNan}, {30, 10}}, 6, 0},
    };
    for (const auto& row : rows) {
        Picture picture = paper();
        if (row.width > 0.0)
            drawLines(picture, {&row.points, 1}, row.width, {0, 0, 0});
        else
            fillPolygon(picture, row.points, {0, 0, 0});
        EXPECT_NEAR(ink(picture), row.expected, 0.005 * row.expected + 1e-9) << row.what;
    }
}

TEST(Drawing, PlacesAPictureByItsAlpha) {
    Picture source(4, 4);
    for (int y = 0; y < 4; ++y)
        source.pixel(0, y)[3] = 255;  // a black column beside clear ones
    Picture picture = paper();
    placePicture(picture, source, 10, 10);
    placePicture(picture, source, -2, 62);  // its column is outside
    placePicture(picture, source, 63, -3);  // one pixel of it is inside
    EXPECT_EQ(ink(picture), 5.0);
    EXPECT_EQ(picture.pixel(10, 13)[0], 0);
    EXPECT_EQ(picture.pixel(63, 0)[0], 0);
}

TEST(Drawing, TextHasItsOwnGlyphForEachCharacter) {
    const std::string known = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789,.&+-";
    std::vector<Picture> glyphs;
    for (const char c : known + "?") {  // the last one has none and is a box
        Picture picture = paper();
        drawText(picture, {&c, 1}, {10.0, 40.0}, 24.0, {0, 0, 0});
        EXPECT_GT(ink(picture), 4.0) << c;
        for (const Picture& other : glyphs)
            EXPECT_TRUE(picture.rgba != other.rgba) << c;
        glyphs.push_back(std::move(picture));
    }
    EXPECT_EQ(textWidth("", 24.0), 0.0);
    EXPECT_DOUBLE_EQ(textWidth("Half Pipe", 24.0),
                     textWidth("Half", 24.0) + textWidth(" ", 24.0) + textWidth("Pipe", 24.0));
}

}  // namespace
}  // namespace orvin::apps
