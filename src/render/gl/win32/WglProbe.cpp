#include "render/gl/win32/WglProbe.h"

#include <optional>

#include "render/gl/ExtensionWords.h"

namespace orvin::wgl {

namespace {

template <typename Function>
void find(Function& function, const char* name) {
    // Over a pointer of no type: compilers distrust casts between functions.
    void* const address = reinterpret_cast<void*>(wglGetProcAddress(name));
    function = reinterpret_cast<Function>(address);
}

const char* extensionsOf(const Pbuffers& functions, HDC device) {
    const char* list = nullptr;
    if (functions.getExtensionsStringExt != nullptr) list = functions.getExtensionsStringExt();
    if (list == nullptr && functions.getExtensionsStringArb != nullptr)
        list = functions.getExtensionsStringArb(device);
    return list != nullptr ? list : "";
}

std::optional<Pbuffers> probe() {
    const QueryWindow window;
    if (!window.isCurrent()) return std::nullopt;
    Pbuffers functions;
    find(functions.getExtensionsStringExt, "wglGetExtensionsStringEXT");
    find(functions.getExtensionsStringArb, "wglGetExtensionsStringARB");
    find(functions.choosePixelFormat, "wglChoosePixelFormatARB");
    find(functions.create, "wglCreatePbufferARB");
    find(functions.destroy, "wglDestroyPbufferARB");
    find(functions.getContext, "wglGetPbufferDCARB");
    find(functions.releaseContext, "wglReleasePbufferDCARB");
    find(functions.query, "wglQueryPbufferARB");
    if (functions.choosePixelFormat == nullptr || functions.create == nullptr ||
        functions.destroy == nullptr || functions.getContext == nullptr ||
        functions.releaseContext == nullptr || functions.query == nullptr)
        return std::nullopt;
    const char* const extensions = extensionsOf(functions, window.device());
    if (!hasExtension(extensions, "WGL_ARB_pixel_format") ||
        !hasExtension(extensions, "WGL_ARB_pbuffer") || functions.format(window.device()) == 0)
        return std::nullopt;
    return functions;
}

}  // namespace

int Pbuffers::format(HDC device) const {
    // With a back buffer, where there are such: what nobody shows needs no front to be kept right.
    for (const int doubleBuffer : {1, 0}) {
        const int wanted[] = {WGL_DRAW_TO_PBUFFER_ARB,
                              1,
                              WGL_SUPPORT_OPENGL_ARB,
                              1,
                              WGL_PIXEL_TYPE_ARB,
                              WGL_TYPE_RGBA_ARB,
                              WGL_DOUBLE_BUFFER_ARB,
                              doubleBuffer,
                              WGL_RED_BITS_ARB,
                              8,
                              WGL_GREEN_BITS_ARB,
                              8,
                              WGL_BLUE_BITS_ARB,
                              8,
                              WGL_ALPHA_BITS_ARB,
                              8,
                              WGL_DEPTH_BITS_ARB,
                              24,
                              0};
        int found = 0;
        UINT count = 0;
        if (choosePixelFormat(device, wanted, nullptr, 1, &found, &count) != FALSE && count != 0)
            return found;
    }
    return 0;
}

QueryWindow::QueryWindow()
    : window_("Orvin Invisible", "Orvinex OpenGL Query Window", WS_POPUP, RECT{0, 0, 16, 16}) {
    if (!window_.isValid() || !setPixelFormat(window_.context(), PFD_DRAW_TO_WINDOW)) return;
    context_ = wglCreateContext(window_.context());
    isCurrent_ = context_ != nullptr && wglMakeCurrent(window_.context(), context_) != FALSE;
}

QueryWindow::~QueryWindow() {
    releaseCurrent();
    if (context_ != nullptr) wglDeleteContext(context_);
}

const Pbuffers* pbuffers() {
    static const std::optional<Pbuffers> found = probe();
    return found ? &*found : nullptr;
}

}  // namespace orvin::wgl
