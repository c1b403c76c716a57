// Commands beside the life of an instance.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <limits>
#include <new>

#include "geometry/MeshObject.h"
#include "host/HostState.h"
#include "host/OrvinApp.h"
#include "host/ParameterTable.h"
#include "host/SequenceRecord.h"
#include "render/CameraX.h"
#include "render/LightX.h"
#include "tests/host/FakeHost.h"
#include "tests/host/ScriptedUser.h"

namespace orvin {
namespace {

class Command : public testing::Test {
  protected:
    void SetUp() override { ASSERT_EQ(host.call(PF_Cmd_SEQUENCE_SETUP, sequence), 0); }
    void TearDown() override {
        host.call(PF_Cmd_SEQUENCE_SETDOWN, sequence);
        EXPECT_EQ(host.mistakes, std::vector<std::string>{});
        EXPECT_EQ(host.handleCount(), 0U);
        EXPECT_EQ(host.checkedOut, 0);
    }
    SequenceRecord& record() { return *static_cast<SequenceRecord*>(*sequence); }
    OrvinApp& app() { return *record().app; }

    FakeHost host;
    ScriptedUser user;
    PF_Handle sequence = nullptr;
};

TEST_F(Command, AboutNamesTheProduct) {
    EXPECT_EQ(host.call(PF_Cmd_ABOUT), 0);
    EXPECT_EQ(std::string(host.out.return_msg).substr(0, 23), "3D Orvinex\rv3.0 PRO\rCop");
    // Even for a host that hands over next to nothing.
    PF_OutData out{};
    EXPECT_EQ(effectMain(PF_Cmd_ABOUT, nullptr, &out, nullptr, nullptr, nullptr), 0);
    EXPECT_NE(out.return_msg[0], '\0');
    EXPECT_EQ(effectMain(PF_Cmd_GLOBAL_SETUP, nullptr, nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(effectMain(PF_Cmd_PARAMS_SETUP, nullptr, nullptr, nullptr, nullptr, nullptr), 516);
}

TEST_F(Command, GlobalSetupTellsHostsOfBothGenerationsWhatTheyKnow) {
    const struct {
        A_short major, minor;
        PF_OutFlags2 flags2;
    } hosts[] = {{11, 20, 0}, {12, 9, 0}, {12, 10, 7}, {13, 0, 7}, {13, 28, 7}};
    for (const auto& h : hosts) {
        host.version = {h.major, h.minor};
        EXPECT_EQ(host.call(PF_Cmd_GLOBAL_SETUP), 0);
        EXPECT_EQ(host.out.my_version, 0x100000U);
        EXPECT_EQ(host.out.out_flags, 0x4008435);
        EXPECT_EQ(host.out.out_flags2, h.flags2) << h.major << "." << h.minor;
    }
}

TEST_F(Command, UnknownCommandsAndThoseForLiveRecordsDoNothingElsewhere) {
    for (const int cmd : {2, 10, 12, 24, 32, 34, 1000, -1})
        EXPECT_EQ(host.call(cmd, sequence), 0) << cmd;
    PF_EventExtra event{};
    event.e_type = PF_Event_DRAW;
    for (const PF_Cmd cmd : {PF_Cmd_DO_DIALOG, PF_Cmd_RENDER, PF_Cmd_USER_CHANGED_PARAM,
                             PF_Cmd_UPDATE_PARAMS_UI, PF_Cmd_EVENT}) {
        PF_Handle flat = host.handleOf(std::string("FLAT\0\0\0\0", 8));
        EXPECT_EQ(host.call(cmd, flat, &event), 0) << cmd;
        host.dispose(flat);
        PF_Handle none = nullptr;
        EXPECT_EQ(host.call(cmd, none, &event), 0) << cmd;
    }
    EXPECT_EQ(user.messages, std::vector<std::string>{});
}

TEST_F(Command, DynamicFlagsFollowTheTwoBoxes) {
    for (const int camera : {0, 1}) {
        for (const int lights : {0, 1}) {
            host.params[param::kUseCompCamera].u.bd.value = camera;
            host.params[param::kUseCompLights].u.bd.value = lights;
            for (const PF_OutFlags2 before : {0, 7}) {
                PF_OutData out{};
                out.out_flags2 = before;
                EXPECT_EQ(host.call(PF_Cmd_QUERY_DYNAMIC_FLAGS, sequence, out, nullptr), 0);
                EXPECT_EQ(out.out_flags2, (before & 1) | (camera * 2) | (lights * 4));
                EXPECT_EQ(host.checkedOut, 0);
            }
        }
    }
    host.version = {12, 9};
    PF_OutData out{};
    out.out_flags2 = 0;
    EXPECT_EQ(host.call(PF_Cmd_QUERY_DYNAMIC_FLAGS, sequence, out, nullptr), 0);
    EXPECT_EQ(out.out_flags2, 0);
    host.version = {13, 0};
    host.params.resize(2);
    EXPECT_EQ(host.call(PF_Cmd_QUERY_DYNAMIC_FLAGS, sequence, out, nullptr), PF_Err_INVALID_INDEX);
}

TEST_F(Command, AChangedParameterWaitsForTheUpdateOfTheDisplay) {
    PF_UserChangedParamExtra changed{param::kCameraDistance};
    gUiRefreshed = false;
    EXPECT_EQ(host.call(PF_Cmd_USER_CHANGED_PARAM, sequence, &changed), 0);
    EXPECT_EQ(record().pendingParam, param::kCameraDistance);
    gDragging = true;  // what the panel is doing isn't read back from the parameters
    const double distance = app().camera()->distance();
    EXPECT_EQ(host.call(PF_Cmd_UPDATE_PARAMS_UI, sequence), 0);
    gDragging = false;
    EXPECT_EQ(app().camera()->distance(), distance);
    EXPECT_EQ(record().pendingParam, 0);
    EXPECT_TRUE(gUiRefreshed);
}

PF_Err acceptParamUi(PF_ProgPtr, PF_ParamIndex, const PF_ParamDef*) {
    return PF_Err_NONE;
}

TEST_F(Command, ARefusedSuiteEndsTheFrameWithAMessage) {
    PF_LayerDef world{};
    host.world = &world;
    EXPECT_EQ(host.call(PF_Cmd_RENDER, sequence), 516);
    EXPECT_STREQ(host.out.return_msg, "After Effects Plugin error occurred during operation.");
    EXPECT_NE(host.out.out_flags & PF_OutFlag_DISPLAY_ERROR_MESSAGE, 0);
    EXPECT_EQ(host.handleCount(), 1U) << "the reserve goes back";
}

TEST_F(Command, AFrameIsPosedDrawnAndAsksForAFreshDisplayOnce) {
    const PF_ParamUtilsSuite utils{acceptParamUi};
    host.suites[{"PF Param Utils Suite", 3}] = &utils;
    std::vector<PF_Pixel> pixels(16 * 8, PF_Pixel{9, 9, 9, 9});
    PF_LayerDef world{};
    world.world_flags = PF_WorldFlag_WRITEABLE;
    world.data = pixels.data();
    world.rowbytes = 16 * 4;
    world.width = 16;
    world.height = 8;
    host.world = &world;
    host.currentTime = 5;
    host.pixelAspect = {10, 8};
    host.params[param::kCameraType].u.pd.value = 1;
    host.params[param::kCameraDistance].u.fd.value = 400 * 65536;
    app().renderState().viewer.background = {0.0F, 1.0F, 0.0F};

    gUiRefreshed = false;
    EXPECT_EQ(host.call(PF_Cmd_RENDER, sequence), 0);
    EXPECT_EQ(record().paramsApplied, 1);
    EXPECT_EQ(record().lastPoseTime, 5);
    EXPECT_DOUBLE_EQ(app().camera()->distance(), 400.0);
    EXPECT_EQ(host.out.out_flags, PF_OutFlag_REFRESH_UI);
    EXPECT_FLOAT_EQ(app().renderState().params.pixelAspect, 1.25F);
    EXPECT_FLOAT_EQ(app().renderState().viewer.pixelAspect, 1.25F);
    for (const PF_Pixel& p : pixels) {
        ASSERT_EQ(p.alpha, 255);
        ASSERT_EQ(p.red, 0);
        ASSERT_EQ(p.green, 255);
    }
    EXPECT_EQ(host.handleCount(), 1U);

    EXPECT_EQ(host.call(PF_Cmd_UPDATE_PARAMS_UI, sequence), 0);
    EXPECT_EQ(host.call(PF_Cmd_RENDER, sequence), 0);
    EXPECT_EQ(host.out.out_flags, 0);
    EXPECT_FALSE(gUiRefreshed);

    host.timeStep = -1;  // a clock that no division survives
    host.totalTime = host.currentTime = std::numeric_limits<A_long>::min();
    EXPECT_EQ(host.call(PF_Cmd_RENDER, sequence), 0);

    host.abortAnswer = PF_Interrupt_CANCEL;
    EXPECT_EQ(host.call(PF_Cmd_RENDER, sequence), PF_Interrupt_CANCEL);
    EXPECT_EQ(host.checkedOut, 0);
}

A_Err sameTime(PF_ProgPtr, A_long time, A_u_long scale, A_Time* out) {
    *out = {time, scale};
    return 0;
}

A_Err noCamera(PF_ProgPtr, const A_Time*, AEGP_LayerH* layer) {
    *layer = nullptr;
    return 0;
}

TEST_F(Command, ACompWithoutACameraLeavesTheScenesOwn) {
    const PF_ParamUtilsSuite utils{acceptParamUi};
    AEGP_PFInterfaceSuite1 interface {};
    interface.AEGP_ConvertEffectToCompTime = sameTime;
    interface.AEGP_GetEffectCamera = noCamera;
    host.suites[{"PF Param Utils Suite", 2}] = &utils;
    host.suites[{"AEGP PF Interface Suite", 1}] = &interface;
    PF_LayerDef world{};
    host.world = &world;
    const double own = app().camera()->lens();
    PF_UserChangedParamExtra changed{param::kUseCompCamera};
    for (const bool on : {true, false}) {
        host.params[param::kUseCompCamera].u.bd.value = on ? 1 : 0;
        EXPECT_EQ(host.call(PF_Cmd_USER_CHANGED_PARAM, sequence, &changed), 0);
        EXPECT_EQ(host.call(PF_Cmd_RENDER, sequence), 0);  // the display is updated later
        app().camera()->setLens(200.0);                    // as a frame with a comp camera does
        EXPECT_EQ(host.call(PF_Cmd_UPDATE_PARAMS_UI, sequence), 0);
        EXPECT_EQ(app().useCompCamera, on);
        EXPECT_DOUBLE_EQ(app().camera()->lens(), own) << on;
    }
}

TEST_F(Command, ParametersOfHostsWithAShorterListAreNotTouched) {
    host.version = {12, 9};
    host.params.resize(1);
    PF_LayerDef world{};
    host.world = &world;
    EXPECT_EQ(host.call(PF_Cmd_RENDER, sequence), 516);
    PF_EventExtra event{};
    event.e_type = PF_Event_IDLE;
    host.currentTime = 3;
    EXPECT_EQ(host.call(PF_Cmd_EVENT, sequence, &event), 0);
    EXPECT_EQ(record().lastPoseTime, 0);
}

TEST_F(Command, TheHardShadingPreferenceCountsInWholeDegrees) {
    app().preferences().hardShadingAngle = 33.7;
    host.call(PF_Cmd_ABOUT, sequence);
    EXPECT_EQ(defaultHardShadingAngle(), 33.0);
}

class TestWindow final : public SetUpWindow {
  public:
    explicit TestWindow(std::function<void()> work) : work_(std::move(work)) {}
    void runModal() override { work_(); }

  private:
    std::function<void()> work_;
};

TEST_F(Command, TheDialogKeepsTheZeronessOfTheRenderMethod) {
    const struct {
        int before, chosen, after;
    } cases[] = {{1, 1, 1}, {1, 2, 2}, {1, 0, 2}, {0, 0, 0}, {0, 3, 0}, {2, 0x100, 2}};
    for (const auto& c : cases) {
        app().renderState().renderMethod = c.before;
        app().setSetUpWindow(
            std::make_unique<TestWindow>([&] { app().renderState().renderMethod = c.chosen; }));
        EXPECT_EQ(host.call(PF_Cmd_DO_DIALOG, sequence), 0);
        EXPECT_EQ(app().renderState().renderMethod, c.after) << c.before << " " << c.chosen;
    }
    EXPECT_EQ(user.messages, std::vector<std::string>{});
}

TEST_F(Command, TheDialogPutsCameraAndLightsBackAndReportsItsFailures) {
    const double own = app().camera()->distance();
    app().setSetUpWindow(std::make_unique<TestWindow>([&] { app().camera()->setDistance(5.0); }));
    EXPECT_EQ(host.call(PF_Cmd_DO_DIALOG, sequence), 0);
    EXPECT_DOUBLE_EQ(app().camera()->distance(), own);

    app().setSetUpWindow(std::make_unique<TestWindow>([] { throw std::bad_alloc(); }));
    EXPECT_EQ(app().Run(), 100);
    EXPECT_EQ(user.messages,
              std::vector<std::string>{"fatal: Not enough memory to complete operation."});

    user.messages.clear();
    app().setSetUpWindow(nullptr);
    EXPECT_EQ(host.call(PF_Cmd_DO_DIALOG, sequence), 0);
    ASSERT_EQ(user.messages.size(), 1U) << "a missing window must say so";
}

TEST_F(Command, KeptLightsComeBackAsTheyWereAndNewOnesGo) {
    SceneX& scene = *app().scene();
    PushedScene pushed("kept");
    EXPECT_FALSE(pushed.restoreLights(scene));
    pushed.storeLights(scene);
    const auto lights = [&] { return scene.members(MemberKind::kLight); };
    std::vector<std::string> names;
    for (SceneMember* light : lights())
        names.push_back(light->name());
    ASSERT_EQ(names.size(), 4U);

    auto& first = dynamic_cast<LightX&>(*lights()[0]);
    const double intensity = first.intensity();
    first.setIntensity(intensity + 3.0);
    first.setEnabled(false);
    first.setMode(CameraMode::kTransform);
    scene.make<LightX>("Light 99");
    scene.destroy(*lights()[3]);

    EXPECT_TRUE(pushed.restoreLights(scene));
    ASSERT_EQ(lights().size(), 4U);
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_EQ(lights()[i]->name(), names[i]);
    EXPECT_DOUBLE_EQ(dynamic_cast<LightX&>(*lights()[0]).intensity(), intensity);
    EXPECT_TRUE(dynamic_cast<LightX&>(*lights()[0]).isEnabled());
}

}  // namespace
}  // namespace orvin
