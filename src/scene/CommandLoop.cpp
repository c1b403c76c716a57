// The reading half of the command stack: one command at a time, recovery from unknown tokens, and
// the loop that loads a block.
#include <algorithm>
#include <array>

#include "scene/SceneStream.h"
#include "toolkit/Numbers.h"
#include "toolkit/Questions.h"

namespace orvin {

namespace {

// The one error text, and whether it speaks of expected keys alone.
struct ErrorText {
    std::array<char, 255> bytes{};
    std::size_t size = 0;
    bool expectedRecovery = false;
};
ErrorText gErrorText;

void append(std::string_view text) {
    const std::size_t size = std::min(text.size(), gErrorText.bytes.size() - gErrorText.size);
    std::copy_n(text.data(), size, gErrorText.bytes.data() + gErrorText.size);
    gErrorText.size += size;
}

void formatError(std::string_view opening, std::string_view token, std::string_view className,
                 std::int64_t position) {
    std::array<char, 24> digits;
    const char* const end = writeWhole(digits.data(), position);
    gErrorText.size = 0;
    append(opening);
    append(" <<");
    append(token);
    append(">> for class <<");
    append(className);
    append(">> at byte ");
    append({digits.data(), static_cast<std::size_t>(end - digits.data())});
    append(".");
}

/// Keys that are written and have no reader, with their number of values.
struct UnreadKey {
    std::string_view key;
    int values;
};
constexpr UnreadKey kUnreadKeys[] = {
    {"mapAutoFit", 1},  {"mapType", 1},         {"mapScale", 3},   {"mapPosition", 3},
    {"mapRotation", 3}, {"mapRepeatX", 1},      {"mapRepeatY", 1}, {"mapMirrorX", 1},
    {"mapMirrorY", 1},  {"mapProportional", 1}, {"kerningLen", 1},
};

/// Follows the tokens that a recovery skips, and knows whether all of them belong to unread keys.
class SkippedTokens {
  public:
    void add(std::string_view token) {
        if (valuesLeft_ > 0) {
            --valuesLeft_;
            return;
        }
        const auto* const key = std::find_if(std::begin(kUnreadKeys), std::end(kUnreadKeys),
                                             [&](const UnreadKey& k) { return k.key == token; });
        if (key == std::end(kUnreadKeys))
            allExpected_ = false;
        else
            valuesLeft_ = key->values;
    }
    bool allExpected() const { return allExpected_; }

  private:
    int valuesLeft_ = 0;
    bool allExpected_ = true;
};

}  // namespace

std::string_view sceneErrorText() {
    return {gErrorText.bytes.data(), gErrorText.size};
}

void setSceneErrorText(std::string_view text) {
    gErrorText.size = 0;
    gErrorText.expectedRecovery = false;
    append(text);
}

bool isExpectedRecovery() {
    return gErrorText.expectedRecovery;
}

Result SceneStream::runTopCommand() {
    if (stack_.empty()) {
        setSceneErrorText("Error processing command stack while loading scene.");
        return kFailure;
    }
    return runCommand(*stack_.back());
}

Result SceneStream::runCommand(Persistent& self) {
    setSceneErrorText({});
    const CommandRegistry& commands = self.commandRegistry();
    SkippedTokens skipped;
    for (int attempts = kUnknownTokenLimit - 1;; --attempts) {
        std::string_view token;
        const Result result = nextToken(token);
        if (result == kEndOfInput) return kSuccess;
        token = token.substr(0, kNameCapacity - 1);
        if (result == kSuccess) {
            if (token == kEndOfStream) return kEndOfInput;
            if (const auto* command = commands.find(token);
                command != nullptr && command->value != nullptr) {
                recovered_ = gErrorText.size != 0;
                const Result served = command->value(*this, self);
                if (served != kSuccess) {
                    gErrorText.expectedRecovery = false;
                    // The token's bytes may be gone by now; the registry holds the same ones.
                    formatError("Error processing scene command", command->name, self.className(),
                                position());
                }
                return served;
            }
        }
        skipped.add(token);
        if (gErrorText.size == 0)
            formatError("Warning: Recovering from scene data error for command", token,
                        self.className(), position());
        gErrorText.expectedRecovery = skipped.allExpected();
        if (attempts == 0) {
            gErrorText.expectedRecovery = false;
            formatError("Scene error: unknown command", token, self.className(), position());
            return kFailure;
        }
    }
}

Result endCommand(SceneStream& stream, Persistent& self) {
    std::string_view name;
    if (stream.nextToken(name) != kSuccess || name != self.className()) return kFailure;
    stream.pop();
    return kSuccess;
}

namespace {

void tellErrorText(bool fatal) {
    if (!sceneErrorText().empty() && !isExpectedRecovery())
        questions().showMessage(sceneErrorText(), fatal);
}

}  // namespace

Result loadBlock(SceneStream& stream, Persistent& receiver, std::size_t* openBlocks) {
    // The block's own commands wipe the warning of the one that opened it.
    if (stream.recovered()) tellErrorText(false);
    const std::size_t depth = stream.depth();
    stream.push(receiver);
    Result result = kSuccess;
    while (result == kSuccess && stream.depth() > depth && stream.hasMore()) {
        result = stream.runTopCommand();
        tellErrorText(result != kSuccess && result != kEndOfInput);
        // A text that was shown isn't shown again by the loop around this one.
        if (result == kSuccess) setSceneErrorText({});
    }
    if (openBlocks != nullptr) *openBlocks = stream.depth() - std::min(depth, stream.depth());
    stream.unwind(depth);
    return result == kEndOfInput ? kSuccess : result;
}

}  // namespace orvin
