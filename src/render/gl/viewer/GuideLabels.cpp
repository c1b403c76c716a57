#include "render/gl/viewer/GuideLabels.h"

#include <algorithm>
#include <string_view>

#include "render/gl/viewer/TinyFont.h"

namespace orvin {

namespace {

struct Shape {
    std::string_view text;
    int length;     // along the text
    int thickness;  // across it
    bool upwards;
};

constexpr Shape shapeOf(GuideLabel label) {
    switch (label) {
        case GuideLabel::kLeftEdge:
            return {"Left Edge", 57, 10, true};
        case GuideLabel::kVerticalAxis:
            return {"Vertical Axis", 81, 10, true};
        case GuideLabel::kFront:
            return {"Front", 35, 9, false};
        case GuideLabel::kGround:
            break;
    }
    return {"Ground", 46, 9, false};
}

}  // namespace

LabelPicture labelPicture(GuideLabel label, const std::array<std::uint8_t, 3>& ink,
                          const std::array<std::uint8_t, 3>& paper) {
    const Shape shape = shapeOf(label);
    LabelPicture picture;
    picture.width = shape.upwards ? shape.thickness : shape.length;
    picture.height = shape.upwards ? shape.length : shape.thickness;
    picture.rgb.resize(static_cast<std::size_t>(picture.width * picture.height) * 3);
    const auto put = [&picture](int x, int y, const std::array<std::uint8_t, 3>& color) {
        std::copy(color.begin(), color.end(),
                  picture.rgb.begin() + (static_cast<std::ptrdiff_t>(y) * picture.width + x) * 3);
    };
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
            put(x, y, paper);
    int along = (shape.length - tinyfont::textWidth(shape.text)) / 2;
    for (const char letter : shape.text) {
        const auto& rows = tinyfont::glyph(letter);
        for (int row = 0; row < tinyfont::kHeight; ++row)
            for (int column = 0; column < tinyfont::kWidth; ++column) {
                const unsigned bits = rows[static_cast<std::size_t>(row)];
                if (((bits >> (tinyfont::kWidth - 1 - column)) & 1U) == 0) continue;
                if (shape.upwards)
                    put(row, along + column, ink);
                else
                    put(along + column, tinyfont::kHeight - 1 - row, ink);
            }
        along += tinyfont::kAdvance;
    }
    return picture;
}

}  // namespace orvin
