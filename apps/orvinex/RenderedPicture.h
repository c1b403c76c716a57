// What the renderer made, as a picture of the programs.
#pragma once

#include "common/Png.h"
#include "render/image/ImageBuffer.h"

namespace orvin::orvinex {

/// The picture with its top row first. Throws Failure where it can't be read back.
apps::Picture uprightPicture(const ImageBuffer& image);

}  // namespace orvin::orvinex
