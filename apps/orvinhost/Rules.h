// The rules that a host holds an effect to, and the book in which broken ones are written down.
#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orvin::stand_in {

enum class Rule {
    kHandleLeak,
    kHandleLockedAfterCommand,
    kHandleUnlockedTooOften,
    kHandleUnknown,
    kHandleDisposedTwice,
    kHandleDisposedLocked,
    kHandleOverrun,
    kHandleResizedLocked,
    kHandleUnlockedForHost,
    kGlobalFlags,
    kVersionWord,
    kFlagsUndeclared,
    kFlagsDynamic,
    kMessageUnterminated,
    kDataOverrun,
    kInDataWritten,
    kParamsWritten,
    kParamCleared,
    kParamName,
    kParamId,
    kParamType,
    kParamDefault,
    kParamRange,
    kParamPopup,
    kParamFlags,
    kParamCount,
    kParamGroups,
    kParamStrings,
    kParamOutside,
    kCustomUi,
    kCheckoutForbidden,
    kCheckoutLayerInEvent,
    kCheckoutIndex,
    kCheckoutTime,
    kCheckoutBalance,
    kCheckinUnknown,
    kUpdateUiOutside,
    kUpdateUiNotACopy,
    kUpdateUiValue,
    kSequenceHandle,
    kSequenceSwapped,
    kSequenceFlat,
    kFrameData,
    kFrameSize,
    kInputWritten,
    kOutputOverrun,
    kOutputUnwritten,
    kWorldLeak,
    kAbortIgnored,
    kProgressRange,
    kSuiteUnbalanced,
    kSuiteReleased,
    kSuiteSlot27,
    kSuiteArgument,
    kSuiteOutside,
    kStreamLeak,
    kDrawOutside,
    kDrawObject,
    kDrawLeak,
    kCallbackUnsupported,
    kCallbackRef,
    kCallbackOutside,
    kCallbackArgument,
    kCrossedBorder,
    kPiPL,
    kCount
};

/// How bad a broken rule is: an oddity is written down but costs nothing.
enum class Weight { kBroken, kOddity };

struct RuleText {
    Rule rule;
    Weight weight;
    const char* id;
    const char* text;
};

/// All rules, in the order of the enum.
std::span<const RuleText> allRules();
const RuleText& ruleText(Rule rule);

struct Finding {
    Rule rule = Rule::kCount;
    std::string command;  // during which it was noticed, "" between commands
    std::string detail;
    int times = 1;
};

/// Collects findings; the same one again only counts. Safe on several threads.
class RuleBook {
  public:
    void record(Rule rule, std::string_view command, std::string_view detail);
    std::vector<Finding> findings() const;
    /// Findings of weight kBroken, each counted once.
    int brokenCount() const;
    bool has(Rule rule) const;

  private:
    mutable std::mutex mutex_;
    std::vector<Finding> findings_;
};

/// One line: "broken handle.leak during PF_Cmd_RENDER: ...".
std::string findingLine(const Finding& finding);

}  // namespace orvin::stand_in
