// Commands, errors and flag words of the host's effect interface.
#pragma once

#include "host/abi/Types.h"

namespace orvin {

using PF_OutFlags = A_long;
using PF_OutFlags2 = A_long;
using PF_InFlags = A_long;
using PF_ParamFlags = A_long;
using PF_ParamUIFlags = A_long;
using PF_ChangeFlags = A_long;
using PF_CustomEventFlags = A_long;
using PF_WorldFlags = A_long;
using PF_PlatDataID = A_long;

enum : PF_Err {
    PF_Err_NONE = 0,
    PF_Err_OUT_OF_MEMORY = 4,
    PF_FIRST_ERR = 512,
    PF_Err_INTERNAL_STRUCT_DAMAGED = 512,
    PF_Err_INVALID_INDEX = 513,
    PF_Err_UNRECOGNIZED_PARAM_TYPE = 514,
    PF_Err_INVALID_CALLBACK = 515,
    PF_Err_BAD_CALLBACK_PARAM = 516,
    PF_Interrupt_CANCEL = 517,
    PF_Err_CANNOT_PARSE_KEYFRAME_TEXT = 518,
};

enum : A_Err {
    A_Err_NONE = 0,
    A_Err_GENERIC = 1,
    A_Err_STRUCT = 2,
    A_Err_PARAMETER = 3,
    A_Err_ALLOC = 4,
};

enum : PF_Cmd {
    PF_Cmd_ABOUT = 0,
    PF_Cmd_GLOBAL_SETUP = 1,
    PF_Cmd_UNUSED_0 = 2,
    PF_Cmd_GLOBAL_SETDOWN = 3,
    PF_Cmd_PARAMS_SETUP = 4,
    PF_Cmd_SEQUENCE_SETUP = 5,
    PF_Cmd_SEQUENCE_RESETUP = 6,
    PF_Cmd_SEQUENCE_FLATTEN = 7,
    PF_Cmd_SEQUENCE_SETDOWN = 8,
    PF_Cmd_DO_DIALOG = 9,
    PF_Cmd_FRAME_SETUP = 10,
    PF_Cmd_RENDER = 11,
    PF_Cmd_FRAME_SETDOWN = 12,
    PF_Cmd_USER_CHANGED_PARAM = 13,
    PF_Cmd_UPDATE_PARAMS_UI = 14,
    PF_Cmd_EVENT = 15,
    PF_Cmd_GET_EXTERNAL_DEPENDENCIES = 16,
    PF_Cmd_COMPLETELY_GENERAL = 17,
    PF_Cmd_QUERY_DYNAMIC_FLAGS = 18,
    PF_Cmd_AUDIO_RENDER = 19,
    PF_Cmd_AUDIO_SETUP = 20,
    PF_Cmd_AUDIO_SETDOWN = 21,
    PF_Cmd_ARBITRARY_CALLBACK = 22,
    PF_Cmd_SMART_PRE_RENDER = 23,
    PF_Cmd_SMART_RENDER = 24,
    PF_Cmd_RESERVED1 = 25,
    PF_Cmd_RESERVED2 = 26,
    PF_Cmd_RESERVED3 = 27,
    PF_Cmd_GET_FLATTENED_SEQUENCE_DATA = 28,
    PF_Cmd_TRANSLATE_PARAMS_TO_PREFS = 29,
    PF_Cmd_RESERVED4 = 30,
    PF_Cmd_SMART_RENDER_GPU = 31,
    PF_Cmd_GPU_DEVICE_SETUP = 32,
    PF_Cmd_GPU_DEVICE_SETDOWN = 33,
};

enum : PF_OutFlags {
    PF_OutFlag_NONE = 0,
    PF_OutFlag_KEEP_RESOURCE_OPEN = 1 << 0,
    PF_OutFlag_WIDE_TIME_INPUT = 1 << 1,
    PF_OutFlag_NON_PARAM_VARY = 1 << 2,
    PF_OutFlag_SEQUENCE_DATA_NEEDS_FLATTENING = 1 << 4,
    PF_OutFlag_I_DO_DIALOG = 1 << 5,
    PF_OutFlag_USE_OUTPUT_EXTENT = 1 << 6,
    PF_OutFlag_SEND_DO_DIALOG = 1 << 7,
    PF_OutFlag_DISPLAY_ERROR_MESSAGE = 1 << 8,
    PF_OutFlag_I_EXPAND_BUFFER = 1 << 9,
    PF_OutFlag_PIX_INDEPENDENT = 1 << 10,
    PF_OutFlag_I_WRITE_INPUT_BUFFER = 1 << 11,
    PF_OutFlag_I_SHRINK_BUFFER = 1 << 12,
    PF_OutFlag_WORKS_IN_PLACE = 1 << 13,
    PF_OutFlag_CUSTOM_UI = 1 << 15,
    PF_OutFlag_REFRESH_UI = 1 << 17,
    PF_OutFlag_NOP_RENDER = 1 << 18,
    PF_OutFlag_I_USE_SHUTTER_ANGLE = 1 << 19,
    PF_OutFlag_I_USE_AUDIO = 1 << 20,
    PF_OutFlag_I_AM_OBSOLETE = 1 << 21,
    PF_OutFlag_FORCE_RERENDER = 1 << 22,
    PF_OutFlag_PiPL_OVERRIDES_OUTDATA_OUTFLAGS = 1 << 23,
    PF_OutFlag_I_HAVE_EXTERNAL_DEPENDENCIES = 1 << 24,
    PF_OutFlag_DEEP_COLOR_AWARE = 1 << 25,
    PF_OutFlag_SEND_UPDATE_PARAMS_UI = 1 << 26,
};

enum : PF_OutFlags2 {
    PF_OutFlag2_NONE = 0,
    PF_OutFlag2_SUPPORTS_QUERY_DYNAMIC_FLAGS = 1 << 0,
    PF_OutFlag2_I_USE_3D_CAMERA = 1 << 1,
    PF_OutFlag2_I_USE_3D_LIGHTS = 1 << 2,
    PF_OutFlag2_PARAM_GROUP_START_COLLAPSED_FLAG = 1 << 3,
    PF_OutFlag2_I_AM_THREADSAFE = 1 << 4,
    PF_OutFlag2_SUPPORTS_SMART_RENDER = 1 << 10,
    PF_OutFlag2_FLOAT_COLOR_AWARE = 1 << 12,
    PF_OutFlag2_AUTOMATIC_WIDE_TIME_INPUT = 1 << 17,
    PF_OutFlag2_SUPPORTS_GET_FLATTENED_SEQUENCE_DATA = 1 << 23,
    PF_OutFlag2_SUPPORTS_THREADED_RENDERING = 1 << 27,
};

enum : PF_ParamFlags {
    PF_ParamFlag_CANNOT_TIME_VARY = 1 << 1,
    PF_ParamFlag_CANNOT_INTERP = 1 << 2,
    PF_ParamFlag_COLLAPSE_TWIRLY = 1 << 5,
    PF_ParamFlag_START_COLLAPSED = 1 << 5,  // the same bit, read when the parameter is added
    PF_ParamFlag_SUPERVISE = 1 << 6,
    PF_ParamFlag_USE_VALUE_FOR_OLD_PROJECTS = 1 << 7,
    PF_ParamFlag_EXCLUDE_FROM_HAVE_INPUTS_CHANGED = 1 << 8,
    PF_ParamFlag_SKIP_REVEAL_WHEN_UNHIDDEN = 1 << 9,
};

enum : PF_ParamUIFlags {
    PF_PUI_NONE = 0,
    PF_PUI_TOPIC = 1 << 0,
    PF_PUI_CONTROL = 1 << 1,
    PF_PUI_STD_CONTROL_ONLY = 1 << 2,
    PF_PUI_NO_ECW_UI = 1 << 3,
    PF_PUI_ECW_SEPARATOR = 1 << 4,
    PF_PUI_DISABLED = 1 << 5,
    PF_PUI_DONT_ERASE_TOPIC = 1 << 6,
    PF_PUI_DONT_ERASE_CONTROL = 1 << 7,
    PF_PUI_RADIO_BUTTON = 1 << 8,
    PF_PUI_INVISIBLE = 1 << 9,
};

enum : PF_ChangeFlags {
    PF_ChangeFlag_NONE = 0,
    PF_ChangeFlag_CHANGED_VALUE = 1,
    PF_ChangeFlag_SET_TO_VARY = 4,
    PF_ChangeFlag_SET_TO_CONSTANT = 8,
};

enum : PF_CustomEventFlags {
    PF_CustomEFlag_NONE = 0,
    PF_CustomEFlag_COMP = 1,
    PF_CustomEFlag_LAYER = 2,
    PF_CustomEFlag_EFFECT = 4,
    PF_CustomEFlag_PREVIEW = 8,
};

enum : PF_WorldFlags {
    PF_WorldFlag_DEEP = 1,
    PF_WorldFlag_WRITEABLE = 2,
};

enum : PF_Quality {
    PF_Quality_DRAWING_AUDIO = -1,
    PF_Quality_LO = 0,
    PF_Quality_HI = 1,
};

enum : PF_Field {
    PF_Field_FRAME = 0,
    PF_Field_UPPER = 1,
    PF_Field_LOWER = 2,
};

enum : PF_InFlags {
    PF_InFlag_NONE = 0,
    PF_InFlag_PROJECT_IS_RENDER_ONLY = 1,
};

enum : PF_PlatDataID {
    PF_PlatData_MAIN_WND = 0,
    PF_PlatData_EXE_FILE_PATH_DEPRECATED = 1,
    PF_PlatData_RES_FILE_PATH_DEPRECATED = 2,
    PF_PlatData_RES_REFNUM = 3,
    PF_PlatData_RES_DLLINSTANCE = 4,
    PF_PlatData_SP_PLUG_REF = 5,
    PF_PlatData_BUNDLE_REF = 6,
    PF_PlatData_EXE_FILE_PATH_W = 7,
    PF_PlatData_RES_FILE_PATH_W = 8,
};

// The version word that an effect reports, packed as the host unpacks it.
enum : A_u_long {
    PF_Stage_DEVELOP = 0,
    PF_Stage_ALPHA = 1,
    PF_Stage_BETA = 2,
    PF_Stage_RELEASE = 3
};

constexpr A_u_long PF_VERSION(A_u_long version, A_u_long subVersion, A_u_long bugFix,
                              A_u_long stage, A_u_long build) {
    return ((version >> 3 & 15u) << 26) | ((version & 7u) << 19) | ((subVersion & 15u) << 15) |
           ((bugFix & 15u) << 11) | ((stage & 3u) << 9) | (build & 511u);
}

}  // namespace orvin
