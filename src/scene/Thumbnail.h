// The thumbnail block of the word stream: "ThumbnailSize width height", then the pixels, top row
// first, behind "Thumbnail" (a line of hexadecimal digits per row, R, G, B) or "BinaryThumbnail"
// (raw bytes B, G, R, directly behind the key's line end and without line ends of their own).
//
// Streams that come from the other platform hold four bytes a pixel, of which the first is dropped
// and the others are R, G, B, in both forms.
#pragma once

#include <memory>

#include "scene/SceneStream.h"
#include "toolkit/Result.h"
#include "toolkit/twPicture.h"

namespace orvin {

enum class ThumbnailForm { kBinary, kText };

/// In pixels, as a stream names it ahead of the pixels.
struct ThumbnailSize {
    int width = 0;
    int height = 0;
};

/// Bytes of a stream row; a picture whose rows need more has no thumbnail form.
inline constexpr std::size_t kThumbnailRowLimit = kLineCapacity - 1;

/// Writes size, key and rows. 0 and nothing written for an empty picture; -1, before anything is
/// written, for rows beyond the limit (682 pixels as text, 1365 binary), and for a failed stream.
Result writeThumbnail(SceneStream& stream, const twPicture& picture, ThumbnailForm form);

/// Reads the values of "ThumbnailSize". -1 for missing numbers, a row beyond the limit, or a height
/// beyond kThumbnailRowLimit; a size of 0 or less passes, and has no pixels to read.
Result readThumbnailSize(SceneStream& stream, ThumbnailSize& size);

/// Reads the pixels behind "Thumbnail" or "BinaryThumbnail" into a 24-bit picture, for which memory
/// is only taken now: a size alone costs nothing. Null where the size is empty or its rows don't
/// fit, a row's digits are wrong or too few, or the input ends. Throws std::bad_alloc.
std::unique_ptr<twPicture> readThumbnail(SceneStream& stream, ThumbnailSize size,
                                         ThumbnailForm form, bool fromOtherPlatform);

}  // namespace orvin
