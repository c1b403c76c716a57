// HandleMemory: movable blocks of memory behind handles, as the host lends them. Data is touched
// only while its handle is locked.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace orvin {

using Handle = void**;

class HandleMemory {
  public:
    virtual ~HandleMemory() = default;

    /// A new block with unspecified bytes; null where there is no memory.
    virtual Handle allocate(std::size_t size) = 0;

    /// Pins the block and returns its bytes. Locks count: each wants its unlock().
    virtual void* lock(Handle handle) = 0;
    virtual void unlock(Handle handle) = 0;

    virtual std::size_t size(Handle handle) = 0;

    /// Changes the size and keeps the bytes; `handle` may come to be another. The block must not be
    /// locked. False leaves everything as it was.
    virtual bool resize(Handle& handle, std::size_t size) = 0;

    virtual void dispose(Handle handle) = 0;
};

/// Handles from this process's own heap, for headless programs and tests. Blocks still there at
/// the end go with the object.
class PlainHandleMemory final : public HandleMemory {
  public:
    PlainHandleMemory();
    ~PlainHandleMemory() override;

    Handle allocate(std::size_t size) override;
    void* lock(Handle handle) override;
    void unlock(Handle handle) override;
    std::size_t size(Handle handle) override;
    /// Refuses a locked block, as strict hosts do.
    bool resize(Handle& handle, std::size_t size) override;
    void dispose(Handle handle) override;

    int lockCount(Handle handle) const;
    std::size_t liveHandles() const { return blocks_.size(); }

    /// Requests that would make a block larger than this fail.
    void setLargestBlock(std::size_t bytes) { largestBlock_ = bytes; }

  private:
    struct Block;
    static Block& block(Handle handle);

    std::vector<std::unique_ptr<Block>> blocks_;
    std::size_t largestBlock_;
};

}  // namespace orvin
