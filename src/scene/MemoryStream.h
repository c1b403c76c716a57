// MemoryStream: the word stream over text in memory: reads a text of the caller's, writes a string
// that it owns. For scratch copies of members and for tests.
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "scene/SceneStream.h"

namespace orvin {

class MemoryStream final : public SceneStream {
  public:
    /// `input` must outlive the stream. Text is written behind what text() holds.
    explicit MemoryStream(Persistent* root, std::string_view input = {})
        : SceneStream(root), input_(input) {}

    const std::string& text() const { return output_; }
    std::string takeText() { return std::exchange(output_, {}); }

    Result writeBytes(std::span<const std::uint8_t> bytes) override {
        output_.append(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        return kSuccess;
    }

    /// -1 where the text ends before.
    Result readBytes(std::span<std::uint8_t> bytes) override {
        return reader().read(bytes) == bytes.size() ? kSuccess : kFailure;
    }

  protected:
    Chunk nextChunk() override { return {std::exchange(input_, {}), 0, false}; }

    Result storeLine(std::string_view indentation, std::string_view line) override {
        output_.append(indentation).append(line).append(1, '\n');
        return kSuccess;
    }

  private:
    std::string_view input_;
    std::string output_;
};

}  // namespace orvin
