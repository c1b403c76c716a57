// Reads a Type 1 font as the reader sees it: tokens that white space divides, and raw bytes.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "toolkit/Numbers.h"

namespace orvin {

class Type1Scanner {
  public:
    explicit Type1Scanner(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    bool atEnd() const { return at_ == bytes_.size(); }
    std::size_t position() const { return at_; }

    /// The next token; takes the one blank behind it too, so that raw bytes may follow. False at
    /// the end. Valid as long as the bytes are.
    bool next(std::string_view& token) {
        while (at_ < bytes_.size() && isBlank(bytes_[at_]))
            ++at_;
        const std::size_t start = at_;
        while (at_ < bytes_.size() && !isBlank(bytes_[at_]))
            ++at_;
        token = text(start, at_);
        if (!atEnd()) ++at_;
        return !token.empty();
    }

    /// The next token; empty at the end.
    std::string_view next() {
        std::string_view token;
        next(token);
        return token;
    }

    /// The next token as a number; 0 where it is none.
    int nextWhole() {
        int value = 0;
        return readWhole(next(), value) ? value : 0;
    }

    /// `count` bytes, fewer at the end, none for a count below 0.
    std::span<const std::uint8_t> take(int count) {
        const std::size_t left = bytes_.size() - at_;
        const auto size = std::min(left, static_cast<std::size_t>(std::max(count, 0)));
        at_ += size;
        return bytes_.subspan(at_ - size, size);
    }

    /// Up to the next CR or LF.
    std::string_view line() {
        const std::size_t start = at_;
        while (at_ < bytes_.size() && bytes_[at_] != '\r' && bytes_[at_] != '\n')
            ++at_;
        return text(start, at_);
    }

  private:
    static bool isBlank(std::uint8_t c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
    std::string_view text(std::size_t start, std::size_t end) const {
        return {reinterpret_cast<const char*>(bytes_.data()) + start, end - start};
    }

    std::span<const std::uint8_t> bytes_;
    std::size_t at_ = 0;
};

}  // namespace orvin
