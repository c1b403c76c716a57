// AILineReader: the lines of Illustrator art, through a window that slides over files of any size.
//
// A line ends at CR or LF, and empty ones are passed over, so all three kinds of line end are one.
// A line has at most 259 characters: what is longer goes on as the next line.
#pragma once

#include <cstdio>
#include <filesystem>
#include <span>
#include <string_view>
#include <vector>

#include "toolkit/Result.h"

namespace orvin {

class AILineReader {
  public:
    static constexpr std::size_t kLongestLine = 259;

    AILineReader();
    ~AILineReader() { close(); }
    AILineReader(const AILineReader&) = delete;
    AILineReader& operator=(const AILineReader&) = delete;

    /// Starts at the first byte. -1 where the file can't be opened.
    Result openFile(const std::filesystem::path& path);
    /// The same over bytes in memory, which must outlive the reading.
    void openText(std::string_view text);
    void close();

    /// Whether a byte is left.
    bool hasData();

    /// Whether the unread bytes begin with `text`, of at most 259 bytes.
    bool startsWith(std::string_view text);

    /// Goes on to where `text` (of at most 259 bytes) stands next, and on it. False where it
    /// doesn't come any more: nothing is left then.
    bool findInBuffer(std::string_view text);

    /// The next line that isn't empty, without its end; holds until the next call. False at the
    /// end.
    bool readLine(std::string_view& line);

  private:
    std::string_view unread() const { return {buffer_.data() + start_, end_ - start_}; }
    void startOver();
    void refillBuffer();
    std::size_t readBytes(std::span<char> room);

    std::FILE* file_ = nullptr;
    std::string_view text_;
    std::vector<char> buffer_;
    std::size_t start_ = 0;  // the unread bytes of the buffer
    std::size_t end_ = 0;
    bool atEnd_ = true;  // the source has no more
};

}  // namespace orvin
