// Texture files by the extension of their name.
#pragma once

#include <string>
#include <string_view>

#include "render/image/ImageBuffer.h"
#include "toolkit/Result.h"

namespace orvin {

enum class ImageFormat { kSgi = 0, kTiff = 3, kTarga = 4, kShd = 5, kUnknown = 6 };

/// By what follows the last dot, case as it is: ".rgba", ".rgb", ".sgi"; ".tif", ".tiff"; ".tga",
/// ".targa"; ".shd". Everything else is unknown, ".TGA" too.
ImageFormat imageFormat(std::string_view path);

/// Loads a picture and gives it its path. Names of Targa files may hide SGI pictures. The other
/// formats are not read. -1 leaves `image` of kind kNone without a path. Throws std::bad_alloc.
Result loadImage(const std::string& path, ImageBuffer& image);

}  // namespace orvin
