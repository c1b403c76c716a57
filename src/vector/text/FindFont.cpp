#include "vector/text/FindFont.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "toolkit/Ascii.h"
#include "toolkit/platform/Platform.h"
#include "vector/font/FontFile.h"

namespace orvin {
namespace {

// A folder tree that holds more isn't one of fonts.
constexpr int kMostEntries = 100000;

// In the order of preference.
constexpr std::array<std::string_view, 9> kPlainFonts = {
    "arial.ttf",    "liberationsans-regular.ttf", "dejavusans.ttf", "notosans-regular.ttf",
    "freesans.ttf", "opensans-regular.ttf",       "verdana.ttf",    "segoeui.ttf",
    "vera.ttf"};

struct Installed {
    std::string name;  // of the file, in lower case
    std::filesystem::path path;
};

// TrueType first, then by name; of one name the user's own first.
std::vector<Installed> installedFonts() {
    namespace fs = std::filesystem;
    std::vector<Installed> fonts;
    int entries = 0;
    for (const fs::path& folder : platform::fontFolders()) {
        std::error_code error;
        fs::recursive_directory_iterator at(folder, fs::directory_options::skip_permission_denied,
                                            error);
        for (; !error && at != fs::recursive_directory_iterator() && ++entries < kMostEntries;
             at.increment(error)) {
            const std::string name = platform::textFromPath(at->path().filename());
            std::error_code unknown;
            if (isFontFileName(name) && at->is_regular_file(unknown))
                fonts.push_back({lowerCase(name), at->path()});
        }
    }
    std::stable_sort(fonts.begin(), fonts.end(), [](const Installed& a, const Installed& b) {
        const bool aType1 = !a.name.ends_with(".ttf");
        const bool bType1 = !b.name.ends_with(".ttf");
        return aType1 != bType1 ? bType1 : a.name < b.name;
    });
    return fonts;
}

std::filesystem::path pathOf(const std::vector<Installed>& fonts, std::string_view name) {
    const auto found = std::find_if(fonts.begin(), fonts.end(),
                                    [name](const Installed& font) { return font.name == name; });
    return found != fonts.end() ? found->path : std::filesystem::path();
}

}  // namespace

std::filesystem::path findInstalledFont(std::string_view fileName) {
    return pathOf(installedFonts(), lowerCase(fileName));
}

std::filesystem::path findDefaultFont() {
    const std::vector<Installed> fonts = installedFonts();
    for (const std::string_view name : kPlainFonts)
        if (std::filesystem::path path = pathOf(fonts, name); !path.empty()) return path;
    return fonts.empty() ? std::filesystem::path() : fonts.front().path;
}

}  // namespace orvin
