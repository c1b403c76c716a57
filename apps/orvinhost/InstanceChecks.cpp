// What an Instance looks at when a command has come back.
#include "orvinhost/Instance.h"

#include "orvinhost/Serving.h"

#include <algorithm>
#include <cstring>

namespace orvin::stand_in {
namespace {

constexpr PF_OutFlags kReservedFlags = (1 << 3) | (1 << 14) | (1 << 16);
constexpr PF_OutFlags2 kReservedFlags2 = (1 << 9) | (1 << 11) | (1 << 16) | (1 << 26);
constexpr PF_OutFlags kPiplOnly = PF_OutFlag_PiPL_OVERRIDES_OUTDATA_OUTFLAGS;
// A bit here may change in QUERY_DYNAMIC_FLAGS.
constexpr PF_OutFlags2 kDynamic2 =
    PF_OutFlag2_I_USE_3D_CAMERA | PF_OutFlag2_I_USE_3D_LIGHTS | (1 << 6) | (1 << 7) | (1 << 8);

PF_OutFlags runtimeFlags(PF_Cmd command) {
    PF_OutFlags allowed = PF_OutFlag_DISPLAY_ERROR_MESSAGE;
    if (command == PF_Cmd_EVENT || command == PF_Cmd_RENDER || command == PF_Cmd_DO_DIALOG)
        allowed |= PF_OutFlag_REFRESH_UI;
    if (command == PF_Cmd_EVENT || command == PF_Cmd_USER_CHANGED_PARAM ||
        command == PF_Cmd_UPDATE_PARAMS_UI)
        allowed |= PF_OutFlag_FORCE_RERENDER;
    if (command == PF_Cmd_FRAME_SETUP) allowed |= PF_OutFlag_NOP_RENDER;
    return allowed;
}

// Only there may the effect change parameter values.
bool mayChangeParams(PF_Cmd command, PF_EventType event) {
    return command == PF_Cmd_USER_CHANGED_PARAM ||
           (command == PF_Cmd_EVENT &&
            (event == PF_Event_DO_CLICK || event == PF_Event_DRAG || event == PF_Event_KEYDOWN));
}

std::string hex(unsigned value) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    do {
        text.insert(text.begin(), kDigits[value & 15u]);
        value >>= 4;
    } while (value != 0);
    return "0x" + text;
}

}  // namespace

Outcome Instance::collect(Serving& serving, PF_Err error) {
    checkStructures(serving);
    checkCheckouts(serving);
    checkParams(serving);
    checkFlags(serving);
    takeSequence(serving, error);
    const PF_Cmd command = serving.call.command;
    const PF_OutData& out = serving.out.value;
    if (command == PF_Cmd_PARAMS_SETUP && error == PF_Err_NONE) {
        host_.params().checkComplete(out.num_params, [this](Rule rule, const std::string& detail) {
            host_.report(rule, detail);
        });
        if (controlParam() >= 0 && !host_.hasCustomUi)
            host_.report(Rule::kCustomUi, "a control of the effect's, but no register_ui");
    }
    if (command == PF_Cmd_RENDER && serving.outputWorld != nullptr) {
        if (!serving.outputWorld->guardsIntact())
            host_.report(Rule::kOutputOverrun, "the output world");
        const long long unwritten = serving.outputWorld->unwrittenPixels();
        // One pixel in four thousand million looks like the pattern by chance.
        if (error == PF_Err_NONE && !serving.call.stopped && unwritten > 4)
            host_.report(Rule::kOutputUnwritten, std::to_string(unwritten) + " pixel(s)");
    }
    if (!serving.input.empty()) {
        const bool mayWrite = (host_.outFlags & PF_OutFlag_I_WRITE_INPUT_BUFFER) != 0;
        if (!serving.input.guardsIntact()) host_.report(Rule::kOutputOverrun, "the input world");
        if (!mayWrite && serving.input.checksum() != serving.inputChecksum)
            host_.report(Rule::kInputWritten, "pixels of the input layer");
    }
    if (serving.call.stopped && error == PF_Err_NONE)
        host_.report(Rule::kAbortIgnored, "the command's result was 0");
    host_.handles().checkAfterCommand();

    Outcome outcome;
    outcome.error = error;
    outcome.flags = out.out_flags;
    outcome.aborted = serving.call.stopped;
    outcome.message.assign(out.return_msg, strnlen(out.return_msg, sizeof out.return_msg));
    std::replace(outcome.message.begin(), outcome.message.end(), '\r', '\n');
    outcome.isError = (out.out_flags & PF_OutFlag_DISPLAY_ERROR_MESSAGE) != 0;
    return outcome;
}

