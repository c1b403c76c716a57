// A small effect for the tests of the stand-in host. It does by the book what a host expects, and
// breaks one rule on purpose: the one whose id was set with the command kChooseFault.
#include "host/abi/Abi.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string>
#include <thread>

namespace {

using namespace orvin;

constexpr PF_Cmd kChooseFault = 1000;
constexpr A_long kParamCount = 10;  // the input layer included
constexpr A_long kPanel = 1;
constexpr A_long kSwitch = 2;
constexpr A_long kSlider = 5;
constexpr A_long kLayer = 8;

std::string gFault;
PF_Handle gStash = nullptr;
char gLabel[32] = "Switch";

bool fault(const char* id) {
    return gFault == id;
}

void copyText(char* to, const char* from) {
    std::memcpy(to, from, std::strlen(from) + 1);
}

PF_Err add(PF_InData& in, PF_ParamDef& def) {
    return in.inter.add_param(in.effect_ref, -1, &def);
}

PF_ParamDef cleared(PF_ParamType type, A_long id, const char* name) {
    PF_ParamDef def;
    std::memset(&def, 0, sizeof def);
    def.param_type = type;
    def.uu.id = id;
    copyText(def.name, name);
    return def;
}

PF_Err globalSetup(PF_OutData& out) {
    out.my_version = fault("global.version") ? 0 : PF_VERSION(1, 0, 0, PF_Stage_RELEASE, 1);
    out.out_flags = PF_OutFlag_SEQUENCE_DATA_NEEDS_FLATTENING | PF_OutFlag_CUSTOM_UI |
                    PF_OutFlag_SEND_UPDATE_PARAMS_UI | PF_OutFlag_I_DO_DIALOG;
    if (fault("global.flags")) out.out_flags |= 1 << 14;
    out.out_flags2 = PF_OutFlag2_SUPPORTS_QUERY_DYNAMIC_FLAGS | PF_OutFlag2_I_USE_3D_CAMERA;
    return PF_Err_NONE;
}

PF_Err paramsSetup(PF_InData& in, PF_OutData& out) {
    PF_ParamDef panel = cleared(PF_Param_NO_DATA, 1, "Panel");
    panel.ui_flags = PF_PUI_CONTROL;
    panel.ui_width = fault("custom-ui") ? 0 : 40;
    panel.ui_height = 30;
    if (fault("param.cleared")) panel.u.sd.value = 7;
    if (fault("param.flags")) panel.flags = 1;
    add(in, panel);

    PF_ParamDef box = cleared(PF_Param_CHECKBOX, fault("param.id") ? 1 : 2, "");
    box.u.bd.u.nameptr = gLabel;
    box.flags = PF_ParamFlag_SUPERVISE;
    add(in, box);
    PF_ParamDef group = cleared(PF_Param_GROUP_START, 3, "Group");
    add(in, group);
    PF_ParamDef popup = cleared(PF_Param_POPUP, 4, "Kind");
    popup.u.pd.value = popup.u.pd.dephault = 2;
    popup.u.pd.num_choices = fault("param.popup") ? 2 : 3;
    popup.u.pd.u.namesptr = "One|Two|Three";
    popup.flags = PF_ParamFlag_CANNOT_TIME_VARY;
    add(in, popup);
    PF_ParamDef slider = cleared(PF_Param_FIX_SLIDER, 5, "(L) Size");
    slider.u.fd.valid_max = slider.u.fd.slider_max = 100 << 16;
    if (fault("param.range")) slider.u.fd.slider_max = 101 << 16;
    slider.u.fd.dephault = 50 << 16;
    slider.u.fd.value = fault("param.default") ? 0 : 50 << 16;
    slider.flags = PF_ParamFlag_SUPERVISE;
    if (fault("param.name")) std::memset(slider.name, 'x', sizeof slider.name);
    add(in, slider);
    PF_ParamDef color = cleared(PF_Param_COLOR, 6, "Tint");
    color.u.cd.value = color.u.cd.dephault = {255, 10, 20, 30};
    if (fault("param.type")) color.param_type = PF_Param_RESERVED2;
    add(in, color);
    PF_ParamDef end = cleared(PF_Param_GROUP_END, 7, "");
    if (fault("param.groups")) end.param_type = PF_Param_GROUP_START;
    add(in, end);
    PF_ParamDef layer = cleared(PF_Param_LAYER, 8, "Layer Map 1");
    add(in, layer);
    PF_ParamDef composite = cleared(PF_Param_CHECKBOX, 9, "");
    composite.u.bd.u.nameptr = "Composite On Original";
    add(in, composite);
    out.num_params = fault("param.count") ? kParamCount - 1 : kParamCount;

    PF_CustomUIInfo info{};
    info.events = PF_CustomEFlag_EFFECT;
    return in.inter.register_ui(in.effect_ref, &info);
}

PF_Handle record(PF_InData& in, const char* tag) {
    const PF_Handle handle = in.utils->host_new_handle(64);
    if (handle == nullptr) return nullptr;
    auto* data = static_cast<char*>(in.utils->host_lock_handle(handle));
    std::memset(data, 0, 64);
    copyText(data, tag);
    if (fault("handle.overrun")) data[64] = 1;
    if (!fault("handle.left-locked")) in.utils->host_unlock_handle(handle);
    return handle;
}

PF_Err sequenceSetup(PF_InData& in, PF_OutData& out) {
    out.sequence_data = record(in, "LIVE");
    if (out.sequence_data == nullptr) return PF_Err_OUT_OF_MEMORY;
    if (fault("handle.leak")) in.utils->host_new_handle(10);
    if (fault("handle.unlock-unlocked")) in.utils->host_unlock_handle(out.sequence_data);
    if (fault("handle.unknown")) {
        void* none = nullptr;
        in.utils->host_lock_handle(&none);
    }
    if (fault("handle.resize-locked")) {
        in.utils->host_lock_handle(out.sequence_data);
        in.utils->host_resize_handle(128, &out.sequence_data);
        in.utils->host_unlock_handle(out.sequence_data);
    }
    const PF_Handle scratch = in.utils->host_new_handle(10);
    if (fault("handle.dispose-locked")) in.utils->host_lock_handle(scratch);
    in.utils->host_dispose_handle(scratch);
    if (fault("handle.disposed")) in.utils->host_dispose_handle(scratch);
    return PF_Err_NONE;
}

PF_Err flatten(PF_InData& in, PF_OutData& out) {
    gStash = in.sequence_data;
    if (fault("handle.unlock-hosts")) in.utils->host_unlock_handle(in.sequence_data);
    const PF_Handle flat = record(in, "FLAT");
    if (fault("sequence.flat")) {
        auto* data = static_cast<char*>(in.utils->host_lock_handle(flat));
        std::memcpy(data + 8, &gStash, sizeof gStash);
        in.utils->host_unlock_handle(flat);
    }
    out.sequence_data = flat;
    return PF_Err_NONE;
}

PF_Err resetup(PF_InData& in, PF_OutData& out) {
    const auto* data = static_cast<const char*>(in.utils->host_lock_handle(in.sequence_data));
    const bool flat = std::memcmp(data, "FLAT", 4) == 0;
    in.utils->host_unlock_handle(in.sequence_data);
    if (!flat) return PF_Err_INTERNAL_STRUCT_DAMAGED;
    in.utils->host_dispose_handle(in.sequence_data);
    out.sequence_data = gStash != nullptr ? gStash : record(in, "LIVE");
    gStash = nullptr;
    if (fault("sequence.handle")) in.utils->host_dispose_handle(out.sequence_data);
    return out.sequence_data != nullptr ? PF_Err_NONE : PF_Err_OUT_OF_MEMORY;
}

PF_Err sequenceSetdown(PF_InData& in, PF_OutData& out) {
    if (in.sequence_data != nullptr) in.utils->host_dispose_handle(in.sequence_data);
    in.sequence_data = out.sequence_data = nullptr;
    return PF_Err_NONE;
}

// A switch's value at the command's time; checked out and in as `id` has it.
bool switchIsOn(PF_InData& in) {
    PF_ParamDef def;
    const A_long index = fault("checkout.index") ? kParamCount : kSwitch;
    const A_u_long scale = fault("checkout.time") ? 0 : in.time_scale;
    if (in.inter.checkout_param(in.effect_ref, index, in.current_time, in.time_step, scale, &def) !=
        PF_Err_NONE)
        return false;
    const bool on = def.u.bd.value != 0;
    if (!fault("checkout.balance")) in.inter.checkin_param(in.effect_ref, &def);
    if (fault("checkin.unknown")) in.inter.checkin_param(in.effect_ref, &def);
    return on;
}

template <typename Suite>
const Suite* acquire(PF_InData& in, const char* name, std::int32_t version) {
    const void* suite = nullptr;
    in.pica_basicP->AcquireSuite(name, version, &suite);
    return static_cast<const Suite*>(suite);
}

void queryFlags(PF_InData& in, PF_OutData& out) {
    if (switchIsOn(in))
        out.out_flags2 |= PF_OutFlag2_I_USE_3D_CAMERA;
    else
        out.out_flags2 &= ~PF_OutFlag2_I_USE_3D_CAMERA;
    if (fault("flags.dynamic")) out.out_flags2 |= PF_OutFlag2_I_USE_3D_LIGHTS;
}

void updateUi(PF_InData& in, PF_ParamDef** params) {
    const std::int32_t version = in.version.major < 13 ? 1 : 3;
    const auto* suite = acquire<PF_ParamUtilsSuite>(in, "PF Param Utils Suite", version);
    PF_ParamDef copy = *params[kSlider];
    copy.ui_flags |= PF_PUI_DISABLED;
    if (fault("update-ui.value")) copy.u.fd.value += 1;
    suite->PF_UpdateParamUI(in.effect_ref, kSlider,
                            fault("update-ui.copy") ? params[kSlider] : &copy);
    in.pica_basicP->ReleaseSuite(
        fault("suite.slot-27") ? "PF Path Data Suite" : "PF Param Utils Suite",
        fault("suite.slot-27") ? 1 : version);
}

void draw(PF_InData& in, PF_EventExtra& extra) {
    if (in.version.major < 13) return;
    const auto* ui = acquire<PF_EffectCustomUISuite1>(in, kPFEffectCustomUISuite, 1);
    const auto* bot = acquire<DRAWBOT_DrawbotSuite1>(in, kDRAWBOT_DrawSuite, 1);
    const auto* supply = acquire<DRAWBOT_SupplierSuite1>(in, kDRAWBOT_SupplierSuite, 1);
    const auto* paint = acquire<DRAWBOT_SurfaceSuite1>(in, kDRAWBOT_SurfaceSuite, 1);
    DRAWBOT_DrawRef reference = nullptr;
    ui->PF_GetDrawingReference(extra.contextH, &reference);
    if (extra.e_type == PF_Event_DRAW && reference != nullptr) {
        DRAWBOT_SupplierRef supplier = nullptr;
        DRAWBOT_SurfaceRef surface = nullptr;
        bot->GetSupplier(reference, &supplier);
        bot->GetSurface(reference, &surface);
        const unsigned char pixels[8] = {3, 2, 1, 255, 30, 20, 10, 255};  // two BGRA pixels
        DRAWBOT_ImageRef image = nullptr;
        supply->NewImageFromBuffer(supplier, 2, 1, 8, kDRAWBOT_PixelLayout_32BGRA_Straight, pixels,
                                   &image);
        const PF_Rect& frame = extra.effect_win.current_frame;
        const DRAWBOT_PointF32 origin{static_cast<float>(frame.left),
                                      static_cast<float>(frame.top)};
        paint->DrawImage(surface, image, &origin, 1.0f);
        if (!fault("draw.leak")) supply->ReleaseObject(reinterpret_cast<DRAWBOT_ObjectRef>(image));
        if (fault("draw.object")) paint->DrawImage(surface, image, &origin, 1.0f);
    }
    in.pica_basicP->ReleaseSuite(kDRAWBOT_SurfaceSuite, 1);
    in.pica_basicP->ReleaseSuite(kDRAWBOT_SupplierSuite, 1);
    in.pica_basicP->ReleaseSuite(kDRAWBOT_DrawSuite, 1);
    in.pica_basicP->ReleaseSuite(kPFEffectCustomUISuite, 1);
}

void event(PF_InData& in, PF_ParamDef** params, PF_EventExtra& extra) {
    if (extra.e_type == PF_Event_DRAW ||
        (extra.e_type == PF_Event_DO_CLICK && fault("draw.outside")))
        draw(in, extra);
    if (extra.e_type == PF_Event_DO_CLICK) {
        if (fault("checkout.layer-in-event")) {
            PF_ParamDef def;
            in.inter.checkout_param(in.effect_ref, kLayer, in.current_time, in.time_step,
                                    in.time_scale, &def);
            in.inter.checkin_param(in.effect_ref, &def);
        }
        if (fault("suite.outside")) {
            AEGP_LayerH layer = nullptr;
            acquire<AEGP_PFInterfaceSuite1>(in, "AEGP PF Interface Suite", 1)
                ->AEGP_GetEffectLayer(in.effect_ref, &layer);
            in.pica_basicP->ReleaseSuite("AEGP PF Interface Suite", 1);
        }
        extra.u.do_click.send_drag = 1;
        extra.evt_out_flags |= PF_EO_HANDLED_EVENT;
    }
    if (extra.e_type == PF_Event_DRAG) {
        // The slider follows the mouse across the control.
        params[kSlider]->u.fd.value =
            (extra.u.do_click.screen_point.h - extra.effect_win.current_frame.left) << 16;
        if (!fault("params.written"))
            params[kSlider]->uu.change_flags = PF_ChangeFlag_CHANGED_VALUE;
        extra.evt_out_flags |= PF_EO_HANDLED_EVENT;
    }
}

PF_Pixel* rowOf(PF_LayerDef& world, A_long y) {
    return reinterpret_cast<PF_Pixel*>(reinterpret_cast<char*>(world.data) +
                                       static_cast<std::ptrdiff_t>(y) * world.rowbytes);
}

// The comp's camera position as a colour, by way of the suites.
void seeComp(PF_InData& in, PF_Pixel& color) {
    const auto* face = acquire<AEGP_PFInterfaceSuite1>(in, "AEGP PF Interface Suite", 1);
    const auto* layers = acquire<AEGP_LayerSuite1>(in, "AEGP Layer Suite", 5);
    const auto* streams = acquire<AEGP_StreamSuite1>(in, "AEGP Stream Suite", 4);
    A_Time time{};
    AEGP_LayerH camera = nullptr;
    A_Matrix4 matrix{};
    AEGP_StreamVal zoom{};
    face->AEGP_ConvertEffectToCompTime(in.effect_ref, in.current_time, in.time_scale, &time);
    if (face->AEGP_GetEffectCamera(in.effect_ref, &time, &camera) == A_Err_NONE &&
        camera != nullptr) {
        layers->AEGP_GetLayerToWorldXform(camera, &time, &matrix);
        streams->AEGP_GetLayerStreamValue(camera, AEGP_LayerStream_ZOOM, AEGP_LTimeMode_CompTime,
                                          &time, 0, &zoom, nullptr);
        color.red = static_cast<A_u_char>(matrix.mat[3][0]);
        color.green = static_cast<A_u_char>(matrix.mat[3][1]);
        color.blue = static_cast<A_u_char>(zoom.one_d);
    }
    if (fault("suite.argument")) layers->AEGP_GetLayerParentComp(nullptr, nullptr);
    AEGP_LayerH own = nullptr;
    face->AEGP_GetEffectLayer(in.effect_ref, &own);
    if (fault("stream.leak")) {
        AEGP_StreamRefH stream = nullptr;
        streams->AEGP_GetNewLayerStream(0, own, AEGP_LayerStream_POSITION, &stream);
    }
    in.pica_basicP->ReleaseSuite("AEGP Stream Suite", 4);
    in.pica_basicP->ReleaseSuite("AEGP Layer Suite", 5);
    if (!fault("suite.balance")) in.pica_basicP->ReleaseSuite("AEGP PF Interface Suite", 1);
    if (fault("suite.release")) in.pica_basicP->ReleaseSuite("AEGP Light Suite", 1);
}

PF_Err render(PF_InData& in, PF_OutData& out, PF_ParamDef** params, PF_LayerDef& output) {
    PF_ParamDef map;
    in.inter.checkout_param(in.effect_ref, kLayer, in.current_time, in.time_step, in.time_scale,
                            &map);
    // Red: the slider; green, blue: the layer's first pixel.
    PF_Pixel color{255, static_cast<A_u_char>(params[kSlider]->u.fd.value >> 16), 0, 0};
    if (map.u.ld.data != nullptr) {
        color.green = map.u.ld.data->green;
        color.blue = map.u.ld.data->blue;
        if (fault("input.written")) map.u.ld.data->red ^= 1;
    }
    in.inter.checkin_param(in.effect_ref, &map);
    if (params[kSwitch]->u.bd.value != 0) seeComp(in, color);
    if (params[kParamCount - 1]->u.bd.value != 0) color = *rowOf(params[0]->u.ld, 0);

    PF_EffectWorld scratch;
    in.utils->new_world(in.effect_ref, 3, 3, 0, &scratch);
    if (!fault("world.leak")) in.utils->dispose_world(in.effect_ref, &scratch);
    if (fault("callback.unsupported")) in.utils->blend();
    if (fault("callback.effect-ref")) in.inter.abort(nullptr);
    if (fault("callback.argument")) in.utils->get_platform_data(in.effect_ref, 0, nullptr);
    if (fault("callback.outside")) std::thread([&in] { in.inter.abort(in.effect_ref); }).join();
    if (fault("progress.range")) in.inter.progress(in.effect_ref, 2, 1);
    if (fault("sequence.swapped")) out.sequence_data = record(in, "LIVE");
    if (fault("flags.undeclared")) out.out_flags |= PF_OutFlag_I_EXPAND_BUFFER;
    if (fault("indata.written")) in.width = 1;
    if (fault("data.overrun")) *reinterpret_cast<char*>(&in + 1) = 0;
    if (fault("message.unterminated")) std::memset(out.return_msg, 'x', sizeof out.return_msg);
    if (fault("update-ui.outside")) updateUi(in, params);
    if (fault("entry.throws")) throw std::runtime_error("out of the entry");

    for (A_long y = 0; y < output.height; ++y) {
        const PF_Err stop = in.inter.progress(in.effect_ref, y, output.height);
        if (stop != PF_Err_NONE) return fault("abort.ignored") ? PF_Err_NONE : stop;
        if (fault("output.unwritten") && y == 1) continue;
        std::fill_n(rowOf(output, y), output.width + (fault("output.overrun") ? 1 : 0), color);
    }
    return PF_Err_NONE;
}

PF_Err serve(PF_Cmd cmd, PF_InData& in, PF_OutData& out, PF_ParamDef** params, PF_LayerDef* output,
             void* extra) {
    switch (cmd) {
        case PF_Cmd_ABOUT:
            copyText(out.return_msg, "Test effect\rby the book");
            return PF_Err_NONE;
        case PF_Cmd_GLOBAL_SETUP:
            return globalSetup(out);
        case PF_Cmd_PARAMS_SETUP:
            return paramsSetup(in, out);
        case PF_Cmd_SEQUENCE_SETUP:
            return sequenceSetup(in, out);
        case PF_Cmd_SEQUENCE_RESETUP:
            return resetup(in, out);
        case PF_Cmd_SEQUENCE_FLATTEN:
            return flatten(in, out);
        case PF_Cmd_SEQUENCE_SETDOWN:
            if (fault("param.strings")) gLabel[0] ^= 1;
            return sequenceSetdown(in, out);
        case PF_Cmd_QUERY_DYNAMIC_FLAGS:
            queryFlags(in, out);
            return PF_Err_NONE;
        case PF_Cmd_UPDATE_PARAMS_UI:
            if (fault("checkout.forbidden")) switchIsOn(in);
            if (fault("param.outside")) {
                PF_ParamDef late = cleared(PF_Param_NO_DATA, 99, "Late");
                add(in, late);
            }
            updateUi(in, params);
            return PF_Err_NONE;
        case PF_Cmd_EVENT:
            event(in, params, *static_cast<PF_EventExtra*>(extra));
            return PF_Err_NONE;
        case PF_Cmd_FRAME_SETUP:
            if (fault("frame.size")) out.width = 3, out.height = 3;
            if (fault("frame.data")) out.frame_data = record(in, "DATA");
            return PF_Err_NONE;
        case PF_Cmd_RENDER:
            return render(in, out, params, *output);
        default:
            return PF_Err_NONE;
    }
}

}  // namespace

// The loader looks for "main", a name that the compiler keeps to itself.
#ifdef _WIN32
#define ORVIN_TEST_ENTRY
#else
#define ORVIN_TEST_ENTRY __asm__("main") __attribute__((visibility("default")))
#endif
extern "C" orvin::PF_Err testEffectMain(orvin::PF_Cmd cmd, orvin::PF_InData* in,
                                        orvin::PF_OutData* out, orvin::PF_ParamDef** params,
                                        orvin::PF_LayerDef* output, void* extra) ORVIN_TEST_ENTRY;

extern "C" orvin::PF_Err testEffectMain(orvin::PF_Cmd cmd, orvin::PF_InData* in,
                                        orvin::PF_OutData* out, orvin::PF_ParamDef** params,
                                        orvin::PF_LayerDef* output, void* extra) {
    if (cmd == kChooseFault) {
        gFault = static_cast<const char*>(extra);
        gStash = nullptr;
        copyText(gLabel, "Switch");
        return orvin::PF_Err_NONE;
    }
    return serve(cmd, *in, *out, params, output, extra);
}
