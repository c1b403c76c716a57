#include "orvinex/RenderedPicture.h"

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

}  // namespace orvin::orvinex
