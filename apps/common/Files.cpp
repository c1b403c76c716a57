#include "common/Files.h"

#include "common/Options.h"
#include "toolkit/Numbers.h"
#include "toolkit/platform/Platform.h"

#include <cstdio>
#include <memory>

namespace orvin::apps {
namespace {

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

constexpr std::size_t kBlock = std::size_t{1} << 20;
constexpr std::size_t kMaxFile = std::size_t{1} << 31;

}  // namespace

std::vector<std::uint8_t> readFile(const std::filesystem::path& path) {
    const File file(platform::openFile(path, "rb"));
    std::error_code error;
    if (file == nullptr || std::filesystem::is_directory(path, error))
        throw Failure(path.string() + ": can't be opened");
    std::vector<std::uint8_t> bytes;
    for (;;) {
        const std::size_t used = bytes.size();
        if (used >= kMaxFile) throw Failure(path.string() + ": larger than 2 GB");
        bytes.resize(used + kBlock);
        const std::size_t count = std::fread(bytes.data() + used, 1, kBlock, file.get());
        bytes.resize(used + count);
        if (count < kBlock) break;
    }
    if (std::ferror(file.get()) != 0) throw Failure(path.string() + ": can't be read");
    return bytes;
}

std::string readText(const std::filesystem::path& path) {
    const std::vector<std::uint8_t> bytes = readFile(path);
    return std::string(bytes.begin(), bytes.end());
}

void makeFolderOf(const std::filesystem::path& path) {
    std::error_code error;
    if (path.has_parent_path()) std::filesystem::create_directories(path.parent_path(), error);
}

void writeFile(const std::filesystem::path& path, std::span<const std::uint8_t> bytes) {
    std::error_code error;
    makeFolderOf(path);
    std::filesystem::path temporary = path;
    temporary += ".part";
    bool written = false;
    {
        File file(platform::openFile(temporary, "wb"));
        if (file == nullptr) throw Failure(path.string() + ": can't be written");
        written = std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size();
        written = std::fclose(file.release()) == 0 && written;
    }
    if (written && platform::replaceFile(temporary, path)) return;
    std::filesystem::remove(temporary, error);
    throw Failure(path.string() + ": can't be written");
}

void writeText(const std::filesystem::path& path, std::string_view text) {
    std::vector<std::uint8_t> bytes(text.begin(), text.end());
    writeFile(path, bytes);
}

FramePattern::FramePattern(std::string_view pattern) {
    std::string* part = &before_;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (pattern[i] != '%') {
            part->push_back(pattern[i]);
            continue;
        }
        ++i;
        if (i < pattern.size() && pattern[i] == '%') {
            part->push_back('%');
            continue;
        }
        int digits = 0;
        if (i < pattern.size() && pattern[i] == '0') ++i;
        if (i < pattern.size() && pattern[i] >= '1' && pattern[i] <= '9')
            digits = pattern[i++] - '0';
        if (i >= pattern.size() || pattern[i] != 'd' || numbered_)
            throw UsageError("\"" + std::string(pattern) +
                             "\": a file pattern has one number, like %d or %04d");
        numbered_ = true;
        digits_ = digits;
        part = &after_;
    }
}

std::filesystem::path FramePattern::path(int frame) const {
    if (!numbered_) return before_;
    char text[24];
    std::string number(text, writeWhole(text, frame < 0 ? -static_cast<long long>(frame) : frame));
    const std::size_t width =
        static_cast<std::size_t>(digits_) - (frame < 0 && digits_ > 0 ? 1 : 0);
    if (number.size() < width) number.insert(0, width - number.size(), '0');
    if (frame < 0) number.insert(0, 1, '-');
    return before_ + number + after_;
}

}  // namespace orvin::apps
