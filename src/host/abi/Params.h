// Worlds and parameters: the structures by which the host hands over pixels and values.
#pragma once

#include "host/abi/Flags.h"

namespace orvin {

using PF_ParamType = A_long;
using PF_ValueDisplayFlags = A_short;
using PF_FSliderFlags = A_u_long;

// An image of the host. The pixel of column x, row y stands at data + y * rowbytes + 4 * x, rows
// from the top; rowbytes may exceed 4 * width. An empty layer is a structure of zeros.
struct PF_LayerDef {
    void* reserved0;
    void* reserved1;
    PF_WorldFlags world_flags;
    PF_PixelPtr data;
    A_long rowbytes;
    A_long width;
    A_long height;
    PF_UnionableRect extent_hint;
    void* platform_ref;
    A_long reserved_long1;
    void* reserved_long4;
    PF_RationalScale pix_aspect_ratio;
    void* reserved_long2;
    A_long origin_x;
    A_long origin_y;
    A_long reserved_long3;
    A_long dephault;  // of a layer parameter: PF_LayerDefault_MYSELF or PF_LayerDefault_NONE
};
using PF_EffectWorld = PF_LayerDef;
ORVIN_ABI_SIZE(PF_LayerDef, 120);
ORVIN_ABI_OFFSET(PF_LayerDef, reserved1, 8);
ORVIN_ABI_OFFSET(PF_LayerDef, world_flags, 16);
ORVIN_ABI_OFFSET(PF_LayerDef, data, 24);
ORVIN_ABI_OFFSET(PF_LayerDef, rowbytes, 32);
ORVIN_ABI_OFFSET(PF_LayerDef, width, 36);
ORVIN_ABI_OFFSET(PF_LayerDef, height, 40);
ORVIN_ABI_OFFSET(PF_LayerDef, extent_hint, 44);
ORVIN_ABI_OFFSET(PF_LayerDef, platform_ref, 64);
ORVIN_ABI_OFFSET(PF_LayerDef, reserved_long1, 72);
ORVIN_ABI_OFFSET(PF_LayerDef, reserved_long4, 80);
ORVIN_ABI_OFFSET(PF_LayerDef, pix_aspect_ratio, 88);
ORVIN_ABI_OFFSET(PF_LayerDef, reserved_long2, 96);
ORVIN_ABI_OFFSET(PF_LayerDef, origin_x, 104);
ORVIN_ABI_OFFSET(PF_LayerDef, origin_y, 108);
ORVIN_ABI_OFFSET(PF_LayerDef, reserved_long3, 112);
ORVIN_ABI_OFFSET(PF_LayerDef, dephault, 116);

enum : A_long { PF_LayerDefault_MYSELF = -1, PF_LayerDefault_NONE = 0 };

enum : PF_ParamType {
    PF_Param_RESERVED = -1,
    PF_Param_LAYER = 0,
    PF_Param_SLIDER = 1,
    PF_Param_FIX_SLIDER = 2,
    PF_Param_ANGLE = 3,
    PF_Param_CHECKBOX = 4,
    PF_Param_COLOR = 5,
    PF_Param_POINT = 6,
    PF_Param_POPUP = 7,
    PF_Param_CUSTOM = 8,
    PF_Param_NO_DATA = 9,
    PF_Param_FLOAT_SLIDER = 10,
    PF_Param_ARBITRARY_DATA = 11,
    PF_Param_PATH = 12,
    PF_Param_GROUP_START = 13,
    PF_Param_GROUP_END = 14,
    PF_Param_BUTTON = 15,
    PF_Param_RESERVED2 = 16,
    PF_Param_RESERVED3 = 17,
    PF_Param_POINT_3D = 18,
};

enum : PF_ValueDisplayFlags {
    PF_ValueDisplayFlag_NONE = 0,
    PF_ValueDisplayFlag_PERCENT = 1,
    PF_ValueDisplayFlag_PIXEL = 2,
};

inline constexpr int PF_MAX_PARAM_NAME = 31;  // characters, the NUL comes on top

struct PF_SliderDef {
    A_long value;
    A_char value_str[32];
    A_char value_desc[32];
    A_long valid_min;
    A_long valid_max;
    A_long slider_min;
    A_long slider_max;
    A_long dephault;
};

struct PF_FixedSliderDef {
    PF_Fixed value;
    A_char value_str[32];
    A_char value_desc[32];
    PF_Fixed valid_min;
    PF_Fixed valid_max;
    PF_Fixed slider_min;
    PF_Fixed slider_max;
    PF_Fixed dephault;
    A_short precision;  // decimal places shown
    PF_ValueDisplayFlags display_flags;
};

struct PF_AngleDef {
    PF_Fixed value;  // degrees
    PF_Fixed dephault;
    PF_Fixed valid_min;
    PF_Fixed valid_max;
};

struct PF_CheckBoxDef {
    PF_ParamValue value;  // 0 or 1
    PF_Boolean dephault;
    A_char reserved;
    A_short reserved1;
    union {
        const A_char* nameptr;  // label beside the box; the host may keep the pointer
    } u;
};

struct PF_ColorDef {
    PF_Pixel value;
    PF_Pixel dephault;
};

struct PF_PointDef {
    PF_Fixed x_value;
    PF_Fixed y_value;
    A_char reserved[3];
    PF_Boolean restrict_bounds;
    PF_Fixed x_dephault;  // percent of the layer's width
    PF_Fixed y_dephault;
};

struct PF_PopupDef {
    PF_ParamValue value;  // counted from 1
    A_short num_choices;
    A_short dephault;  // counted from 1
    union {
        const A_char* namesptr;  // choices divided by '|'; the host may keep the pointer
    } u;
};

struct PF_FloatSliderDef {
    PF_FpLong value;
    PF_FpLong phase;
    A_char value_desc[32];
    PF_FpShort valid_min;
    PF_FpShort valid_max;
    PF_FpShort slider_min;
    PF_FpShort slider_max;
    PF_FpShort dephault;
    A_short precision;
    PF_ValueDisplayFlags display_flags;
    PF_FSliderFlags fs_flags;
    PF_FpShort curve_tolerance;
    PF_Boolean useExponent;
    PF_FpShort exponent;
};

struct PF_ArbitraryDef {
    A_short id;
    A_short pad;
    PF_Handle dephault;
    PF_Handle value;
    void* refconPV;
};

struct PF_PathDef {
    A_u_long path_id;
    A_long reserved0;
    A_long dephault;
};

struct PF_ButtonDef {
    PF_ParamValue value;
    union {
        const A_char* namesptr;
    } u;
};

struct PF_Point3DDef {
    PF_FpLong x_value;
    PF_FpLong y_value;
    PF_FpLong z_value;
    PF_FpLong x_dephault;
    PF_FpLong y_dephault;
    PF_FpLong z_dephault;
    A_char reserved[16];
};

union PF_ParamDefUnion {
    PF_LayerDef ld;
    PF_SliderDef sd;
    PF_FixedSliderDef fd;
    PF_AngleDef ad;
    PF_CheckBoxDef bd;
    PF_ColorDef cd;
    PF_PointDef td;
    PF_PopupDef pd;
    PF_FloatSliderDef fs_d;
    PF_ArbitraryDef arb_d;
    PF_PathDef path_d;
    PF_ButtonDef button_d;
    PF_Point3DDef point3d_d;
};
ORVIN_ABI_SIZE(PF_ParamDefUnion, 120);

struct PF_ParamDef {
    union {
        A_long id;                    // when the parameter is added
        PF_ChangeFlags change_flags;  // when the effect reports a change
    } uu;
    PF_ParamUIFlags ui_flags;
    A_short ui_width;
    A_short ui_height;
    PF_ParamType param_type;
    A_char name[32];
    PF_ParamFlags flags;
    A_long unused;
    PF_ParamDefUnion u;
};
ORVIN_ABI_SIZE(PF_ParamDef, 176);
ORVIN_ABI_OFFSET(PF_ParamDef, uu, 0);
ORVIN_ABI_OFFSET(PF_ParamDef, ui_flags, 4);
ORVIN_ABI_OFFSET(PF_ParamDef, ui_width, 8);
ORVIN_ABI_OFFSET(PF_ParamDef, ui_height, 10);
ORVIN_ABI_OFFSET(PF_ParamDef, param_type, 12);
ORVIN_ABI_OFFSET(PF_ParamDef, name, 16);
ORVIN_ABI_OFFSET(PF_ParamDef, flags, 48);
ORVIN_ABI_OFFSET(PF_ParamDef, unused, 52);
ORVIN_ABI_OFFSET(PF_ParamDef, u, 56);

ORVIN_ABI_OFFSET(PF_ParamDef, u.ld.world_flags, 72);
ORVIN_ABI_OFFSET(PF_ParamDef, u.ld.data, 80);
ORVIN_ABI_OFFSET(PF_ParamDef, u.ld.rowbytes, 88);
ORVIN_ABI_OFFSET(PF_ParamDef, u.ld.width, 92);
ORVIN_ABI_OFFSET(PF_ParamDef, u.ld.height, 96);
ORVIN_ABI_OFFSET(PF_ParamDef, u.ld.extent_hint, 100);
ORVIN_ABI_OFFSET(PF_ParamDef, u.ld.pix_aspect_ratio, 144);
ORVIN_ABI_OFFSET(PF_ParamDef, u.ld.dephault, 172);

ORVIN_ABI_OFFSET(PF_ParamDef, u.fd.value, 56);
ORVIN_ABI_OFFSET(PF_ParamDef, u.fd.value_str, 60);
ORVIN_ABI_OFFSET(PF_ParamDef, u.fd.value_desc, 92);
ORVIN_ABI_OFFSET(PF_ParamDef, u.fd.valid_min, 124);
ORVIN_ABI_OFFSET(PF_ParamDef, u.fd.valid_max, 128);
ORVIN_ABI_OFFSET(PF_ParamDef, u.fd.slider_min, 132);
ORVIN_ABI_OFFSET(PF_ParamDef, u.fd.slider_max, 136);
ORVIN_ABI_OFFSET(PF_ParamDef, u.fd.dephault, 140);
ORVIN_ABI_OFFSET(PF_ParamDef, u.fd.precision, 144);
ORVIN_ABI_OFFSET(PF_ParamDef, u.fd.display_flags, 146);

ORVIN_ABI_OFFSET(PF_ParamDef, u.sd.value, 56);
ORVIN_ABI_OFFSET(PF_ParamDef, u.sd.value_str, 60);
ORVIN_ABI_OFFSET(PF_ParamDef, u.sd.value_desc, 92);
ORVIN_ABI_OFFSET(PF_ParamDef, u.sd.valid_min, 124);
ORVIN_ABI_OFFSET(PF_ParamDef, u.sd.valid_max, 128);
ORVIN_ABI_OFFSET(PF_ParamDef, u.sd.slider_min, 132);
ORVIN_ABI_OFFSET(PF_ParamDef, u.sd.slider_max, 136);
ORVIN_ABI_OFFSET(PF_ParamDef, u.sd.dephault, 140);

ORVIN_ABI_OFFSET(PF_ParamDef, u.bd.value, 56);
ORVIN_ABI_OFFSET(PF_ParamDef, u.bd.dephault, 60);
ORVIN_ABI_OFFSET(PF_ParamDef, u.bd.reserved, 61);
ORVIN_ABI_OFFSET(PF_ParamDef, u.bd.reserved1, 62);
ORVIN_ABI_OFFSET(PF_ParamDef, u.bd.u.nameptr, 64);

ORVIN_ABI_OFFSET(PF_ParamDef, u.cd.value, 56);
ORVIN_ABI_OFFSET(PF_ParamDef, u.cd.dephault, 60);

ORVIN_ABI_OFFSET(PF_ParamDef, u.pd.value, 56);
ORVIN_ABI_OFFSET(PF_ParamDef, u.pd.num_choices, 60);
ORVIN_ABI_OFFSET(PF_ParamDef, u.pd.dephault, 62);
ORVIN_ABI_OFFSET(PF_ParamDef, u.pd.u.namesptr, 64);

ORVIN_ABI_OFFSET(PF_ParamDef, u.td.x_value, 56);
ORVIN_ABI_OFFSET(PF_ParamDef, u.td.y_value, 60);
ORVIN_ABI_OFFSET(PF_ParamDef, u.td.restrict_bounds, 67);
ORVIN_ABI_OFFSET(PF_ParamDef, u.td.x_dephault, 68);
ORVIN_ABI_OFFSET(PF_ParamDef, u.td.y_dephault, 72);

ORVIN_ABI_OFFSET(PF_ParamDef, u.ad.value, 56);
ORVIN_ABI_OFFSET(PF_ParamDef, u.ad.dephault, 60);
ORVIN_ABI_OFFSET(PF_ParamDef, u.ad.valid_min, 64);
ORVIN_ABI_OFFSET(PF_ParamDef, u.ad.valid_max, 68);

ORVIN_ABI_OFFSET(PF_ParamDef, u.fs_d.value, 56);
ORVIN_ABI_OFFSET(PF_ParamDef, u.fs_d.phase, 64);
ORVIN_ABI_OFFSET(PF_ParamDef, u.fs_d.value_desc, 72);
ORVIN_ABI_OFFSET(PF_ParamDef, u.fs_d.valid_min, 104);
ORVIN_ABI_OFFSET(PF_ParamDef, u.fs_d.valid_max, 108);
ORVIN_ABI_OFFSET(PF_ParamDef, u.fs_d.slider_min, 112);
ORVIN_ABI_OFFSET(PF_ParamDef, u.fs_d.slider_max, 116);
ORVIN_ABI_OFFSET(PF_ParamDef, u.fs_d.dephault, 120);
ORVIN_ABI_OFFSET(PF_ParamDef, u.fs_d.precision, 124);
ORVIN_ABI_OFFSET(PF_ParamDef, u.fs_d.display_flags, 126);
ORVIN_ABI_OFFSET(PF_ParamDef, u.fs_d.fs_flags, 128);
ORVIN_ABI_OFFSET(PF_ParamDef, u.fs_d.curve_tolerance, 132);
ORVIN_ABI_OFFSET(PF_ParamDef, u.fs_d.useExponent, 136);
ORVIN_ABI_OFFSET(PF_ParamDef, u.fs_d.exponent, 140);

ORVIN_ABI_OFFSET(PF_ParamDef, u.arb_d.id, 56);
ORVIN_ABI_OFFSET(PF_ParamDef, u.arb_d.pad, 58);
ORVIN_ABI_OFFSET(PF_ParamDef, u.arb_d.dephault, 64);
ORVIN_ABI_OFFSET(PF_ParamDef, u.arb_d.value, 72);
ORVIN_ABI_OFFSET(PF_ParamDef, u.arb_d.refconPV, 80);

ORVIN_ABI_OFFSET(PF_ParamDef, u.button_d.value, 56);
ORVIN_ABI_OFFSET(PF_ParamDef, u.button_d.u.namesptr, 64);

ORVIN_ABI_OFFSET(PF_ParamDef, u.path_d.path_id, 56);
ORVIN_ABI_OFFSET(PF_ParamDef, u.path_d.reserved0, 60);
ORVIN_ABI_OFFSET(PF_ParamDef, u.path_d.dephault, 64);

ORVIN_ABI_OFFSET(PF_ParamDef, u.point3d_d.x_value, 56);
ORVIN_ABI_OFFSET(PF_ParamDef, u.point3d_d.y_value, 64);
ORVIN_ABI_OFFSET(PF_ParamDef, u.point3d_d.z_value, 72);
ORVIN_ABI_OFFSET(PF_ParamDef, u.point3d_d.x_dephault, 80);
ORVIN_ABI_OFFSET(PF_ParamDef, u.point3d_d.y_dephault, 88);
ORVIN_ABI_OFFSET(PF_ParamDef, u.point3d_d.z_dephault, 96);
ORVIN_ABI_OFFSET(PF_ParamDef, u.point3d_d.reserved, 104);

struct PF_UserChangedParamExtra {
    PF_ParamIndex param_index;  // index into the params array of the command
};
ORVIN_ABI_SIZE(PF_UserChangedParamExtra, 4);

struct PF_ExtDependenciesExtra {
    A_long check_type;
    PF_Handle dependencies_strH;
};
ORVIN_ABI_SIZE(PF_ExtDependenciesExtra, 16);

}  // namespace orvin
