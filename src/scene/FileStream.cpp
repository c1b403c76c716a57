#include "scene/FileStream.h"

#include <algorithm>
#include <cstring>

namespace orvin {

namespace {
constexpr std::size_t kReadBlock = 4095;
constexpr std::size_t kWriteBuffer = 64 * 1024;
}  // namespace

FileStream::FileStream(Persistent* root, std::FILE* input, std::FILE* output, Files ownership)
    : SceneStream(root), input_(input), output_(output), ownership_(ownership) {
    if (input_ != nullptr) readBuffer_.resize(kReadBlock);
    if (output_ != nullptr) writeBuffer_.resize(kWriteBuffer);
}

FileStream::~FileStream() {
    close();
    if (ownership_ == Files::kOwn && input_ != nullptr) std::fclose(input_);
}

Chunk FileStream::nextChunk() {
    if (input_ == nullptr) return {};
    const std::int64_t offset = reader().offset();
    const std::size_t size = std::fread(readBuffer_.data(), 1, readBuffer_.size(), input_);
    return {{readBuffer_.data(), size}, offset, false};
}

Result FileStream::readBytes(std::span<std::uint8_t> bytes) {
    return reader().read(bytes) == bytes.size() ? kSuccess : kFailure;
}

Result FileStream::storeLine(std::string_view indentation, std::string_view line) {
    if (output_ == nullptr) return kFailure;
    put(indentation);
    put(line);
    put("\n");
    return writeFailed() ? kFailure : kSuccess;
}

Result FileStream::writeBytes(std::span<const std::uint8_t> bytes) {
    if (output_ == nullptr) return kFailure;
    put({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    return writeFailed() ? kFailure : kSuccess;
}

void FileStream::put(std::string_view bytes) {
    while (!bytes.empty()) {
        if (writeSize_ == writeBuffer_.size()) writeOut();
        const std::size_t size = std::min(bytes.size(), writeBuffer_.size() - writeSize_);
        std::memcpy(writeBuffer_.data() + writeSize_, bytes.data(), size);
        writeSize_ += size;
        bytes.remove_prefix(size);
    }
}

void FileStream::writeOut() {
    if (std::fwrite(writeBuffer_.data(), 1, writeSize_, output_) != writeSize_) setWriteFailed();
    writeSize_ = 0;
}

Result FileStream::flush() {
    if (output_ != nullptr) {
        writeOut();
        if (std::fflush(output_) != 0) setWriteFailed();
    }
    return writeFailed() ? kFailure : kSuccess;
}

Result FileStream::close() {
    flush();
    if (output_ != nullptr && ownership_ == Files::kOwn && std::fclose(output_) != 0)
        setWriteFailed();
    output_ = nullptr;
    return writeFailed() ? kFailure : kSuccess;
}

}  // namespace orvin
