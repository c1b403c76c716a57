#include "scene/LocateImage.h"

#include <filesystem>
#include <string_view>
#include <system_error>

#include "toolkit/Questions.h"
#include "toolkit/platform/Platform.h"

namespace orvin {

std::string gLastImageFolder;

namespace {

constexpr std::size_t kFolderLimit = 259;
constexpr std::string_view kImagePattern = "*.rgba;*.rgb;*.sgi;*.tga;*.targa";

std::string_view fileNameOf(std::string_view path) {
    const std::size_t divider = path.find_last_of("/\\:");
    return divider == std::string_view::npos ? path : path.substr(divider + 1);
}

}  // namespace

std::optional<std::string> locateImage(const std::string& path) {
    const std::filesystem::path module = platform::moduleFolder();
    const std::filesystem::path name = platform::pathFromText(fileNameOf(path));
    const std::filesystem::path folders[] = {platform::pathFromText(gLastImageFolder),
                                             module / "Tarnwick Environments",
                                             module / "Tarnwick Maps"};
    for (const auto& folder : folders) {
        std::error_code error;  // a folder out of reach is one without the file
        if (folder.empty() || name.empty()) continue;
        const auto candidate = folder / name;
        if (std::filesystem::is_regular_file(candidate, error))
            return platform::textFromPath(candidate);
    }
    const auto picked = questions().openFile("Please locate image: " + path, kImagePattern);
    if (!picked) {
        questions().showMessage("Unable to open image: " + path, false);
        return std::nullopt;
    }
    const std::string folder = platform::textFromPath(picked->parent_path());
    if (folder.size() <= kFolderLimit) gLastImageFolder = folder;
    return platform::textFromPath(*picked);
}

}  // namespace orvin
