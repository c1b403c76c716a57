// PF_InteractCallbacks: parameters, abort and progress, custom UI.
#include "orvinhost/Host.h"
#include "orvinhost/Unsupported.h"

#include <cstring>

namespace orvin::stand_in {
namespace {

std::string paramText(int index) {
    return "parameter " + std::to_string(index);
}

// Commands in which parameters have no values for the effect.
bool checkoutForbidden(PF_Cmd command) {
    switch (command) {
        case PF_Cmd_ABOUT:
        case PF_Cmd_GLOBAL_SETUP:
        case PF_Cmd_GLOBAL_SETDOWN:
        case PF_Cmd_PARAMS_SETUP:
        case PF_Cmd_SEQUENCE_SETDOWN:
        case PF_Cmd_UPDATE_PARAMS_UI:
            return true;
        default:
            return false;
    }
}

bool servesUserInterface(PF_Cmd command) {
    return command == PF_Cmd_EVENT || command == PF_Cmd_USER_CHANGED_PARAM ||
           command == PF_Cmd_DO_DIALOG;
}

PF_Err checkoutParam(PF_ProgPtr effectRef, PF_ParamIndex index, A_long time, A_long, A_u_long scale,
                     PF_ParamDef* out) {
    Call* call = Host::enterCallback("checkout_param", effectRef);
    if (call == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    Host& host = call->host;
    if (out == nullptr) {
        host.report(Rule::kCallbackArgument, "checkout_param without a place for the answer");
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    if (index < 0 || index >= host.params().count()) {
        host.report(Rule::kCheckoutIndex, "check-out of " + paramText(index));
        return PF_Err_INVALID_INDEX;
    }
    if (scale == 0) {
        host.report(Rule::kCheckoutTime, "check-out of " + paramText(index));
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    const bool layer = host.params()[index].def.param_type == PF_Param_LAYER;
    if (checkoutForbidden(call->command))
        host.report(Rule::kCheckoutForbidden, "check-out of " + paramText(index));
    else if (layer && servesUserInterface(call->command))
        host.report(Rule::kCheckoutLayerInEvent, "check-out of " + paramText(index));
    if (call->checkedOut.find(out) != call->checkedOut.end())
        host.report(Rule::kCheckoutBalance,
                    "check-out of " + paramText(index) + " into one that is checked out");

    const double frame = host.settings().frameOf(time, scale);
    *out = host.params().valueAt(index, frame);
    Call::CheckedOut& held = call->checkedOut[out];
    held = {};
    held.index = index;
    if (layer) {
        held.world = host.layerWorld(index, frame);
        held.world.describe(out->u.ld, false, host.settings().pixelAspect);
    }
    held.checksum = held.world.checksum();
    return PF_Err_NONE;
}

PF_Err checkinParam(PF_ProgPtr effectRef, PF_ParamDef* param) {
    Call* call = Host::enterCallback("checkin_param", effectRef);
    if (call == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    const auto held = call->checkedOut.find(param);
    if (held == call->checkedOut.end()) {
        call->host.report(Rule::kCheckinUnknown, "check-in of what isn't checked out");
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    if (!held->second.world.guardsIntact() ||
        held->second.world.checksum() != held->second.checksum)
        call->host.report(Rule::kInputWritten, "pixels of " + paramText(held->second.index));
    // The contents are void from now on: whoever still reads them shall notice.
    std::memset(&param->u, 0xDD, sizeof param->u);
    if (call->host.params()[held->second.index].def.param_type == PF_Param_LAYER)
        std::memset(&param->u, 0, sizeof param->u);
    call->checkedOut.erase(held);
    return PF_Err_NONE;
}

PF_Err addParam(PF_ProgPtr effectRef, PF_ParamIndex index, PF_ParamDef* def) {
    Call* call = Host::enterCallback("add_param", effectRef);
    if (call == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    Host& host = call->host;
    if (def == nullptr) {
        host.report(Rule::kCallbackArgument, "add_param without a definition");
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    if (call->command != PF_Cmd_PARAMS_SETUP) {
        host.report(Rule::kParamOutside, "add_param");
        return PF_Err_INVALID_CALLBACK;
    }
    if (index != -1 && index != host.params().count()) {
        host.report(Rule::kCheckoutIndex, "add_param at index " + std::to_string(index));
        return PF_Err_INVALID_INDEX;
    }
    host.params().add(*def,
                      [&host](Rule rule, const std::string& detail) { host.report(rule, detail); });
    return PF_Err_NONE;
}

PF_Err abortPoll(PF_ProgPtr effectRef) {
    Call* call = Host::enterCallback("abort", effectRef);
    return call == nullptr ? PF_Err_BAD_CALLBACK_PARAM : call->host.poll(*call);
}

PF_Err progress(PF_ProgPtr effectRef, A_long current, A_long total) {
    Call* call = Host::enterCallback("progress", effectRef);
    if (call == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    if (total < 0 || (total > 0 && (current < 0 || current > total)))
        call->host.report(Rule::kProgressRange,
                          std::to_string(current) + " of " + std::to_string(total));
    if (total > 0) call->host.showProgress(static_cast<double>(current) / total);
    return call->host.poll(*call);
}

PF_Err registerUi(PF_ProgPtr effectRef, PF_CustomUIInfo* info) {
    Call* call = Host::enterCallback("register_ui", effectRef);
    if (call == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    Host& host = call->host;
    if (info == nullptr) {
        host.report(Rule::kCallbackArgument, "register_ui without information");
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    if (call->command != PF_Cmd_PARAMS_SETUP || host.hasCustomUi)
        host.report(Rule::kParamOutside, "register_ui");
    if ((info->events & ~0xF) != 0 || info->reserved != 0)
        host.report(Rule::kCustomUi, "reserved bits in PF_CustomUIInfo");
    if ((host.outFlags & PF_OutFlag_CUSTOM_UI) == 0)
        host.report(Rule::kCustomUi, "register_ui without the flag CUSTOM_UI");
    host.customUi = *info;
    host.hasCustomUi = true;
    return PF_Err_NONE;
}

}  // namespace

PF_InteractCallbacks interactCallbacks() {
    PF_InteractCallbacks table{};
    table.checkout_param = checkoutParam;
    table.checkin_param = checkinParam;
    table.add_param = addParam;
    table.abort = abortPoll;
    table.progress = progress;
    table.register_ui = registerUi;
    table.checkout_layer_audio = unsupportedSlot<"checkout_layer_audio">();
    table.checkin_layer_audio = unsupportedSlot<"checkin_layer_audio">();
    table.get_audio_data = unsupportedSlot<"get_audio_data">();
    return table;
}

}  // namespace orvin::stand_in
