#include "render/image/ImageLoad.h"

#include "render/image/FileBytes.h"
#include "render/image/SgiReader.h"
#include "render/image/TgaReader.h"
#include "toolkit/platform/Platform.h"

namespace orvin {

ImageFormat imageFormat(std::string_view path) {
    const std::size_t dot = path.rfind('.');
    if (dot == std::string_view::npos) return ImageFormat::kUnknown;
    const std::string_view extension = path.substr(dot);
    if (extension == ".rgba" || extension == ".rgb" || extension == ".sgi")
        return ImageFormat::kSgi;
    if (extension == ".tif" || extension == ".tiff") return ImageFormat::kTiff;
    if (extension == ".tga" || extension == ".targa") return ImageFormat::kTarga;
    if (extension == ".shd") return ImageFormat::kShd;
    return ImageFormat::kUnknown;
}

Result loadImage(const std::string& path, ImageBuffer& image) {
    image = ImageBuffer();
    const ImageFormat format = imageFormat(path);
    if (format != ImageFormat::kSgi && format != ImageFormat::kTarga) return kFailure;
    const auto bytes = readWholeFile(platform::pathFromText(path));
    if (!bytes) return kFailure;
    Result result = format == ImageFormat::kTarga ? readTga(*bytes, image) : kFailure;
    if (result != kSuccess) result = readSgi(*bytes, image);
    if (result == kSuccess) image.setPath(path);
    return result;
}

}  // namespace orvin
