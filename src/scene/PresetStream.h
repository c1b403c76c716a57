// PresetStream: the word stream over a table of strings compiled into the program, and the way to
// make such a table: what is written goes to the standard output as lines of source.
#pragma once

#include "scene/SceneStream.h"

namespace orvin {

class PresetStream final : public SceneStream {
  public:
    /// `strings` ends with a null pointer or an empty string; null for a stream that only writes.
    /// A token never spans strings. position() counts within the present string.
    explicit PresetStream(Persistent* root, const char* const* strings = nullptr)
        : SceneStream(root), strings_(strings) {}

    /// Presets hold no raw bytes: -1.
    Result writeBytes(std::span<const std::uint8_t> bytes) override;
    Result readBytes(std::span<std::uint8_t> bytes) override;

    /// Writes line() to the standard error.
    Result putAuxLine() override;

  protected:
    Chunk nextChunk() override;
    Result storeLine(std::string_view indentation, std::string_view line) override;

  private:
    const char* const* strings_;
};

}  // namespace orvin
