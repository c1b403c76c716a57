// The suites by which an effect sees the comp around it.
#include "orvinhost/Host.h"
#include "orvinhost/SuiteTables.h"
#include "orvinhost/Unsupported.h"

#include <cmath>
#include <cstring>

namespace orvin::stand_in {
namespace {

Host* refuse(const std::string& detail) {
    if (Host* host = Host::active()) host->report(Rule::kSuiteArgument, detail);
    return nullptr;
}

// The host, when a suite function is called in order; null with a finding otherwise.
Host* enter(const char* name) {
    Host* host = Host::active();
    const Call* call = Call::current();
    if (host == nullptr) return nullptr;
    if (call == nullptr) {
        host->report(Rule::kCallbackOutside, name);
        return nullptr;
    }
    return host;
}

// Those that are documented for rendering and drawing only. Elsewhere they answer all the same.
Host* enterInterface(const char* name, PF_ProgPtr effectRef) {
    Host* host = enter(name);
    if (host == nullptr) return nullptr;
    if (effectRef != host->effectRef()) {
        host->report(Rule::kCallbackRef, name);
        return nullptr;
    }
    const Call& call = *Call::current();
    const bool drawing = call.command == PF_Cmd_EVENT && call.event == PF_Event_DRAW;
    if (call.command != PF_Cmd_RENDER && call.command != PF_Cmd_FRAME_SETUP && !drawing)
        host->report(Rule::kSuiteOutside, name);
    return host;
}

const CompLayer* enterLayer(const char* name, AEGP_LayerH layer) {
    Host* host = enter(name);
    if (host == nullptr) return nullptr;
    const int index = host->layerIndex(layer);
    if (index < 0) {
        refuse(std::string(name) + " of no layer");
        return nullptr;
    }
    return &host->comp().layers()[static_cast<std::size_t>(index)];
}

bool goodTime(const A_Time* time, const char* name) {
    if (time != nullptr && time->scale != 0) return true;
    refuse(std::string(name) + " without a time");
    return false;
}

template <typename T>
bool goodPlace(const T* place, const char* name) {
    if (place != nullptr) return true;
    refuse(std::string(name) + " without a place for the answer");
    return false;
}

// --- AEGP PF Interface Suite

A_Err getEffectLayer(PF_ProgPtr effectRef, AEGP_LayerH* layer) {
    Host* host = enterInterface("AEGP_GetEffectLayer", effectRef);
    if (host == nullptr || !goodPlace(layer, "AEGP_GetEffectLayer")) return A_Err_PARAMETER;
    *layer = host->layerHandle(host->comp().effectLayer());
    return A_Err_NONE;
}

A_Err convertEffectToCompTime(PF_ProgPtr effectRef, A_long time, A_u_long scale, A_Time* out) {
    Host* host = enterInterface("AEGP_ConvertEffectToCompTime", effectRef);
    if (host == nullptr || !goodPlace(out, "AEGP_ConvertEffectToCompTime")) return A_Err_PARAMETER;
    if (scale == 0) {
        refuse("AEGP_ConvertEffectToCompTime with the scale 0");
        return A_Err_PARAMETER;
    }
    const HostSettings& settings = host->settings();
    const double frame = settings.frameOf(time, scale) + host->comp().layerStart();
    *out = {settings.timeOf(frame), settings.timeScale()};
    return A_Err_NONE;
}

A_Err getEffectCamera(PF_ProgPtr effectRef, const A_Time* time, AEGP_LayerH* camera) {
    Host* host = enterInterface("AEGP_GetEffectCamera", effectRef);
    if (host == nullptr || !goodTime(time, "AEGP_GetEffectCamera") ||
        !goodPlace(camera, "AEGP_GetEffectCamera"))
        return A_Err_PARAMETER;
    const int index = host->comp().activeCamera(host->compFrame(*time));
    *camera = index < 0 ? nullptr : host->layerHandle(index);
    return A_Err_NONE;
}

void toHost(const Matrix4& from, A_Matrix4& to) {
    for (std::size_t r = 0; r < 4; ++r)
        for (std::size_t c = 0; c < 4; ++c)
            to.mat[r][c] = from.m[r][c];
}

A_Err getEffectCameraMatrix(PF_ProgPtr effectRef, const A_Time* time, A_Matrix4* matrix,
                            A_FpLong* distance, A_short* width, A_short* height) {
    Host* host = enterInterface("AEGP_GetEffectCameraMatrix", effectRef);
    if (host == nullptr || !goodTime(time, "AEGP_GetEffectCameraMatrix") ||
        !goodPlace(matrix, "AEGP_GetEffectCameraMatrix"))
        return A_Err_PARAMETER;
    const double frame = host->compFrame(*time);
    const int index = host->comp().activeCamera(frame);
    if (index < 0) return A_Err_GENERIC;
    const CompLayer& camera = host->comp().layers()[static_cast<std::size_t>(index)];
    toHost(camera.worldFromLayer(frame), *matrix);
    if (distance != nullptr) *distance = camera.zoom.at(frame)[0];
    if (width != nullptr) *width = static_cast<A_short>(host->comp().width());
    if (height != nullptr) *height = static_cast<A_short>(host->comp().height());
    return A_Err_NONE;
}

// --- AEGP Layer Suite

bool goodComp(AEGP_CompH comp, const char* name) {
    Host* host = enter(name);
    if (host == nullptr) return false;
    if (comp == host->compHandle()) return true;
    refuse(std::string(name) + " of no comp");
    return false;
}

A_Err getCompNumLayers(AEGP_CompH comp, A_long* count) {
    if (!goodComp(comp, "AEGP_GetCompNumLayers") || !goodPlace(count, "AEGP_GetCompNumLayers"))
        return A_Err_PARAMETER;
    *count = static_cast<A_long>(Host::active()->comp().layers().size());
    return A_Err_NONE;
}

A_Err getCompLayerByIndex(AEGP_CompH comp, A_long index, AEGP_LayerH* layer) {
    constexpr const char* kName = "AEGP_GetCompLayerByIndex";
    if (!goodComp(comp, kName) || !goodPlace(layer, kName)) return A_Err_PARAMETER;
    Host* host = Host::active();
    if (index < 0 || index >= static_cast<A_long>(host->comp().layers().size())) {
        refuse(std::string(kName) + " " + std::to_string(index));
        return A_Err_PARAMETER;
    }
    *layer = host->layerHandle(index);
    return A_Err_NONE;
}

A_Err getLayerIndex(AEGP_LayerH layer, A_long* index) {
    if (enterLayer("AEGP_GetLayerIndex", layer) == nullptr ||
        !goodPlace(index, "AEGP_GetLayerIndex"))
        return A_Err_PARAMETER;
    *index = Host::active()->layerIndex(layer);
    return A_Err_NONE;
}

A_Err getLayerParentComp(AEGP_LayerH layer, AEGP_CompH* comp) {
    if (enterLayer("AEGP_GetLayerParentComp", layer) == nullptr ||
        !goodPlace(comp, "AEGP_GetLayerParentComp"))
        return A_Err_PARAMETER;
    *comp = Host::active()->compHandle();
    return A_Err_NONE;
}

A_Err getLayerName(AEGP_LayerH layer, A_char* name, A_char* source) {
    const CompLayer* found = enterLayer("AEGP_GetLayerName", layer);
    if (found == nullptr) return A_Err_PARAMETER;
    for (A_char* place : {name, source}) {
        if (place == nullptr) continue;
        const std::size_t count = std::min<std::size_t>(found->name.size(), 31);
        std::memcpy(place, found->name.data(), count);
        place[count] = '\0';
    }
    return A_Err_NONE;
}

A_Err getLayerObjectType(AEGP_LayerH layer, AEGP_ObjectType* type) {
    const CompLayer* found = enterLayer("AEGP_GetLayerObjectType", layer);
    if (found == nullptr || !goodPlace(type, "AEGP_GetLayerObjectType")) return A_Err_PARAMETER;
    *type = found->type;
    return A_Err_NONE;
}

A_Err isLayer3D(AEGP_LayerH layer, A_Boolean* is3D) {
    const CompLayer* found = enterLayer("AEGP_IsLayer3D", layer);
    if (found == nullptr || !goodPlace(is3D, "AEGP_IsLayer3D")) return A_Err_PARAMETER;
    *is3D = found->type != AEGP_ObjectType_AV ? 1 : 0;
    return A_Err_NONE;
}

A_Err isVideoActive(AEGP_LayerH layer, AEGP_LTimeMode mode, const A_Time* time, A_Boolean* active) {
    constexpr const char* kName = "AEGP_IsVideoActive";
    const CompLayer* found = enterLayer(kName, layer);
    if (found == nullptr || !goodTime(time, kName) || !goodPlace(active, kName))
        return A_Err_PARAMETER;
    if (mode != AEGP_LTimeMode_CompTime && mode != AEGP_LTimeMode_LayerTime) {
        refuse(std::string(kName) + " in the time mode " + std::to_string(mode));
        return A_Err_PARAMETER;
    }
    *active = found->activeAt(Host::active()->compFrame(*time)) ? 1 : 0;
    return A_Err_NONE;
}

A_Err convertCompToLayerTime(AEGP_LayerH layer, const A_Time* compTime, A_Time* layerTime) {
    constexpr const char* kName = "AEGP_ConvertCompToLayerTime";
    if (enterLayer(kName, layer) == nullptr || !goodTime(compTime, kName) ||
        !goodPlace(layerTime, kName))
        return A_Err_PARAMETER;
    const Host& host = *Host::active();
    const bool own = host.layerIndex(layer) == host.comp().effectLayer();
    const double start = own ? host.comp().layerStart() : 0.0;
    *layerTime = {host.settings().timeOf(host.compFrame(*compTime) - start),
                  host.settings().timeScale()};
    return A_Err_NONE;
}

A_Err getLayerToWorldXform(AEGP_LayerH layer, const A_Time* time, A_Matrix4* matrix) {
    constexpr const char* kName = "AEGP_GetLayerToWorldXform";
    const CompLayer* found = enterLayer(kName, layer);
    if (found == nullptr || !goodTime(time, kName) || !goodPlace(matrix, kName))
        return A_Err_PARAMETER;
    toHost(found->worldFromLayer(Host::active()->compFrame(*time)), *matrix);
    return A_Err_NONE;
}

// --- AEGP Stream Suite

A_Err getLayerStreamValue(AEGP_LayerH layer, AEGP_LayerStream stream, AEGP_LTimeMode,
                          const A_Time* time, A_Boolean, AEGP_StreamVal* value,
                          AEGP_StreamType* type) {
    constexpr const char* kName = "AEGP_GetLayerStreamValue";
    const CompLayer* found = enterLayer(kName, layer);
    if (found == nullptr || !goodTime(time, kName) || !goodPlace(value, kName))
        return A_Err_PARAMETER;
    AEGP_StreamType kind = AEGP_StreamType_NO_DATA;
    if (!found->streamValue(stream, Host::active()->compFrame(*time), *value, kind))
        return A_Err_GENERIC;
    if (type != nullptr) *type = kind;
    return A_Err_NONE;
}

A_Err isStreamLegal(AEGP_LayerH layer, AEGP_LayerStream stream, A_Boolean* legal) {
    const CompLayer* found = enterLayer("AEGP_IsStreamLegal", layer);
    if (found == nullptr || !goodPlace(legal, "AEGP_IsStreamLegal")) return A_Err_PARAMETER;
    AEGP_StreamVal value;
    AEGP_StreamType kind = AEGP_StreamType_NO_DATA;
    *legal = found->streamValue(stream, 0.0, value, kind) ? 1 : 0;
    return A_Err_NONE;
}

A_Err getNewLayerStream(AEGP_PluginID, AEGP_LayerH layer, AEGP_LayerStream which,
                        AEGP_StreamRefH* stream) {
    const CompLayer* found = enterLayer("AEGP_GetNewLayerStream", layer);
    if (found == nullptr || !goodPlace(stream, "AEGP_GetNewLayerStream")) return A_Err_PARAMETER;
    AEGP_StreamVal value;
    AEGP_StreamType kind = AEGP_StreamType_NO_DATA;
    if (!found->streamValue(which, 0.0, value, kind)) return A_Err_GENERIC;
    Host* host = Host::active();
    auto slot = std::make_unique<void*>(nullptr);
    *stream = reinterpret_cast<AEGP_StreamRefH>(slot.get());
    const void* key = slot.get();
    host->streams[key] = {host->layerIndex(layer), which, std::move(slot)};
    return A_Err_NONE;
}

A_Err disposeStream(AEGP_StreamRefH stream) {
    Host* host = enter("AEGP_DisposeStream");
    if (host == nullptr) return A_Err_GENERIC;
    if (host->streams.erase(stream) == 0) {
        refuse("AEGP_DisposeStream of no stream");
        return A_Err_PARAMETER;
    }
    return A_Err_NONE;
}

A_Err getNewStreamValue(AEGP_PluginID, AEGP_StreamRefH stream, AEGP_LTimeMode mode,
                        const A_Time* time, A_Boolean preExpression, AEGP_StreamValue* value) {
    Host* host = enter("AEGP_GetNewStreamValue");
    if (host == nullptr || !goodPlace(value, "AEGP_GetNewStreamValue")) return A_Err_PARAMETER;
    const auto found = host->streams.find(stream);
    if (found == host->streams.end()) {
        refuse("AEGP_GetNewStreamValue of no stream");
        return A_Err_PARAMETER;
    }
    value->streamH = stream;
    const A_Err error =
        getLayerStreamValue(host->layerHandle(found->second.layer), found->second.which, mode, time,
                            preExpression, &value->val, nullptr);
    if (error == A_Err_NONE) ++host->streamValues;
    return error;
}

A_Err disposeStreamValue(AEGP_StreamValue* value) {
    Host* host = enter("AEGP_DisposeStreamValue");
    if (host == nullptr || !goodPlace(value, "AEGP_DisposeStreamValue")) return A_Err_PARAMETER;
    if (host->streamValues == 0) {
        refuse("AEGP_DisposeStreamValue of no value");
        return A_Err_PARAMETER;
    }
    --host->streamValues;
    return A_Err_NONE;
}

// --- AEGP Light Suite

A_Err getLightType(AEGP_LayerH layer, AEGP_LightType* type) {
    const CompLayer* found = enterLayer("AEGP_GetLightType", layer);
    if (found == nullptr || !goodPlace(type, "AEGP_GetLightType")) return A_Err_PARAMETER;
    if (found->type != AEGP_ObjectType_LIGHT) {
        refuse("AEGP_GetLightType of a layer that is no light");
        return A_Err_PARAMETER;
    }
    *type = found->lightType;
    return A_Err_NONE;
}

}  // namespace

const AEGP_PFInterfaceSuite1& pfInterfaceSuite() {
    static const AEGP_PFInterfaceSuite1 table = [] {
        auto t = unsupportedTable<AEGP_PFInterfaceSuite1, "AEGP PF Interface Suite 1">();
        t.AEGP_GetEffectLayer = getEffectLayer;
        t.AEGP_ConvertEffectToCompTime = convertEffectToCompTime;
        t.AEGP_GetEffectCamera = getEffectCamera;
        t.AEGP_GetEffectCameraMatrix = getEffectCameraMatrix;
        return t;
    }();
    return table;
}

const AEGP_LayerSuite1& layerSuite() {
    static const AEGP_LayerSuite1 table = [] {
        auto t = unsupportedTable<AEGP_LayerSuite1, "AEGP Layer Suite 5">();
        t.AEGP_GetCompNumLayers = getCompNumLayers;
        t.AEGP_GetCompLayerByIndex = getCompLayerByIndex;
        t.AEGP_GetLayerIndex = getLayerIndex;
        t.AEGP_GetLayerParentComp = getLayerParentComp;
        t.AEGP_GetLayerName = getLayerName;
        t.AEGP_GetLayerObjectType = getLayerObjectType;
        t.AEGP_IsLayer3D = isLayer3D;
        t.AEGP_IsVideoActive = isVideoActive;
        t.AEGP_ConvertCompToLayerTime = convertCompToLayerTime;
        t.AEGP_GetLayerToWorldXform = getLayerToWorldXform;
        return t;
    }();
    return table;
}

const AEGP_StreamSuite1& streamSuite() {
    static const AEGP_StreamSuite1 table = [] {
        auto t = unsupportedTable<AEGP_StreamSuite1, "AEGP Stream Suite 4">();
        t.AEGP_IsStreamLegal = isStreamLegal;
        t.AEGP_GetNewLayerStream = getNewLayerStream;
        t.AEGP_DisposeStream = disposeStream;
        t.AEGP_GetNewStreamValue = getNewStreamValue;
        t.AEGP_DisposeStreamValue = disposeStreamValue;
        t.AEGP_GetLayerStreamValue = getLayerStreamValue;
        return t;
    }();
    return table;
}

const AEGP_LightSuite1& lightSuite() {
    static const AEGP_LightSuite1 table{getLightType};
    return table;
}

}  // namespace orvin::stand_in
