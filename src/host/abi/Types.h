// Plain types of the host's effect interface, under the names that the host publishes.
//
// Every integer has a fixed width: the host's own declarations say `long` on some systems, which
// has eight bytes on 64-bit Linux and would move every field. All structures here and in the other
// headers of this folder have natural alignment, which is the host's packing on 64-bit systems.
#pragma once

#include "host/abi/Layout.h"

#include <cstddef>
#include <cstdint>

namespace orvin {

using A_char = char;
using A_u_char = unsigned char;
using A_Boolean = unsigned char;
using A_short = std::int16_t;
using A_u_short = std::uint16_t;
using A_UTF16Char = std::uint16_t;
using A_long = std::int32_t;
using A_u_long = std::uint32_t;
using A_u_longlong = std::uint64_t;
using A_HandleSize = std::uint64_t;
using A_intptr_t = std::intptr_t;
using A_FpLong = double;
using A_FpShort = float;
using A_Fixed = A_long;  // 16.16
using A_Err = A_long;

using PF_Boolean = char;
using PF_Err = A_Err;
using PF_Cmd = A_long;
using PF_Fixed = A_long;  // 16.16: the value times 65536
using PF_UFixed = A_u_long;
using PF_FpLong = double;
using PF_FpShort = float;
using PF_ParamIndex = A_long;
using PF_ParamValue = A_long;
using PF_Quality = A_long;
using PF_Field = A_long;
using PF_Handle = void**;  // the data stands at *handle, valid while the handle is locked
using PF_ProgPtr = struct PF_ProgPtr_Opaque*;

using SPErr = std::int32_t;
#ifdef _WIN32
using SPBoolean = std::int32_t;
#else
using SPBoolean = unsigned char;
#endif

// Opaque things of the host: each handle points at a pointer to the host's own structure.
using AEGP_PluginID = A_long;
using AEGP_LayerH = struct AEGP_Layer_Opaque**;
using AEGP_CompH = struct AEGP_Comp_Opaque**;
using AEGP_ItemH = struct AEGP_Item_Opaque**;
using AEGP_StreamRefH = struct AEGP_StreamRef_Opaque**;
using AEGP_EffectRefH = struct AEGP_EffectRef_Opaque**;
using AEGP_MaskRefH = struct AEGP_MaskRef_Opaque**;
using AEGP_MemHandle = struct AEGP_Mem_Opaque**;

// For function slots that the effect never calls: their place counts, their arguments don't.
using PF_UncalledFn = void (*)();

struct PF_Point {
    A_long h;
    A_long v;
};
ORVIN_ABI_SIZE(PF_Point, 8);
ORVIN_ABI_OFFSET(PF_Point, v, 4);

struct PF_Rect {
    A_long left;
    A_long top;
    A_long right;
    A_long bottom;
};
using PF_LRect = PF_Rect;
using PF_UnionableRect = PF_Rect;
using A_Rect = PF_Rect;
ORVIN_ABI_SIZE(PF_Rect, 16);
ORVIN_ABI_OFFSET(PF_Rect, top, 4);
ORVIN_ABI_OFFSET(PF_Rect, right, 8);
ORVIN_ABI_OFFSET(PF_Rect, bottom, 12);

struct PF_FixedPoint {
    PF_Fixed x;
    PF_Fixed y;
};
ORVIN_ABI_SIZE(PF_FixedPoint, 8);

struct PF_FixedRect {
    PF_Fixed left;
    PF_Fixed top;
    PF_Fixed right;
    PF_Fixed bottom;
};
ORVIN_ABI_SIZE(PF_FixedRect, 16);

struct PF_FloatMatrix {
    PF_FpLong mat[3][3];
};
ORVIN_ABI_SIZE(PF_FloatMatrix, 72);

struct PF_RationalScale {
    A_long num;
    A_u_long den;
};
ORVIN_ABI_SIZE(PF_RationalScale, 8);

struct PF_SpecVersion {
    A_short major;
    A_short minor;
};
ORVIN_ABI_SIZE(PF_SpecVersion, 4);

// Eight bits a channel, alpha first.
struct PF_Pixel {
    A_u_char alpha;
    A_u_char red;
    A_u_char green;
    A_u_char blue;
};
using PF_Pixel8 = PF_Pixel;
using PF_PixelPtr = PF_Pixel*;
ORVIN_ABI_SIZE(PF_Pixel, 4);
ORVIN_ABI_OFFSET(PF_Pixel, red, 1);
ORVIN_ABI_OFFSET(PF_Pixel, green, 2);
ORVIN_ABI_OFFSET(PF_Pixel, blue, 3);

// Full scale is 32768.
struct PF_Pixel16 {
    A_u_short alpha;
    A_u_short red;
    A_u_short green;
    A_u_short blue;
};
ORVIN_ABI_SIZE(PF_Pixel16, 8);

struct PF_PixelFloat {
    PF_FpShort alpha;
    PF_FpShort red;
    PF_FpShort green;
    PF_FpShort blue;
};
using PF_Pixel32 = PF_PixelFloat;
ORVIN_ABI_SIZE(PF_PixelFloat, 16);

struct PF_SoundWorld {
    PF_FpLong rate;
    A_short num_channels;
    A_short format;
    A_short sample_size;
    A_long num_samples;
    void* dataP;
};
ORVIN_ABI_SIZE(PF_SoundWorld, 32);
ORVIN_ABI_OFFSET(PF_SoundWorld, num_channels, 8);
ORVIN_ABI_OFFSET(PF_SoundWorld, format, 10);
ORVIN_ABI_OFFSET(PF_SoundWorld, sample_size, 12);
ORVIN_ABI_OFFSET(PF_SoundWorld, num_samples, 16);
ORVIN_ABI_OFFSET(PF_SoundWorld, dataP, 24);

// Seconds are value / scale.
struct A_Time {
    A_long value;
    A_u_long scale;
};
ORVIN_ABI_SIZE(A_Time, 8);

struct A_Ratio {
    A_long num;
    A_u_long den;
};
ORVIN_ABI_SIZE(A_Ratio, 8);

// A point is a row on the left: the translation stands in mat[3][0], mat[3][1], mat[3][2].
struct A_Matrix4 {
    A_FpLong mat[4][4];
};
ORVIN_ABI_SIZE(A_Matrix4, 128);

struct A_FloatRect {
    A_FpLong left;
    A_FpLong top;
    A_FpLong right;
    A_FpLong bottom;
};
ORVIN_ABI_SIZE(A_FloatRect, 32);

struct A_FloatPoint {
    A_FpLong x;
    A_FpLong y;
};
ORVIN_ABI_SIZE(A_FloatPoint, 16);

struct A_FloatPoint3 {
    A_FpLong x;
    A_FpLong y;
    A_FpLong z;
};
ORVIN_ABI_SIZE(A_FloatPoint3, 24);

}  // namespace orvin
