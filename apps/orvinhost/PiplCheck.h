// The PiPL resource of a module against what the module reports when it runs.
#pragma once

#include "host/abi/Flags.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace orvin::stand_in {

struct ReportedIdentity {
    PF_OutFlags outFlags = 0;
    PF_OutFlags2 outFlags2 = 0;
    A_u_long version = 0;
};

/// One line for each disagreement; a damaged resource is one, too.
std::vector<std::string> piplFaults(std::span<const std::uint8_t> resource,
                                    const ReportedIdentity& reported);

}  // namespace orvin::stand_in
