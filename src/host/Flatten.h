// The flat form of the sequence data, which the host keeps in its own project: "FLAT", the size of
// the handle as four bytes in the machine's order, and a project stream in the form of memory
// handles (scene/HandleStream.h), ended by its end mark.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "host/Setup.h"

namespace orvin {

inline constexpr std::size_t kFlatHeaderSize = 8;

/// What a flat handle is allocated with, and the step in which it grows.
inline constexpr std::size_t kFlatFirstSize = 50000;

/// The size that flat data says of itself; 0 for data that is too short to say.
std::uint32_t flatStoredSize(std::span<const std::uint8_t> flat);

/// PF_Cmd_SEQUENCE_FLATTEN: a flat handle takes the live one's place with the host; the live one
/// is stashed. 512 on a view that isn't live and where the project can't be written, 4 where the
/// host has no memory; the live handle then stays the instance's.
PF_Err flattenSequence(const SequenceCall& call);

}  // namespace orvin
