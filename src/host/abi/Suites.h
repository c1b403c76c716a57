// The five suites that the effect calls, and the values that they speak.
#pragma once

#include "host/abi/Params.h"

namespace orvin {

using AEGP_ObjectType = A_long;
using AEGP_LightType = A_u_long;
using AEGP_CameraType = A_u_long;
using AEGP_LTimeMode = A_short;
using AEGP_LayerQuality = A_short;
using AEGP_LayerStream = A_long;
using AEGP_StreamType = A_long;

enum : AEGP_ObjectType {
    AEGP_ObjectType_NONE = -1,
    AEGP_ObjectType_AV = 0,
    AEGP_ObjectType_LIGHT = 1,
    AEGP_ObjectType_CAMERA = 2,
    AEGP_ObjectType_TEXT = 3,
    AEGP_ObjectType_VECTOR = 4,
    AEGP_ObjectType_3D_MODEL = 5,
};

enum : AEGP_LightType {
    AEGP_LightType_PARALLEL = 0,
    AEGP_LightType_SPOT = 1,
    AEGP_LightType_POINT = 2,
    AEGP_LightType_AMBIENT = 3,
    AEGP_LightType_ENVIRONMENT = 4,
    AEGP_LightType_NONE = 0xFFFFFFFF,
};

enum : AEGP_LTimeMode { AEGP_LTimeMode_LayerTime = 0, AEGP_LTimeMode_CompTime = 1 };

enum : AEGP_LayerStream {
    AEGP_LayerStream_NONE = -1,
    AEGP_LayerStream_ANCHORPOINT = 0,
    AEGP_LayerStream_POSITION = 1,
    AEGP_LayerStream_SCALE = 2,
    AEGP_LayerStream_ROTATION = 3,
    AEGP_LayerStream_ROTATE_Z = 3,
    AEGP_LayerStream_OPACITY = 4,
    AEGP_LayerStream_AUDIO = 5,
    AEGP_LayerStream_MARKER = 6,
    AEGP_LayerStream_TIME_REMAP = 7,
    AEGP_LayerStream_ROTATE_X = 8,
    AEGP_LayerStream_ROTATE_Y = 9,
    AEGP_LayerStream_ORIENTATION = 10,
    AEGP_LayerStream_ZOOM = 11,
    AEGP_LayerStream_DEPTH_OF_FIELD = 12,
    AEGP_LayerStream_FOCUS_DISTANCE = 13,
    AEGP_LayerStream_APERTURE = 14,
    AEGP_LayerStream_BLUR_LEVEL = 15,
    AEGP_LayerStream_INTENSITY = 16,
    AEGP_LayerStream_COLOR = 17,
    AEGP_LayerStream_CONE_ANGLE = 18,
    AEGP_LayerStream_CONE_FEATHER = 19,
    AEGP_LayerStream_SHADOW_DARKNESS = 20,
    AEGP_LayerStream_SHADOW_DIFFUSION = 21,
    AEGP_LayerStream_ACCEPTS_SHADOWS = 22,
    AEGP_LayerStream_ACCEPTS_LIGHTS = 23,
    AEGP_LayerStream_AMBIENT_COEFF = 24,
    AEGP_LayerStream_DIFFUSE_COEFF = 25,
    AEGP_LayerStream_SPECULAR_INTENSITY_COEFF = 26,
    AEGP_LayerStream_SPECULAR_SHININESS_COEFF = 27,
    AEGP_LayerStream_CASTS_SHADOWS = 28,
};

enum : AEGP_StreamType {
    AEGP_StreamType_NO_DATA = 0,
    AEGP_StreamType_ThreeD_SPATIAL = 1,
    AEGP_StreamType_ThreeD = 2,
    AEGP_StreamType_TwoD_SPATIAL = 3,
    AEGP_StreamType_TwoD = 4,
    AEGP_StreamType_OneD = 5,
    AEGP_StreamType_COLOR = 6,
    AEGP_StreamType_ARB = 7,
    AEGP_StreamType_MARKER = 8,
    AEGP_StreamType_LAYER_ID = 9,
    AEGP_StreamType_MASK_ID = 10,
    AEGP_StreamType_MASK = 11,
};

// Channels from 0 to 1, alpha first.
struct AEGP_ColorVal {
    A_FpLong alphaF;
    A_FpLong redF;
    A_FpLong greenF;
    A_FpLong blueF;
};
ORVIN_ABI_SIZE(AEGP_ColorVal, 32);
ORVIN_ABI_OFFSET(AEGP_ColorVal, redF, 8);
ORVIN_ABI_OFFSET(AEGP_ColorVal, greenF, 16);
ORVIN_ABI_OFFSET(AEGP_ColorVal, blueF, 24);

union AEGP_StreamVal {
    A_FpLong four_d[4];
    A_FloatPoint3 three_d;
    A_FloatPoint two_d;
    A_FpLong one_d;
    AEGP_ColorVal color;
    void* arbH;
    void* markerH;
    A_long layer_id;
    A_long mask_id;
    void* mask;
};
ORVIN_ABI_SIZE(AEGP_StreamVal, 32);

struct AEGP_StreamValue {
    AEGP_StreamRefH streamH;
    AEGP_StreamVal val;
};
ORVIN_ABI_SIZE(AEGP_StreamValue, 40);
ORVIN_ABI_OFFSET(AEGP_StreamValue, val, 8);

// "AEGP PF Interface Suite" 1. The host grants these calls for RENDER and the draw event.
struct AEGP_PFInterfaceSuite1 {
    A_Err (*AEGP_GetEffectLayer)(PF_ProgPtr effect_ref, AEGP_LayerH* layer);
    A_Err (*AEGP_GetNewEffectForEffect)(AEGP_PluginID id, PF_ProgPtr effect_ref,
                                        AEGP_EffectRefH* effect);
    A_Err (*AEGP_ConvertEffectToCompTime)(PF_ProgPtr effect_ref, A_long time, A_u_long time_scale,
                                          A_Time* comp_time);
    A_Err (*AEGP_GetEffectCamera)(PF_ProgPtr effect_ref, const A_Time* comp_time,
                                  AEGP_LayerH* camera);  // null: none
    A_Err (*AEGP_GetEffectCameraMatrix)(PF_ProgPtr effect_ref, const A_Time* comp_time,
                                        A_Matrix4* matrix, A_FpLong* distance_to_image_plane,
                                        A_short* plane_width, A_short* plane_height);
};
ORVIN_ABI_SIZE(AEGP_PFInterfaceSuite1, 40);

// "AEGP Layer Suite" 5.
struct AEGP_LayerSuite1 {
    A_Err (*AEGP_GetCompNumLayers)(AEGP_CompH comp, A_long* count);
    A_Err (*AEGP_GetCompLayerByIndex)(AEGP_CompH comp, A_long index, AEGP_LayerH* layer);  // from 0
    A_Err (*AEGP_GetActiveLayer)(AEGP_LayerH* layer);
    A_Err (*AEGP_GetLayerIndex)(AEGP_LayerH layer, A_long* index);
    A_Err (*AEGP_GetLayerSourceItem)(AEGP_LayerH layer, AEGP_ItemH* item);
    A_Err (*AEGP_GetLayerParentComp)(AEGP_LayerH layer, AEGP_CompH* comp);
    A_Err (*AEGP_GetLayerName)(AEGP_LayerH layer, A_char* layer_name,
                               A_char* source_name);  // 32 bytes each, or null
    A_Err (*AEGP_GetLayerQuality)(AEGP_LayerH layer, AEGP_LayerQuality* quality);
    A_Err (*AEGP_SetLayerQuality)(AEGP_LayerH layer, AEGP_LayerQuality quality);
    A_Err (*AEGP_GetLayerFlags)(AEGP_LayerH layer, A_long* flags);
    A_Err (*AEGP_SetLayerFlag)(AEGP_LayerH layer, A_long flag, A_Boolean value);
    A_Err (*AEGP_IsLayerVideoReallyOn)(AEGP_LayerH layer, A_Boolean* on);
    A_Err (*AEGP_IsLayerAudioReallyOn)(AEGP_LayerH layer, A_Boolean* on);
    A_Err (*AEGP_GetLayerCurrentTime)(AEGP_LayerH layer, AEGP_LTimeMode mode, A_Time* time);
    A_Err (*AEGP_GetLayerInPoint)(AEGP_LayerH layer, AEGP_LTimeMode mode, A_Time* in_point);
    A_Err (*AEGP_GetLayerDuration)(AEGP_LayerH layer, AEGP_LTimeMode mode, A_Time* duration);
    A_Err (*AEGP_SetLayerInPointAndDuration)(AEGP_LayerH layer, AEGP_LTimeMode mode,
                                             const A_Time* in_point, const A_Time* duration);
    A_Err (*AEGP_GetLayerOffset)(AEGP_LayerH layer, A_Time* offset);
    A_Err (*AEGP_SetLayerOffset)(AEGP_LayerH layer, const A_Time* offset);
    A_Err (*AEGP_GetLayerStretch)(AEGP_LayerH layer, A_Ratio* stretch);
    A_Err (*AEGP_SetLayerStretch)(AEGP_LayerH layer, const A_Ratio* stretch);
    PF_UncalledFn AEGP_GetLayerTransferMode;
    PF_UncalledFn AEGP_SetLayerTransferMode;
    A_Err (*AEGP_IsAddLayerValid)(AEGP_ItemH item, AEGP_CompH comp, A_Boolean* valid);
    A_Err (*AEGP_AddLayer)(AEGP_ItemH item, AEGP_CompH comp, AEGP_LayerH* layer);
    A_Err (*AEGP_ReorderLayer)(AEGP_LayerH layer, A_long index);
    A_Err (*AEGP_GetLayerMaskedBounds)(AEGP_LayerH layer, AEGP_LTimeMode mode, const A_Time* time,
                                       A_FloatRect* bounds);
    A_Err (*AEGP_GetLayerObjectType)(AEGP_LayerH layer, AEGP_ObjectType* type);
    A_Err (*AEGP_IsLayer3D)(AEGP_LayerH layer, A_Boolean* is3D);
    A_Err (*AEGP_IsLayer2D)(AEGP_LayerH layer, A_Boolean* is2D);
    A_Err (*AEGP_IsVideoActive)(AEGP_LayerH layer, AEGP_LTimeMode mode, const A_Time* time,
                                A_Boolean* active);
    A_Err (*AEGP_IsLayerUsedAsTrackMatte)(AEGP_LayerH layer, A_Boolean fill_must_be_active,
                                          A_Boolean* used);
    A_Err (*AEGP_DoesLayerHaveTrackMatte)(AEGP_LayerH layer, A_Boolean* has);
    A_Err (*AEGP_ConvertCompToLayerTime)(AEGP_LayerH layer, const A_Time* comp_time,
                                         A_Time* layer_time);
    A_Err (*AEGP_GetLayerDancingRandValue)(AEGP_LayerH layer, const A_Time* comp_time,
                                           A_long* value);
    A_Err (*AEGP_GetLayerID)(AEGP_LayerH layer, A_long* id);
    A_Err (*AEGP_GetLayerToWorldXform)(AEGP_LayerH layer, const A_Time* comp_time,
                                       A_Matrix4* transform);
    A_Err (*AEGP_GetLayerToWorldXformFromView)(AEGP_LayerH layer, const A_Time* view_time,
                                               const A_Time* comp_time, A_Matrix4* transform);
    A_Err (*AEGP_SetLayerName)(AEGP_LayerH layer, const A_char* name);
};
ORVIN_ABI_SIZE(AEGP_LayerSuite1, 312);
ORVIN_ABI_OFFSET(AEGP_LayerSuite1, AEGP_GetCompNumLayers, 0);
ORVIN_ABI_OFFSET(AEGP_LayerSuite1, AEGP_GetCompLayerByIndex, 8);
ORVIN_ABI_OFFSET(AEGP_LayerSuite1, AEGP_GetLayerParentComp, 40);
ORVIN_ABI_OFFSET(AEGP_LayerSuite1, AEGP_GetLayerName, 48);
ORVIN_ABI_OFFSET(AEGP_LayerSuite1, AEGP_SetLayerFlag, 80);
ORVIN_ABI_OFFSET(AEGP_LayerSuite1, AEGP_SetLayerInPointAndDuration, 128);
ORVIN_ABI_OFFSET(AEGP_LayerSuite1, AEGP_GetLayerTransferMode, 168);
ORVIN_ABI_OFFSET(AEGP_LayerSuite1, AEGP_AddLayer, 192);
ORVIN_ABI_OFFSET(AEGP_LayerSuite1, AEGP_GetLayerMaskedBounds, 208);
ORVIN_ABI_OFFSET(AEGP_LayerSuite1, AEGP_GetLayerObjectType, 216);
ORVIN_ABI_OFFSET(AEGP_LayerSuite1, AEGP_IsVideoActive, 240);
ORVIN_ABI_OFFSET(AEGP_LayerSuite1, AEGP_ConvertCompToLayerTime, 264);
ORVIN_ABI_OFFSET(AEGP_LayerSuite1, AEGP_GetLayerToWorldXform, 288);
ORVIN_ABI_OFFSET(AEGP_LayerSuite1, AEGP_GetLayerToWorldXformFromView, 296);
ORVIN_ABI_OFFSET(AEGP_LayerSuite1, AEGP_SetLayerName, 304);

// "AEGP Stream Suite" 4.
struct AEGP_StreamSuite1 {
    A_Err (*AEGP_IsStreamLegal)(AEGP_LayerH layer, AEGP_LayerStream which, A_Boolean* legal);
    A_Err (*AEGP_CanVaryOverTime)(AEGP_StreamRefH stream, A_Boolean* can_vary);
    A_Err (*AEGP_GetNewLayerStream)(AEGP_PluginID id, AEGP_LayerH layer, AEGP_LayerStream which,
                                    AEGP_StreamRefH* stream);
    A_Err (*AEGP_GetEffectNumParamStreams)(AEGP_EffectRefH effect, A_long* count);
    A_Err (*AEGP_GetNewEffectStreamByIndex)(AEGP_PluginID id, AEGP_EffectRefH effect,
                                            PF_ParamIndex index, AEGP_StreamRefH* stream);
    A_Err (*AEGP_GetNewMaskStream)(AEGP_PluginID id, AEGP_MaskRefH mask, A_long which,
                                   AEGP_StreamRefH* stream);
    A_Err (*AEGP_DisposeStream)(AEGP_StreamRefH stream);
    A_Err (*AEGP_GetStreamName)(AEGP_StreamRefH stream, A_Boolean force_english, A_char* name);
    A_Err (*AEGP_GetStreamUnitsText)(AEGP_StreamRefH stream, A_Boolean force_english,
                                     A_char* units);
    A_Err (*AEGP_GetStreamProperties)(AEGP_StreamRefH stream, A_long* flags, A_FpLong* min,
                                      A_FpLong* max);
    A_Err (*AEGP_IsStreamTimevarying)(AEGP_StreamRefH stream, A_Boolean* varying);
    A_Err (*AEGP_GetStreamType)(AEGP_StreamRefH stream, AEGP_StreamType* type);
    A_Err (*AEGP_GetNewStreamValue)(AEGP_PluginID id, AEGP_StreamRefH stream, AEGP_LTimeMode mode,
                                    const A_Time* time, A_Boolean pre_expression,
                                    AEGP_StreamValue* value);
    A_Err (*AEGP_DisposeStreamValue)(AEGP_StreamValue* value);
    A_Err (*AEGP_SetStreamValue)(AEGP_PluginID id, AEGP_StreamRefH stream, AEGP_StreamValue* value);
    A_Err (*AEGP_GetLayerStreamValue)(AEGP_LayerH layer, AEGP_LayerStream which,
                                      AEGP_LTimeMode mode, const A_Time* time,
                                      A_Boolean pre_expression, AEGP_StreamVal* value,
                                      AEGP_StreamType* type);
    A_Err (*AEGP_GetExpressionState)(AEGP_PluginID id, AEGP_StreamRefH stream, A_Boolean* enabled);
    A_Err (*AEGP_SetExpressionState)(AEGP_PluginID id, AEGP_StreamRefH stream, A_Boolean enabled);
    A_Err (*AEGP_GetExpression)(AEGP_PluginID id, AEGP_StreamRefH stream,
                                AEGP_MemHandle* expression);
    A_Err (*AEGP_SetExpression)(AEGP_PluginID id, AEGP_StreamRefH stream, const A_char* expression);
};
ORVIN_ABI_SIZE(AEGP_StreamSuite1, 160);
ORVIN_ABI_OFFSET(AEGP_StreamSuite1, AEGP_GetNewLayerStream, 16);
ORVIN_ABI_OFFSET(AEGP_StreamSuite1, AEGP_DisposeStream, 48);
ORVIN_ABI_OFFSET(AEGP_StreamSuite1, AEGP_GetNewStreamValue, 96);
ORVIN_ABI_OFFSET(AEGP_StreamSuite1, AEGP_GetLayerStreamValue, 120);
ORVIN_ABI_OFFSET(AEGP_StreamSuite1, AEGP_SetExpression, 152);

// "AEGP Light Suite" 1.
struct AEGP_LightSuite1 {
    A_Err (*AEGP_GetLightType)(AEGP_LayerH layer, AEGP_LightType* type);
};
ORVIN_ABI_SIZE(AEGP_LightSuite1, 8);

// "PF Param Utils Suite". Only the first slot is the same in versions 1, 2 and 3: call nothing
// else.
struct PF_ParamUtilsSuite {
    PF_Err (*PF_UpdateParamUI)(PF_ProgPtr effect_ref, PF_ParamIndex index, const PF_ParamDef* def);
};
ORVIN_ABI_OFFSET(PF_ParamUtilsSuite, PF_UpdateParamUI, 0);

}  // namespace orvin
