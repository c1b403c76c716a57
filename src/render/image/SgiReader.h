// Reader of SGI pictures (Paul Haeberli, "The SGI Image File Format", version 1.00): one byte a
// channel, three or four channels, verbatim or run-length coded.
//
// Rows stay in the file's order, the bottom row first. The length table of a run-length file must
// be there but isn't needed: a row ends with its last pixel, or with its end mark, which leaves the
// rest of the row 0.
#pragma once

#include <cstdint>
#include <span>

#include "render/image/ImageBuffer.h"
#include "toolkit/Result.h"

namespace orvin {

/// Reads into `image`: kRgb for three channels, kRgba for four. -1 for what isn't such a file, is
/// cut short, or has no pixels; `image` is then of kind kNone. Nothing is allocated before the size
/// has been compared with what the bytes can hold; a file whose rows share their data may not swell
/// beyond 256 times its size (small pictures of up to 16 MiB aside). Throws std::bad_alloc.
Result readSgi(std::span<const std::uint8_t> bytes, ImageBuffer& image);

}  // namespace orvin