void Instance::checkStructures(Serving& serving) {
    const PF_InData& in = serving.in.value;
    const PF_OutData& out = serving.out.value;
    if (!serving.in.intact()) host_.report(Rule::kDataOverrun, "around PF_InData");
    if (!serving.out.intact()) host_.report(Rule::kDataOverrun, "around PF_OutData");
    if (!serving.output.intact()) host_.report(Rule::kDataOverrun, "around the output PF_LayerDef");
    for (std::size_t i = 0; i < serving.params.size(); ++i)
        if (!serving.params[i].intact())
            host_.report(Rule::kDataOverrun, "around parameter " + std::to_string(i));
    PF_InData expected = serving.inBefore;
    expected.sequence_data = in.sequence_data;
    if (std::memcmp(&expected, &in, sizeof in) != 0)
        host_.report(Rule::kInDataWritten, "a field other than sequence_data");
    if (strnlen(out.return_msg, sizeof out.return_msg) == sizeof out.return_msg)
        host_.report(Rule::kMessageUnterminated, "no end within 256 bytes");
    if (serving.call.command == PF_Cmd_FRAME_SETUP) {
        frameData_ = out.frame_data;
        constexpr PF_OutFlags kResizes = PF_OutFlag_I_EXPAND_BUFFER | PF_OutFlag_I_SHRINK_BUFFER;
        if ((out.width != 0 || out.height != 0) && (host_.outFlags & kResizes) == 0)
            host_.report(Rule::kFrameSize,
                         std::to_string(out.width) + " x " + std::to_string(out.height));
    } else if (out.frame_data != serving.inBefore.frame_data) {
        if (serving.call.command != PF_Cmd_FRAME_SETDOWN)
            host_.report(Rule::kFrameData, "frame_data changed outside FRAME_SETUP");
        frameData_ = out.frame_data;
    }
    if (serving.call.command == PF_Cmd_FRAME_SETDOWN && !host_.handles().alive(frameData_))
        frameData_ = nullptr;
}

void Instance::checkCheckouts(Serving& serving) {
    for (const auto& entry : serving.call.checkedOut)
        host_.report(Rule::kCheckoutBalance,
                     "parameter " + std::to_string(entry.second.index) + " isn't checked in");
    serving.call.checkedOut.clear();
}

void Instance::checkParams(Serving& serving) {
    const bool mayChange = mayChangeParams(serving.call.command, serving.call.event);
    const bool handled =
        serving.event == nullptr || (serving.event->evt_out_flags & PF_EO_HANDLED_EVENT) != 0;
    for (std::size_t i = 0; i < serving.params.size(); ++i) {
        const PF_ParamDef& now = serving.params[i].value;
        const PF_ParamDef& before = serving.paramsBefore[i];
        if (std::memcmp(&now, &before, sizeof now) == 0) continue;
        const std::string who = "parameter " + std::to_string(i);
        const bool flagged = (now.uu.change_flags & PF_ChangeFlag_CHANGED_VALUE) != 0;
        if (!mayChange) {
            host_.report(Rule::kParamsWritten, who);
        } else if (now.param_type != before.param_type || (now.param_type == PF_Param_LAYER)) {
            host_.report(Rule::kParamsWritten, who + " can't be changed");
        } else if (!flagged && !ParamList::sameValue(now, before)) {
            host_.report(Rule::kParamsWritten, who + " without CHANGED_VALUE");
        } else if (flagged && !handled) {
            host_.report(Rule::kParamsWritten, who + " by an event that wasn't handled");
        } else if (flagged) {
            host_.params().takeValue(static_cast<int>(i), serving.call.frame, now);
        }
    }
}

