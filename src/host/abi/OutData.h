// What the effect tells the host.
#pragma once

#include "host/abi/Flags.h"

namespace orvin {

inline constexpr int PF_MAX_EFFECT_MSG_LEN = 255;  // characters, the NUL comes on top

struct PF_OutData {
    A_u_long my_version;
    A_char name[32];
    PF_Handle global_data;
    A_long num_params;  // counts the input layer
    PF_Handle sequence_data;
    A_long flat_sdata_size;
    PF_Handle frame_data;
    A_long width;
    A_long height;
    PF_Point origin;
    PF_OutFlags out_flags;
    A_char return_msg[PF_MAX_EFFECT_MSG_LEN +
                      1];  // shown after the command; an error box with DISPLAY_ERROR_MESSAGE
    A_long start_sampL;
    A_long dur_sampL;
    PF_SoundWorld dest_snd;
    PF_OutFlags2 out_flags2;
};
ORVIN_ABI_SIZE(PF_OutData, 408);
static_assert(alignof(PF_OutData) == 8);
ORVIN_ABI_OFFSET(PF_OutData, my_version, 0);
ORVIN_ABI_OFFSET(PF_OutData, name, 4);
ORVIN_ABI_OFFSET(PF_OutData, global_data, 40);
ORVIN_ABI_OFFSET(PF_OutData, num_params, 48);
ORVIN_ABI_OFFSET(PF_OutData, sequence_data, 56);
ORVIN_ABI_OFFSET(PF_OutData, flat_sdata_size, 64);
ORVIN_ABI_OFFSET(PF_OutData, frame_data, 72);
ORVIN_ABI_OFFSET(PF_OutData, width, 80);
ORVIN_ABI_OFFSET(PF_OutData, height, 84);
ORVIN_ABI_OFFSET(PF_OutData, origin, 88);
ORVIN_ABI_OFFSET(PF_OutData, out_flags, 96);
ORVIN_ABI_OFFSET(PF_OutData, return_msg, 100);
ORVIN_ABI_OFFSET(PF_OutData, start_sampL, 356);
ORVIN_ABI_OFFSET(PF_OutData, dur_sampL, 360);
ORVIN_ABI_OFFSET(PF_OutData, dest_snd, 368);
ORVIN_ABI_OFFSET(PF_OutData, out_flags2, 400);

}  // namespace orvin
