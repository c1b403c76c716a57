#include "host/Events.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <limits>

#include "host/OrvinApp.h"
#include "host/PanelSurface.h"
#include "host/ParameterTable.h"

namespace orvin {

namespace {

constexpr int kDoubleClickSeconds = 2;
constexpr int kDoubleClickPixels = 5;

std::int32_t clockSeconds() {
    return static_cast<std::int32_t>(std::time(nullptr) & 0x7FFFFFFF);
}

// The record keeps clicks as the first hosts gave them, in 16 bits.
std::int16_t toRecord(A_long coordinate) {
    return static_cast<std::int16_t>(std::clamp<A_long>(coordinate,
                                                        std::numeric_limits<std::int16_t>::min(),
                                                        std::numeric_limits<std::int16_t>::max()));
}

PanelPoint pointInPanel(const PF_EventExtra& event) {
    const PF_Point& at = event.u.do_click.screen_point;
    const PF_Rect& frame = event.effect_win.current_frame;
    return {at.h - frame.left, at.v - frame.top};
}

bool isInPanel(const PF_EventExtra& event) {
    return event.effect_win.area == PF_EA_CONTROL && event.effect_win.index == param::kScenePreview;
}

void draw(const EventCall& call) {
    if ((call.event.evt_in_flags & PF_EI_DONT_DRAW) != 0) return;
    const auto surface = openPanelSurface(call.in, call.event);
    if (!surface) return;
    call.record.panelWindow = surface->window();
    if (call.app.panel() == nullptr) {
        const PF_Rect rect{0, 0, EffectPanel::kWidth, EffectPanel::kHeight};
        call.app.AttachPanel(surface->window(), rect);
    }
    EffectPanel& panel = *call.app.panel();
    const PF_Rect& frame = call.event.effect_win.current_frame;
    panel.moveTo(frame.left, frame.top);
    panel.show();
    surface->paint(call.app.panelPicture(), frame.left, frame.top);
    call.event.evt_out_flags |= PF_EO_HANDLED_EVENT;
}

void redrawPanel(const EventCall& call) {
    if (!invalidatePanel(call.in, call.event.contextH)) call.out.out_flags |= PF_OutFlag_REFRESH_UI;
}

// Brings what the mouse did in the viewer to the eye, and at the end of a gesture to the host.
void showChanges(const EventCall& call, bool gestureEnds) {
    EffectPanel* panel = call.app.panel();
    if (panel == nullptr || !panel->changed()) return;
    if (gestureEnds) {
        writeSceneToParameters(call.app, call.in, call.params, SceneGroup::kAll);
        panel->clearChanged();
    }
    redrawPanel(call);
}

void click(const EventCall& call) {
    PF_DoClickEventInfo& info = call.event.u.do_click;
    SequenceRecord& record = call.record;
    EffectPanel* panel = call.app.panel();
    const PanelPoint at = pointInPanel(call.event);
    PanelControl* control =
        panel != nullptr && isInPanel(call.event) ? panel->controlAt(at) : nullptr;

    const std::int32_t now = clockSeconds();
    const bool second = isDoubleClick(record, now, info.screen_point.h, info.screen_point.v);
    if (!second) {
        record.lastClickTime = now;
        record.lastClickH = toRecord(info.screen_point.h);
        record.lastClickV = toRecord(info.screen_point.v);
        record.capturedControl = control;
        if (control != nullptr) info.send_drag = 1;
    }
    if (control != nullptr) {
        record.uiState[0] = record.uiState[2] = at.x;
        record.uiState[1] = record.uiState[3] = at.y;
        control->mouseDown(at, info.modifiers, second);
    }
    call.event.evt_out_flags |= PF_EO_HANDLED_EVENT;
    showChanges(call, info.send_drag == 0);
}

void drag(const EventCall& call) {
    PF_DoClickEventInfo& info = call.event.u.do_click;
    SequenceRecord& record = call.record;
    EffectPanel* panel = call.app.panel();
    PanelControl* control = panel != nullptr ? panel->control(record.capturedControl) : nullptr;
    const bool last = info.last_time != 0;
    if (control != nullptr) {
        const PanelPoint at = pointInPanel(call.event);
        record.uiState[2] = at.x;
        record.uiState[3] = at.y;
        if (last)
            control->mouseUp(at, info.modifiers);
        else
            control->mouseMove(at, info.modifiers);
        info.send_drag = last ? 0 : 1;
    }
    if (last) {
        record.capturedControl = nullptr;
        std::fill(std::begin(record.uiState), std::end(record.uiState), -1);
    }
    call.event.evt_out_flags |= PF_EO_HANDLED_EVENT;
    showChanges(call, last);
}

}  // namespace

bool isDoubleClick(const SequenceRecord& record, std::int32_t seconds, int h, int v) {
    const auto near = [](int a, int b) {
        return std::llabs(static_cast<long long>(a) - b) < kDoubleClickPixels;
    };
    return static_cast<std::int64_t>(seconds) - record.lastClickTime < kDoubleClickSeconds &&
           near(h, record.lastClickH) && near(v, record.lastClickV);
}

void serveEvent(const EventCall& call) {
    switch (call.event.e_type) {
        case PF_Event_DRAW:
            draw(call);
            break;
        case PF_Event_DO_CLICK:
            click(call);
            break;
        case PF_Event_DRAG:
            drag(call);
            break;
        default:
            break;
    }
}

}  // namespace orvin
