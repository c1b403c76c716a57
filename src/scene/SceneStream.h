// SceneStream: the word stream that every persistent thing is written to and read from.
//
// The text is a sequence of tokens divided by white space (blank, tab, LF, CR). Lines mean nothing
// to the reader, but for comments: a token position that starts with '#' skips to the next CR or
// LF. A token in double quotes may hold blanks and line ends; backslash and quote together stand
// for a quote, other backslashes are ordinary bytes. Blocks are "begin Class" ... "end Class"; the
// input ends with its bytes or at the token "**EndOfStream**".
//
// Reading: the command stack names the object that receives the next command. `begin` handlers
// push, `end` pops, so nested blocks need no recursion. Unknown tokens are skipped with a warning,
// up to 99 in a row. Writing: one line per key, indented by one blank per object on the stack.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "scene/LineBuffer.h"
#include "scene/Persistent.h"
#include "scene/TokenReader.h"
#include "toolkit/Result.h"
#include "toolkit/math/Vec.h"

namespace orvin {

inline constexpr int kUnknownTokenLimit = 100;  // this many unknown tokens in a row fail
inline constexpr std::string_view kEndOfStream = "**EndOfStream**";

class SceneStream : protected ChunkSource {
  public:
    /// Pushes `root` as the bottom of the command stack (null leaves the stack empty).
    explicit SceneStream(Persistent* root);
    ~SceneStream() override = default;
    SceneStream(const SceneStream&) = delete;
    SceneStream& operator=(const SceneStream&) = delete;

    // ---- writing

    LineBuffer& line() { return line_; }

    /// Writes line() with its indentation and one LF (the line's own, if it has one), and clears
    /// it. -1 on a failed store, or where the whole is longer than kLineCapacity: a reader would
    /// cut it. The stream then stays failed (writeFailed()).
    Result putLine();

    // One key with its values; each is a whole line.
    Result putText(std::string_view key, std::string_view value);  // key "value", quotes escaped
    Result putName(std::string_view key, std::string_view name);   // the same, cut to a name's size
    Result putWord(std::string_view key, std::string_view word);   // key word
    Result putDouble(std::string_view key, double value);
    Result putDoubles(std::string_view key, std::span<const double> values);
    Result putVector(std::string_view key, Vec3 value);
    Result putInt(std::string_view key, long long value);

    /// Raw bytes, without indentation or line end.
    virtual Result writeBytes(std::span<const std::uint8_t> bytes) = 0;

    /// Writes line() to the secondary sink. Only preset streams have one; 0 elsewhere.
    virtual Result putAuxLine();

    /// "begin Class", the body, "end Class". A failed body is returned at once without its end.
    Result writeObject(Persistent& object);

    bool writeFailed() const { return writeFailed_; }

    // ---- reading

    /// True while bytes are left, if only white space.
    bool hasMore() { return reader_.hasMore(); }

    /// Offset of the last byte consumed, a plain token's delimiter included; -1 before the first.
    std::int64_t position() const { return reader_.offset() - 1; }

    /// The next token, without its outer quotes and with escaped quotes resolved. Valid until the
    /// next read. Tokens longer than kLineCapacity - 1 bytes are cut. 0, -1, or -3 at the end.
    Result nextToken(std::string_view& token);

    /// As above, cut to `capacity - 1` bytes and at a NUL byte, into a string of the caller's.
    Result nextToken(std::string& token, std::size_t capacity = kNameCapacity);

    /// Exactly bytes.size() raw bytes, from one byte behind the previous token on.
    virtual Result readBytes(std::span<std::uint8_t> bytes) = 0;

    // Value readers: -1 where the token is no such value, or the input ends.
    Result readDouble(double& value);
    Result readFloat(float& value);
    Result readVector3(Vec3& value);
    Result readVector2(Vec2& value);
    Result readColor(std::span<float> channels);  // as many as the span is long
    Result readInt(int& value);                   // "on" is 1, "off" is 0
    Result readBool(bool& value);                 // readInt, non-zero is true
    Result readText(std::string& value, std::size_t capacity = kNameCapacity);

    /// False while input of unknown origin is read (a project): commands that write files of their
    /// own then refuse.
    bool mayWriteFiles = true;

    // ---- command stack

    void push(Persistent& object) { stack_.push_back(&object); }
    void pop();
    std::size_t depth() const { return stack_.size(); }
    Persistent* top() const { return stack_.empty() ? nullptr : stack_.back(); }

    /// Serves one command of the object on top. See sceneErrorText() for what went wrong.
    Result runTopCommand();

    /// True within a command that was found behind unknown tokens: sceneErrorText() warns of them
    /// until the next command.
    bool recovered() const { return recovered_; }

    /// Takes objects off until `depth` are left.
    void unwind(std::size_t depth);

  protected:
    /// Puts `indentation`, `line` and an LF into the store. The line has no line end of its own.
    virtual Result storeLine(std::string_view indentation, std::string_view line) = 0;

    /// Called where nextToken() meets a bare kEndOfStream; the result is nextToken()'s. The token
    /// is one like others here: the command loop knows it.
    virtual Result atEndMark() { return kSuccess; }

    TokenReader& reader() { return reader_; }
    void setWriteFailed() { writeFailed_ = true; }

  private:
    Result runCommand(Persistent& self);

    TokenReader reader_{*this};
    LineBuffer line_;
    bool writeFailed_ = false;
    bool recovered_ = false;
    std::vector<Persistent*> stack_;
};

/// What the last runTopCommand() has to say, at most 255 bytes; empty if nothing. Process-wide.
std::string_view sceneErrorText();
void setSceneErrorText(std::string_view text);

/// True when the text only speaks of keys that this system itself writes and never reads: nothing
/// to bother the user with.
bool isExpectedRecovery();

/// Pushes `receiver` and serves commands until its block (or the input) ends. Error texts that
/// matter go to questions().showMessage. The end of the input is success; `openBlocks` then tells
/// how many blocks, the receiver's included, had no end by then.
Result loadBlock(SceneStream& stream, Persistent& receiver, std::size_t* openBlocks = nullptr);

}  // namespace orvin
