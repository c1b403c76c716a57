// The structures of one command, between guard bytes. Only for Instance.
#pragma once

#include "orvinhost/Instance.h"

namespace orvin::stand_in {

struct Instance::Serving {
    explicit Serving(Host& host) : call(host) {}

    Call call;
    Guarded<PF_InData> in;
    PF_InData inBefore{};
    Guarded<PF_OutData> out;
    PF_OutFlags2 flags2Before = 0;
    std::deque<Guarded<PF_ParamDef>> params;
    std::vector<PF_ParamDef> paramsBefore;
    std::vector<PF_ParamDef*> pointers;  // into `params`; empty: the command gets none
    World input;
    std::uint64_t inputChecksum = 0;
    Guarded<PF_LayerDef> output;
    World* outputWorld = nullptr;
    PF_EventExtra* event = nullptr;
};

}  // namespace orvin::stand_in
