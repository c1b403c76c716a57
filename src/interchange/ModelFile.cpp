#include "interchange/ModelFile.h"

#include <string>

#include "scene/FileAccess.h"
#include "toolkit/platform/Platform.h"

namespace orvin {

void reportUnopened(const std::filesystem::path& path) {
    std::fprintf(stderr, "Cannot open '%s'.\n", platform::textFromPath(path).c_str());
}

Result writeModelFile(const std::filesystem::path& path, std::string_view writer,
                      const std::function<Result(std::FILE*)>& fill) {
    FileAccess file;
    if (file.open(path, FileAccess::Mode::kReplace) != kSuccess) {
        reportUnopened(path);
        return kFailure;
    }
    const Result filled = fill(file.file());
    if (filled != kSuccess && std::ferror(file.file()) == 0) return kFailure;
    if (filled == kSuccess && file.commit() == kSuccess) return kSuccess;
    std::fprintf(stderr, "%s: cannot write '%s'.\n", std::string(writer).c_str(),
                 platform::textFromPath(path).c_str());
    return kFailure;
}

}  // namespace orvin
