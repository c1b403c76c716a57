// TextOutput: lines of text and numbers on their way to a file, through one block of memory.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string_view>
#include <vector>

#include "toolkit/Numbers.h"

namespace orvin {

class TextOutput {
  public:
    /// `lineEnd` is what endLine() writes; it must outlive this.
    TextOutput(std::FILE* file, std::string_view lineEnd);

    TextOutput& text(std::string_view bytes);
    TextOutput& character(char c) {
        makeRoom(1);
        block_[size_++] = c;
        return *this;
    }
    TextOutput& whole(long long value) {
        makeRoom(kMaxNumberText);
        return advance(writeWhole(next(), value));
    }
    /// With six decimals, as "%lf".
    TextOutput& fixed(double value) {
        makeRoom(kMaxNumberText);
        return advance(writeFixed(next(), value));
    }
    TextOutput& endLine() { return text(lineEnd_); }

    /// Hands everything to the file.
    void flush();

    /// True once anything couldn't be written.
    bool failed() const { return failed_; }

  private:
    char* next() { return block_.data() + size_; }
    TextOutput& advance(const char* end) {
        size_ = static_cast<std::size_t>(end - block_.data());
        return *this;
    }
    void makeRoom(std::size_t bytes) {
        if (block_.size() - size_ < bytes) flush();
    }

    std::FILE* file_;
    std::string_view lineEnd_;
    std::vector<char> block_;
    std::size_t size_ = 0;
    bool failed_ = false;
};

}  // namespace orvin
