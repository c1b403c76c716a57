#include "host/Dispatch.h"

#include <algorithm>
#include <cstring>

#include "host/EffectIdentity.h"
#include "host/Events.h"
#include "host/Flatten.h"
#include "host/HostState.h"
#include "host/OrvinApp.h"
#include "host/PanelSurface.h"
#include "host/ParamCheckout.h"
#include "host/ParameterTable.h"
#include "host/Stash.h"

namespace orvin {

namespace {

constexpr std::size_t kRenderReserveSize = 200000;

// Host memory held as gRenderReserve while a frame is made.
class RenderReserve {
  public:
    explicit RenderReserve(HandleMemory& memory) : memory_(memory) {
        gRenderReserve = memory_.allocate(kRenderReserveSize);
    }
    ~RenderReserve() {
        if (gRenderReserve != nullptr) memory_.dispose(gRenderReserve);
        gRenderReserve = nullptr;
    }
    RenderReserve(const RenderReserve&) = delete;
    RenderReserve& operator=(const RenderReserve&) = delete;

  private:
    HandleMemory& memory_;
};

void about(PF_OutData& out) {
    const std::size_t size = std::min(kAboutText.size(), sizeof out.return_msg - 1);
    std::memcpy(out.return_msg, kAboutText.data(), size);
    out.return_msg[size] = '\0';
}

void globalSetup(PF_OutData& out) {
    out.my_version = kEffectVersion;
    out.out_flags = kEffectOutFlags;
    if (gHostHasCompLinks) out.out_flags2 = kEffectOutFlags2;
}

PF_Err dialog(const CommandCall& call) {
    OrvinApp& app = *call.view.record()->app;
    // OpenGL or not is the panel's own choice: the window must not change it behind its back.
    const auto lowByte = [&app] {
        return static_cast<unsigned>(app.renderState().renderMethod) & 0xFFU;
    };
    const bool wasZero = lowByte() == 0;
    app.Run();
    if ((lowByte() == 0) != wasZero) app.renderState().renderMethod = wasZero ? 0 : 2;
    if (app.panel() != nullptr) call.out.out_flags |= PF_OutFlag_REFRESH_UI;
    invalidateMainWindow(call.in);
    return PF_Err_NONE;
}

PF_Err render(const CommandCall& call) {
    SequenceRecord& record = *call.view.record();
    OrvinApp& app = *record.app;
    const RenderReserve reserve(call.memory);
    if (gRenderReserve == nullptr) return PF_Err_OUT_OF_MEMORY;
    if (call.output == nullptr || call.params == nullptr) return PF_Err_BAD_CALLBACK_PARAM;

    if (record.paramsApplied == 0) {
        record.paramsApplied = 1;
        applyUseCompSwitches(app, call.in, call.params);
    }
    PF_Err error = poseScene(app, call.in, call.out, call.params, {true, true});
    record.lastPoseTime = call.in.current_time;
    if (error == PF_Err_NONE)
        error = renderFrame(app, call.in, call.out, call.params, *call.output);

    if (!gUiRefreshed) call.out.out_flags |= PF_OutFlag_REFRESH_UI;
    gUiRefreshed = false;
    return error;
}

PF_Err userChangedParam(const CommandCall& call) {
    if (const auto* changed = static_cast<const PF_UserChangedParamExtra*>(call.extra))
        call.view.record()->pendingParam = changed->param_index;
    return PF_Err_NONE;
}

PF_Err updateParamsUi(const CommandCall& call) {
    SequenceRecord& record = *call.view.record();
    if (record.pendingParam != 0 && !gDragging && call.params != nullptr)
        applyUserChange(*record.app, call.in, call.out, call.params, record.pendingParam);
    record.pendingParam = 0;
    gUiRefreshed = true;
    return PF_Err_NONE;
}

bool hasInputLayer(ParamArray params) {
    return params[0] != nullptr && params[0]->u.ld.width > 0 && params[0]->u.ld.height > 0;
}

PF_Err event(const CommandCall& call) {
    auto* extra = static_cast<PF_EventExtra*>(call.extra);
    if (extra == nullptr) return PF_Err_NONE;
    SequenceRecord& record = *call.view.record();
    gDragging = extra->e_type == PF_Event_DO_CLICK || extra->e_type == PF_Event_DRAG;
    if (call.params != nullptr &&
        (extra->e_type == PF_Event_DRAW || call.in.current_time != record.lastPoseTime)) {
        const PoseOptions options{false, hasInputLayer(call.params)};
        const PF_Err error = poseScene(*record.app, call.in, call.out, call.params, options);
        record.lastPoseTime = call.in.current_time;
        if (error != PF_Err_NONE) return error;
    }
    serveEvent({*record.app, record, call.in, call.out, call.params, *extra});
    return PF_Err_NONE;
}

PF_Err queryDynamicFlags(const CommandCall& call) {
    if (!gHostHasCompLinks) return PF_Err_NONE;
    constexpr struct {
        PF_ParamIndex index;
        PF_OutFlags2 flag;
    } kLinks[] = {{param::kUseCompCamera, PF_OutFlag2_I_USE_3D_CAMERA},
                  {param::kUseCompLights, PF_OutFlag2_I_USE_3D_LIGHTS}};
    for (const auto& link : kLinks) {
        const ParamCheckout box(call.in, link.index);
        if (box.error() != PF_Err_NONE) return box.error();
        if (box.param().u.bd.value != 0)
            call.out.out_flags2 |= link.flag;
        else
            call.out.out_flags2 &= ~link.flag;
    }
    return PF_Err_NONE;
}

PF_Err liveCommand(const CommandCall& call) {
    if (!call.view.isLive()) return PF_Err_NONE;
    switch (call.cmd) {
        case PF_Cmd_DO_DIALOG:
            return dialog(call);
        case PF_Cmd_RENDER:
            return render(call);
        case PF_Cmd_USER_CHANGED_PARAM:
            return userChangedParam(call);
        case PF_Cmd_UPDATE_PARAMS_UI:
            return updateParamsUi(call);
        default:
            return event(call);
    }
}

}  // namespace

PF_Err dispatch(const CommandCall& call) {
    const SequenceCall sequence{call.memory, call.view, call.in, call.out};
    switch (call.cmd) {
        case PF_Cmd_ABOUT:
            about(call.out);
            return PF_Err_NONE;
        case PF_Cmd_GLOBAL_SETUP:
            globalSetup(call.out);
            return PF_Err_NONE;
        case PF_Cmd_GLOBAL_SETDOWN:
            dropStash(call.memory);  // an instance that was flattened and never came back
            return PF_Err_NONE;
        case PF_Cmd_PARAMS_SETUP:
            return addParameters(call.in, call.out);
        case PF_Cmd_SEQUENCE_SETUP:
            return setUpSequence(sequence);
        case PF_Cmd_SEQUENCE_RESETUP:
            return setUpSequenceAgain(sequence);
        case PF_Cmd_SEQUENCE_FLATTEN:
            return flattenSequence(sequence);
        case PF_Cmd_SEQUENCE_SETDOWN:
            setDownSequence(sequence);
            return PF_Err_NONE;
        case PF_Cmd_DO_DIALOG:
        case PF_Cmd_RENDER:
        case PF_Cmd_USER_CHANGED_PARAM:
        case PF_Cmd_UPDATE_PARAMS_UI:
        case PF_Cmd_EVENT:
            return liveCommand(call);
        case PF_Cmd_QUERY_DYNAMIC_FLAGS:
            return queryDynamicFlags(call);
        default:
            return PF_Err_NONE;
    }
}

}  // namespace orvin
