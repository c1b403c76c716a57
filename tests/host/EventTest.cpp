// Events of the panel: clicks, drags and drawing.
#include <gtest/gtest.h>

#include <cstring>
#include <ctime>

#include "host/OrvinApp.h"
#include "host/ParameterTable.h"
#include "host/SequenceRecord.h"
#include "host/abi/Drawbot.h"
#include "render/CameraX.h"
#include "tests/host/FakeHost.h"
#include "tests/host/ScriptedUser.h"

namespace orvin {
namespace {

// A panel whose control notes what the mouse does to it.
class NotingPanel final : public EffectPanel {
  public:
    using EffectPanel::EffectPanel;
    std::vector<std::string> log;
    bool changesScene = false;

    void mouseDown(PanelPoint p, PF_Modifiers, bool doubleClick) override {
        note(doubleClick ? "double" : "down", p);
    }
    void mouseMove(PanelPoint p, PF_Modifiers) override { note("move", p); }
    void mouseUp(PanelPoint p, PF_Modifiers) override { note("up", p); }

  private:
    void note(const char* what, PanelPoint p) {
        log.push_back(std::string(what) + " " + std::to_string(p.x) + "," + std::to_string(p.y));
        if (changesScene) markChanged();
    }
};

// The suites by which a 64-bit host lets effects draw.
struct FakeDrawbot {
    static inline int width, height, rowBytes, layout, released;
    static inline float left, top;
    static inline std::vector<std::uint8_t> pixels;
    static inline bool bgra = true, hasReference = true;
    static inline int invalidated;

    static PF_Err reference(const PF_ContextH, DRAWBOT_DrawRef* out) {
        *out = hasReference ? reinterpret_cast<DRAWBOT_DrawRef>(&width) : nullptr;
        return 0;
    }
    static SPErr supplier(DRAWBOT_DrawRef, DRAWBOT_SupplierRef* out) {
        *out = reinterpret_cast<DRAWBOT_SupplierRef>(&width);
        return 0;
    }
    static SPErr surface(DRAWBOT_DrawRef, DRAWBOT_SurfaceRef* out) {
        *out = reinterpret_cast<DRAWBOT_SurfaceRef>(&height);
        return 0;
    }
    static SPErr supportsBgra(DRAWBOT_SupplierRef, DRAWBOT_Boolean* yes) {
        *yes = bgra ? 1 : 0;
        return 0;
    }
    static SPErr supportsArgb(DRAWBOT_SupplierRef, DRAWBOT_Boolean* yes) {
        *yes = 1;
        return 0;
    }
    static SPErr newImage(DRAWBOT_SupplierRef, int w, int h, int row, DRAWBOT_PixelLayout kind,
                          const void* data, DRAWBOT_ImageRef* out) {
        width = w;
        height = h;
        rowBytes = row;
        layout = kind;
        const auto* bytes = static_cast<const std::uint8_t*>(data);
        pixels.assign(bytes, bytes + static_cast<std::size_t>(row) * static_cast<std::size_t>(h));
        *out = reinterpret_cast<DRAWBOT_ImageRef>(&pixels);
        return 0;
    }
    static SPErr release(DRAWBOT_ObjectRef) {
        ++released;
        return 0;
    }
    static SPErr drawImage(DRAWBOT_SurfaceRef, DRAWBOT_ImageRef, const DRAWBOT_PointF32* at,
                           float) {
        left = at->x;
        top = at->y;
        return 0;
    }
    static PF_Err invalidate(const PF_ContextH, const PF_Rect*) {
        ++invalidated;
        return 0;
    }

    PF_EffectCustomUISuite1 customUi{reference};
    DRAWBOT_DrawbotSuite1 draw{supplier, surface};
    DRAWBOT_SupplierSuite1 supplierSuite{};
    DRAWBOT_SurfaceSuite1 surfaceSuite{};
    PF_AppSuite7 app{};

    explicit FakeDrawbot(FakeHost& host) {
        width = height = released = invalidated = 0;
        bgra = hasReference = true;
        supplierSuite.NewImageFromBuffer = newImage;
        supplierSuite.SupportsPixelLayoutBGRA = supportsBgra;
        supplierSuite.SupportsPixelLayoutARGB = supportsArgb;
        supplierSuite.ReleaseObject = release;
        surfaceSuite.DrawImage = drawImage;
        app.PF_InvalidateRect = invalidate;
        host.suites[{"PF Effect Custom UI Suite", 1}] = &customUi;
        host.suites[{"DRAWBOT Draw Suite", 1}] = &draw;
        host.suites[{"DRAWBOT Supplier Suite", 1}] = &supplierSuite;
        host.suites[{"DRAWBOT Surface Suite", 1}] = &surfaceSuite;
        host.suites[{"PF AE App Suite", 7}] = &app;
    }
};

class PanelEvents : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(host.call(PF_Cmd_SEQUENCE_SETUP, sequence), 0);
        auto owned = std::make_unique<NotingPanel>(nullptr, PF_Rect{0, 0, 319, 260});
        panel = owned.get();
        app().setPanel(std::move(owned));
        event.contextH = &contextPointer;
        event.effect_win.area = PF_EA_CONTROL;
        event.effect_win.index = param::kScenePreview;
        event.effect_win.current_frame = {10, 20, 329, 280};
        for (PF_ParamDef& p : host.params)
            p.u.cd.value = {};
        host.params[param::kCameraType].u.pd.value = 1;
        host.params[param::kCameraDistance].u.fd.value = 500 * 65536;
    }
    void TearDown() override {
        host.call(PF_Cmd_SEQUENCE_SETDOWN, sequence);
        EXPECT_EQ(host.mistakes, std::vector<std::string>{});
        EXPECT_EQ(host.handleCount(), 0U);
        std::map<std::string, int> users;
        for (const std::string& entry : host.suiteLog)
            users[entry.substr(1)] += entry[0] == '+' ? 1 : -1;
        for (const auto& [name, count] : users)
            EXPECT_EQ(count, 0) << name;
    }

