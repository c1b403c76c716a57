#include <gtest/gtest.h>

#include "scene/MemoryStream.h"
#include "tests/scene/Members.h"
#include "tests/scene/Probe.h"
#include "toolkit/Questions.h"

namespace orvin {
namespace {

/// Keeps what the user would be told.
class Messages : public HeadlessQuestions {
  public:
    Messages() : before_(setQuestions(this)) {}
    ~Messages() override { setQuestions(before_); }
    void showMessage(std::string_view text, bool) override { all.emplace_back(text); }

    std::vector<std::string> all;

  private:
    Questions* before_;
};

std::string unknownTokens(int count) {
    std::string text;
    for (int i = 0; i < count; ++i)
        text += "u" + std::to_string(i) + " ";
    return text;
}

TEST(CommandLoop, ServesOneCommandPerCall) {
    struct Case {
        std::string text;
        Result result;
        std::string error;
        int value;
    };
    const std::string warning = "Warning: Recovering from scene data error for command <<";
    const Case cases[] = {
        {"key 5 key 6", 0, "", 5},
        {"", 0, "", 0},
        {"**EndOfStream** key 5", kEndOfInput, "", 0},
        {"old 7 key 5", 0, warning + "old>> for class <<Probe>> at byte 3.", 5},
        {"first second key 5", 0, warning + "first>> for class <<Probe>> at byte 5.", 5},
        {"key x", -1, "Error processing scene command <<key>> for class <<Probe>> at byte 4.", 0},
        {"end Other", -1, "Error processing scene command <<end>> for class <<Probe>> at byte 8.",
         0},
        {unknownTokens(99) + "key 5", 0, warning + "u0>> for class <<Probe>> at byte 2.", 5},
        {unknownTokens(100) + "key 5", -1,
         "Scene error: unknown command <<u99>> for class <<Probe>> at byte 389.", 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text.substr(0, 40));
        Probe probe;
        MemoryStream stream(&probe, c.text);
        EXPECT_EQ(stream.runTopCommand(), c.result);
        EXPECT_EQ(sceneErrorText(), c.error);
        EXPECT_EQ(probe.value, c.value);
    }
}

TEST(CommandLoop, AnEmptyStackIsAnError) {
    MemoryStream stream(nullptr, "key 5");
    EXPECT_EQ(stream.runTopCommand(), kFailure);
    EXPECT_EQ(sceneErrorText(), "Error processing command stack while loading scene.");
}

TEST(CommandLoop, TheErrorTextHolds255Bytes) {
    Probe probe;
    const std::string text = std::string(5000, 'x') + " key 1";
    MemoryStream stream(&probe, text);
    EXPECT_EQ(stream.runTopCommand(), kSuccess);
    EXPECT_EQ(sceneErrorText().size(), 255U);
}

TEST(LoadBlock, TellsTheUserWhatWentWrongOnce) {
    struct Case {
        const char* text;
        Result result;
        std::vector<std::string> messages;
    };
    const Case cases[] = {
        {"key 1 end Probe junk", 0, {}},
        {"key 1", 0, {}},  // no end, no end mark
        {"key 1 **EndOfStream** fail", 0, {}},
        {"old 7 key 1 end Probe",
         0,
         {"Warning: Recovering from scene data error for command <<old>> for class <<Probe>> at "
          "byte 3."}},
        {"inner old 7 end Probe key 2 end Probe",
         0,
         {"Warning: Recovering from scene data error for command <<old>> for class <<Probe>> at "
          "byte 9."}},
        {"old 7 inner key 1 end Probe key 2 end Probe",
         0,
         {"Warning: Recovering from scene data error for command <<old>> for class <<Probe>> at "
          "byte 3."}},
        {"inner **EndOfStream**", 0, {}},
        {"fail key 1",
         -1,
         {"Error processing scene command <<fail>> for class <<Probe>> at byte 4."}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        Messages messages;
        Probe bottom;
        Probe probe;
        MemoryStream stream(&bottom, c.text);
        EXPECT_EQ(loadBlock(stream, probe), c.result);
        EXPECT_EQ(messages.all, c.messages);
        EXPECT_EQ(stream.depth(), 1U);
    }
}

TEST(LoadBlock, KeysThatAreWrittenAndNeverReadPassInSilence) {
    struct Case {
        const char* text;
        bool silent;
    };
    const Case cases[] = {
        {"mapAutoFit 1 mapType \"MAP_TYPE_UV\" mapScale 1 1 1 mapPosition 0 0 0 mapRotation 0 0 0 "
         "mapRepeatX 0 mapRepeatY 0 mapMirrorX 0 mapMirrorY 0 mapProportional 1 key 1",
         true},
        {"kerningLen 3 key 1", true},
        {"mapScale 1 1 1 7 key 1", false},  // one value too many
        {"mapType UV wrong key 1", false},
        {"kerningLenX 3 key 1", false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        Messages messages;
        Probe probe;
        MemoryStream single(&probe, c.text);
        EXPECT_EQ(single.runTopCommand(), kSuccess);
        EXPECT_FALSE(sceneErrorText().empty());
        MemoryStream stream(nullptr, c.text);
        EXPECT_EQ(loadBlock(stream, probe), kSuccess);
        EXPECT_EQ(messages.all.empty(), c.silent);
        EXPECT_EQ(probe.value, 1);
    }
}

}  // namespace
}  // namespace orvin
