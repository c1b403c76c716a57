// TextScanner: lines, words and numbers of a text file that is seen through a window.
//
// Lines end with LF (a CR before it is a blank), or with CR in files that have no LF. What is
// returned holds until the next call.
#pragma once

#include <cstring>
#include <string_view>

#include "interchange/ModelInput.h"

namespace orvin {

class TextScanner {
  public:
    explicit TextScanner(ModelInput& input);

    /// Once more from the start.
    void rewind() { place(0, 0); }

    int percent() const;  // how far it is

    // ---- characters

    bool atEnd() { return cursor_ == end_ && !more(cursor_); }
    bool atLineEnd() { return atEnd() || *cursor_ == lineEnd_; }
    bool atTokenEnd() { return atEnd() || isEnd(*cursor_); }
    bool isBlank(char c) const {
        return c == ' ' || c == '\t' || ((c == '\r' || c == '\v' || c == '\f') && c != lineEnd_);
    }
    /// The character `ahead` of the next one; a zero at the end of the file.
    char peek(std::ptrdiff_t ahead = 0) {
        while (end_ - cursor_ <= ahead)
            if (!more(cursor_)) return 0;
        return cursor_[ahead];
    }
    /// True where the character `ahead` belongs to the same token.
    bool isInToken(std::ptrdiff_t ahead) {
        peek(ahead);
        return end_ - cursor_ > ahead && !isEnd(cursor_[ahead]);
    }
    void skip() { ++cursor_; }  // a character that was seen
    void skipBlanks() {
        while (!atEnd() && isBlank(*cursor_))
            ++cursor_;
    }
    void skipToken() {
        while (!atTokenEnd())
            ++cursor_;
    }
    /// Skips the rest of the token; how many characters of it are `c`.
    int countInToken(char c) {
        int count = 0;
        do {
            for (; cursor_ != end_ && !isEnd(*cursor_); ++cursor_)
                count += *cursor_ == c ? 1 : 0;
        } while (cursor_ == end_ && more(cursor_));
        return count;
    }
    void skipLine();

    // ---- values

    /// What there is up to the next blank or the line's end, of any length.
    std::string_view token();

    /// The rest of the line without its end, which is skipped.
    std::string_view line();

    /// The number of the next token, which is skipped; 0 where it is none or not finite.
    double number();

  private:
    bool isEnd(char c) const {
        return static_cast<unsigned char>(c) <= ' ' && (isBlank(c) || c == lineEnd_);
    }
    bool hasLineFeed();
    bool more(const char*& keep);
    void place(std::size_t at, std::size_t count);

    ModelInput& input_;
    std::size_t start_ = 0;  // of the window in the file
    const char* begin_ = nullptr;
    const char* cursor_ = nullptr;
    const char* end_ = nullptr;
    char lineEnd_ = '\n';
};

}  // namespace orvin