    SequenceRecord& record() { return *static_cast<SequenceRecord*>(*sequence); }
    OrvinApp& app() { return *record().app; }

    void send(PF_EventType type, int h = 0, int v = 0, bool last = false) {
        event.e_type = type;
        event.u = {};
        event.evt_out_flags = 0;
        event.u.do_click.screen_point = {h, v};
        event.u.do_click.last_time = last ? 1 : 0;
        EXPECT_EQ(host.call(PF_Cmd_EVENT, sequence, &event), 0);
    }
    bool handled() const { return (event.evt_out_flags & PF_EO_HANDLED_EVENT) != 0; }

    FakeHost host;
    ScriptedUser user;
    PF_Handle sequence = nullptr;
    NotingPanel* panel = nullptr;
    PF_Context context{};
    PF_Context* contextPointer = &context;
    PF_EventExtra event{};
};

TEST_F(PanelEvents, AClickAndItsDragGoToTheControl) {
    send(PF_Event_DO_CLICK, 60, 70);
    EXPECT_TRUE(handled());
    EXPECT_EQ(event.u.do_click.send_drag, 1);
    EXPECT_EQ(record().capturedControl, panel);
    EXPECT_EQ(record().lastClickH, 60);
    EXPECT_EQ(record().lastClickV, 70);
    EXPECT_LE(std::time(nullptr) - record().lastClickTime, 2);

    send(PF_Event_DRAG, 65, 70);
    EXPECT_EQ(event.u.do_click.send_drag, 1);
    send(PF_Event_DRAG, 900, -50, true);  // far outside, the control still holds the mouse
    EXPECT_TRUE(handled());
    EXPECT_EQ(record().capturedControl, nullptr);
    send(PF_Event_DRAG, 70, 70);  // nobody holds it now
    EXPECT_TRUE(handled());
    EXPECT_EQ(panel->log, (std::vector<std::string>{"down 50,50", "move 55,50", "up 890,-70"}));
}

TEST_F(PanelEvents, ClicksBesideTheControlHoldNothing) {
    send(PF_Event_DO_CLICK, 5, 5);
    EXPECT_EQ(event.u.do_click.send_drag, 0);
    EXPECT_EQ(record().capturedControl, nullptr);
    event.effect_win.area = PF_EA_PARAM_TITLE;
    send(PF_Event_DO_CLICK, 60, 70);
    event.effect_win.area = PF_EA_CONTROL;
    event.effect_win.index = 5;
    send(PF_Event_DO_CLICK, 160, 70);
    EXPECT_EQ(panel->log, std::vector<std::string>{});
}

TEST_F(PanelEvents, TwoClicksMakeADoubleClickWhenNearInTimeAndPlace) {
    const struct {
        int secondsAgo, dh, dv;
        bool isDouble;
    } cases[] = {{0, 0, 0, true},   {1, 4, -4, true}, {0, 5, 0, false},
                 {0, 0, -5, false}, {2, 0, 0, false}, {60, 0, 0, false}};
    for (const auto& c : cases) {
        record().lastClickTime = static_cast<std::int32_t>(std::time(nullptr)) - c.secondsAgo;
        record().lastClickH = 100;
        record().lastClickV = 100;
        panel->log.clear();
        send(PF_Event_DO_CLICK, 100 + c.dh, 100 + c.dv);
        ASSERT_EQ(panel->log.size(), 1U);
        // The clock may tick between the lines above.
        if (c.secondsAgo == 1 && panel->log[0].substr(0, 4) == "down") continue;
        EXPECT_EQ(panel->log[0].substr(0, 6) == "double", c.isDouble)
            << c.secondsAgo << " " << c.dh << " " << c.dv;
        EXPECT_EQ(event.u.do_click.send_drag, c.isDouble ? 0 : 1);
    }
}

