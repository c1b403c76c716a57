// PF_UtilCallbacks: handles, worlds, platform data, C functions.
#include "orvinhost/Host.h"
#include "orvinhost/Unsupported.h"
#include "toolkit/platform/Platform.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace orvin::stand_in {
namespace {

// Handle functions carry no effect_ref; they are allowed on any thread while a command is served.
HandleTable* handleTable(const char* name) {
    Host* host = Host::active();
    if (host == nullptr) return nullptr;
    if (Call::current() == nullptr) host->report(Rule::kCallbackOutside, name);
    return &host->handles();
}

PF_Handle newHandle(A_HandleSize size) {
    HandleTable* table = handleTable("host_new_handle");
    return table == nullptr ? nullptr : table->allocate(size);
}

void* lockHandle(PF_Handle handle) {
    HandleTable* table = handleTable("host_lock_handle");
    return table == nullptr ? nullptr : table->lock(handle);
}

void unlockHandle(PF_Handle handle) {
    if (HandleTable* table = handleTable("host_unlock_handle")) table->unlock(handle);
}

void disposeHandle(PF_Handle handle) {
    if (HandleTable* table = handleTable("host_dispose_handle")) table->dispose(handle);
}

A_HandleSize handleSize(PF_Handle handle) {
    HandleTable* table = handleTable("host_get_handle_size");
    return table == nullptr ? 0 : table->size(handle);
}

PF_Err resizeHandle(A_HandleSize size, PF_Handle* handle) {
    HandleTable* table = handleTable("host_resize_handle");
    return table == nullptr ? PF_Err_BAD_CALLBACK_PARAM : table->resize(size, handle);
}

bool hasPixels(const PF_EffectWorld* world) {
    return world != nullptr && world->data != nullptr && world->width > 0 && world->height > 0;
}

PF_Pixel* pixelRow(const PF_EffectWorld& world, A_long y) {
    auto* bytes = reinterpret_cast<unsigned char*>(world.data);
    return reinterpret_cast<PF_Pixel*>(bytes + std::ptrdiff_t{y} * world.rowbytes);
}

PF_Rect clipped(const PF_Rect* rect, const PF_EffectWorld& world) {
    PF_Rect all{0, 0, world.width, world.height};
    if (rect == nullptr) return all;
    return {std::max(rect->left, 0), std::max(rect->top, 0), std::min(rect->right, world.width),
            std::min(rect->bottom, world.height)};
}

PF_Err copyWorld(PF_ProgPtr effectRef, PF_EffectWorld* from, PF_EffectWorld* to, PF_Rect* fromRect,
                 PF_Rect* toRect) {
    Call* call = Host::enterCallback("copy", effectRef);
    if (call == nullptr || !hasPixels(from) || !hasPixels(to)) return PF_Err_BAD_CALLBACK_PARAM;
    const PF_Rect a = clipped(fromRect, *from);
    const PF_Rect b = clipped(toRect, *to);
    if (a.right - a.left != b.right - b.left || a.bottom - a.top != b.bottom - b.top) {
        call->host.report(Rule::kCallbackArgument, "copy between rectangles of different size");
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    for (A_long y = 0; y < a.bottom - a.top; ++y)
        std::memmove(pixelRow(*to, b.top + y) + b.left, pixelRow(*from, a.top + y) + a.left,
                     static_cast<std::size_t>(std::max(0, a.right - a.left)) * sizeof(PF_Pixel));
    return PF_Err_NONE;
}

PF_Err fillWorld(PF_ProgPtr effectRef, const PF_Pixel* color, const PF_Rect* rect,
                 PF_EffectWorld* world) {
    const Call* call = Host::enterCallback("fill", effectRef);
    if (call == nullptr || !hasPixels(world)) return PF_Err_BAD_CALLBACK_PARAM;
    const PF_Pixel pixel = color == nullptr ? PF_Pixel{} : *color;
    const PF_Rect area = clipped(rect, *world);
    for (A_long y = area.top; y < area.bottom; ++y)
        std::fill(pixelRow(*world, y) + area.left, pixelRow(*world, y) + area.right, pixel);
    return PF_Err_NONE;
}

PF_Err newWorld(PF_ProgPtr effectRef, A_long width, A_long height, A_long flags,
                PF_EffectWorld* world) {
    Call* call = Host::enterCallback("new_world", effectRef);
    if (call == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    if (world == nullptr || width < 1 || height < 1 || width > 30000 || height > 30000) {
        call->host.report(Rule::kCallbackArgument,
                          "new_world of " + std::to_string(width) + " x " + std::to_string(height));
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    World made(width, height);
    if (flags != 0) made.fill({0, 0, 0, 0});
    made.describe(*world, true, {1, 1});
    const void* pixels = world->data;
    call->host.worlds.emplace(pixels, std::move(made));
    return PF_Err_NONE;
}

PF_Err disposeWorld(PF_ProgPtr effectRef, PF_EffectWorld* world) {
    Call* call = Host::enterCallback("dispose_world", effectRef);
    if (call == nullptr || world == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    const auto found = call->host.worlds.find(world->data);
    if (found == call->host.worlds.end()) {
        call->host.report(Rule::kCallbackArgument, "dispose_world of none of the host's");
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    if (!found->second.guardsIntact())
        call->host.report(Rule::kOutputOverrun, "a world made by the effect");
    call->host.worlds.erase(found);
    world->data = nullptr;
    return PF_Err_NONE;
}

PF_Err platformData(PF_ProgPtr effectRef, PF_PlatDataID which, void* data) {
    Call* call = Host::enterCallback("get_platform_data", effectRef);
    if (call == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    const HostSettings& settings = call->host.settings();
    if (data == nullptr) {
        call->host.report(Rule::kCallbackArgument, "get_platform_data without a place");
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    if (which == PF_PlatData_MAIN_WND || which == PF_PlatData_RES_DLLINSTANCE) {
        void* value = which == PF_PlatData_MAIN_WND ? settings.mainWindow : settings.moduleInstance;
        std::memcpy(data, &value, sizeof value);
        return PF_Err_NONE;
    }
    if (which == PF_PlatData_EXE_FILE_PATH_W || which == PF_PlatData_RES_FILE_PATH_W) {
        const std::u16string path = (platform::moduleFolder() / "orvinhost").u16string();
        const std::size_t count = std::min<std::size_t>(path.size(), 259);
        std::memcpy(data, path.data(), count * 2);
        std::memset(static_cast<char*>(data) + count * 2, 0, 2);
        return PF_Err_NONE;
    }
    call->host.report(Rule::kCallbackUnsupported, "get_platform_data " + std::to_string(which));
    return PF_Err_INVALID_CALLBACK;
}

PF_Err pixelData8(PF_EffectWorld* world, PF_PixelPtr pixels, PF_Pixel8** out) {
    if (out == nullptr || world == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    *out = (world->world_flags & PF_WorldFlag_DEEP) != 0 ? nullptr
           : pixels != nullptr                           ? pixels
                                                         : world->data;
    return PF_Err_NONE;
}

// All worlds of this host have 8 bits a channel.
PF_Err pixelData16(PF_EffectWorld*, PF_PixelPtr, PF_Pixel16** out) {
    if (out == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
    *out = nullptr;
    return PF_Err_NONE;
}

PF_Err appCall(PF_ProgPtr, A_long which, ...) {
    return reportUnsupported("app " + std::to_string(which));
}

template <typename Result, typename... Args>
PF_UncalledFn slot(Result (*function)(Args...)) {
    return reinterpret_cast<PF_UncalledFn>(function);
}

using Unary = double (*)(double);
using Binary = double (*)(double, double);

PF_ANSICallbacks ansiCallbacks() {
    PF_ANSICallbacks table{};
    table.atan = slot(static_cast<Unary>(std::atan));
    table.atan2 = slot(static_cast<Binary>(std::atan2));
    table.ceil = slot(static_cast<Unary>(std::ceil));
    table.cos = slot(static_cast<Unary>(std::cos));
    table.exp = slot(static_cast<Unary>(std::exp));
    table.fabs = slot(static_cast<Unary>(std::fabs));
    table.floor = slot(static_cast<Unary>(std::floor));
    table.fmod = slot(static_cast<Binary>(std::fmod));
    table.hypot = slot(static_cast<Binary>(std::hypot));
    table.log = slot(static_cast<Unary>(std::log));
    table.log10 = slot(static_cast<Unary>(std::log10));
    table.pow = slot(static_cast<Binary>(std::pow));
    table.sin = slot(static_cast<Unary>(std::sin));
    table.sqrt = slot(static_cast<Unary>(std::sqrt));
    table.tan = slot(static_cast<Unary>(std::tan));
    table.sprintf = reinterpret_cast<PF_UncalledFn>(std::sprintf);
    table.strcpy = slot(static_cast<char* (*)(char*, const char*)>(std::strcpy));
    table.asin = slot(static_cast<Unary>(std::asin));
    table.acos = slot(static_cast<Unary>(std::acos));
    return table;
}

PF_ColorCallbacks colorCallbacks() {
    return {unsupportedSlot<"RGBtoHLS">(),  unsupportedSlot<"HLStoRGB">(),
            unsupportedSlot<"RGBtoYIQ">(),  unsupportedSlot<"YIQtoRGB">(),
            unsupportedSlot<"Luminance">(), unsupportedSlot<"Hue">(),
            unsupportedSlot<"Lightness">(), unsupportedSlot<"Saturation">()};
}

}  // namespace

PF_UtilCallbacks utilCallbacks() {
    PF_UtilCallbacks table{};
    table.begin_sampling = unsupportedSlot<"begin_sampling">();
    table.subpixel_sample = unsupportedSlot<"subpixel_sample">();
    table.area_sample = unsupportedSlot<"area_sample">();
    table.end_sampling = unsupportedSlot<"end_sampling">();
    table.composite_rect = unsupportedSlot<"composite_rect">();
    table.blend = unsupportedSlot<"blend">();
    table.convolve = unsupportedSlot<"convolve">();
    table.copy = copyWorld;
    table.fill = fillWorld;
    table.gaussian_kernel = unsupportedSlot<"gaussian_kernel">();
    table.iterate = unsupportedSlot<"iterate">();
    table.premultiply = unsupportedSlot<"premultiply">();
    table.premultiply_color = unsupportedSlot<"premultiply_color">();
    table.new_world = newWorld;
    table.dispose_world = disposeWorld;
    table.iterate_origin = unsupportedSlot<"iterate_origin">();
    table.iterate_lut = unsupportedSlot<"iterate_lut">();
    table.transfer_rect = unsupportedSlot<"transfer_rect">();
    table.transform_world = unsupportedSlot<"transform_world">();
    table.host_new_handle = newHandle;
    table.host_lock_handle = lockHandle;
    table.host_unlock_handle = unlockHandle;
    table.host_dispose_handle = disposeHandle;
    table.get_callback_addr = unsupportedSlot<"get_callback_addr">();
    table.app = appCall;
    table.ansi = ansiCallbacks();
    table.colorCB = colorCallbacks();
    table.get_platform_data = platformData;
    table.host_get_handle_size = handleSize;
    table.iterate_origin_non_clip_src = unsupportedSlot<"iterate_origin_non_clip_src">();
    table.iterate_generic = unsupportedSlot<"iterate_generic">();
    table.host_resize_handle = resizeHandle;
    table.subpixel_sample16 = unsupportedSlot<"subpixel_sample16">();
    table.area_sample16 = unsupportedSlot<"area_sample16">();
    table.fill16 = unsupportedSlot<"fill16">();
    table.premultiply_color16 = unsupportedSlot<"premultiply_color16">();
    table.iterate16 = unsupportedSlot<"iterate16">();
    table.iterate_origin16 = unsupportedSlot<"iterate_origin16">();
    table.iterate_origin_non_clip_src16 = unsupportedSlot<"iterate_origin_non_clip_src16">();
    table.get_pixel_data8 = pixelData8;
    table.get_pixel_data16 = pixelData16;
    return table;
}

}  // namespace orvin::stand_in
