#include "host/HostState.h"

namespace orvin {

PF_InData* gInData = nullptr;
bool gHostHasCompLinks = false;
SequenceRecord* gSequenceRecord = nullptr;
OrvinApp* gApp = nullptr;
bool gDragging = false;
bool gUiRefreshed = false;
PF_Handle gRenderReserve = nullptr;
thread_local constinit bool gBusy = false;
thread_local constinit PF_Err gLastError = PF_Err_NONE;
thread_local constinit PF_Handle gStashedLiveHandle = nullptr;

}  // namespace orvin
