#include "render/image/PictureOf.h"

#include <algorithm>
#include <vector>

namespace orvin {

namespace {

struct Range {
    int first;
    int last;
};

// The pixels of `size` that step i of `steps` covers, at least one.
Range covered(int i, int steps, int size) {
    const std::int64_t first = std::int64_t{i} * size / steps;
    const std::int64_t next = (std::int64_t{i} + 1) * size / steps;
    return {static_cast<int>(first), static_cast<int>(std::max(next - 1, first))};
}

}  // namespace

twPicture pictureOf(const SummedImage& image, int width, int height) {
    twPicture picture(width, height);
    std::vector<std::uint8_t> rgb(static_cast<std::size_t>(picture.width()) * 3);
    for (int y = 0; y < picture.height(); ++y) {
        const Range rows = covered(picture.height() - 1 - y, picture.height(), image.height());
        for (int x = 0; x < picture.width(); ++x) {
            const Range columns = covered(x, picture.width(), image.width());
            const auto mean = image.boxQuery(columns.first, rows.first, columns.last, rows.last);
            std::copy_n(mean.begin(), 3, &rgb[static_cast<std::size_t>(x) * 3]);
        }
        picture.writeRgbRow(y, rgb);
    }
    return picture;
}

}  // namespace orvin
