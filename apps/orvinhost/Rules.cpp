#include "orvinhost/Rules.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace orvin::stand_in {
namespace {

constexpr Weight kBroken = Weight::kBroken;
constexpr Weight kOddity = Weight::kOddity;

constexpr std::array<RuleText, static_cast<std::size_t>(Rule::kCount)> kRules{{
    {Rule::kHandleLeak, kBroken, "handle.leak",
     "Every handle that the effect makes is disposed of, or handed to the host, by the end."},
    {Rule::kHandleLockedAfterCommand, kBroken, "handle.left-locked",
     "The effect gives back its locks before a command ends."},
    {Rule::kHandleUnlockedTooOften, kBroken, "handle.unlock-unlocked",
     "A handle is unlocked as often as it was locked, no more."},
    {Rule::kHandleUnknown, kBroken, "handle.unknown",
     "Only handles of the host's are passed to its handle functions."},
    {Rule::kHandleDisposedTwice, kBroken, "handle.disposed",
     "A handle isn't used after it was disposed of."},
    {Rule::kHandleDisposedLocked, kBroken, "handle.dispose-locked",
     "A handle is unlocked before it is disposed of, unless the host handed it in locked."},
    {Rule::kHandleOverrun, kBroken, "handle.overrun",
     "Nothing is written outside a handle's size."},
    {Rule::kHandleResizedLocked, kOddity, "handle.resize-locked",
     "A handle is unlocked before it is resized: its data may move."},
    {Rule::kHandleUnlockedForHost, kOddity, "handle.unlock-hosts",
     "The lock with which the host hands a handle in is the host's to take back."},
    {Rule::kGlobalFlags, kBroken, "global.flags",
     "GLOBAL_SETUP sets no reserved bit, and no bit that makes sense only at run time."},
    {Rule::kVersionWord, kBroken, "global.version", "GLOBAL_SETUP reports the effect's version."},
    {Rule::kFlagsUndeclared, kBroken, "flags.undeclared",
     "out_flags at run time holds only what GLOBAL_SETUP declared, and the run-time bits that the "
     "command may send."},
    {Rule::kFlagsDynamic, kBroken, "flags.dynamic",
     "QUERY_DYNAMIC_FLAGS changes only dynamic bits that were on at GLOBAL_SETUP; no other command "
     "changes out_flags2."},
    {Rule::kMessageUnterminated, kBroken, "message.unterminated",
     "return_msg is a C string of at most 255 characters."},
    {Rule::kDataOverrun, kBroken, "data.overrun",
     "Nothing is written outside the structures that the host hands in."},
    {Rule::kInDataWritten, kBroken, "indata.written",
     "PF_InData is the host's (its sequence_data may be mirrored)."},
    {Rule::kParamsWritten, kBroken, "params.written",
     "Parameter values change only in USER_CHANGED_PARAM, click, drag and key events, with "
     "CHANGED_VALUE set and the event marked handled."},
    {Rule::kParamCleared, kBroken, "param.cleared",
     "A parameter definition is cleared before it is filled."},
    {Rule::kParamName, kBroken, "param.name", "A parameter's name has at most 31 characters."},
    {Rule::kParamId, kBroken, "param.id", "Parameter ids are positive and differ."},
    {Rule::kParamType, kBroken, "param.type", "The parameter's type is one that this host knows."},
    {Rule::kParamDefault, kBroken, "param.default",
     "A parameter comes with its value equal to its default."},
    {Rule::kParamRange, kBroken, "param.range",
     "Valid and slider ranges are in order, with the default inside the valid one."},
    {Rule::kParamPopup, kBroken, "param.popup",
     "A popup's choices are given, counted right, and its default is one of them."},
    {Rule::kParamFlags, kBroken, "param.flags", "No reserved bit in flags and ui_flags."},
    {Rule::kParamCount, kBroken, "param.count",
     "num_params is the count of added parameters plus the input layer."},
    {Rule::kParamGroups, kBroken, "param.groups", "Each group start has its group end."},
    {Rule::kParamStrings, kBroken, "param.strings",
     "Labels and choices stay where they are as long as the effect is loaded."},
    {Rule::kParamOutside, kBroken, "param.outside",
     "Parameters and custom UI are added in PARAMS_SETUP, once."},
    {Rule::kCustomUi, kBroken, "custom-ui",
     "A parameter with its own control needs CUSTOM_UI, register_ui and a size."},
    {Rule::kCheckoutForbidden, kBroken, "checkout.forbidden",
     "Parameters aren't checked out where they have no values (the set-up and set-down commands of "
     "the module, ABOUT) nor in UPDATE_PARAMS_UI."},
    {Rule::kCheckoutLayerInEvent, kBroken, "checkout.layer-in-event",
     "Layer parameters aren't checked out while the user interface is served."},
    {Rule::kCheckoutIndex, kBroken, "checkout.index", "Check-outs name a parameter that exists."},
    {Rule::kCheckoutTime, kBroken, "checkout.time", "Check-outs name a time scale above 0."},
    {Rule::kCheckoutBalance, kBroken, "checkout.balance",
     "What is checked out is checked in before the command ends."},
    {Rule::kCheckinUnknown, kBroken, "checkin.unknown",
     "Only what is checked out is checked in, and once."},
    {Rule::kUpdateUiOutside, kOddity, "update-ui.outside",
     "PF_UpdateParamUI is meant for USER_CHANGED_PARAM and UPDATE_PARAMS_UI."},
    {Rule::kUpdateUiNotACopy, kBroken, "update-ui.copy",
     "PF_UpdateParamUI gets a copy of the parameter, never the host's own, never the input layer."},
    {Rule::kUpdateUiValue, kBroken, "update-ui.value",
     "PF_UpdateParamUI changes looks, not values or types."},
    {Rule::kSequenceHandle, kBroken, "sequence.handle",
     "sequence_data is null or a living handle of the host's."},
    {Rule::kSequenceSwapped, kBroken, "sequence.swapped",
     "Only the sequence commands change sequence_data."},
    {Rule::kSequenceFlat, kBroken, "sequence.flat",
     "A successful FLATTEN leaves a handle other than the live one, without pointers into memory."},
    {Rule::kFrameData, kBroken, "frame.data",
     "frame_data made in FRAME_SETUP is gone after FRAME_SETDOWN."},
    {Rule::kFrameSize, kBroken, "frame.size",
     "The output's size changes only with I_EXPAND_BUFFER or I_SHRINK_BUFFER."},
    {Rule::kInputWritten, kBroken, "input.written",
     "Layers are read only (unless I_WRITE_INPUT_BUFFER is declared)."},
    {Rule::kOutputOverrun, kBroken, "output.overrun",
     "Nothing is written beside the rows of a world."},
    {Rule::kOutputUnwritten, kBroken, "output.unwritten",
     "A render that succeeds has written every pixel."},
    {Rule::kWorldLeak, kBroken, "world.leak", "Worlds made by the effect are disposed of."},
    {Rule::kAbortIgnored, kBroken, "abort.ignored",
     "A non-zero answer of abort or progress goes back to the host as the command's result."},
    {Rule::kProgressRange, kBroken, "progress.range", "Progress runs from 0 to its total."},
    {Rule::kSuiteUnbalanced, kBroken, "suite.balance",
     "Each acquired suite is released, with the same name and version."},
    {Rule::kSuiteReleased, kBroken, "suite.release", "Only acquired suites are released."},
    {Rule::kSuiteSlot27, kOddity, "suite.slot-27",
     "PF Param Utils Suite released under the name of PF Path Data Suite: an old habit; one count "
     "stays too high and the release fails."},
    {Rule::kSuiteArgument, kBroken, "suite.argument",
     "Suite functions get valid handles, indices, times and places for the answer."},
    {Rule::kSuiteOutside, kOddity, "suite.outside",
     "The comp is documented for FRAME_SETUP, RENDER and the draw event only."},
    {Rule::kStreamLeak, kBroken, "stream.leak", "Streams and stream values are disposed of."},
    {Rule::kDrawOutside, kBroken, "draw.outside", "Drawing happens only while DRAW is served."},
    {Rule::kDrawObject, kBroken, "draw.object",
     "Drawing objects are the ones that the host made, and alive."},
    {Rule::kDrawLeak, kBroken, "draw.leak",
     "Drawing objects are released, and the state stack is popped, before DRAW ends."},
    {Rule::kCallbackUnsupported, kBroken, "callback.unsupported",
     "The effect lives without the callbacks that this host answers with 515."},
    {Rule::kCallbackRef, kBroken, "callback.effect-ref",
     "Callbacks get the effect_ref of the command."},
    {Rule::kCallbackOutside, kBroken, "callback.outside",
     "Callbacks are called only while a command is served, on the command's thread."},
    {Rule::kCallbackArgument, kBroken, "callback.argument",
     "Callbacks get a place for their answer and sane arguments."},
    {Rule::kCrossedBorder, kBroken, "entry.throws", "No exception leaves the effect's entry."},
    {Rule::kPiPL, kBroken, "pipl.mismatch",
     "The PiPL resource agrees with what GLOBAL_SETUP reports."},
}};

constexpr bool inOrder() {
    for (std::size_t i = 0; i < kRules.size(); ++i)
        if (kRules[i].rule != static_cast<Rule>(i)) return false;
    return true;
}
static_assert(inOrder(), "one text for each rule, in the order of the enum");

}  // namespace

