// HandleStream: the word stream over memory handles, one to read and one to write. The text ends at
// "**EndOfStream**" or with the handle.
#pragma once

#include "scene/HandleMemory.h"
#include "scene/SceneStream.h"

namespace orvin {

class HandleStream final : public SceneStream {
  public:
    HandleStream(HandleMemory& memory, Persistent* root) : SceneStream(root), memory_(memory) {}

    /// Unlocks both handles.
    ~HandleStream() override;

    /// Locks `handle` and reads from `offset` on; positions count from the start of the handle.
    /// -1 where the offset lies behind the end. Lines are read up to 4,096 bytes: what lies behind
    /// them is dropped, and ends the token that it stands in.
    Result openRead(Handle handle, std::size_t offset);

    /// Locks `handle` and writes from `offset` on. Where room lacks, the handle grows in steps of
    /// the room it had at first; std::bad_alloc where that is refused. -1 for an offset behind the
    /// end.
    Result openWrite(Handle handle, std::size_t offset);

    /// Writes the end mark and shrinks the handle to what is used and one more byte, a NUL.
    /// Returns -1 where the stream has failed before.
    Result finish();

    /// The handle that is written; a host may have replaced the one given to openWrite().
    Handle outputHandle() const { return output_; }

    /// Offset behind the last byte written.
    std::size_t used() const { return used_; }

    Result writeBytes(std::span<const std::uint8_t> bytes) override;

    /// -3 where the handle ends before; nothing is read then.
    Result readBytes(std::span<std::uint8_t> bytes) override;

  protected:
    Chunk nextChunk() override;
    Result storeLine(std::string_view indentation, std::string_view line) override;
    Result atEndMark() override;

  private:
    void makeRoom(std::size_t size);
    void put(std::string_view bytes);

    HandleMemory& memory_;

    Handle input_ = nullptr;
    std::string_view inputBytes_;  // of the whole locked handle
    std::size_t next_ = 0;         // start of the next line

    Handle output_ = nullptr;
    char* outputBytes_ = nullptr;
    std::size_t outputSize_ = 0;
    std::size_t used_ = 0;
    std::size_t growthStep_ = 0;
};

}  // namespace orvin
