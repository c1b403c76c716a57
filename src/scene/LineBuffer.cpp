#include "scene/LineBuffer.h"

#include <algorithm>

#include "toolkit/Numbers.h"

namespace orvin {

namespace {

// Length of the part of `name` whose escaped copy keeps the limit.
std::size_t keptPartOfName(std::string_view name) {
    constexpr std::size_t kLast = kNameCapacity - 1;  // position kept for a NUL
    std::size_t position = 0;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const bool quote = name[i] == '"';
        if (quote) ++position;
        if (position >= kLast) return i;
        ++position;
    }
    return name.size();
}

bool readsBackBare(std::string_view value) {
    return value.front() != '"' && value.front() != '#' &&
           value.find_first_of(" \t\n\r") == std::string_view::npos;
}

}  // namespace

std::string quoteEscape(std::string_view text) {
    std::string escaped;
    for (const char c : text.substr(0, keptPartOfName(text))) {
        if (c == '"') escaped += '\\';
        escaped += c;
    }
    return escaped;
}

LineBuffer& LineBuffer::clear() {
    size_ = 0;
    overflowed_ = false;
    return *this;
}

LineBuffer& LineBuffer::text(std::string_view bytes) {
    const std::size_t room = bytes_.size() - size_;
    if (bytes.size() > room) {
        overflowed_ = true;
        bytes = bytes.substr(0, room);
    }
    std::copy(bytes.begin(), bytes.end(), bytes_.data() + size_);
    size_ += bytes.size();
    return *this;
}

LineBuffer& LineBuffer::character(char c) {
    return text({&c, 1});
}

LineBuffer& LineBuffer::number(double value) {
    if (bytes_.size() - size_ >= kMaxNumberText) {
        char* const start = bytes_.data() + size_;
        size_ += static_cast<std::size_t>(writeFixed(start, value) - start);
        return *this;
    }
    std::array<char, kMaxNumberText> digits;
    return text({digits.data(),
                 static_cast<std::size_t>(writeFixed(digits.data(), value) - digits.data())});
}

LineBuffer& LineBuffer::whole(long long value) {
    std::array<char, 24> digits;
    return text({digits.data(),
                 static_cast<std::size_t>(writeWhole(digits.data(), value) - digits.data())});
}

LineBuffer& LineBuffer::hex(std::span<const std::uint8_t> bytes) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    for (const std::uint8_t byte : bytes)
        character(kDigits[byte >> 4]).character(kDigits[byte & 15]);
    return *this;
}

LineBuffer& LineBuffer::quoted(std::string_view value) {
    const bool endsInBackslash = value.ends_with('\\');
    if (endsInBackslash && readsBackBare(value)) return text(value);
    character('"');
    for (std::size_t quote; (quote = value.find('"')) != std::string_view::npos;) {
        text(value.substr(0, quote)).text("\\\"");
        value.remove_prefix(quote + 1);
    }
    text(value);
    return text(endsInBackslash ? " \"" : "\"");
}

LineBuffer& LineBuffer::quotedName(std::string_view name) {
    return quoted(name.substr(0, keptPartOfName(name)));
}

}  // namespace orvin
