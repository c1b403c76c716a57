// FileStream: the word stream over one file to read and one file to write, either of them optional.
#pragma once

#include <cstdio>
#include <vector>

#include "scene/SceneStream.h"

namespace orvin {

class FileStream final : public SceneStream {
  public:
    enum class Files { kCallers, kOwn };

    /// Files are open in binary mode (see platform::openFile); null for none. They stay the
    /// caller's, or with kOwn are closed with the stream.
    FileStream(Persistent* root, std::FILE* input, std::FILE* output,
               Files ownership = Files::kCallers);
    ~FileStream() override;

    Result writeBytes(std::span<const std::uint8_t> bytes) override;

    /// -1 where the file ends before.
    Result readBytes(std::span<std::uint8_t> bytes) override;

    /// Hands everything written so far to the operating system. -1 if that or any write before
    /// failed: only after a successful flush() is a file complete.
    Result flush();

    /// The same, and ends writing; an owned output file is closed.
    Result close();

  protected:
    Chunk nextChunk() override;
    Result storeLine(std::string_view indentation, std::string_view line) override;

  private:
    void put(std::string_view bytes);
    void writeOut();

    std::FILE* input_;
    std::FILE* output_;
    Files ownership_;
    std::vector<char> readBuffer_;
    std::vector<char> writeBuffer_;
    std::size_t writeSize_ = 0;
};

}  // namespace orvin
