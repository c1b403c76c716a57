// All of the host's effect interface that this project speaks.
#pragma once

#include "host/abi/BasicSuite.h"
#include "host/abi/Callbacks.h"
#include "host/abi/Drawbot.h"
#include "host/abi/Events.h"
#include "host/abi/Flags.h"
#include "host/abi/InData.h"
#include "host/abi/OutData.h"
#include "host/abi/Params.h"
#include "host/abi/PiPL.h"
#include "host/abi/Suites.h"
#include "host/abi/Types.h"

namespace orvin {

// The effect's single entry, exported under the name "main".
using PF_EffectMainFn = PF_Err (*)(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data,
                                   PF_ParamDef* params[], PF_LayerDef* output, void* extra);

}  // namespace orvin
