#include "host/Stash.h"

#include <cstring>

#include "host/HostHandles.h"
#include "host/HostState.h"
#include "host/OrvinApp.h"

namespace orvin {

namespace {

// Eight bytes a step: project data runs to tens of megabytes. Any change of one word changes the
// result, for each step is a bijection of the state.
std::uint64_t hashBytes(std::span<const std::uint8_t> bytes) {
    std::uint64_t hash = 0x9E3779B97F4A7C15U ^ bytes.size();
    const auto mix = [&hash](std::uint64_t word) {
        hash = (hash ^ word) * 0xD6E8FEB86659FD93U;
        hash ^= hash >> 32;
    };
    std::size_t i = 0;
    for (; i + 8 <= bytes.size(); i += 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes.data() + i, 8);
        mix(word);
    }
    std::uint64_t rest = 0;
    if (i < bytes.size()) std::memcpy(&rest, bytes.data() + i, bytes.size() - i);
    mix(rest);
    return hash;
}

}  // namespace

void stashLiveHandle(HandleMemory& memory, Handle live, SequenceRecord& record,
                     std::span<const std::uint8_t> flat) {
    dropStash(memory);
    record.flatSize = flat.size();
    record.flatHash = hashBytes(flat);
    gStashedLiveHandle = live;
}

bool stashHolds(HandleMemory& memory, std::span<const std::uint8_t> flat) {
    if (gStashedLiveHandle == nullptr) return false;
    const HandleLock locked(memory, gStashedLiveHandle);
    const auto* record = static_cast<const SequenceRecord*>(locked.data());
    return record != nullptr && record->flatSize == flat.size() &&
           record->flatHash == hashBytes(flat);
}

Handle takeStash() {
    Handle live = gStashedLiveHandle;
    gStashedLiveHandle = nullptr;
    return live;
}

void dropStash(HandleMemory& memory) {
    Handle live = takeStash();
    if (live == nullptr) return;
    {
        const HandleLock locked(memory, live);
        auto* record = static_cast<SequenceRecord*>(locked.data());
        if (record == nullptr) return;
        delete record->app;
    }
    memory.dispose(live);
}

}  // namespace orvin
