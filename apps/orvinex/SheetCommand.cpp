// sheet: pictures side by side, as a contact sheet.
#include <algorithm>

#include "common/Png.h"
#include "orvinex/Commands.h"

namespace orvin::orvinex {

namespace {

constexpr int kGap = 6;  // pixels around every cell
constexpr std::uint8_t kPaper[4] = {24, 24, 28, 255};

/// Mean of the source pixels that a cell's pixel covers, weighted by alpha, over the paper.
void shrinkInto(const apps::Picture& source, apps::Picture& sheet, int left, int top, int width,
                int height) {
    const auto from = [](int i, int cells, int pixels) {
        return static_cast<int>(static_cast<long long>(i) * pixels / cells);
    };
    for (int y = 0; y < height; ++y) {
        const int y0 = from(y, height, source.height);
        const int y1 = std::max(y0 + 1, from(y + 1, height, source.height));
        for (int x = 0; x < width; ++x) {
            const int x0 = from(x, width, source.width);
            const int x1 = std::max(x0 + 1, from(x + 1, width, source.width));
            double sums[3] = {};
            double alpha = 0.0;
            for (int sy = y0; sy < y1; ++sy)
                for (int sx = x0; sx < x1; ++sx) {
                    const std::uint8_t* pixel = source.pixel(sx, sy);
                    for (int c = 0; c < 3; ++c)
                        sums[c] += pixel[c] * (pixel[3] / 255.0);
                    alpha += pixel[3] / 255.0;
                }
            const double count = static_cast<double>(x1 - x0) * (y1 - y0);
            std::uint8_t* out = sheet.pixel(left + x, top + y);
            for (int c = 0; c < 3; ++c)
                out[c] = static_cast<std::uint8_t>(
                    std::min(255.0, (sums[c] + kPaper[c] * (count - alpha)) / count + 0.5));
        }
    }
}

}  // namespace

int sheetCommand(const apps::ParsedOptions& options) {
    const std::string output = pictureOutput(options);
    const auto& files = options.positional();
    const int columns = apps::wholeOption(options.value("--columns", "4"), "--columns", 1, 100);
    const int width = apps::wholeOption(options.value("--width", "320"), "--width", 8, 4096);
    const apps::Picture first = apps::readPng(files[0]);
    const int height = std::max(1, width * first.height / first.width);
    const int rows = (static_cast<int>(files.size()) + columns - 1) / columns;
    apps::Picture sheet(columns * (width + kGap) + kGap, rows * (height + kGap) + kGap);
    for (std::size_t i = 0; i < sheet.rgba.size(); ++i)
        sheet.rgba[i] = kPaper[i % 4];
    for (std::size_t i = 0; i < files.size(); ++i) {
        const int column = static_cast<int>(i) % columns;
        const int row = static_cast<int>(i) / columns;
        shrinkInto(i == 0 ? first : apps::readPng(files[i]), sheet, kGap + column * (width + kGap),
                   kGap + row * (height + kGap), width, height);
    }
    apps::writePng(output, sheet);
    return apps::kExitDone;
}

}  // namespace orvin::orvinex
