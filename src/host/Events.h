// Events of the panel: drawing, clicks and drags. Poses of the scene are the command table's
// affair.
#pragma once

#include "host/FrameServices.h"
#include "host/SequenceRecord.h"
#include "host/abi/Events.h"

namespace orvin {

/// What one event is served with.
struct EventCall {
    OrvinApp& app;
    SequenceRecord& record;
    PF_InData& in;
    PF_OutData& out;
    ParamArray params;
    PF_EventExtra& event;
};

/// True when a click at `seconds` and a point continues the last one: less than 2 seconds (of the
/// whole-second clock) and less than 5 pixels away in both axes.
bool isDoubleClick(const SequenceRecord& record, std::int32_t seconds, int h, int v);

void serveEvent(const EventCall& call);

}  // namespace orvin
