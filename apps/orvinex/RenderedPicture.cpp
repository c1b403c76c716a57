#include "orvinex/RenderedPicture.h"

#include <algorithm>

#include "common/Options.h"

namespace orvin::orvinex {

apps::Picture uprightPicture(const ImageBuffer& image) {
    apps::Picture picture(image.width(), image.height());
    for (int y = 0; y < image.height(); ++y) {
        // The renderer's row 0 is the bottom one.
        std::span<std::uint8_t> row(picture.pixel(0, image.height() - 1 - y), image.rowBytes());
        if (image.readRow(y, row) != kSuccess)
            throw apps::Failure("the rendered picture can't be read back from its temporary file");
    }
    return picture;
}

void paintBehind(apps::Picture& picture, const std::array<float, 3>& color) {
    for (std::size_t i = 0; i + 3 < picture.rgba.size(); i += 4) {
        const double alpha = picture.rgba[i + 3] / 255.0;
        for (std::size_t c = 0; c < 3; ++c) {
            const double behind = static_cast<double>(color[c]) * (1.0 - alpha) * 255.0;
            const double mixed = picture.rgba[i + c] * alpha + behind;
            picture.rgba[i + c] = static_cast<std::uint8_t>(std::clamp(mixed, 0.0, 255.0));
        }
        picture.rgba[i + 3] = 255;
    }
}

}  // namespace orvin::orvinex
