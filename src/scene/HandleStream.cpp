#include "scene/HandleStream.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace orvin {

namespace {
constexpr std::size_t kLongestLine = 4096;  // that is read, its line end included
constexpr std::size_t kLeastGrowth = 4096;  // for a handle that starts without room
}  // namespace

HandleStream::~HandleStream() {
    if (input_ != nullptr) memory_.unlock(input_);
    if (output_ != nullptr) memory_.unlock(output_);
}

// ---- reading

Result HandleStream::openRead(Handle handle, std::size_t offset) {
    const std::size_t size = memory_.size(handle);
    if (offset > size) return kFailure;
    const void* const bytes = memory_.lock(handle);
    if (input_ != nullptr) memory_.unlock(input_);
    input_ = handle;
    inputBytes_ = {static_cast<const char*>(bytes), bytes != nullptr ? size : 0};
    next_ = std::min(offset, inputBytes_.size());
    reader().restart(static_cast<std::int64_t>(offset));
    return bytes != nullptr || size == 0 ? kSuccess : kFailure;
}

Chunk HandleStream::nextChunk() {
    const std::size_t start = next_;
    std::string_view line = inputBytes_.substr(start);
    const std::size_t lineEnd = line.find('\n');
    next_ = lineEnd == std::string_view::npos ? inputBytes_.size() : start + lineEnd + 1;
    line = inputBytes_.substr(start, next_ - start);
    const bool tooLong = line.size() > kLongestLine;
    return {line.substr(0, kLongestLine), static_cast<std::int64_t>(start), tooLong};
}

Result HandleStream::atEndMark() {
    next_ = inputBytes_.size();
    reader().restart(static_cast<std::int64_t>(next_));
    return kEndOfInput;
}

Result HandleStream::readBytes(std::span<std::uint8_t> bytes) {
    // Raw bytes know no lines: straight from the handle, then the line store starts anew.
    auto offset = static_cast<std::size_t>(reader().offset());
    if (reader().delimiterPending()) ++offset;
    if (offset > inputBytes_.size() || inputBytes_.size() - offset < bytes.size())
        return kEndOfInput;
    if (!bytes.empty()) std::memcpy(bytes.data(), inputBytes_.data() + offset, bytes.size());
    next_ = offset + bytes.size();
    reader().restart(static_cast<std::int64_t>(next_));
    return kSuccess;
}

// ---- writing

Result HandleStream::openWrite(Handle handle, std::size_t offset) {
    const std::size_t size = memory_.size(handle);
    if (offset > size) return kFailure;
    void* const bytes = memory_.lock(handle);
    if (output_ != nullptr) memory_.unlock(output_);
    output_ = handle;
    outputBytes_ = static_cast<char*>(bytes);
    outputSize_ = bytes != nullptr ? size : 0;
    used_ = offset;
    growthStep_ = size > offset ? size - offset : kLeastGrowth;
    return bytes != nullptr ? kSuccess : kFailure;
}

void HandleStream::makeRoom(std::size_t size) {
    const std::size_t room = outputSize_ - used_;
    if (size <= room) return;
    const std::size_t steps = (size - room + growthStep_ - 1) / growthStep_;
    const std::size_t newSize = outputSize_ + steps * growthStep_;
    memory_.unlock(output_);
    const bool grown = memory_.resize(output_, newSize);
    outputBytes_ = static_cast<char*>(memory_.lock(output_));
    if (!grown || outputBytes_ == nullptr) {
        setWriteFailed();
        throw std::bad_alloc();
    }
    outputSize_ = newSize;
}

void HandleStream::put(std::string_view bytes) {
    std::copy(bytes.begin(), bytes.end(), outputBytes_ + used_);
    used_ += bytes.size();
}

Result HandleStream::storeLine(std::string_view indentation, std::string_view line) {
    if (outputBytes_ == nullptr) return kFailure;
    makeRoom(indentation.size() + line.size() + 1);
    put(indentation);
    put(line);
    put("\n");
    return kSuccess;
}

Result HandleStream::writeBytes(std::span<const std::uint8_t> bytes) {
    if (outputBytes_ == nullptr) return kFailure;
    makeRoom(bytes.size() + 1);
    put({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    return kSuccess;
}

Result HandleStream::finish() {
    if (outputBytes_ == nullptr || writeFailed()) return kFailure;
    makeRoom(kEndOfStream.size() + 2);
    put(kEndOfStream);
    put("\n");
    outputBytes_[used_] = '\0';
    memory_.unlock(output_);
    const bool shrunk = memory_.resize(output_, used_ + 1);
    outputBytes_ = static_cast<char*>(memory_.lock(output_));
    if (shrunk) outputSize_ = used_ + 1;
    return kSuccess;
}

}  // namespace orvin