TEST_F(PanelEvents, WhatAGestureChangedGoesToTheParametersAtItsEnd) {
    const FakeDrawbot drawbot(host);
    panel->changesScene = true;
    PF_ParamDef& distance = host.params[param::kCameraDistance];
    send(PF_Event_DO_CLICK, 60, 70);
    app().camera()->setMode(CameraMode::kOrbit);
    app().camera()->setDistance(250.0);
    send(PF_Event_DRAG, 61, 71);
    EXPECT_EQ(distance.uu.change_flags, 0) << "not while the mouse is down";
    send(PF_Event_DRAG, 62, 72, true);
    EXPECT_EQ(distance.u.fd.value, 250 * 65536);
    EXPECT_EQ(distance.uu.change_flags, PF_ChangeFlag_CHANGED_VALUE);
    EXPECT_FALSE(panel->changed());
    EXPECT_EQ(FakeDrawbot::invalidated, 3);
    EXPECT_EQ(host.out.out_flags, 0);

    app().useCompCamera = app().useCompLights = true;  // what the comp drives isn't written back
    app().camera()->setDistance(300.0);
    app().scene()->set(1)->transform().setTranslate({7.0, 0.0, 0.0});
    host.params[param::lightBase(1) + 1].u.fd.value = 12345;
    send(PF_Event_DO_CLICK, 60, 70);
    send(PF_Event_DRAG, 62, 72, true);
    EXPECT_EQ(distance.u.fd.value, 250 * 65536);
    EXPECT_EQ(host.params[param::lightBase(1) + 1].u.fd.value, 12345);
    EXPECT_EQ(host.params[param::setBase(1)].u.fd.value, 7 * 65536);
    app().useCompCamera = app().useCompLights = false;

    host.suites.erase({"PF AE App Suite", 7});  // then by the slower road
    send(PF_Event_DO_CLICK, 160, 70);
    EXPECT_EQ(host.out.out_flags, PF_OutFlag_REFRESH_UI);
    send(PF_Event_DRAG, 160, 70, true);
}

TEST_F(PanelEvents, OnlyADrawOrANewTimePosesTheScene) {
    const FakeDrawbot drawbot(host);
    host.currentTime = 7;
    send(PF_Event_IDLE);
    EXPECT_EQ(record().lastPoseTime, 7);
    EXPECT_DOUBLE_EQ(app().camera()->distance(), 500.0);

    app().camera()->setDistance(100.0);
    for (const PF_EventType type :
         {PF_Event_IDLE, PF_Event_DO_CLICK, PF_Event_DRAG, PF_Event_ADJUST_CURSOR}) {
        send(type, 60, 70, true);
        EXPECT_DOUBLE_EQ(app().camera()->distance(), 100.0) << type;
    }
    send(PF_Event_DRAW);
    EXPECT_DOUBLE_EQ(app().camera()->distance(), 500.0);
    app().camera()->setDistance(100.0);
    host.currentTime = 8;
    send(PF_Event_ADJUST_CURSOR);
    EXPECT_DOUBLE_EQ(app().camera()->distance(), 500.0);
    EXPECT_EQ(host.checkedOut, 0);
}

TEST_F(PanelEvents, ADrawHandsThePictureToTheHost) {
    const FakeDrawbot drawbot(host);
    app().setPanel(nullptr);
    app().renderState().viewer.background = {1.0F, 0.5F, 0.0F};
    for (const bool bgra : {true, false}) {
        FakeDrawbot::bgra = bgra;
        send(PF_Event_DRAW);
        EXPECT_TRUE(handled());
        EXPECT_EQ(FakeDrawbot::width, 319);
        EXPECT_EQ(FakeDrawbot::height, 260);
        EXPECT_EQ(FakeDrawbot::rowBytes, 319 * 4);
        EXPECT_EQ(FakeDrawbot::layout,
                  bgra ? kDRAWBOT_PixelLayout_32BGRA_Premul : kDRAWBOT_PixelLayout_32ARGB_Premul);
        EXPECT_FLOAT_EQ(FakeDrawbot::left, 10.0F);
        EXPECT_FLOAT_EQ(FakeDrawbot::top, 20.0F);
        const std::vector<std::uint8_t> corner(FakeDrawbot::pixels.begin(),
                                               FakeDrawbot::pixels.begin() + 4);
        EXPECT_EQ(corner, bgra ? (std::vector<std::uint8_t>{0, 127, 255, 255})
                               : (std::vector<std::uint8_t>{255, 255, 127, 0}));
    }
    EXPECT_EQ(FakeDrawbot::released, 2);
    ASSERT_NE(app().panel(), nullptr);
    EXPECT_TRUE(app().panel()->shown());
    EXPECT_EQ(app().panel()->bounds().left, 10);
}

TEST_F(PanelEvents, NothingIsDrawnWhereTheHostDoesNotWantIt) {
    const FakeDrawbot drawbot(host);
    event.evt_in_flags = PF_EI_DONT_DRAW;
    send(PF_Event_DRAW);
    EXPECT_FALSE(handled());
    event.evt_in_flags = 0;
    FakeDrawbot::hasReference = false;
    send(PF_Event_DRAW);
    EXPECT_FALSE(handled());
    host.suites.clear();
    send(PF_Event_DRAW);
    EXPECT_FALSE(handled());
    EXPECT_EQ(FakeDrawbot::width, 0);
}

}  // namespace
}  // namespace orvin
