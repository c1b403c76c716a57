// HostProgress: lets the host watch and stop long work.
#pragma once

#include "host/abi/InData.h"

namespace orvin {

class HostProgress {
  public:
    /// Polls of this thread ask the host's progress and abort functions from now on. The host's
    /// first non-zero answer stops the work; progressStop() keeps it.
    explicit HostProgress(const PF_InData& in);
    /// Nobody is asked any more.
    ~HostProgress();
    HostProgress(const HostProgress&) = delete;
    HostProgress& operator=(const HostProgress&) = delete;

    /// The answer that stopped the work, 0 if none: what goes back to the host.
    PF_Err stopped() const;
};

}  // namespace orvin
