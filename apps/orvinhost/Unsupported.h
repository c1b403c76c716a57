// Function slots of the host's tables that this host doesn't serve: each reports its name and
// answers PF_Err_INVALID_CALLBACK.
#pragma once

#include "host/abi/Types.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <string_view>

namespace orvin::stand_in {

/// Writes the use of an unsupported function down. Returns 515.
PF_Err reportUnsupported(std::string_view name);

template <std::size_t N>
struct FixedName {
    char text[N]{};
    constexpr FixedName(const char (&from)[N]) { std::copy_n(from, N, text); }
};

// Called with whatever arguments the slot has: the caller clears them up on all our systems.
template <FixedName name>
PF_Err unsupported() {
    return reportUnsupported(name.text);
}

template <FixedName name>
PF_UncalledFn unsupportedSlot() {
    return reinterpret_cast<PF_UncalledFn>(&unsupported<name>);
}

/// A table of functions only, with every slot unsupported under the suite's name; the caller then
/// puts in what it serves.
template <typename Table, FixedName name>
Table unsupportedTable() {
    std::array<PF_UncalledFn, sizeof(Table) / sizeof(PF_UncalledFn)> slots;
    slots.fill(unsupportedSlot<name>());
    return std::bit_cast<Table>(slots);
}

}  // namespace orvin::stand_in
