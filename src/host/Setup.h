// The life of an instance: set up, set up again from what a project holds, set down.
#pragma once

#include "host/HostHandles.h"
#include "host/SequenceView.h"
#include "host/abi/InData.h"
#include "host/abi/OutData.h"

namespace orvin {

/// What a command that works on sequence data is served with.
struct SequenceCall {
    HandleMemory& memory;
    SequenceView& view;
    PF_InData& in;
    PF_OutData& out;
};

/// PF_Cmd_SEQUENCE_SETUP: a live record with the scene that the user chose. 512 where the user
/// cancelled or the app can't work, 4 where the host has no memory; nothing is left behind then.
PF_Err setUpSequence(const SequenceCall& call);

/// PF_Cmd_SEQUENCE_RESETUP. The stashed instance where the flat data is its own; else a live
/// record is passed through, and flat data becomes a live record with the project that it holds,
/// or a new scene where it holds none that can be read. 512 for anything else.
PF_Err setUpSequenceAgain(const SequenceCall& call);

/// PF_Cmd_SEQUENCE_SETDOWN: the app and the handle go.
void setDownSequence(const SequenceCall& call);

}  // namespace orvin