void Instance::checkFlags(Serving& serving) {
    const PF_OutData& out = serving.out.value;
    const PF_Cmd command = serving.call.command;
    if (command == PF_Cmd_GLOBAL_SETUP) {
        host_.outFlags = out.out_flags & ~PF_OutFlag_DISPLAY_ERROR_MESSAGE;
        host_.outFlags2 = out.out_flags2;
        host_.currentFlags2 = out.out_flags2;
        host_.effectVersion = out.my_version;
        host_.globalData = out.global_data;
        if ((out.out_flags & (kReservedFlags | kPiplOnly | PF_OutFlag_REFRESH_UI)) != 0 ||
            (out.out_flags2 & kReservedFlags2) != 0)
            host_.report(Rule::kGlobalFlags,
                         "out_flags " + hex(static_cast<unsigned>(out.out_flags)) +
                             ", out_flags2 " + hex(static_cast<unsigned>(out.out_flags2)));
        if (out.my_version == 0) host_.report(Rule::kVersionWord, "my_version is 0");
        return;
    }
    if (command == PF_Cmd_GLOBAL_SETDOWN) host_.globalData = out.global_data;
    const PF_OutFlags stray = out.out_flags & ~(host_.outFlags | runtimeFlags(command));
    if (stray != 0)
        host_.report(Rule::kFlagsUndeclared, "out_flags " + hex(static_cast<unsigned>(stray)));
    const PF_OutFlags2 changed = out.out_flags2 ^ serving.flags2Before;
    if (command != PF_Cmd_QUERY_DYNAMIC_FLAGS) {
        if (changed != 0)
            host_.report(Rule::kFlagsDynamic,
                         "out_flags2 changed by " + hex(static_cast<unsigned>(changed)));
        return;
    }
    if ((changed & ~(kDynamic2 & host_.outFlags2)) != 0)
        host_.report(Rule::kFlagsDynamic,
                     "out_flags2 changed by " + hex(static_cast<unsigned>(changed)));
    host_.currentFlags2 = out.out_flags2;
}

void Instance::takeSequence(Serving& serving, PF_Err error) {
    const PF_Cmd command = serving.call.command;
    const PF_Handle before = serving.inBefore.sequence_data;
    const PF_Handle now = serving.out.value.sequence_data;
    const HandleTable& handles = host_.handles();
    const bool sound = now == nullptr || handles.alive(now);
    switch (command) {
        case PF_Cmd_SEQUENCE_SETUP:
        case PF_Cmd_SEQUENCE_RESETUP:
        case PF_Cmd_SEQUENCE_FLATTEN:
            if (error != PF_Err_NONE) {
                // A failed flatten leaves the instance as it was. Otherwise there is none, and
                // what is left in sequence_data is the host's to clear away.
                if (command == PF_Cmd_SEQUENCE_FLATTEN && handles.alive(before)) return;
                host_.handles().hostDispose(now);
                host_.handles().hostDispose(before);
                sequence_ = nullptr;
                return;
            }
            if (!sound) host_.report(Rule::kSequenceHandle, "after " + commandName(command));
            sequence_ = sound ? now : nullptr;
            if (command == PF_Cmd_SEQUENCE_FLATTEN) {
                const std::vector<std::uint8_t> flat = handles.bytes(sequence_);
                if (flat.empty())
                    host_.report(Rule::kSequenceFlat, "no data");
                else if (handles.holdsAddress(flat))
                    host_.report(Rule::kSequenceFlat, "the address of a handle is in the data");
            }
            return;
        case PF_Cmd_SEQUENCE_SETDOWN:
            if (!sound || (now != nullptr && now == before))
                host_.report(Rule::kSequenceHandle, "sequence_data isn't cleared");
            sequence_ = nullptr;
            return;
        default:
            if (now != before || (before != nullptr && !handles.alive(before))) {
                host_.report(Rule::kSequenceSwapped, "sequence_data changed");
                if (!handles.alive(sequence_)) sequence_ = sound ? now : nullptr;
            }
            return;
    }
}

}  // namespace orvin::stand_in
