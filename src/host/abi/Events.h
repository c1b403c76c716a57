// Events of the effect's own control in the host's effect panel.
#pragma once

#include "host/abi/Callbacks.h"

namespace orvin {

using PF_EventType = A_long;
using PF_WindowType = A_long;
using PF_EffectArea = A_long;
using PF_EventInFlags = A_long;
using PF_EventOutFlags = A_long;
using PF_Modifiers = A_long;
using PF_CursorType = A_long;
using PF_KeyCode = A_u_long;
using DRAWBOT_DrawRef = struct DRAWBOT_Draw_Opaque*;

enum : PF_EventType {
    PF_Event_NONE = -1,
    PF_Event_NEW_CONTEXT = 0,
    PF_Event_ACTIVATE = 1,
    PF_Event_DO_CLICK = 2,
    PF_Event_DRAG = 3,
    PF_Event_DRAW = 4,
    PF_Event_DEACTIVATE = 5,
    PF_Event_CLOSE_CONTEXT = 6,
    PF_Event_IDLE = 7,
    PF_Event_KEYDOWN_OBSOLETE = 8,
    PF_Event_ADJUST_CURSOR = 9,
    PF_Event_KEYDOWN = 10,
    PF_Event_MOUSE_EXITED = 11,
};

enum : PF_WindowType {
    PF_Window_NONE = -1,
    PF_Window_COMP = 0,
    PF_Window_LAYER = 1,
    PF_Window_EFFECT = 2,
    PF_Window_PREVIEW = 3,
};

enum : PF_EffectArea { PF_EA_NONE = 0, PF_EA_PARAM_TITLE = 1, PF_EA_CONTROL = 2 };

enum : PF_EventInFlags { PF_EI_NONE = 0, PF_EI_DONT_DRAW = 1 };

enum : PF_EventOutFlags {
    PF_EO_NONE = 0,
    PF_EO_HANDLED_EVENT = 1,
    PF_EO_ALWAYS_UPDATE = 2,
    PF_EO_NEVER_UPDATE = 4,
    PF_EO_UPDATE_NOW = 8,
};

enum : PF_Modifiers {
    PF_Mod_NONE = 0,
    PF_Mod_CMD_CTRL_KEY = 0x100,
    PF_Mod_SHIFT_KEY = 0x200,
    PF_Mod_CAPS_LOCK_KEY = 0x400,
    PF_Mod_OPT_ALT_KEY = 0x800,
    PF_Mod_MAC_CONTROL_KEY = 0x1000,
};

enum : PF_CursorType {
    PF_Cursor_NONE = 0,
    PF_Cursor_CUSTOM = 1,
    PF_Cursor_ARROW = 2,
    PF_Cursor_HOLLOW_ARROW = 3,
    PF_Cursor_WATCH = 4,
    PF_Cursor_MAGNIFY = 5,
    PF_Cursor_HAND = 14,
};

struct PF_DoClickEventInfo {
    A_u_long when;          // system time
    PF_Point screen_point;  // in the coordinates of PF_EffectWindowInfo::current_frame
    A_long num_clicks;
    PF_Modifiers modifiers;
    A_intptr_t continue_refcon[4];  // carried over from click to drag to drag
    PF_Boolean send_drag;           // out: ask for a drag event next
    PF_Boolean last_time;           // in: this is the last drag event
};
ORVIN_ABI_SIZE(PF_DoClickEventInfo, 64);
ORVIN_ABI_OFFSET(PF_DoClickEventInfo, when, 0);
ORVIN_ABI_OFFSET(PF_DoClickEventInfo, screen_point, 4);
ORVIN_ABI_OFFSET(PF_DoClickEventInfo, num_clicks, 12);
ORVIN_ABI_OFFSET(PF_DoClickEventInfo, modifiers, 16);
ORVIN_ABI_OFFSET(PF_DoClickEventInfo, continue_refcon, 24);
ORVIN_ABI_OFFSET(PF_DoClickEventInfo, send_drag, 56);
ORVIN_ABI_OFFSET(PF_DoClickEventInfo, last_time, 57);

struct PF_DrawEventInfo {
    PF_Rect update_rect;
    A_long depth;
};
ORVIN_ABI_SIZE(PF_DrawEventInfo, 20);
ORVIN_ABI_OFFSET(PF_DrawEventInfo, depth, 16);

struct PF_KeyDownEvent {
    A_u_long when;
    PF_Point screen_point;
    PF_KeyCode keycode;
    PF_Modifiers modifiers;
};
ORVIN_ABI_SIZE(PF_KeyDownEvent, 20);
ORVIN_ABI_OFFSET(PF_KeyDownEvent, screen_point, 4);
ORVIN_ABI_OFFSET(PF_KeyDownEvent, keycode, 12);
ORVIN_ABI_OFFSET(PF_KeyDownEvent, modifiers, 16);

struct PF_AdjustCursorEventInfo {
    PF_Point screen_point;
    PF_Modifiers modifiers;
    PF_CursorType set_cursor;
};
ORVIN_ABI_SIZE(PF_AdjustCursorEventInfo, 16);
ORVIN_ABI_OFFSET(PF_AdjustCursorEventInfo, modifiers, 8);
ORVIN_ABI_OFFSET(PF_AdjustCursorEventInfo, set_cursor, 12);

union PF_EventUnion {
    PF_DoClickEventInfo do_click;
    PF_DrawEventInfo draw;
    PF_KeyDownEvent key_down;
    PF_AdjustCursorEventInfo adjust_cursor;
};
ORVIN_ABI_SIZE(PF_EventUnion, 64);

struct PF_EffectWindowInfo {
    PF_ParamIndex index;
    PF_EffectArea area;
    PF_UnionableRect current_frame;
    PF_UnionableRect param_title_frame;
    A_long horiz_offset;
};
ORVIN_ABI_SIZE(PF_EffectWindowInfo, 44);
ORVIN_ABI_OFFSET(PF_EffectWindowInfo, area, 4);
ORVIN_ABI_OFFSET(PF_EffectWindowInfo, current_frame, 8);
ORVIN_ABI_OFFSET(PF_EffectWindowInfo, param_title_frame, 24);
ORVIN_ABI_OFFSET(PF_EffectWindowInfo, horiz_offset, 40);

inline constexpr A_u_long PF_CONTEXT_MAGIC = 0x05EA771E;

struct PF_Context {
    A_u_long magic;
    PF_WindowType w_type;
    void* reserved_flt;
    A_intptr_t plugin_state[4];
    DRAWBOT_DrawRef reserved_drawref;  // fetched through the custom UI suite, never from here
    void* reserved_paneP;
    void* reserved_job_manageP;
};
using PF_ContextH = PF_Context**;
ORVIN_ABI_SIZE(PF_Context, 72);
ORVIN_ABI_OFFSET(PF_Context, w_type, 4);
ORVIN_ABI_OFFSET(PF_Context, reserved_flt, 8);
ORVIN_ABI_OFFSET(PF_Context, plugin_state, 16);
ORVIN_ABI_OFFSET(PF_Context, reserved_drawref, 48);
ORVIN_ABI_OFFSET(PF_Context, reserved_paneP, 56);
ORVIN_ABI_OFFSET(PF_Context, reserved_job_manageP, 64);

struct PF_EventCallbacks {
    void* refcon;
    PF_UncalledFn layer_to_comp;
    PF_UncalledFn comp_to_layer;
    PF_UncalledFn get_comp2layer_xform;
    PF_UncalledFn get_layer2comp_xform;
    PF_UncalledFn source_to_frame;
    PF_UncalledFn frame_to_source;
    PF_UncalledFn info_draw_color;
    PF_UncalledFn info_draw_text;
};
ORVIN_ABI_SIZE(PF_EventCallbacks, 72);

struct PF_EventExtra {
    PF_ContextH contextH;
    PF_EventType e_type;
    PF_EventUnion u;
    PF_EffectWindowInfo effect_win;
    PF_EventCallbacks cbs;
    PF_EventInFlags evt_in_flags;
    PF_EventOutFlags evt_out_flags;
};
ORVIN_ABI_SIZE(PF_EventExtra, 208);
static_assert(alignof(PF_EventExtra) == 8);
ORVIN_ABI_OFFSET(PF_EventExtra, contextH, 0);
ORVIN_ABI_OFFSET(PF_EventExtra, e_type, 8);
ORVIN_ABI_OFFSET(PF_EventExtra, u, 16);
ORVIN_ABI_OFFSET(PF_EventExtra, effect_win, 80);
ORVIN_ABI_OFFSET(PF_EventExtra, cbs, 128);
ORVIN_ABI_OFFSET(PF_EventExtra, evt_in_flags, 200);
ORVIN_ABI_OFFSET(PF_EventExtra, evt_out_flags, 204);
ORVIN_ABI_OFFSET(PF_EventExtra, u.do_click.screen_point, 20);
ORVIN_ABI_OFFSET(PF_EventExtra, u.do_click.num_clicks, 28);
ORVIN_ABI_OFFSET(PF_EventExtra, u.do_click.modifiers, 32);
ORVIN_ABI_OFFSET(PF_EventExtra, u.do_click.continue_refcon, 40);
ORVIN_ABI_OFFSET(PF_EventExtra, u.do_click.send_drag, 72);
ORVIN_ABI_OFFSET(PF_EventExtra, u.do_click.last_time, 73);
ORVIN_ABI_OFFSET(PF_EventExtra, u.draw.update_rect, 16);
ORVIN_ABI_OFFSET(PF_EventExtra, u.draw.depth, 32);
ORVIN_ABI_OFFSET(PF_EventExtra, effect_win.index, 80);
ORVIN_ABI_OFFSET(PF_EventExtra, effect_win.area, 84);
ORVIN_ABI_OFFSET(PF_EventExtra, effect_win.current_frame, 88);
ORVIN_ABI_OFFSET(PF_EventExtra, effect_win.param_title_frame, 104);
ORVIN_ABI_OFFSET(PF_EventExtra, effect_win.horiz_offset, 120);

}  // namespace orvin
