// HostHandles: memory blocks of the host, through the callbacks of one command.
#pragma once

#include "host/abi/InData.h"
#include "scene/HandleMemory.h"

namespace orvin {

class HostHandles final : public HandleMemory {
  public:
    /// `utils` must outlive this object: it is the host's for the length of a command. Null stands
    /// for a host without memory.
    explicit HostHandles(const PF_UtilCallbacks* utils) : utils_(utils) {}

    Handle allocate(std::size_t size) override;
    void* lock(Handle handle) override;
    void unlock(Handle handle) override;
    std::size_t size(Handle handle) override;
    bool resize(Handle& handle, std::size_t size) override;
    void dispose(Handle handle) override;

  private:
    const PF_UtilCallbacks* utils_;
};

/// A handle locked for as long as this lives.
class HandleLock {
  public:
    HandleLock(HandleMemory& memory, Handle handle)
        : memory_(memory), handle_(handle), data_(memory.lock(handle)) {}
    ~HandleLock() { memory_.unlock(handle_); }
    HandleLock(const HandleLock&) = delete;
    HandleLock& operator=(const HandleLock&) = delete;

    void* data() const { return data_; }

  private:
    HandleMemory& memory_;
    Handle handle_;
    void* data_;
};

/// A handle that is disposed of unless it is released. It must not be locked at the end.
class OwnedHandle {
  public:
    OwnedHandle(HandleMemory& memory, Handle handle) : memory_(&memory), handle_(handle) {}
    ~OwnedHandle() {
        if (handle_ != nullptr) memory_->dispose(handle_);
    }
    OwnedHandle(const OwnedHandle&) = delete;
    OwnedHandle& operator=(const OwnedHandle&) = delete;

    explicit operator bool() const { return handle_ != nullptr; }
    Handle get() const { return handle_; }
    Handle& ref() { return handle_; }  // for callees that may replace it
    Handle release() {
        Handle handle = handle_;
        handle_ = nullptr;
        return handle;
    }

  private:
    HandleMemory* memory_;
    Handle handle_;
};

}  // namespace orvin
