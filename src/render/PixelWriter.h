// PixelWriter: stores colours as bytes.
#pragma once

#include <array>
#include <cstdint>

#include "render/Rgba.h"
#include "render/image/ImageBuffer.h"
#include "toolkit/Errors.h"

namespace orvin {

/// A channel as a byte: truncated value * 256, held in 0..255; NaN gives 0.
inline std::uint8_t channelToByte(float channel) {
    const float scaled = channel * 256.0F;
    if (!(scaled > 0.0F)) return 0;
    return scaled < 255.0F ? static_cast<std::uint8_t>(scaled) : std::uint8_t{255};
}

class PixelWriter {
  public:
    /// For an RGBA picture, which must outlive the writer. `unpremultiply`: colours come multiplied
    /// by alpha and are divided by it, where it isn't 0.
    PixelWriter(ImageBuffer& image, bool unpremultiply)
        : image_(image), pixels_(image.direct()), unpremultiply_(unpremultiply) {}

    /// Throws eBaseError 101 for a pixel that can't be written.
    void write(int x, int y, Rgba color) {
        if (unpremultiply_ && color[3] != 0.0F)
            for (std::size_t i = 0; i < 3; ++i)
                color[i] /= color[3];
        std::array<std::uint8_t, 4> bytes;
        for (std::size_t i = 0; i < 4; ++i)
            bytes[i] = channelToByte(color[i]);
        if (pixels_ != nullptr) {
            std::uint8_t* out = pixels_ + static_cast<std::size_t>(y) * image_.rowBytes() +
                                static_cast<std::size_t>(x) * bytes.size();
            for (std::size_t i = 0; i < bytes.size(); ++i)
                out[i] = bytes[i];
        } else if (image_.writePixel(x, y, bytes) != kSuccess) {
            throw kImageBufferFailed;
        }
    }

  private:
    ImageBuffer& image_;
    std::uint8_t* pixels_;  // null for a paged picture
    bool unpremultiply_;
};

}  // namespace orvin
