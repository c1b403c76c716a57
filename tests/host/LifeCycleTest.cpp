// Instances from set-up to set-down, as a host sees them.
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>

#include "host/Flatten.h"
#include "host/HostState.h"
#include "host/OrvinApp.h"
#include "host/SequenceRecord.h"
#include "render/CameraX.h"
#include "tests/host/FakeHost.h"
#include "tests/host/ScriptedUser.h"
#include "tests/support/TempFolder.h"

namespace orvin {
namespace {

class LifeCycle : public testing::Test {
  protected:
    void TearDown() override {
        host.call(PF_Cmd_GLOBAL_SETDOWN);
        EXPECT_EQ(host.mistakes, std::vector<std::string>{});
        EXPECT_EQ(host.locks(), 0);
        EXPECT_EQ(host.handleCount(), 0U) << "handles left behind";
    }

    static const SequenceRecord& recordOf(PF_Handle handle) {
        return *static_cast<const SequenceRecord*>(*handle);
    }
    static OrvinApp& appOf(PF_Handle handle) { return *recordOf(handle).app; }

    PF_Handle setUp() {
        PF_Handle sequence = nullptr;
        EXPECT_EQ(host.call(PF_Cmd_SEQUENCE_SETUP, sequence), 0);
        return sequence;
    }
    void setDown(PF_Handle& sequence) {
        EXPECT_EQ(host.call(PF_Cmd_SEQUENCE_SETDOWN, sequence), 0);
        EXPECT_EQ(sequence, nullptr);
    }
    // A project as the host keeps it, with the camera at `distance`.
    std::string flatProject(double distance) {
        PF_Handle sequence = setUp();
        appOf(sequence).camera()->setMode(CameraMode::kOrbit);
        appOf(sequence).camera()->setDistance(distance);
        EXPECT_EQ(host.call(PF_Cmd_SEQUENCE_FLATTEN, sequence), 0);
        std::string bytes = host.bytesOf(sequence);
        setDown(sequence);
        return bytes;
    }

