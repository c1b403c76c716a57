// What the host tells the effect with each command.
#pragma once

#include "host/abi/BasicSuite.h"
#include "host/abi/Callbacks.h"

namespace orvin {

inline constexpr A_long kAppIdAfterEffects = 0x46585443;  // 'FXTC'
inline constexpr A_long kAppIdPremiere = 0x50724D72;      // 'PrMr'

struct PF_InData {
    PF_InteractCallbacks inter;
    PF_UtilCallbacks* utils;
    PF_ProgPtr effect_ref;  // opaque; first argument of most callbacks
    PF_Quality quality;
    PF_SpecVersion version;  // of the running host's interface: compare as a pair
    A_long serial_num;
    A_long appl_id;
    A_long num_params;
    A_long reserved;
    A_long what_cpu;
    A_long what_fpu;
    A_long current_time;  // layer time in units of 1 / time_scale seconds; may be negative
    A_long time_step;     // may be 0 or negative
    A_long total_time;
    A_long local_time_step;
    A_u_long time_scale;
    PF_Field field;
    PF_Fixed shutter_angle;
    A_long width;  // of the layer, not downsampled
    A_long height;
    PF_UnionableRect extent_hint;
    A_long output_origin_x;
    A_long output_origin_y;
    PF_RationalScale downsample_x;
    PF_RationalScale downsample_y;
    PF_RationalScale pixel_aspect_ratio;  // width over height
    PF_InFlags in_flags;
    PF_Handle global_data;
    PF_Handle sequence_data;  // comes locked
    PF_Handle frame_data;
    A_long start_sampL;
    A_long dur_sampL;
    A_long total_sampL;
    PF_SoundWorld src_snd;
    SPBasicSuite* pica_basicP;
    A_long pre_effect_source_origin_x;
    A_long pre_effect_source_origin_y;
    PF_Fixed shutter_phase;
};
ORVIN_ABI_SIZE(PF_InData, 408);
static_assert(alignof(PF_InData) == 8);
ORVIN_ABI_OFFSET(PF_InData, inter, 0);
ORVIN_ABI_OFFSET(PF_InData, utils, 176);
ORVIN_ABI_OFFSET(PF_InData, effect_ref, 184);
ORVIN_ABI_OFFSET(PF_InData, quality, 192);
ORVIN_ABI_OFFSET(PF_InData, version, 196);
ORVIN_ABI_OFFSET(PF_InData, serial_num, 200);
ORVIN_ABI_OFFSET(PF_InData, appl_id, 204);
ORVIN_ABI_OFFSET(PF_InData, num_params, 208);
ORVIN_ABI_OFFSET(PF_InData, reserved, 212);
ORVIN_ABI_OFFSET(PF_InData, what_cpu, 216);
ORVIN_ABI_OFFSET(PF_InData, what_fpu, 220);
ORVIN_ABI_OFFSET(PF_InData, current_time, 224);
ORVIN_ABI_OFFSET(PF_InData, time_step, 228);
ORVIN_ABI_OFFSET(PF_InData, total_time, 232);
ORVIN_ABI_OFFSET(PF_InData, local_time_step, 236);
ORVIN_ABI_OFFSET(PF_InData, time_scale, 240);
ORVIN_ABI_OFFSET(PF_InData, field, 244);
ORVIN_ABI_OFFSET(PF_InData, shutter_angle, 248);
ORVIN_ABI_OFFSET(PF_InData, width, 252);
ORVIN_ABI_OFFSET(PF_InData, height, 256);
ORVIN_ABI_OFFSET(PF_InData, extent_hint, 260);
ORVIN_ABI_OFFSET(PF_InData, output_origin_x, 276);
ORVIN_ABI_OFFSET(PF_InData, output_origin_y, 280);
ORVIN_ABI_OFFSET(PF_InData, downsample_x, 284);
ORVIN_ABI_OFFSET(PF_InData, downsample_y, 292);
ORVIN_ABI_OFFSET(PF_InData, pixel_aspect_ratio, 300);
ORVIN_ABI_OFFSET(PF_InData, in_flags, 308);
ORVIN_ABI_OFFSET(PF_InData, global_data, 312);
ORVIN_ABI_OFFSET(PF_InData, sequence_data, 320);
ORVIN_ABI_OFFSET(PF_InData, frame_data, 328);
ORVIN_ABI_OFFSET(PF_InData, start_sampL, 336);
ORVIN_ABI_OFFSET(PF_InData, dur_sampL, 340);
ORVIN_ABI_OFFSET(PF_InData, total_sampL, 344);
ORVIN_ABI_OFFSET(PF_InData, src_snd, 352);
ORVIN_ABI_OFFSET(PF_InData, pica_basicP, 384);
ORVIN_ABI_OFFSET(PF_InData, pre_effect_source_origin_x, 392);
ORVIN_ABI_OFFSET(PF_InData, pre_effect_source_origin_y, 396);
ORVIN_ABI_OFFSET(PF_InData, shutter_phase, 400);

}  // namespace orvin
