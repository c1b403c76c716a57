#include "vector/illustrator/AILineReader.h"

#include <algorithm>
#include <cstring>

#include "toolkit/platform/Platform.h"

namespace orvin {

namespace {

constexpr std::size_t kBufferSize = 10240;
constexpr std::string_view kLineEnds = "\r\n";

}  // namespace

AILineReader::AILineReader() : buffer_(kBufferSize) {}

Result AILineReader::openFile(const std::filesystem::path& path) {
    close();
    file_ = platform::openFile(path, "rb");
    if (file_ == nullptr) return kFailure;
    startOver();
    return kSuccess;
}

void AILineReader::openText(std::string_view text) {
    close();
    text_ = text;
    startOver();
}

void AILineReader::close() {
    if (file_ != nullptr) std::fclose(file_);
    file_ = nullptr;
    text_ = {};
    start_ = end_ = 0;
    atEnd_ = true;
}

void AILineReader::startOver() {
    start_ = end_ = 0;
    atEnd_ = false;
    refillBuffer();
}

std::size_t AILineReader::readBytes(std::span<char> room) {
    if (file_ != nullptr) return std::fread(room.data(), 1, room.size(), file_);
    const std::size_t count = text_.copy(room.data(), room.size());
    text_.remove_prefix(count);
    return count;
}

void AILineReader::refillBuffer() {
    if (atEnd_) return;
    std::memmove(buffer_.data(), buffer_.data() + start_, end_ - start_);
    end_ -= start_;
    start_ = 0;
    const std::size_t count = readBytes(std::span(buffer_).subspan(end_));
    end_ += count;
    atEnd_ = end_ < buffer_.size();
}

bool AILineReader::hasData() {
    if (start_ == end_) refillBuffer();
    return start_ < end_;
}

bool AILineReader::startsWith(std::string_view text) {
    if (unread().size() < text.size()) refillBuffer();
    return unread().starts_with(text);
}

bool AILineReader::findInBuffer(std::string_view text) {
    while (true) {
        const std::size_t found = unread().find(text);
        if (found != std::string_view::npos) {
            start_ += found;
            return true;
        }
        if (atEnd_) {
            start_ = end_;
            return false;
        }
        // It may have begun in the last bytes.
        start_ = end_ - std::min(end_ - start_, text.size() - 1);
        refillBuffer();
    }
}

bool AILineReader::readLine(std::string_view& line) {
    while (hasData() && kLineEnds.find(buffer_[start_]) != std::string_view::npos)
        ++start_;
    if (unread().size() < kLongestLine) refillBuffer();
    const std::string_view rest = unread().substr(0, kLongestLine);
    line = rest.substr(0, rest.find_first_of(kLineEnds));
    start_ += line.size();
    return !line.empty();
}

}  // namespace orvin
