// The two tables of callbacks that the host hands over with each command.
#pragma once

#include "host/abi/Params.h"

namespace orvin {

struct PF_InData;

using PF_UIAlignment = A_long;
enum : PF_UIAlignment {
    PF_UIAlignment_NONE = 0,
    PF_UIAlignment_TOP = 1,
    PF_UIAlignment_LEFT = 2,
    PF_UIAlignment_BOTTOM = 4,
    PF_UIAlignment_RIGHT = 8,
};

struct PF_CustomUIInfo {
    A_long reserved;
    PF_CustomEventFlags events;
    A_long comp_ui_width;
    A_long comp_ui_height;
    PF_UIAlignment comp_ui_alignment;
    A_long layer_ui_width;
    A_long layer_ui_height;
    PF_UIAlignment layer_ui_alignment;
    A_long preview_ui_width;
    A_long preview_ui_height;
    PF_UIAlignment preview_ui_alignment;
};
ORVIN_ABI_SIZE(PF_CustomUIInfo, 44);
ORVIN_ABI_OFFSET(PF_CustomUIInfo, events, 4);
ORVIN_ABI_OFFSET(PF_CustomUIInfo, comp_ui_width, 8);
ORVIN_ABI_OFFSET(PF_CustomUIInfo, comp_ui_height, 12);
ORVIN_ABI_OFFSET(PF_CustomUIInfo, comp_ui_alignment, 16);
ORVIN_ABI_OFFSET(PF_CustomUIInfo, layer_ui_width, 20);
ORVIN_ABI_OFFSET(PF_CustomUIInfo, layer_ui_height, 24);
ORVIN_ABI_OFFSET(PF_CustomUIInfo, layer_ui_alignment, 28);
ORVIN_ABI_OFFSET(PF_CustomUIInfo, preview_ui_width, 32);
ORVIN_ABI_OFFSET(PF_CustomUIInfo, preview_ui_height, 36);
ORVIN_ABI_OFFSET(PF_CustomUIInfo, preview_ui_alignment, 40);

// Embedded by value at the start of PF_InData. Every function takes PF_InData::effect_ref first.
struct PF_InteractCallbacks {
    // The caller owns `param`, a whole PF_ParamDef; each check-out wants one check-in.
    PF_Err (*checkout_param)(PF_ProgPtr effect_ref, PF_ParamIndex index, A_long what_time,
                             A_long time_step, A_u_long time_scale, PF_ParamDef* param);
    PF_Err (*checkin_param)(PF_ProgPtr effect_ref, PF_ParamDef* param);
    PF_Err (*add_param)(PF_ProgPtr effect_ref, PF_ParamIndex index,
                        PF_ParamDef* def);   // index -1 appends
    PF_Err (*abort)(PF_ProgPtr effect_ref);  // non-zero: stop and hand the number back to the host
    PF_Err (*progress)(PF_ProgPtr effect_ref, A_long current, A_long total);  // the same
    PF_Err (*register_ui)(PF_ProgPtr effect_ref, PF_CustomUIInfo* info);
    PF_UncalledFn checkout_layer_audio;
    PF_UncalledFn checkin_layer_audio;
    PF_UncalledFn get_audio_data;
    void* reserved_str[3];
    void* reserved[10];
};
ORVIN_ABI_SIZE(PF_InteractCallbacks, 176);
ORVIN_ABI_OFFSET(PF_InteractCallbacks, checkout_param, 0);
ORVIN_ABI_OFFSET(PF_InteractCallbacks, checkin_param, 8);
ORVIN_ABI_OFFSET(PF_InteractCallbacks, add_param, 16);
ORVIN_ABI_OFFSET(PF_InteractCallbacks, abort, 24);
ORVIN_ABI_OFFSET(PF_InteractCallbacks, progress, 32);
ORVIN_ABI_OFFSET(PF_InteractCallbacks, register_ui, 40);
ORVIN_ABI_OFFSET(PF_InteractCallbacks, checkout_layer_audio, 48);
ORVIN_ABI_OFFSET(PF_InteractCallbacks, checkin_layer_audio, 56);
ORVIN_ABI_OFFSET(PF_InteractCallbacks, get_audio_data, 64);
ORVIN_ABI_OFFSET(PF_InteractCallbacks, reserved_str, 72);
ORVIN_ABI_OFFSET(PF_InteractCallbacks, reserved, 96);

// C functions that the host lends out; the effect uses its own library's.
struct PF_ANSICallbacks {
    PF_UncalledFn atan;
    PF_UncalledFn atan2;
    PF_UncalledFn ceil;
    PF_UncalledFn cos;
    PF_UncalledFn exp;
    PF_UncalledFn fabs;
    PF_UncalledFn floor;
    PF_UncalledFn fmod;
    PF_UncalledFn hypot;
    PF_UncalledFn log;
    PF_UncalledFn log10;
    PF_UncalledFn pow;
    PF_UncalledFn sin;
    PF_UncalledFn sqrt;
    PF_UncalledFn tan;
    PF_UncalledFn sprintf;
    PF_UncalledFn strcpy;
    PF_UncalledFn asin;
    PF_UncalledFn acos;
    A_long reserved;
};
ORVIN_ABI_SIZE(PF_ANSICallbacks, 160);

struct PF_ColorCallbacks {
    PF_UncalledFn RGBtoHLS;
    PF_UncalledFn HLStoRGB;
    PF_UncalledFn RGBtoYIQ;
    PF_UncalledFn YIQtoRGB;
    PF_UncalledFn Luminance;
    PF_UncalledFn Hue;
    PF_UncalledFn Lightness;
    PF_UncalledFn Saturation;
};
ORVIN_ABI_SIZE(PF_ColorCallbacks, 64);

struct PF_UtilCallbacks {
    PF_UncalledFn begin_sampling;
    PF_UncalledFn subpixel_sample;
    PF_UncalledFn area_sample;
    void* get_batch_func;
    PF_UncalledFn end_sampling;
    PF_UncalledFn composite_rect;
    PF_UncalledFn blend;
    PF_UncalledFn convolve;
    PF_Err (*copy)(PF_ProgPtr effect_ref, PF_EffectWorld* src, PF_EffectWorld* dst, PF_Rect* src_r,
                   PF_Rect* dst_r);
    PF_Err (*fill)(PF_ProgPtr effect_ref, const PF_Pixel* color, const PF_Rect* dst_rect,
                   PF_EffectWorld* world);
    PF_UncalledFn gaussian_kernel;
    PF_UncalledFn iterate;
    PF_UncalledFn premultiply;
    PF_UncalledFn premultiply_color;
    PF_Err (*new_world)(PF_ProgPtr effect_ref, A_long width, A_long height, A_long flags,
                        PF_EffectWorld* world);
    PF_Err (*dispose_world)(PF_ProgPtr effect_ref, PF_EffectWorld* world);
    PF_UncalledFn iterate_origin;
    PF_UncalledFn iterate_lut;
    PF_UncalledFn transfer_rect;
    PF_UncalledFn transform_world;
    PF_Handle (*host_new_handle)(A_HandleSize size);  // null when there is no memory
    void* (*host_lock_handle)(PF_Handle handle);
    void (*host_unlock_handle)(PF_Handle handle);
    void (*host_dispose_handle)(PF_Handle handle);
    PF_UncalledFn get_callback_addr;
    PF_Err (*app)(PF_ProgPtr effect_ref, A_long, ...);
    PF_ANSICallbacks ansi;
    PF_ColorCallbacks colorCB;
    PF_Err (*get_platform_data)(PF_ProgPtr effect_ref, PF_PlatDataID which, void* data);
    A_HandleSize (*host_get_handle_size)(PF_Handle handle);
    PF_UncalledFn iterate_origin_non_clip_src;
    PF_UncalledFn iterate_generic;
    PF_Err (*host_resize_handle)(A_HandleSize new_size, PF_Handle* handle);
    PF_UncalledFn subpixel_sample16;
    PF_UncalledFn area_sample16;
    PF_UncalledFn fill16;
    PF_UncalledFn premultiply_color16;
    PF_UncalledFn iterate16;
    PF_UncalledFn iterate_origin16;
    PF_UncalledFn iterate_origin_non_clip_src16;
    PF_Err (*get_pixel_data8)(PF_EffectWorld* world, PF_PixelPtr pixels, PF_Pixel8** pix);
    PF_Err (*get_pixel_data16)(PF_EffectWorld* world, PF_PixelPtr pixels, PF_Pixel16** pix);
    A_long reserved;
};
ORVIN_ABI_SIZE(PF_UtilCallbacks, 552);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, begin_sampling, 0);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, subpixel_sample, 8);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, area_sample, 16);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, get_batch_func, 24);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, end_sampling, 32);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, composite_rect, 40);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, blend, 48);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, convolve, 56);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, copy, 64);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, fill, 72);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, gaussian_kernel, 80);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, iterate, 88);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, premultiply, 96);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, premultiply_color, 104);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, new_world, 112);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, dispose_world, 120);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, iterate_origin, 128);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, iterate_lut, 136);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, transfer_rect, 144);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, transform_world, 152);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, host_new_handle, 160);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, host_lock_handle, 168);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, host_unlock_handle, 176);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, host_dispose_handle, 184);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, get_callback_addr, 192);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, app, 200);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, ansi, 208);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, colorCB, 368);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, get_platform_data, 432);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, host_get_handle_size, 440);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, iterate_origin_non_clip_src, 448);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, iterate_generic, 456);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, host_resize_handle, 464);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, subpixel_sample16, 472);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, area_sample16, 480);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, fill16, 488);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, premultiply_color16, 496);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, iterate16, 504);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, iterate_origin16, 512);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, iterate_origin_non_clip_src16, 520);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, get_pixel_data8, 528);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, get_pixel_data16, 536);
ORVIN_ABI_OFFSET(PF_UtilCallbacks, reserved, 544);

}  // namespace orvin
