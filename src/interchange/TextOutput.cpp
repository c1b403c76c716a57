#include "interchange/TextOutput.h"

#include <algorithm>
#include <cstring>

namespace orvin {

namespace {

constexpr std::size_t kBlockSize = 256 * 1024;

}  // namespace

TextOutput::TextOutput(std::FILE* file, std::string_view lineEnd)
    : file_(file), lineEnd_(lineEnd), block_(kBlockSize) {}

TextOutput& TextOutput::text(std::string_view bytes) {
    while (!bytes.empty()) {
        makeRoom(1);
        const std::size_t n = std::min(bytes.size(), block_.size() - size_);
        std::memcpy(block_.data() + size_, bytes.data(), n);
        size_ += n;
        bytes.remove_prefix(n);
    }
    return *this;
}

void TextOutput::flush() {
    if (std::fwrite(block_.data(), 1, size_, file_) != size_) failed_ = true;
    size_ = 0;
}

}  // namespace orvin
