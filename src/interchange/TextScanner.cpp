#include "interchange/TextScanner.h"

#include <cmath>

#include "toolkit/Numbers.h"

namespace orvin {

TextScanner::TextScanner(ModelInput& input) : input_(input) {
    if (!hasLineFeed()) lineEnd_ = '\r';
    rewind();
}

bool TextScanner::hasLineFeed() {
    for (std::size_t at = 0; at < input_.size();) {
        const Bytes bytes = input_.look(at, 1);
        if (std::memchr(bytes.data(), '\n', bytes.size()) != nullptr) return true;
        at += bytes.size();
    }
    return false;
}

int TextScanner::percent() const {
    const std::size_t at = start_ + static_cast<std::size_t>(cursor_ - begin_);
    return static_cast<int>(100.0 * static_cast<double>(at) / static_cast<double>(input_.size()));
}

/// Moves the window to `at`, where the cursor then stands.
void TextScanner::place(std::size_t at, std::size_t count) {
    const Bytes bytes = input_.look(at, count);
    start_ = at;
    begin_ = cursor_ = reinterpret_cast<const char*>(bytes.data());
    end_ = begin_ + bytes.size();
}

/// Gets more text behind what there is from `keep` on, which moves; so does the cursor. False at
/// the end of the file.
bool TextScanner::more(const char*& keep) {
    const auto kept = static_cast<std::size_t>(end_ - keep);
    const std::size_t at = start_ + static_cast<std::size_t>(keep - begin_);
    if (at + kept == input_.size()) return false;
    const std::ptrdiff_t before = cursor_ - keep;
    place(at, kept + 1);
    keep = begin_;
    cursor_ = begin_ + before;
    return true;
}

void TextScanner::skipLine() {
    while (!atEnd()) {
        const auto* const stop = static_cast<const char*>(
            std::memchr(cursor_, lineEnd_, static_cast<std::size_t>(end_ - cursor_)));
        cursor_ = stop != nullptr ? stop + 1 : end_;
        if (stop != nullptr) return;
    }
}

std::string_view TextScanner::token() {
    skipBlanks();
    const char* start = cursor_;
    do {
        while (cursor_ != end_ && !isEnd(*cursor_))
            ++cursor_;
    } while (cursor_ == end_ && more(start));
    return {start, static_cast<std::size_t>(cursor_ - start)};
}

std::string_view TextScanner::line() {
    const char* start = cursor_;
    for (;;) {
        const auto* const stop = static_cast<const char*>(
            std::memchr(cursor_, lineEnd_, static_cast<std::size_t>(end_ - cursor_)));
        cursor_ = stop != nullptr ? stop : end_;
        if (stop != nullptr || !more(start)) break;
    }
    const std::string_view line(start, static_cast<std::size_t>(cursor_ - start));
    if (cursor_ != end_) ++cursor_;
    return line;
}

double TextScanner::number() {
    constexpr std::ptrdiff_t kAhead = 8;  // what may decide whether a number goes on
    skipBlanks();
    double value = 0.0;
    for (;;) {
        const char* const after = scanDouble(cursor_, end_, value);
        if (end_ - (after != nullptr ? after : cursor_) >= kAhead || !more(cursor_)) {
            if (after != nullptr) cursor_ = after;
            break;
        }
        value = 0.0;
    }
    skipToken();
    return std::isfinite(value) ? value : 0.0;
}

}  // namespace orvin
