#include "orvinhost/HandleTable.h"

#include "host/abi/Flags.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <set>

namespace orvin::stand_in {
namespace {

constexpr std::uint64_t kGuard = 64;
constexpr std::uint8_t kGuardByte = 0xA7;
constexpr std::uint8_t kFreshByte = 0xCD;    // new memory isn't zero
constexpr std::uint8_t kSpoiledByte = 0xDD;  // where a block stood before it moved
constexpr std::uint64_t kLargest = std::uint64_t{1} << 40;

}  // namespace

int HandleTable::Block::locks() const {
    int sum = 0;
    for (const auto& entry : effectLocks)
        sum += entry.second;
    return sum;
}

std::string HandleTable::name(const Block& block) {
    return "handle " + std::to_string(block.number) + " of " + std::to_string(block.size) +
           " bytes";
}

HandleTable::Block* HandleTable::find(PF_Handle handle) {
    const auto found = blocks_.find(static_cast<const void*>(handle));
    return found == blocks_.end() ? nullptr : found->second.get();
}

HandleTable::Block* HandleTable::findAlive(PF_Handle handle, const char* use) {
    Block* block = find(handle);
    if (block == nullptr) {
        report_(Rule::kHandleUnknown,
                std::string(use) + (handle == nullptr ? " of a null handle" : " of no handle"));
        return nullptr;
    }
    if (block->disposed) {
        report_(Rule::kHandleDisposedTwice,
                std::string(use) + " of " + name(*block) + ", which is gone");
        return nullptr;
    }
    return block;
}

bool HandleTable::grant() {
    ++requests_;
    if (refuseIn_ == 0 || --refuseIn_ > 0) return true;
    refused_ = true;
    return false;
}

bool HandleTable::place(Block& block, std::uint64_t size) {
    if (size > kLargest) return false;
    std::unique_ptr<std::uint8_t[]> memory(new (std::nothrow) std::uint8_t[size + 2 * kGuard]);
    if (memory == nullptr) return false;
    std::memset(memory.get(), kGuardByte, kGuard);
    std::memset(memory.get() + kGuard + size, kGuardByte, kGuard);
    const std::uint64_t kept = block.memory == nullptr ? 0 : std::min(size, block.size);
    if (kept > 0) std::memcpy(memory.get() + kGuard, block.memory.get() + kGuard, kept);
    std::memset(memory.get() + kGuard + kept, kFreshByte, size - kept);
    if (block.memory != nullptr) {
        checkGuards(block);
        std::memset(block.memory.get(), kSpoiledByte, block.size + 2 * kGuard);
        total_ -= block.size;
    }
    block.memory = std::move(memory);
    block.size = size;
    block.master = block.memory.get() + kGuard;
    total_ += size;
    peak_ = std::max(peak_, total_);
    return true;
}

void HandleTable::checkGuards(const Block& block) {
    const auto intact = [](const std::uint8_t* guard) {
        return std::all_of(guard, guard + kGuard,
                           [](std::uint8_t byte) { return byte == kGuardByte; });
    };
    if (!intact(block.memory.get())) report_(Rule::kHandleOverrun, "before " + name(block));
    if (!intact(block.memory.get() + kGuard + block.size))
        report_(Rule::kHandleOverrun, "behind " + name(block));
}

void HandleTable::retire(Block& block) {
    checkGuards(block);
    std::memset(block.memory.get(), kSpoiledByte, block.size + 2 * kGuard);
    block.memory.reset();
    block.master = nullptr;
    block.disposed = true;
    total_ -= block.size;
}

PF_Handle HandleTable::allocate(std::uint64_t size) {
    const std::lock_guard<std::mutex> guard(mutex_);
    if (!grant()) return nullptr;
    auto block = std::make_unique<Block>();
    if (!place(*block, size)) return nullptr;
    block->number = ++made_;
    PF_Handle handle = &block->master;
    blocks_[static_cast<const void*>(handle)] = std::move(block);
    return handle;
}

void* HandleTable::lock(PF_Handle handle) {
    const std::lock_guard<std::mutex> guard(mutex_);
    Block* block = findAlive(handle, "lock");
    if (block == nullptr) return nullptr;
    ++block->effectLocks[std::this_thread::get_id()];
    return block->master;
}

void HandleTable::unlock(PF_Handle handle) {
    const std::lock_guard<std::mutex> guard(mutex_);
    Block* block = findAlive(handle, "unlock");
    if (block == nullptr) return;
    int& own = block->effectLocks[std::this_thread::get_id()];
    if (own > 0) {
        --own;
    } else if (block->hostLocks > 0) {
        --block->hostLocks;
        report_(Rule::kHandleUnlockedForHost, "unlock of a handle that came in locked");
    } else {
        report_(Rule::kHandleUnlockedTooOften, "unlock of " + name(*block));
        return;
    }
    if (block->locks() + block->hostLocks == 0) place(*block, block->size);
}

void HandleTable::dispose(PF_Handle handle) {
    const std::lock_guard<std::mutex> guard(mutex_);
    Block* block = findAlive(handle, "disposal");
    if (block == nullptr) return;
    if (block->locks() > 0 && block->hostLocks == 0)
        report_(Rule::kHandleDisposedLocked, "disposal of " + name(*block));
    retire(*block);
}

std::uint64_t HandleTable::size(PF_Handle handle) {
    const std::lock_guard<std::mutex> guard(mutex_);
    const Block* block = findAlive(handle, "size");
    return block == nullptr ? 0 : block->size;
}

PF_Err HandleTable::resize(std::uint64_t size, PF_Handle* handle) {
    const std::lock_guard<std::mutex> guard(mutex_);
    if (handle == nullptr) {
        report_(Rule::kHandleUnknown, "resize through a null pointer");
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    Block* block = findAlive(*handle, "resize");
    if (block == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    if (block->locks() + block->hostLocks > 0)
        report_(Rule::kHandleResizedLocked, "resize of a locked handle");
    if (size > block->size && !grant()) return PF_Err_OUT_OF_MEMORY;
    return place(*block, size) ? PF_Err_NONE : PF_Err_OUT_OF_MEMORY;
}

void HandleTable::refuseRequest(int n) {
    const std::lock_guard<std::mutex> guard(mutex_);
    refuseIn_ = n;
}

PF_Handle HandleTable::hostAllocate(std::span<const std::uint8_t> bytes) {
    const std::lock_guard<std::mutex> guard(mutex_);
    auto block = std::make_unique<Block>();
    if (!place(*block, bytes.size())) throw std::bad_alloc();
    if (!bytes.empty()) std::memcpy(block->master, bytes.data(), bytes.size());
    block->number = ++made_;
    PF_Handle handle = &block->master;
    blocks_[static_cast<const void*>(handle)] = std::move(block);
    return handle;
}

void HandleTable::hostLock(PF_Handle handle) {
    const std::lock_guard<std::mutex> guard(mutex_);
    Block* block = find(handle);
    if (block != nullptr && !block->disposed) ++block->hostLocks;
}

void HandleTable::hostUnlock(PF_Handle handle) {
    const std::lock_guard<std::mutex> guard(mutex_);
    Block* block = find(handle);
    if (block == nullptr || block->disposed || block->hostLocks == 0) return;
    if (--block->hostLocks + block->locks() == 0) place(*block, block->size);
}

void HandleTable::hostDispose(PF_Handle handle) {
    const std::lock_guard<std::mutex> guard(mutex_);
    Block* block = find(handle);
    if (block != nullptr && !block->disposed) retire(*block);
}

bool HandleTable::alive(PF_Handle handle) const {
    const std::lock_guard<std::mutex> guard(mutex_);
    const auto found = blocks_.find(static_cast<const void*>(handle));
    return found != blocks_.end() && !found->second->disposed;
}

std::vector<std::uint8_t> HandleTable::bytes(PF_Handle handle) const {
    const std::lock_guard<std::mutex> guard(mutex_);
    const auto found = blocks_.find(static_cast<const void*>(handle));
    if (found == blocks_.end() || found->second->disposed) return {};
    const std::uint8_t* data = found->second->memory.get() + kGuard;
    return std::vector<std::uint8_t>(data, data + found->second->size);
}

bool HandleTable::holdsAddress(std::span<const std::uint8_t> bytes) const {
    const std::lock_guard<std::mutex> guard(mutex_);
    std::set<std::uintptr_t> addresses;
    for (const auto& entry : blocks_) {
        if (entry.second->disposed) continue;
        addresses.insert(reinterpret_cast<std::uintptr_t>(entry.first));
        addresses.insert(reinterpret_cast<std::uintptr_t>(entry.second->master));
    }
    for (std::size_t i = 0; i + sizeof(std::uintptr_t) <= bytes.size(); i += 4) {
        std::uintptr_t word = 0;
        std::memcpy(&word, bytes.data() + i, sizeof word);
        if (addresses.count(word) != 0) return true;
    }
    return false;
}

void HandleTable::checkAfterCommand() {
    const std::lock_guard<std::mutex> guard(mutex_);
    for (const auto& entry : blocks_) {
        Block& block = *entry.second;
        if (block.disposed) continue;
        checkGuards(block);
        int& own = block.effectLocks[std::this_thread::get_id()];
        if (own > 0)
            report_(Rule::kHandleLockedAfterCommand,
                    "a handle with " + std::to_string(own) + " lock(s) of the effect's");
        own = 0;
    }
}

void HandleTable::checkAtEnd() {
    const std::lock_guard<std::mutex> guard(mutex_);
    for (const auto& entry : blocks_) {
        Block& block = *entry.second;
        if (block.disposed) continue;
        report_(Rule::kHandleLeak, name(block) + " is left");
        retire(block);
    }
}

}  // namespace orvin::stand_in
