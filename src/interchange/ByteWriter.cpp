#include "interchange/ByteWriter.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orvin {

void ByteWriter::f32(double value) {
    constexpr auto kLargest = static_cast<double>(std::numeric_limits<float>::max());
    const double held = std::isnan(value) ? 0.0 : std::clamp(value, -kLargest, kLargest);
    u32(std::bit_cast<std::uint32_t>(static_cast<float>(held)));
}

void ByteWriter::text(std::string_view text) {
    text = text.substr(0, text.find('\0'));
    bytes_.insert(bytes_.end(), text.begin(), text.end());
    bytes_.insert(bytes_.end(), 2 - text.size() % 2, 0);
}

std::size_t ByteWriter::beginChunk(std::uint32_t id) {
    u32(id);
    u32(0);
    return bytes_.size();
}

void ByteWriter::endChunk(std::size_t start) {
    endSized(start, 4);
}

std::size_t ByteWriter::beginSubChunk(std::uint32_t id) {
    u32(id);
    u16(0);
    return bytes_.size();
}

void ByteWriter::endSubChunk(std::size_t start) {
    endSized(start, 2);
}

void ByteWriter::endSized(std::size_t start, std::size_t sizeBytes) {
    const std::uint64_t size = bytes_.size() - start;
    if (size >> (8 * sizeBytes) != 0) tooLarge_ = true;
    for (std::size_t i = 1; i <= sizeBytes; ++i)
        bytes_[start - i] = static_cast<std::uint8_t>(size >> (8 * (i - 1)));
    if (size % 2 != 0) bytes_.push_back(0);
}

bool ByteWriter::writeTo(std::FILE* file) const {
    return std::fwrite(bytes_.data(), 1, bytes_.size(), file) == bytes_.size();
}

}  // namespace orvin
