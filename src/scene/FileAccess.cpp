#include "scene/FileAccess.h"

#include <cerrno>
#include <cstring>
#include <random>
#include <system_error>

#include "toolkit/platform/Platform.h"

namespace orvin {

namespace {

constexpr std::size_t kBufferSize = 512'000;

/// `path` with a link at its end followed: replacing must not turn the link into a file.
std::filesystem::path withoutLink(const std::filesystem::path& path) {
    std::error_code error;
    if (!std::filesystem::is_symlink(path, error)) return path;
    auto target = std::filesystem::weakly_canonical(path, error);
    return error ? path : target;
}

std::filesystem::path temporaryBeside(const std::filesystem::path& path) {
    std::random_device random;
    for (;;) {
        std::filesystem::path candidate = path;
        candidate += "." + std::to_string(random()) + ".tmp";
        std::error_code error;
        if (!std::filesystem::exists(candidate, error)) return candidate;
    }
}

}  // namespace

FileAccess::~FileAccess() {
    close();
}

Result FileAccess::fail(std::string_view what) {
    const int error = errno;
    failure_ = std::string(what) + " " + platform::textFromPath(path_);
    if (error != 0) failure_ += ": " + std::generic_category().message(error);
    return kFailure;
}

Result FileAccess::open(const std::filesystem::path& path, Mode mode) {
    close();
    path_ = path;
    failure_.clear();
    errno = 0;
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) {
        errno = EISDIR;
        return fail("can't open");
    }
    switch (mode) {
        case Mode::kRead:
            file_ = platform::openFile(path, "rb");
            break;
        case Mode::kAppend:
            file_ = platform::openFile(path, "ab");
            break;
        case Mode::kReplace:
            return openReplacement();
        case Mode::kUpdate:
            file_ = platform::openFile(path, "r+b");
            if (file_ == nullptr && errno == ENOENT) file_ = platform::openFile(path, "w+b");
            break;
    }
    if (file_ == nullptr) return fail(mode == Mode::kRead ? "can't open" : "can't write");
    std::setvbuf(file_, nullptr, _IOFBF, kBufferSize);
    return kSuccess;
}

Result FileAccess::openReplacement() {
    path_ = withoutLink(path_);
    std::error_code error;
    if (std::filesystem::exists(path_, error)) {
        const bool regular = std::filesystem::is_regular_file(path_, error);
        // A file that forbids writing must not be replaced behind its owner's back.
        file_ = platform::openFile(path_, regular ? "r+b" : "wb");
        if (file_ == nullptr) return fail("can't write");
        if (!regular) return kSuccess;
        std::fclose(file_);
        file_ = nullptr;
    }
    temporary_ = temporaryBeside(path_);
    file_ = platform::openFile(temporary_, "wb");
    if (file_ == nullptr) {
        temporary_.clear();
        return fail("can't write");
    }
    std::setvbuf(file_, nullptr, _IOFBF, kBufferSize);
    return kSuccess;
}

Result FileAccess::commit() {
    if (file_ == nullptr) return kFailure;
    errno = 0;
    bool written = std::ferror(file_) == 0 && std::fflush(file_) == 0;
    const int error = errno;
    written = std::fclose(file_) == 0 && written;
    file_ = nullptr;
    if (error != 0) errno = error;
    if (written && !temporary_.empty()) written = platform::replaceFile(temporary_, path_);
    const Result result = written ? kSuccess : fail("can't write");
    if (written) temporary_.clear();
    close();
    return result;
}

void FileAccess::close() {
    if (file_ != nullptr) std::fclose(file_);
    file_ = nullptr;
    std::error_code error;
    if (!temporary_.empty()) std::filesystem::remove(temporary_, error);
    temporary_.clear();
}

Result FileAccess::readLine(std::string& line, std::size_t capacity) {
    line.clear();
    int c = file_ != nullptr ? std::getc(file_) : EOF;
    if (c == EOF) return kEndOfInput;
    for (; c != EOF && c != '\n' && c != '\r'; c = std::getc(file_))
        if (line.size() < capacity) line.push_back(static_cast<char>(c));
    if (c == '\r') {
        c = std::getc(file_);
        if (c != '\n' && c != EOF) std::ungetc(c, file_);
    }
    return kSuccess;
}

Result FileAccess::readBig16(std::uint16_t& value) {
    std::uint8_t b[2];
    if (file_ == nullptr || std::fread(b, 1, 2, file_) != 2) return kFailure;
    value = static_cast<std::uint16_t>(b[0] << 8 | b[1]);
    return kSuccess;
}

Result FileAccess::readBig32(std::uint32_t& value) {
    std::uint16_t high = 0;
    std::uint16_t low = 0;
    if (readBig16(high) != kSuccess || readBig16(low) != kSuccess) return kFailure;
    value = std::uint32_t{high} << 16 | low;
    return kSuccess;
}

Result FileAccess::writeBig16(std::uint16_t value) {
    const std::uint8_t b[2] = {static_cast<std::uint8_t>(value >> 8),
                               static_cast<std::uint8_t>(value & 0xFF)};
    return file_ != nullptr && std::fwrite(b, 1, 2, file_) == 2 ? kSuccess : kFailure;
}

Result FileAccess::writeBig32(std::uint32_t value) {
    if (writeBig16(static_cast<std::uint16_t>(value >> 16)) != kSuccess) return kFailure;
    return writeBig16(static_cast<std::uint16_t>(value & 0xFFFF));
}

}  // namespace orvin
