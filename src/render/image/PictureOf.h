// Small pictures of textures, for bins and image lists.
#pragma once

#include "render/image/SummedImage.h"
#include "toolkit/twPicture.h"

namespace orvin {

/// Size of the picture that stands for an image file.
inline constexpr int kImagePictureWidth = 37;
inline constexpr int kImagePictureHeight = 32;

/// The image drawn into all of a 24-bit picture, each pixel the mean of what it covers. The image's
/// row 0 is the picture's bottom row; alpha is left out.
twPicture pictureOf(const SummedImage& image, int width = kImagePictureWidth,
                    int height = kImagePictureHeight);

}  // namespace orvin
