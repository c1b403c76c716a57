// What the renderer made, as a picture of the programs.
#pragma once

#include <array>

#include "common/Png.h"
#include "render/image/ImageBuffer.h"

namespace orvin::orvinex {

/// The picture with its top row first. Throws Failure where it can't be read back.
apps::Picture uprightPicture(const ImageBuffer& image);

/// Makes it opaque on `color` (red, green, blue), as the effect does where it keeps no alpha.
void paintBehind(apps::Picture& picture, const std::array<float, 3>& color);

}  // namespace orvin::orvinex
