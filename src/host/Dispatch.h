// The command table.
#pragma once

#include "host/FrameServices.h"
#include "host/Setup.h"

namespace orvin {

/// One command with all that the host handed over for it.
struct CommandCall {
    PF_Cmd cmd = PF_Cmd_ABOUT;
    HandleMemory& memory;
    SequenceView& view;
    PF_InData& in;
    PF_OutData& out;
    ParamArray params;
    PF_EffectWorld* output;
    void* extra;
};

/// Serves a command and returns the host error that it ends with; commands that the effect doesn't
/// know end with 0. Throws what goes wrong underneath.
PF_Err dispatch(const CommandCall& call);

}  // namespace orvin
