#include "host/Entry.h"

#include <cstring>
#include <mutex>

#include "host/Dispatch.h"
#include "host/Failure.h"
#include "host/HostState.h"

namespace orvin {

namespace {

std::mutex& turn() {
    static std::mutex mutex;
    return mutex;
}

// The process-wide state of one command; nothing of it outlives the command.
class CommandState {
  public:
    explicit CommandState(PF_InData& in) {
        gBusy = true;
        gInData = &in;
        gHostHasCompLinks = hasCompLinks(in.version);
    }
    ~CommandState() {
        gInData = nullptr;
        gBusy = false;
    }
    CommandState(const CommandState&) = delete;
    CommandState& operator=(const CommandState&) = delete;
};

void serve(const PF_Cmd cmd, PF_InData& in, PF_OutData& out, PF_ParamDef* params[],
           PF_LayerDef* output, void* extra) {
    const CommandState state(in);
    HostHandles memory(in.utils);
    SequenceView view(memory);
    try {
        view.open(in.sequence_data);
        // The lists of older hosts are shorter, and no index holds there: no parameters at all.
        PF_ParamDef** const known = gHostHasCompLinks ? params : nullptr;
        const PF_Err error = dispatch({cmd, memory, view, in, out, known, output, extra});
        if (error != PF_Err_NONE) gLastError = error;
    } catch (...) {
        const Failure failure = describeFailure();
        gLastError = failure.code;
        std::memcpy(out.return_msg, failure.text, sizeof failure.text);
        out.out_flags |= PF_OutFlag_DISPLAY_ERROR_MESSAGE;
    }
}

}  // namespace

PF_Err effectMain(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                  PF_LayerDef* output, void* extra) noexcept {
    gLastError = PF_Err_NONE;
    if (gBusy) return PF_Err_NONE;
    const std::lock_guard<std::mutex> myTurn(turn());

    // A host that hands nothing over can still ask for the text about the effect.
    PF_InData noInput{};
    PF_OutData noOutput{};
    PF_InData& in = in_data != nullptr ? *in_data : noInput;
    PF_OutData& out = out_data != nullptr ? *out_data : noOutput;
    serve(cmd, in, out, params, output, extra);
    return gLastError;
}

}  // namespace orvin
