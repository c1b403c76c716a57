// The effect's entry. The module exports it under the name "main" (see module/).
//
// Commands of different threads take turns: one that comes while another thread's is being served
// waits. A command that comes on a thread which is serving one already (from the message pump of a
// modal window) returns 0 and does nothing.
#pragma once

#include "host/abi/Abi.h"

namespace orvin {

/// Serves one command. Never throws: failures become a message in out_data->return_msg and a host
/// error number. out_data may be null.
PF_Err effectMain(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                  PF_LayerDef* output, void* extra) noexcept;

}  // namespace orvin