std::span<const RuleText> allRules() {
    return kRules;
}

const RuleText& ruleText(Rule rule) {
    return kRules[static_cast<std::size_t>(rule)];
}

void RuleBook::record(Rule rule, std::string_view command, std::string_view detail) {
    const std::lock_guard<std::mutex> guard(mutex_);
    for (Finding& finding : findings_) {
        if (finding.rule != rule || finding.command != command || finding.detail != detail)
            continue;
        ++finding.times;
        return;
    }
    findings_.push_back({rule, std::string(command), std::string(detail), 1});
}

std::vector<Finding> RuleBook::findings() const {
    const std::lock_guard<std::mutex> guard(mutex_);
    return findings_;
}

int RuleBook::brokenCount() const {
    const std::lock_guard<std::mutex> guard(mutex_);
    return static_cast<int>(std::count_if(
        findings_.begin(), findings_.end(),
        [](const Finding& finding) { return ruleText(finding.rule).weight == kBroken; }));
}

bool RuleBook::has(Rule rule) const {
    const std::lock_guard<std::mutex> guard(mutex_);
    return std::any_of(findings_.begin(), findings_.end(),
                       [rule](const Finding& finding) { return finding.rule == rule; });
}

std::string findingLine(const Finding& finding) {
    const RuleText& rule = ruleText(finding.rule);
    std::string line = rule.weight == kBroken ? "broken " : "oddity ";
    line += rule.id;
    if (!finding.command.empty()) line += " during " + finding.command;
    line += ": " + finding.detail;
    if (finding.times > 1) line += " (" + std::to_string(finding.times) + " times)";
    return line;
}

}  // namespace orvin::stand_in
