#include "interchange/dxf/DxfColors.h"

namespace orvin {

namespace {

using Table = std::array<DxfColor, kDxfColorCount>;

// Farther than any colour is from another; on a scale of 0 to 255 as well.
constexpr double kFarthest = 400000.0;

constexpr DxfColor fromBytes(int red, int green, int blue) {
    return {static_cast<float>(red) / 255.0F, static_cast<float>(green) / 255.0F,
            static_cast<float>(blue) / 255.0F};
}

constexpr DxfColor grey(int level) {
    return fromBytes(level, level, level);
}

/// A colour of index 10 to 249: tens are the hue in steps of 15 degrees from red, units the
/// brightness (even) and half the saturation (odd). Components are cut to whole bytes.
constexpr DxfColor hueColor(int index) {
    constexpr int kPercent[] = {100, 65, 50, 30, 15};
    const int hue = index / 10 - 1;
    const int shade = index % 10;
    // In units of 1/800 byte, so that all of it stays whole numbers.
    const int high = 255 * kPercent[shade / 2] * 8;
    const int low = shade % 2 == 0 ? 0 : high / 2;
    const int rising = low + (high - low) / 4 * (hue % 4);
    const int falling = high - (high - low) / 4 * (hue % 4);
    const auto color = [](int red, int green, int blue) {
        return fromBytes(red / 800, green / 800, blue / 800);
    };
    switch (hue / 4) {
        case 0:
            return color(high, rising, low);
        case 1:
            return color(falling, high, low);
        case 2:
            return color(low, high, rising);
        case 3:
            return color(low, falling, high);
        case 4:
            return color(rising, low, high);
        default:
            return color(high, low, falling);
    }
}

constexpr Table makeTable() {
    Table table{};
    const DxfColor first[] = {{1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 1, 1}, {0, 0, 1},
                              {1, 0, 1}, {1, 1, 1}, grey(128), grey(192)};
    std::size_t row = 0;
    for (const DxfColor& color : first)
        table[row++] = color;
    for (int index = 10; index < 250; ++index)
        table[row++] = hueColor(index);
    for (const int level : {51, 91, 132, 173, 214, 255, 255})
        table[row++] = grey(level);
    return table;
}

constexpr Table kTable = makeTable();

double squaredDistance(DxfColor a, DxfColor b) {
    const double red = static_cast<double>(a.red) - static_cast<double>(b.red);
    const double green = static_cast<double>(a.green) - static_cast<double>(b.green);
    const double blue = static_cast<double>(a.blue) - static_cast<double>(b.blue);
    return red * red + green * green + blue * blue;
}

}  // namespace

const Table& dxfColors() {
    return kTable;
}

int nearestDxfColor(DxfColor color) {
    double nearest = kFarthest;
    int index = 1;
    for (int row = 0; row < kDxfColorCount; ++row) {
        const double distance = squaredDistance(color, kTable[static_cast<std::size_t>(row)]);
        if (!(distance < nearest)) continue;
        nearest = distance;
        index = row + 1;
    }
    return index;
}

}  // namespace orvin
