// The stash: between a flatten and the re-setup that follows it on the same thread, the live handle
// stays aside, so that the instance goes on with all that it had, undo included, and nothing is
// parsed. Hosts also flatten to make copies: the stash is only taken back for the very bytes that
// it was flattened to.
#pragma once

#include <cstdint>
#include <span>

#include "host/SequenceRecord.h"
#include "scene/HandleMemory.h"

namespace orvin {

/// Puts a live handle, unlocked from now on, aside as what `flat` was made of. A handle stashed
/// before goes, with its app: nobody else knows of it.
void stashLiveHandle(HandleMemory& memory, Handle live, SequenceRecord& record,
                     std::span<const std::uint8_t> flat);

/// True when the stash holds the instance that `flat` was made of.
bool stashHolds(HandleMemory& memory, std::span<const std::uint8_t> flat);

/// Takes the stashed handle out.
Handle takeStash();

/// Deletes the stashed instance, if there is one.
void dropStash(HandleMemory& memory);

}  // namespace orvin
