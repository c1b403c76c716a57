#include "toolkit/platform/Platform.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

namespace orvin::platform {

std::filesystem::path moduleFolder() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<void*>(&moduleFolder), &info) != 0 && info.dli_fname != nullptr) {
        std::error_code error;
        const auto path = std::filesystem::canonical(info.dli_fname, error);
        if (!error) return path.parent_path();
    }
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::filesystem::path(".") : program.parent_path();
}

std::vector<std::filesystem::path> fontFolders() {
    std::vector<std::filesystem::path> folders;
    const char* const home = std::getenv("HOME");
    if (const char* const data = std::getenv("XDG_DATA_HOME"); data != nullptr && *data != '\0')
        folders.push_back(std::filesystem::path(data) / "fonts");
    else if (home != nullptr)
        folders.push_back(std::filesystem::path(home) / ".local/share/fonts");
    if (home != nullptr) folders.push_back(std::filesystem::path(home) / ".fonts");
    folders.insert(folders.end(), {"/usr/local/share/fonts", "/usr/share/fonts"});
    return folders;
}

std::uint64_t freePhysicalMemory() {
    // MemAvailable counts reclaimable caches too: what a frame can really have.
    std::ifstream info("/proc/meminfo");
    std::string key;
    std::uint64_t kib = 0;
    while (info >> key >> kib) {
        if (key == "MemAvailable:") return kib * 1024;
        std::string unit;
        std::getline(info, unit);
    }
    const long pages = sysconf(_SC_AVPHYS_PAGES);
    const long size = sysconf(_SC_PAGESIZE);
    return pages > 0 && size > 0
               ? static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(size)
               : 0;
}

void preferLargePages([[maybe_unused]] void* memory, [[maybe_unused]] std::size_t bytes) {
#ifdef MADV_HUGEPAGE
    constexpr std::uintptr_t kPage = std::uintptr_t{2} << 20;
    const auto start = reinterpret_cast<std::uintptr_t>(memory);
    const std::uintptr_t first = (start + kPage - 1) / kPage * kPage;
    const std::uintptr_t last = (start + bytes) / kPage * kPage;
    if (first < last) madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
#endif
}

std::FILE* openTemporaryFile() {
    std::error_code error;
    const auto folder = std::filesystem::temp_directory_path(error);
    std::string name = ((error ? std::filesystem::path(".") : folder) / "orvinex-XXXXXX").string();
    const int descriptor = mkostemp(name.data(), O_CLOEXEC);
    if (descriptor < 0) return nullptr;
    unlink(name.c_str());
    std::FILE* file = fdopen(descriptor, "w+b");
    if (file == nullptr) close(descriptor);
    return file;
}

std::filesystem::path pathFromText(std::string_view text) {
    return text;
}

std::string textFromPath(const std::filesystem::path& path) {
    return path.native();
}

std::FILE* openFile(const std::filesystem::path& path, const char* mode) {
    return std::fopen(path.c_str(), mode);
}

int seek(std::FILE* file, std::uint64_t offset) {
    return fseeko(file, static_cast<off_t>(offset), SEEK_SET);
}

bool replaceFile(const std::filesystem::path& from, const std::filesystem::path& to) {
    // A file replaced keeps its permissions; the temporary one was made private.
    struct stat old {};
    if (stat(to.c_str(), &old) == 0) {
        chmod(from.c_str(), old.st_mode & 07777);
    } else {
        const mode_t mask = umask(0);
        umask(mask);
        chmod(from.c_str(), 0666 & ~mask);
    }
    const int descriptor = open(from.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor >= 0) {
        const bool flushed = fsync(descriptor) == 0;
        close(descriptor);
        if (!flushed) return false;
    }
    return std::rename(from.c_str(), to.c_str()) == 0;
}

}  // namespace orvin::platform
