// Reader of Targa pictures (Truevision, "TGA File Format", version 2.0): 8, 24 or 32 bits a pixel,
// true colour or grey, run-length coded or not; 32 bits only with 8 bits of alpha.
//
// What differs from the format:
// - Rows stay in the file's order, whatever the origin bits of the descriptor say.
// - The length field of a colour map counts bytes, not entries; a file that has a colour map is
//   read from the wrong place.
// - A run-length packet's count is its low bits under the mask 95, so 1 to 32 or 65 to 96 pixels.
//   Packets of 33 to 64 and of 97 to 128 pixels, which other programs write, come out 32 shorter.
// - Packets end at the row's end: of a raw packet only the pixels up to there are read, of a run
//   the rest is dropped.
#pragma once

#include <cstdint>
#include <span>

#include "render/image/ImageBuffer.h"
#include "toolkit/Result.h"

namespace orvin {

/// Reads into `image`: kRgb for 8 and 24 bits, kRgba for 32. A picture whose alpha is 0 everywhere
/// becomes opaque. -1 for what isn't such a file, is cut short, or has no pixels; `image` is then
/// of kind kNone. Nothing is allocated before the size has been compared with what the bytes can
/// hold. Throws std::bad_alloc.
Result readTga(std::span<const std::uint8_t> bytes, ImageBuffer& image);

}  // namespace orvin
