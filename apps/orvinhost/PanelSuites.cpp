// The suites around the effect's own user interface: parameter looks, drawing, redraws, handles.
#include "orvinhost/Host.h"
#include "orvinhost/SuiteTables.h"
#include "orvinhost/Unsupported.h"

#include <cstring>

namespace orvin::stand_in {
namespace {

Host* enter(const char* name) {
    Host* host = Host::active();
    if (host != nullptr && Call::current() == nullptr) {
        host->report(Rule::kCallbackOutside, name);
        return nullptr;
    }
    return host;
}

// --- PF Param Utils Suite

// The looks that an effect may change; everything else stays as it was added.
void takeLooks(PF_ParamDef& own, const PF_ParamDef& given) {
    constexpr PF_ParamUIFlags kUi = PF_PUI_ECW_SEPARATOR | PF_PUI_DISABLED;
    own.ui_flags = (own.ui_flags & ~kUi) | (given.ui_flags & kUi);
    own.flags =
        (own.flags & ~PF_ParamFlag_COLLAPSE_TWIRLY) | (given.flags & PF_ParamFlag_COLLAPSE_TWIRLY);
    own.ui_width = given.ui_width;
    own.ui_height = given.ui_height;
    std::memcpy(own.name, given.name, sizeof own.name);
    own.name[sizeof own.name - 1] = '\0';
    if (own.param_type == PF_Param_FIX_SLIDER) {
        own.u.fd.slider_min = given.u.fd.slider_min;
        own.u.fd.slider_max = given.u.fd.slider_max;
        own.u.fd.precision = given.u.fd.precision;
        own.u.fd.display_flags = given.u.fd.display_flags;
    }
}

PF_Err updateParamUi(PF_ProgPtr effectRef, PF_ParamIndex index, const PF_ParamDef* def) {
    Call* call = Host::enterCallback("PF_UpdateParamUI", effectRef);
    if (call == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    Host& host = call->host;
    const std::string who = "parameter " + std::to_string(index);
    if (def == nullptr || index < 0 || index >= host.params().count()) {
        host.report(Rule::kCheckoutIndex, "PF_UpdateParamUI of " + who);
        return PF_Err_INVALID_INDEX;
    }
    if (call->command != PF_Cmd_USER_CHANGED_PARAM && call->command != PF_Cmd_UPDATE_PARAMS_UI)
        host.report(Rule::kUpdateUiOutside, "PF_UpdateParamUI");
    bool own = index == 0;
    for (const PF_ParamDef* handed : call->params)
        own = own || handed == def;
    if (own) host.report(Rule::kUpdateUiNotACopy, who);
    Param& param = host.params()[index];
    const PF_ParamDef now = host.params().valueAt(index, call->frame);
    if (def->param_type != now.param_type ||
        (!ParamList::sameValue(*def, now) && (now.ui_flags & PF_PUI_STD_CONTROL_ONLY) == 0)) {
        host.report(Rule::kUpdateUiValue, who);
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    if (index > 0) takeLooks(param.def, *def);
    return PF_Err_NONE;
}

struct ParamUtilsTable {
    PF_Err (*updateParamUi)(PF_ProgPtr, PF_ParamIndex, const PF_ParamDef*);
    PF_UncalledFn others[9];
};

// --- PF Handle Suite

struct HandleTableSlots {
    PF_Handle (*newHandle)(A_HandleSize);
    void* (*lock)(PF_Handle);
    void (*unlock)(PF_Handle);
    void (*dispose)(PF_Handle);
    A_HandleSize (*size)(PF_Handle);
    PF_Err (*resize)(A_HandleSize, PF_Handle*);
};

// --- Drawing

// One host draws at a time, so its own address serves as draw, supplier and surface reference.
template <typename Ref>
bool isOurs(Ref reference, const char* name) {
    Host* host = enter(name);
    if (host == nullptr) return false;
    if (static_cast<const void*>(reference) == static_cast<const void*>(&host->panel()))
        return true;
    host->report(Rule::kDrawObject, std::string(name) + " with a foreign reference");
    return false;
}

bool badPlace(const void* place, const char* name) {
    if (place != nullptr) return false;
    if (Host* host = Host::active())
        host->report(Rule::kDrawObject, std::string(name) + " with a null pointer");
    return true;
}

PF_Err getDrawingReference(const PF_ContextH context, DRAWBOT_DrawRef* reference) {
    Host* host = enter("PF_GetDrawingReference");
    if (host == nullptr || badPlace(reference, "PF_GetDrawingReference"))
        return PF_Err_BAD_CALLBACK_PARAM;
    *reference = nullptr;
    if (context == nullptr || (*context)->magic != PF_CONTEXT_MAGIC) {
        host->report(Rule::kDrawObject, "PF_GetDrawingReference without a context");
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    if (!host->panel().drawing()) {
        host->report(Rule::kDrawOutside, "PF_GetDrawingReference");
        return PF_Err_NONE;  // a null reference: don't draw
    }
    *reference = reinterpret_cast<DRAWBOT_DrawRef>(&host->panel());
    return PF_Err_NONE;
}

template <typename Ref>
SPErr giveSame(DRAWBOT_DrawRef draw, Ref* out, const char* name) {
    if (!isOurs(draw, name) || badPlace(out, name)) return kSPBadParameterError;
    *out = reinterpret_cast<Ref>(draw);
    return kSPNoError;
}

SPErr getSupplier(DRAWBOT_DrawRef draw, DRAWBOT_SupplierRef* supplier) {
    return giveSame(draw, supplier, "GetSupplier");
}

SPErr getSurface(DRAWBOT_DrawRef draw, DRAWBOT_SurfaceRef* surface) {
    return giveSame(draw, surface, "GetSurface");
}

SPErr newImageFromBuffer(DRAWBOT_SupplierRef supplier, int width, int height, int rowBytes,
                         DRAWBOT_PixelLayout layout, const void* data, DRAWBOT_ImageRef* image) {
    if (!isOurs(supplier, "NewImageFromBuffer")) return kSPBadParameterError;
    return Host::active()->panel().newImage(width, height, rowBytes, layout, data, image);
}

SPErr answer(DRAWBOT_SupplierRef supplier, DRAWBOT_Boolean* out, const char* name,
             DRAWBOT_Boolean value) {
    if (!isOurs(supplier, name) || badPlace(out, name)) return kSPBadParameterError;
    *out = value;
    return kSPNoError;
}

SPErr supportsBgra(DRAWBOT_SupplierRef supplier, DRAWBOT_Boolean* out) {
    return answer(supplier, out, "SupportsPixelLayoutBGRA", 1);
}

SPErr prefersBgra(DRAWBOT_SupplierRef supplier, DRAWBOT_Boolean* out) {
    return answer(supplier, out, "PrefersPixelLayoutBGRA", 1);
}

SPErr supportsArgb(DRAWBOT_SupplierRef supplier, DRAWBOT_Boolean* out) {
    return answer(supplier, out, "SupportsPixelLayoutARGB", 1);
}

SPErr prefersArgb(DRAWBOT_SupplierRef supplier, DRAWBOT_Boolean* out) {
    return answer(supplier, out, "PrefersPixelLayoutARGB", 0);
}

SPErr retainObject(DRAWBOT_ObjectRef object) {
    Host* host = enter("RetainObject");
    return host == nullptr ? kSPBadParameterError : host->panel().retain(object);
}

SPErr releaseObject(DRAWBOT_ObjectRef object) {
    Host* host = enter("ReleaseObject");
    return host == nullptr ? kSPBadParameterError : host->panel().release(object);
}

SPErr pushStateStack(DRAWBOT_SurfaceRef surface) {
    if (!isOurs(surface, "PushStateStack")) return kSPBadParameterError;
    return Host::active()->panel().pushState();
}

SPErr popStateStack(DRAWBOT_SurfaceRef surface) {
    if (!isOurs(surface, "PopStateStack")) return kSPBadParameterError;
    return Host::active()->panel().popState();
}

SPErr paintRect(DRAWBOT_SurfaceRef surface, const DRAWBOT_ColorRGBA* color,
                const DRAWBOT_RectF32* rect) {
    if (!isOurs(surface, "PaintRect") || badPlace(color, "PaintRect") ||
        badPlace(rect, "PaintRect"))
        return kSPBadParameterError;
    return Host::active()->panel().paintRect(*color, *rect);
}

SPErr clipTo(DRAWBOT_SurfaceRef surface, DRAWBOT_SupplierRef supplier, const DRAWBOT_Rect32* rect) {
    if (!isOurs(surface, "Clip") || !isOurs(supplier, "Clip") || badPlace(rect, "Clip"))
        return kSPBadParameterError;
    return Host::active()->panel().clip(*rect);
}

SPErr drawImage(DRAWBOT_SurfaceRef surface, DRAWBOT_ImageRef image, const DRAWBOT_PointF32* origin,
                float alpha) {
    if (!isOurs(surface, "DrawImage") || badPlace(origin, "DrawImage")) return kSPBadParameterError;
    return Host::active()->panel().drawImage(image, *origin, alpha);
}

PF_Err invalidateRect(const PF_ContextH context, const PF_Rect*) {
    Host* host = enter("PF_InvalidateRect");
    if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    if (context == nullptr || (*context)->magic != PF_CONTEXT_MAGIC) {
        host->report(Rule::kDrawObject, "PF_InvalidateRect without a context");
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    ++host->invalidations;
    return PF_Err_NONE;
}

}  // namespace

const void* paramUtilsSuite() {
    static const ParamUtilsTable table = [] {
        auto t = unsupportedTable<ParamUtilsTable, "PF Param Utils Suite">();
        t.updateParamUi = updateParamUi;
        return t;
    }();
    return &table;
}

const void* handleSuite() {
    static const HandleTableSlots table = [] {
        const PF_UtilCallbacks utils = utilCallbacks();
        return HandleTableSlots{utils.host_new_handle,      utils.host_lock_handle,
                                utils.host_unlock_handle,   utils.host_dispose_handle,
                                utils.host_get_handle_size, utils.host_resize_handle};
    }();
    return &table;
}

const void* customUiSuite() {
    static const PF_EffectCustomUISuite1 table{getDrawingReference};
    return &table;
}

const void* drawbotDrawSuite() {
    static const DRAWBOT_DrawbotSuite1 table{getSupplier, getSurface};
    return &table;
}

const void* drawbotSupplierSuite() {
    static const DRAWBOT_SupplierSuite1 table = [] {
        auto t = unsupportedTable<DRAWBOT_SupplierSuite1, "DRAWBOT Supplier Suite 1">();
        t.NewImageFromBuffer = newImageFromBuffer;
        t.SupportsPixelLayoutBGRA = supportsBgra;
        t.PrefersPixelLayoutBGRA = prefersBgra;
        t.SupportsPixelLayoutARGB = supportsArgb;
        t.PrefersPixelLayoutARGB = prefersArgb;
        t.RetainObject = retainObject;
        t.ReleaseObject = releaseObject;
        return t;
    }();
    return &table;
}

const void* drawbotSurfaceSuite() {
    static const DRAWBOT_SurfaceSuite1 table = [] {
        auto t = unsupportedTable<DRAWBOT_SurfaceSuite1, "DRAWBOT Surface Suite 1">();
        t.PushStateStack = pushStateStack;
        t.PopStateStack = popStateStack;
        t.PaintRect = paintRect;
        t.Clip = clipTo;
        t.DrawImage = drawImage;
        return t;
    }();
    return &table;
}

const void* appSuite6() {
    static const PF_AppSuite6 table = [] {
        auto t = unsupportedTable<PF_AppSuite6, "PF AE App Suite 6">();
        t.PF_InvalidateRect = invalidateRect;
        return t;
    }();
    return &table;
}

const void* appSuite7() {
    struct Table {
        PF_AppSuite7 known;
        PF_UncalledFn after[3];  // version 1 of today has three functions more
    };
    static const Table table = [] {
        auto t = unsupportedTable<Table, "PF AE App Suite">();
        t.known.PF_InvalidateRect = invalidateRect;
        return t;
    }();
    return &table;
}

}  // namespace orvin::stand_in
