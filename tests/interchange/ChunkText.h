// Files of chunks, put together by hand: each helper gives the bytes of its argument, big-endian.
#pragma once

#include <bit>
#include <cstdint>
#include <string>

#include "interchange/ByteReader.h"

namespace orvin {

inline std::string u32(std::uint64_t value) {
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8)
        text += static_cast<char>(value >> shift & 0xFFU);
    return text;
}
inline std::string u16(int value) {
    return u32(static_cast<std::uint64_t>(value & 0xFFFF)).substr(2);
}
inline std::string f32(double value) {
    return u32(std::bit_cast<std::uint32_t>(static_cast<float>(value)));
}
inline std::string f64(double value) {
    const auto bits = std::bit_cast<std::uint64_t>(value);
    return u32(bits >> 32) + u32(bits & 0xFFFFFFFFU);
}
inline std::string text(std::string_view words) {
    return std::string(words) + std::string(words.size() % 2 == 0 ? 2 : 1, '\0');
}
inline std::string padded(std::string content) {
    if (content.size() % 2 != 0) content += '\0';
    return content;
}
inline std::string chunk(const std::string& name, const std::string& content) {
    return name + u32(content.size()) + padded(content);
}
inline std::string subChunk(const std::string& name, const std::string& content) {
    return name + u16(static_cast<int>(content.size())) + padded(content);
}
inline std::string form(const std::string& type, const std::string& content) {
    return chunk("FORM", type + content);
}

}  // namespace orvin
