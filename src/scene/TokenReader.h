// TokenReader: splits the chunks of a store into the tokens of the word stream.
//
// A token may span chunks: it is then collected in a buffer of kLineCapacity bytes, else it is a
// view into its chunk and nothing is copied. No input makes it allocate or recurse.
//
// Degenerate input: a quote that is never closed ends with the input; an empty pair of quotes is an
// empty token; NUL bytes are ordinary bytes; tokens longer than kLineCapacity - 1 bytes are cut,
// their rest is dropped.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "scene/LineBuffer.h"
#include "toolkit/Result.h"

namespace orvin {

/// A run of the store's bytes.
struct Chunk {
    std::string_view bytes;     // empty: no more input
    std::int64_t offset = 0;    // of its first byte, as position() counts
    bool closesTokens = false;  // no token and no comment goes on in the next chunk
};

class ChunkSource {
  public:
    virtual ~ChunkSource() = default;

    /// The bytes behind those given last. They stay valid until the next call.
    virtual Chunk nextChunk() = 0;
};

class TokenReader {
  public:
    explicit TokenReader(ChunkSource& source) : source_(source) {}

    /// The next token, without its outer quotes and with escaped quotes resolved; valid until the
    /// next call of a function that isn't const. 0, or -3 at the end of the input.
    Result next(std::string_view& token);

    /// Copies raw bytes, from one byte behind the previous token on; returns how many there were.
    std::size_t read(std::span<std::uint8_t> bytes);

    bool hasMore() { return cursor_ != end_ || refill(); }

    /// Offset of the next unread byte.
    std::int64_t offset() const { return offset_ + (cursor_ - begin_); }

    /// True when the delimiter of the previous token (a quoted one) is still to be read.
    bool delimiterPending() const { return delimiterPending_; }

    /// Forgets the present chunk; `offset` is that of the first byte of the next one.
    void restart(std::int64_t offset);

  private:
    bool refill();
    void skipComment();
    Result nextQuoted(std::string_view& token);
    Result collectPlain(const char* start, std::string_view& token);
    Result collectQuoted(const char* start, std::string_view& token);
    void collect(const char* from, const char* to);
    std::string_view collected() const { return {collected_.data(), collectedSize_}; }

    ChunkSource& source_;
    const char* begin_ = nullptr;  // the present chunk
    const char* cursor_ = nullptr;
    const char* end_ = nullptr;
    std::int64_t offset_ = 0;  // of begin_
    bool closesTokens_ = false;
    bool delimiterPending_ = false;
    std::size_t collectedSize_ = 0;
    std::array<char, kLineCapacity> collected_;
};

}  // namespace orvin
