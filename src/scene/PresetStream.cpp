#include "scene/PresetStream.h"

#include <cstdio>
#include <string>

namespace orvin {

namespace {

// The text of a string literal, up to the first line end.
std::string sourceText(std::string_view text) {
    std::string escaped;
    for (const char c : text.substr(0, text.find_first_of("\r\n"))) {
        if (c == '"' || c == '\\') escaped += '\\';
        escaped += c;
    }
    return escaped;
}

}  // namespace

Chunk PresetStream::nextChunk() {
    if (strings_ == nullptr || *strings_ == nullptr || **strings_ == '\0') return {};
    return {*strings_++, 0, true};
}

Result PresetStream::readBytes(std::span<std::uint8_t>) {
    return kFailure;
}

Result PresetStream::writeBytes(std::span<const std::uint8_t>) {
    return kFailure;
}

Result PresetStream::storeLine(std::string_view indentation, std::string_view line) {
    const std::string source = std::string(indentation) + sourceText(line);
    return std::printf("\"%s\",\n", source.c_str()) < 0 ? kFailure : kSuccess;
}

Result PresetStream::putAuxLine() {
    const std::string_view text = line().view();
    const bool written = std::fwrite(text.data(), 1, text.size(), stderr) == text.size();
    line().clear();
    return written ? kSuccess : kFailure;
}

}  // namespace orvin