    FakeHost host;
    ScriptedUser user;
};

TEST_F(LifeCycle, ANewInstanceIsLiveWithASceneAndLeavesNothing) {
    PF_Handle sequence = setUp();
    ASSERT_NE(sequence, nullptr);
    const SequenceRecord& record = recordOf(sequence);
    EXPECT_EQ(std::memcmp(record.tag, "LIVE", 4), 0);
    EXPECT_EQ(record.paramsApplied, 0);
    EXPECT_EQ(record.lastClickH, -1);
    EXPECT_EQ(record.uiState[3], -1);
    EXPECT_EQ(user.buttons,
              (std::vector<std::string>{"Create a New Scene", "Open an existing Scene",
                                        "Create Vector Shape Object", "Create Layer Cycling Object",
                                        "Import 3D Object", "Cancel"}));
    OrvinApp& app = appOf(sequence);
    ASSERT_NE(app.camera(), nullptr);
    EXPECT_NE(app.scene()->member(MemberKind::kImageMap, "|ExtMap0"), nullptr);
    EXPECT_EQ(app.setUpPushed().scene().name(), "## SetupWin Pushed stuff ##");
    EXPECT_EQ(app.panelPushed().scene().name(), "## ECW Pushed stuff ##");
    for (PushedScene* pushed : {&app.setUpPushed(), &app.panelPushed()}) {
        EXPECT_EQ(pushed->scene().count(MemberKind::kCamera), 1U);
        EXPECT_EQ(pushed->scene().count(MemberKind::kLight), 4U);
    }
    setDown(sequence);
}

TEST_F(LifeCycle, CancellingTheStartupDialogFailsTheSetUp) {
    user.button = 5;
    PF_Handle sequence = nullptr;
    EXPECT_EQ(host.call(PF_Cmd_SEQUENCE_SETUP, sequence), 512);
    EXPECT_EQ(sequence, nullptr);
    EXPECT_EQ(host.handleCount(), 0U);
}

TEST_F(LifeCycle, EveryOtherButtonGivesASceneAndOwnsUpToWhatIsMissing) {
    for (const int button : {1, 2, 3}) {
        user.messages.clear();
        user.button = button;
        PF_Handle sequence = setUp();
        ASSERT_NE(sequence, nullptr) << button;
        EXPECT_NE(appOf(sequence).camera(), nullptr);
        EXPECT_FALSE(user.messages.empty()) << button;
        setDown(sequence);
    }
    EXPECT_EQ(user.questionsAsked.front(),
              "Select 3D Orvinex Scene file or click Cancel to create an Object");
}

TEST_F(LifeCycle, AnInstanceMayStartWithAModelOfTheUsers) {
    const test::TempFolder folder;
    const auto path = folder.path() / "model.obj";
    std::ofstream(path) << "g Tile\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n";
    user.button = 4;
    user.file = path;
    PF_Handle sequence = setUp();
    EXPECT_EQ(user.questionsAsked, std::vector<std::string>{"Select File to Import"});
    const SceneX& scene = *appOf(sequence).scene();
    ASSERT_EQ(scene.count(MemberKind::kObject), 1U);
    const auto* object =
        dynamic_cast<const TransformMember*>(scene.members(MemberKind::kObject)[0]);
    EXPECT_EQ(object->parent(), scene.set(1));
    setDown(sequence);
}

TEST_F(LifeCycle, ACommandThatComesWhileAnotherIsServedDoesNothing) {
    PF_Handle first = setUp();
    PF_Err inner = -1;
    user.whileAsked = [&] {
        PF_Handle again = first;
        inner = host.call(PF_Cmd_SEQUENCE_SETDOWN, again);
        EXPECT_EQ(again, first);
    };
    PF_Handle second = setUp();
    user.whileAsked = nullptr;
    EXPECT_EQ(inner, 0);
    EXPECT_NE(appOf(first).camera(), nullptr);
    setDown(first);
    setDown(second);
}

TEST_F(LifeCycle, FlattenAndReSetupKeepTheApp) {
    PF_Handle sequence = setUp();
    const PF_Handle live = sequence;
    const OrvinApp* app = &appOf(sequence);
    EXPECT_EQ(host.call(PF_Cmd_SEQUENCE_FLATTEN, sequence), 0);
    EXPECT_NE(sequence, live);

    const std::string flat = host.bytesOf(sequence);
    EXPECT_EQ(flat.substr(0, 4), "FLAT");
    EXPECT_EQ(flatStoredSize({reinterpret_cast<const std::uint8_t*>(flat.data()), flat.size()}),
              flat.size());
    EXPECT_LT(flat.find("Version \"Orvinex"), 12U);
    EXPECT_NE(flat.find("**EndOfStream**"), std::string::npos);

    EXPECT_EQ(host.call(PF_Cmd_SEQUENCE_RESETUP, sequence), 0);
    EXPECT_EQ(sequence, live);
    EXPECT_EQ(&appOf(sequence), app);
    setDown(sequence);
}

TEST_F(LifeCycle, TheStashIsTakenBackForACopyOfItsFlatDataToo) {
    PF_Handle sequence = setUp();
    const OrvinApp* app = &appOf(sequence);
    host.call(PF_Cmd_SEQUENCE_FLATTEN, sequence);
    PF_Handle copy = host.handleOf(host.bytesOf(sequence));
    host.dispose(sequence);
    EXPECT_EQ(host.call(PF_Cmd_SEQUENCE_RESETUP, copy), 0);
    EXPECT_EQ(&appOf(copy), app);
    setDown(copy);
}

TEST_F(LifeCycle, TheStashIsNotTakenForAnotherProject) {
    const std::string other = flatProject(777.0);
    PF_Handle sequence = setUp();
    host.call(PF_Cmd_SEQUENCE_FLATTEN, sequence);
    PF_Handle foreign = host.handleOf(other);
    EXPECT_EQ(host.call(PF_Cmd_SEQUENCE_RESETUP, foreign), 0);
    EXPECT_DOUBLE_EQ(appOf(foreign).camera()->distance(), 777.0);
    // And the flattened instance comes back from its own data.
    EXPECT_EQ(host.call(PF_Cmd_SEQUENCE_RESETUP, sequence), 0);
    EXPECT_NE(appOf(sequence).camera()->distance(), 777.0);
    EXPECT_NE(&appOf(sequence), &appOf(foreign));
    setDown(sequence);
    setDown(foreign);
}

TEST_F(LifeCycle, AFlattenedInstanceMayBeDroppedByTheHost) {
    PF_Handle sequence = setUp();
    host.call(PF_Cmd_SEQUENCE_FLATTEN, sequence);
    host.dispose(sequence);  // without a word to the effect
    sequence = setUp();
    host.call(PF_Cmd_SEQUENCE_FLATTEN, sequence);
    setDown(sequence);  // in its flat form
}

TEST_F(LifeCycle, ReSetupOfASavedProjectReadsIt) {
    PF_Handle sequence = host.handleOf(flatProject(432.5));
    EXPECT_EQ(host.call(PF_Cmd_SEQUENCE_RESETUP, sequence), 0);
    OrvinApp& app = appOf(sequence);
    EXPECT_DOUBLE_EQ(app.camera()->distance(), 432.5);
    EXPECT_EQ(app.setUpPushed().scene().count(MemberKind::kCamera), 1U);
    EXPECT_NE(app.scene()->member(MemberKind::kImageMap, "|ExtMap0"), nullptr);

    const PF_Handle live = sequence;
    EXPECT_EQ(host.call(PF_Cmd_SEQUENCE_RESETUP, sequence), 0);
    EXPECT_EQ(sequence, live);
    EXPECT_EQ(user.messages, std::vector<std::string>{});
    setDown(sequence);
}

TEST_F(LifeCycle, FlatDataThatHoldsNoProjectBecomesANewScene) {
    const std::string whole = flatProject(300.0);
    std::string sizeZero = whole;
    std::memset(sizeZero.data() + 4, 0, 4);
    std::string noise("FLAT\x10\0\0\0", 8);
    for (unsigned i = 0, state = 1; i < 5000; ++i) {
        state = state * 1664525U + 1013904223U;
        noise += static_cast<char>(state >> 24);
    }
    const struct {
        const char* caption;
        std::string bytes;
    } cases[] = {{"stored size 0", sizeZero},
                 {"the tag alone", "FLAT"},
                 {"half a header", std::string("FLAT\x10\0", 6)},
                 {"a header alone", std::string("FLAT\x08\0\0\0", 8)},
                 {"noise", noise},
                 {"an unknown version", std::string("FLAT\x40\0\0\0Version \"Some 9.9\"\n", 27)}};
    for (const auto& c : cases) {
        PF_Handle sequence = host.handleOf(c.bytes);
        const PF_Handle before = sequence;
        EXPECT_EQ(host.call(PF_Cmd_SEQUENCE_RESETUP, sequence), 0) << c.caption;
        ASSERT_NE(sequence, nullptr) << c.caption;
        EXPECT_NE(sequence, before) << c.caption;
        EXPECT_EQ(std::memcmp(*sequence, "LIVE", 4), 0) << c.caption;
        EXPECT_NE(appOf(sequence).camera(), nullptr) << c.caption;
        setDown(sequence);
    }
}

TEST_F(LifeCycle, AProjectCutAnywhereStillGivesAScene) {
    const std::string whole = flatProject(300.0);
    for (std::size_t length = 8; length < whole.size(); length += 5) {
        PF_Handle sequence = host.handleOf(whole.substr(0, length));
        EXPECT_EQ(host.call(PF_Cmd_SEQUENCE_RESETUP, sequence), 0) << length;
        ASSERT_NE(sequence, nullptr);
        EXPECT_NE(appOf(sequence).camera(), nullptr) << length;
        setDown(sequence);
    }
}

TEST_F(LifeCycle, OtherTagsAreRefusedAndReleased) {
    PF_Handle sequence = host.handleOf(std::string("JUNKJUNKJUNK"));
    EXPECT_EQ(host.call(PF_Cmd_SEQUENCE_RESETUP, sequence), 512);
    EXPECT_EQ(sequence, nullptr);
    EXPECT_EQ(host.call(PF_Cmd_SEQUENCE_RESETUP, sequence), 512);
    sequence = host.handleOf(std::string());
    EXPECT_EQ(host.call(PF_Cmd_SEQUENCE_RESETUP, sequence), 512);
    if (sequence != nullptr) host.dispose(sequence);  // there were no bytes to lock
}

TEST_F(LifeCycle, ALiveRecordOutOfAFileIsNobodys) {
    // What a crafted project could hold: the tag, and pointers to anywhere.
    std::string bytes(sizeof(SequenceRecord), '\x41');
    std::memcpy(bytes.data(), "LIVE", 4);
    PF_Handle sequence = host.handleOf(bytes);
    EXPECT_EQ(host.call(PF_Cmd_RENDER, sequence), 0);
    EXPECT_EQ(host.call(PF_Cmd_SEQUENCE_FLATTEN, sequence), 512);
    EXPECT_EQ(host.call(PF_Cmd_SEQUENCE_SETDOWN, sequence), 0);
    sequence = host.handleOf(bytes.substr(0, 4));
    EXPECT_EQ(host.call(PF_Cmd_SEQUENCE_RESETUP, sequence), 512);
}

TEST_F(LifeCycle, FlattenPutsBackWhatTheCompDrove) {
    PF_Handle sequence = setUp();
    OrvinApp& app = appOf(sequence);
    const double own = app.camera()->distance();
    app.useCompCamera = true;
    app.useCompLights = true;
    app.camera()->setDistance(own + 1000.0);
    while (app.scene()->count(MemberKind::kLight) > 1)
        app.scene()->destroy(*app.scene()->members(MemberKind::kLight).back());
    host.call(PF_Cmd_SEQUENCE_FLATTEN, sequence);

    PF_Handle copy = host.handleOf(host.bytesOf(sequence) + " ");  // not what was stashed
    host.dispose(sequence);
    EXPECT_EQ(host.call(PF_Cmd_SEQUENCE_RESETUP, copy), 0);
    EXPECT_DOUBLE_EQ(appOf(copy).camera()->distance(), own);
    EXPECT_EQ(appOf(copy).scene()->count(MemberKind::kLight), 4U);
    setDown(copy);
}

TEST_F(LifeCycle, AHostWithoutMemoryIsToldSo) {
    PF_Handle none = nullptr;
    host.largestHandle = 10;
    EXPECT_EQ(host.call(PF_Cmd_SEQUENCE_SETUP, none), 4);
    EXPECT_EQ(none, nullptr);
    host.largestHandle = ~std::uint64_t{0};
    host.refusesLocks = true;
    EXPECT_EQ(host.call(PF_Cmd_SEQUENCE_SETUP, none), 4);
    EXPECT_EQ(none, nullptr);
    EXPECT_EQ(host.handleCount(), 0U);
    host.refusesLocks = false;

    PF_Handle sequence = setUp();
    const PF_Handle live = sequence;
    const OrvinApp* app = &appOf(sequence);
    // Refused at once, and when the first block has to grow.
    for (const std::uint64_t largest : {std::uint64_t{1000}, std::uint64_t{50000}}) {
        host.largestHandle = largest;
        if (largest == 50000) {
            for (int i = 0; i < 400; ++i)
                appOf(sequence).sections().cameraViews().add("View " + std::to_string(i));
        }
        EXPECT_EQ(host.call(PF_Cmd_SEQUENCE_FLATTEN, sequence), 4) << largest;
        EXPECT_EQ(sequence, live);
        EXPECT_EQ(&appOf(sequence), app);
        EXPECT_EQ(host.handleCount(), 1U);
    }
    EXPECT_STREQ(host.out.return_msg, "Not enough memory to complete operation.");
    EXPECT_NE(host.out.out_flags & PF_OutFlag_DISPLAY_ERROR_MESSAGE, 0);
    EXPECT_EQ(host.call(PF_Cmd_RENDER, sequence), 4);

    host.largestHandle = ~std::uint64_t{0};
    host.call(PF_Cmd_SEQUENCE_FLATTEN, sequence);
    const std::string saved = host.bytesOf(sequence);
    setDown(sequence);
    PF_Handle flat = host.handleOf(saved);
    PF_Handle kept = flat;
    host.largestHandle = 10;
    EXPECT_EQ(host.call(PF_Cmd_SEQUENCE_RESETUP, flat), 4);
    EXPECT_EQ(flat, nullptr);
    EXPECT_EQ(host.bytesOf(kept), saved) << "the project must survive";
    host.dispose(kept);
}

}  // namespace
}  // namespace orvin
