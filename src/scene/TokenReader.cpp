#include "scene/TokenReader.h"

#include <algorithm>
#include <cstring>

namespace orvin {

namespace {

constexpr std::size_t kLongestToken = kLineCapacity - 1;

constexpr bool isSpace(char c) {
    constexpr std::uint64_t kSpaces = 1ULL << ' ' | 1ULL << '\t' | 1ULL << '\n' | 1ULL << '\r';
    const auto code = static_cast<unsigned char>(c);
    return code <= ' ' && (kSpaces >> code & 1) != 0;
}

std::string_view cut(const char* from, const char* to) {
    return {from, std::min(static_cast<std::size_t>(to - from), kLongestToken)};
}

}  // namespace

bool TokenReader::refill() {
    const Chunk chunk = source_.nextChunk();
    if (chunk.bytes.empty()) return false;
    begin_ = cursor_ = chunk.bytes.data();
    end_ = begin_ + chunk.bytes.size();
    offset_ = chunk.offset;
    closesTokens_ = chunk.closesTokens;
    return true;
}

void TokenReader::restart(std::int64_t offset) {
    begin_ = cursor_ = end_ = nullptr;
    offset_ = offset;
    closesTokens_ = false;
    delimiterPending_ = false;
}

Result TokenReader::next(std::string_view& token) {
    delimiterPending_ = false;
    for (;;) {
        while (cursor_ != end_ && isSpace(*cursor_))
            ++cursor_;
        if (cursor_ == end_) {
            if (!refill()) return kEndOfInput;
            continue;
        }
        if (*cursor_ != '#') break;
        skipComment();
    }
    if (*cursor_ == '"') return nextQuoted(token);

    const char* const start = cursor_;
    const char* cursor = start + 1;
    while (cursor != end_ && !isSpace(*cursor))
        ++cursor;
    cursor_ = cursor;
    if (cursor == end_) return collectPlain(start, token);
    token = cut(start, cursor);
    ++cursor_;  // its delimiter
    return kSuccess;
}

void TokenReader::skipComment() {
    do {
        cursor_ = std::find_if(cursor_, end_, [](char c) { return c == '\n' || c == '\r'; });
        if (cursor_ != end_ || closesTokens_) return;
    } while (refill());
}

Result TokenReader::nextQuoted(std::string_view& token) {
    const char* const start = ++cursor_;
    const auto* const close =
        static_cast<const char*>(std::memchr(start, '"', static_cast<std::size_t>(end_ - start)));
    if (close == nullptr || (close != start && close[-1] == '\\'))
        return collectQuoted(start, token);
    token = cut(start, close);
    cursor_ = close + 1;
    delimiterPending_ = true;
    return kSuccess;
}

void TokenReader::collect(const char* from, const char* to) {
    const std::size_t size =
        std::min(static_cast<std::size_t>(to - from), kLongestToken - collectedSize_);
    std::copy(from, from + size, collected_.data() + collectedSize_);
    collectedSize_ += size;
}

// A plain token that reaches the end of its chunk.
Result TokenReader::collectPlain(const char* start, std::string_view& token) {
    collectedSize_ = 0;
    collect(start, end_);
    while (!closesTokens_ && refill()) {
        cursor_ = std::find_if(begin_, end_, isSpace);
        collect(begin_, cursor_);
        if (cursor_ == end_) continue;
        ++cursor_;
        break;
    }
    token = collected();
    return kSuccess;
}

// A quoted token that holds escaped quotes or reaches the end of its chunk. A backslash is held
// back until the byte behind it is known, in whatever chunk that is.
Result TokenReader::collectQuoted(const char* start, std::string_view& token) {
    collectedSize_ = 0;
    cursor_ = start;
    bool backslash = false;
    constexpr std::string_view kBackslash = "\\";
    const auto putBackslash = [&] { collect(kBackslash.data(), kBackslash.data() + 1); };
    bool more = cursor_ != end_ || (!closesTokens_ && refill());
    while (more) {
        const char c = *cursor_++;
        if (c == '"' && !backslash) {
            delimiterPending_ = true;
            break;
        }
        if (backslash && c != '"') putBackslash();
        backslash = c == '\\';
        if (!backslash) collect(&c, &c + 1);
        more = cursor_ != end_ || (!closesTokens_ && refill());
    }
    if (backslash) putBackslash();
    token = collected();
    return kSuccess;
}

std::size_t TokenReader::read(std::span<std::uint8_t> bytes) {
    if (delimiterPending_ && hasMore()) ++cursor_;
    delimiterPending_ = false;
    std::size_t done = 0;
    while (done < bytes.size() && hasMore()) {
        const std::size_t size =
            std::min(bytes.size() - done, static_cast<std::size_t>(end_ - cursor_));
        std::memcpy(bytes.data() + done, cursor_, size);
        cursor_ += size;
        done += size;
    }
    return done;
}

}  // namespace orvin
