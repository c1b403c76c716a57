// The host's memory handles: relocatable blocks reached through a master pointer.
//
// Stricter than most hosts: a block moves whenever its last lock is taken back, with its old bytes
// spoiled, and stands between guard bytes. A handle that was disposed of is remembered for ever, so
// that a second use is told from an unknown one. Safe on several threads.
#pragma once

#include "host/abi/Types.h"
#include "orvinhost/Rules.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <thread>
#include <vector>

namespace orvin::stand_in {

class HandleTable {
  public:
    using Report = std::function<void(Rule, const std::string&)>;

    explicit HandleTable(Report report) : report_(std::move(report)) {}
    HandleTable(const HandleTable&) = delete;
    HandleTable& operator=(const HandleTable&) = delete;

    // What the effect calls.
    PF_Handle allocate(std::uint64_t size);  // null when there is no memory, or when refused
    void* lock(PF_Handle handle);            // null for a handle that isn't alive
    void unlock(PF_Handle handle);
    void dispose(PF_Handle handle);
    std::uint64_t size(PF_Handle handle);  // 0 for a handle that isn't alive
    PF_Err resize(std::uint64_t size, PF_Handle* handle);

    /// Refuses one request for memory (a new handle or a growth): the `n`-th from now on, n >= 1.
    void refuseRequest(int n);
    bool refused() const { return refused_; }

    // What the host itself does. It never reports.
    PF_Handle hostAllocate(std::span<const std::uint8_t> bytes);
    void hostLock(PF_Handle handle);    // before handing it in
    void hostUnlock(PF_Handle handle);  // after the command; nothing when it is gone
    void hostDispose(PF_Handle handle);
    bool alive(PF_Handle handle) const;
    std::vector<std::uint8_t> bytes(PF_Handle handle) const;
    /// Whether the address of a living handle, or of its data, stands in `bytes`.
    bool holdsAddress(std::span<const std::uint8_t> bytes) const;

    /// End of a command: locks of the effect's on this thread that are left over (they are taken
    /// back then), and overruns.
    void checkAfterCommand();
    /// End of the run: reports and frees what is left.
    void checkAtEnd();

    int requests() const { return requests_; }
    std::uint64_t peakBytes() const { return peak_; }

  private:
    struct Block {
        void* master = nullptr;  // the handle is the address of this
        std::unique_ptr<std::uint8_t[]> memory;
        std::uint64_t size = 0;
        int number = 0;
        int hostLocks = 0;
        std::map<std::thread::id, int> effectLocks;  // commands of several threads may overlap
        bool disposed = false;

        int locks() const;  // of the effect's
    };

    Block* find(PF_Handle handle);
    Block* findAlive(PF_Handle handle, const char* use);
    bool grant();
    bool place(Block& block, std::uint64_t size);  // new memory with the old bytes
    void retire(Block& block);
    void checkGuards(const Block& block);
    static std::string name(const Block& block);

    mutable std::mutex mutex_;
    Report report_;
    std::map<const void*, std::unique_ptr<Block>> blocks_;
    int made_ = 0;
    int requests_ = 0;
    int refuseIn_ = 0;
    bool refused_ = false;
    std::uint64_t total_ = 0;
    std::uint64_t peak_ = 0;
};

}  // namespace orvin::stand_in
