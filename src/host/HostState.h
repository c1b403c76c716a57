// What the commands of one module share. The host may call from several threads: commands of
// different threads take turns (see Entry.h), so the plain variables need no lock of their own.
// What must not be seen by a thread that waits for its turn belongs to each thread.
#pragma once

#include "host/abi/InData.h"

namespace orvin {

class OrvinApp;
struct SequenceRecord;

/// The in_data of the command being served; null between commands.
extern PF_InData* gInData;

/// True on hosts of interface 12.10 or later: comp camera, comp lights and dynamic flags exist.
extern bool gHostHasCompLinks;

/// The locked record of the live instance being served, or null.
extern SequenceRecord* gSequenceRecord;

/// The application object of that instance, or null.
extern OrvinApp* gApp;

/// True while a click or drag is being served: what the user does in the panel then goes to the
/// parameters, and must not come back from them.
extern bool gDragging;

/// The parameter display has been brought up to date since the last frame.
extern bool gUiRefreshed;

/// Host memory held back while a frame is rendered, so that shortage shows before the work starts.
extern PF_Handle gRenderReserve;

/// This thread is serving a command.
extern thread_local constinit bool gBusy;

/// What this thread's entry will return.
extern thread_local constinit PF_Err gLastError;

/// The live handle that this thread's last flatten kept aside for the re-setup that follows it.
extern thread_local constinit PF_Handle gStashedLiveHandle;

/// True for interface versions with comp camera, comp lights and dynamic flags.
constexpr bool hasCompLinks(PF_SpecVersion version) {
    return version.major > 12 || (version.major == 12 && version.minor >= 10);
}

/// Stores a non-zero code of a host suite in gLastError and throws it as a plain long.
inline void checkHost(A_Err code) {
    if (code == 0) return;
    gLastError = code;
    throw static_cast<long>(code);
}

}  // namespace orvin
