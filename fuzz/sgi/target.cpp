// Any bytes as a SGI picture. What is accepted must be a whole picture of a size that its bytes
// can hold, and goes through the texture filter.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>

#include "render/image/SgiReader.h"
#include "render/image/SummedImage.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    orvin::ImageBuffer image;
    if (orvin::readSgi(std::span(data, size), image) != orvin::kSuccess) {
        if (image.kind() != orvin::PixelKind::kNone || image.direct() != nullptr) std::abort();
        return 0;
    }
    const std::size_t bytes = image.rowBytes() * static_cast<std::size_t>(image.height());
    if (bytes == 0 || (bytes > 256 * size && bytes > 16 << 20)) std::abort();
    if (bytes > 1 << 20) return 0;
    const orvin::SummedImage summed(image);
    const double w = image.width();
    const double h = image.height();
    const auto colour = summed.sampleBox(w * 0.2, h * 0.3, w * 0.7, h);
    for (const float channel : colour)
        if (!(channel >= 0.0F && channel <= 1.0F)) std::abort();
    return 0;
}
