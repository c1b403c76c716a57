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

/// Bytes of a stream row; a picture whose rows need more has no thumbnail form.
inline constexpr std::size_t kThumbnailRowLimit = kLineCapacity - 1;

/// Writes size, key and rows. 0 and nothing written for an empty picture; -1, before anything is
/// written, for rows beyond the limit (682 pixels as text, 1365 binary), and for a failed stream.
Result writeThumbnail(SceneStream& stream, const twPicture& picture, ThumbnailForm form);

/// Reads the values of "ThumbnailSize" into a black 24-bit picture; an empty one for a size of 0 or
/// less. -1 for missing numbers, a row beyond the limit, or a height beyond kThumbnailRowLimit.
Result readThumbnailSize(SceneStream& stream, std::unique_ptr<twPicture>& picture);

/// Reads the pixels behind "Thumbnail" or "BinaryThumbnail". -1 where the picture is missing or
/// empty, a row's digits are wrong or too few, or the input ends; rows read before that stay.
Result readThumbnail(SceneStream& stream, twPicture* picture, ThumbnailForm form,
                     bool fromOtherPlatform);

}  // namespace orvin
