// The suites by which a 64-bit host lets an effect draw in its panel. There is neither a device
// context nor a window: the effect hands over a picture, and only while a draw event is served.
#pragma once

#include "host/abi/Events.h"

namespace orvin {

using DRAWBOT_SupplierRef = struct DRAWBOT_Supplier_Opaque*;
using DRAWBOT_SurfaceRef = struct DRAWBOT_Surface_Opaque*;
using DRAWBOT_ImageRef = struct DRAWBOT_Image_Opaque*;
using DRAWBOT_ObjectRef = struct DRAWBOT_Object_Opaque*;
using DRAWBOT_PixelLayout = A_long;
using DRAWBOT_Boolean = unsigned char;

enum : DRAWBOT_PixelLayout {
    kDRAWBOT_PixelLayout_24RGB = 0,
    kDRAWBOT_PixelLayout_24BGR = 1,
    kDRAWBOT_PixelLayout_32RGB = 2,
    kDRAWBOT_PixelLayout_32BGR = 3,
    kDRAWBOT_PixelLayout_32ARGB_Straight = 4,
    kDRAWBOT_PixelLayout_32ARGB_Premul = 5,
    kDRAWBOT_PixelLayout_32BGRA_Straight = 6,
    kDRAWBOT_PixelLayout_32BGRA_Premul = 7,
};

struct DRAWBOT_PointF32 {
    float x;
    float y;
};

struct DRAWBOT_RectF32 {
    float left;
    float top;
    float width;
    float height;
};

struct DRAWBOT_Rect32 {
    A_long left;
    A_long top;
    A_long width;
    A_long height;
};

struct DRAWBOT_ColorRGBA {
    float red;
    float green;
    float blue;
    float alpha;
};
ORVIN_ABI_SIZE(DRAWBOT_PointF32, 8);
ORVIN_ABI_SIZE(DRAWBOT_RectF32, 16);
ORVIN_ABI_SIZE(DRAWBOT_Rect32, 16);
ORVIN_ABI_SIZE(DRAWBOT_ColorRGBA, 16);

inline constexpr const char* kPFEffectCustomUISuite = "PF Effect Custom UI Suite";  // version 1
inline constexpr const char* kDRAWBOT_DrawSuite = "DRAWBOT Draw Suite";             // version 1
inline constexpr const char* kDRAWBOT_SupplierSuite = "DRAWBOT Supplier Suite";     // version 1
inline constexpr const char* kDRAWBOT_SurfaceSuite = "DRAWBOT Surface Suite";       // version 1
inline constexpr const char* kPFAppSuite = "PF AE App Suite";  // versions differ in their slots

struct PF_EffectCustomUISuite1 {
    PF_Err (*PF_GetDrawingReference)(const PF_ContextH context,
                                     DRAWBOT_DrawRef* reference);  // null: don't draw
};
ORVIN_ABI_SIZE(PF_EffectCustomUISuite1, 8);

struct DRAWBOT_DrawbotSuite1 {
    SPErr (*GetSupplier)(DRAWBOT_DrawRef draw, DRAWBOT_SupplierRef* supplier);
    SPErr (*GetSurface)(DRAWBOT_DrawRef draw, DRAWBOT_SurfaceRef* surface);
};
ORVIN_ABI_SIZE(DRAWBOT_DrawbotSuite1, 16);

struct DRAWBOT_SupplierSuite1 {
    PF_UncalledFn NewPen;
    PF_UncalledFn NewBrush;
    PF_UncalledFn SupportsText;
    PF_UncalledFn GetDefaultFontSize;
    PF_UncalledFn NewDefaultFont;
    SPErr (*NewImageFromBuffer)(DRAWBOT_SupplierRef supplier, int width, int height, int row_bytes,
                                DRAWBOT_PixelLayout layout, const void* data,
                                DRAWBOT_ImageRef* image);
    PF_UncalledFn NewPath;
    SPErr (*SupportsPixelLayoutBGRA)(DRAWBOT_SupplierRef supplier, DRAWBOT_Boolean* supports);
    SPErr (*PrefersPixelLayoutBGRA)(DRAWBOT_SupplierRef supplier, DRAWBOT_Boolean* prefers);
    SPErr (*SupportsPixelLayoutARGB)(DRAWBOT_SupplierRef supplier, DRAWBOT_Boolean* supports);
    SPErr (*PrefersPixelLayoutARGB)(DRAWBOT_SupplierRef supplier, DRAWBOT_Boolean* prefers);
    SPErr (*RetainObject)(DRAWBOT_ObjectRef object);
    SPErr (*ReleaseObject)(DRAWBOT_ObjectRef object);
};
ORVIN_ABI_SIZE(DRAWBOT_SupplierSuite1, 104);
ORVIN_ABI_OFFSET(DRAWBOT_SupplierSuite1, NewImageFromBuffer, 40);
ORVIN_ABI_OFFSET(DRAWBOT_SupplierSuite1, ReleaseObject, 96);

struct DRAWBOT_SurfaceSuite1 {
    SPErr (*PushStateStack)(DRAWBOT_SurfaceRef surface);
    SPErr (*PopStateStack)(DRAWBOT_SurfaceRef surface);
    SPErr (*PaintRect)(DRAWBOT_SurfaceRef surface, const DRAWBOT_ColorRGBA* color,
                       const DRAWBOT_RectF32* rect);
    PF_UncalledFn FillPath;
    PF_UncalledFn StrokePath;
    SPErr (*Clip)(DRAWBOT_SurfaceRef surface, DRAWBOT_SupplierRef supplier,
                  const DRAWBOT_Rect32* rect);
    PF_UncalledFn GetClipBounds;
    PF_UncalledFn IsWithinClipBounds;
    PF_UncalledFn Transform;
    PF_UncalledFn DrawString;
    SPErr (*DrawImage)(DRAWBOT_SurfaceRef surface, DRAWBOT_ImageRef image,
                       const DRAWBOT_PointF32* origin, float alpha);
    PF_UncalledFn SetInterpolationPolicy;
    PF_UncalledFn GetInterpolationPolicy;
    PF_UncalledFn SetAntiAliasPolicy;
    PF_UncalledFn GetAntiAliasPolicy;
    PF_UncalledFn Flush;
};
ORVIN_ABI_SIZE(DRAWBOT_SurfaceSuite1, 128);
ORVIN_ABI_OFFSET(DRAWBOT_SurfaceSuite1, PaintRect, 16);
ORVIN_ABI_OFFSET(DRAWBOT_SurfaceSuite1, Clip, 40);
ORVIN_ABI_OFFSET(DRAWBOT_SurfaceSuite1, DrawImage, 80);

// "PF AE App Suite" is a different table under each version. Of all its functions only this one is
// wanted; it stands in slot 8 of version 6 and in slot 9 of version 7 and of today's version 1.
using PF_InvalidateRectFn = PF_Err (*)(const PF_ContextH context, const PF_Rect* rect);

struct PF_AppSuite6 {
    PF_UncalledFn before[8];
    PF_InvalidateRectFn PF_InvalidateRect;
    PF_UncalledFn after[2];
};
ORVIN_ABI_SIZE(PF_AppSuite6, 88);
ORVIN_ABI_OFFSET(PF_AppSuite6, PF_InvalidateRect, 64);

struct PF_AppSuite7 {
    PF_UncalledFn before[9];
    PF_InvalidateRectFn PF_InvalidateRect;
    PF_UncalledFn after[2];
};
ORVIN_ABI_SIZE(PF_AppSuite7, 96);
ORVIN_ABI_OFFSET(PF_AppSuite7, PF_InvalidateRect, 72);

}  // namespace orvin
