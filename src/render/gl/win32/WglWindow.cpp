#include "render/gl/win32/WglWindow.h"

namespace orvin::wgl {

namespace {

HINSTANCE thisModule() {
    HMODULE module = nullptr;
    GetModuleHandleExA(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        reinterpret_cast<const char*>(&thisModule), &module);
    return module;
}

}  // namespace

Window::Window(const char* className, const char* title, DWORD style, const RECT& place) {
    WNDCLASSA description{};
    description.style = CS_OWNDC;  // a pixel format is set once, for all of the context's life
    description.lpfnWndProc = DefWindowProcA;
    description.hInstance = thisModule();
    description.lpszClassName = className;
    RegisterClassA(&description);  // fails where it is registered already
    window_ =
        CreateWindowExA(0, className, title, style, place.left, place.top, place.right - place.left,
                        place.bottom - place.top, nullptr, nullptr, thisModule(), nullptr);
    if (window_ != nullptr) context_ = GetDC(window_);
}

Window::~Window() {
    if (window_ == nullptr) return;
    if (isOfThisThread())
        DestroyWindow(window_);
    else
        PostMessageA(window_, WM_CLOSE, 0, 0);  // only its own thread may destroy a window
}

bool setPixelFormat(HDC context, DWORD target) {
    PIXELFORMATDESCRIPTOR wanted{};
    wanted.nSize = sizeof wanted;
    wanted.nVersion = 1;
    wanted.dwFlags = target | PFD_SUPPORT_OPENGL;
    // A window's back buffer keeps its pixels whatever lies before the window.
    if (target == PFD_DRAW_TO_WINDOW) wanted.dwFlags |= PFD_DOUBLEBUFFER;
    wanted.iPixelType = PFD_TYPE_RGBA;
    wanted.cColorBits = 32;
    wanted.cAlphaBits = 8;
    wanted.cDepthBits = 24;
    wanted.iLayerType = PFD_MAIN_PLANE;
    const int format = ChoosePixelFormat(context, &wanted);
    if (format == 0) return false;
    PIXELFORMATDESCRIPTOR given{};
    DescribePixelFormat(context, format, sizeof given, &given);
    const bool fits = (given.dwFlags & target) != 0 && (given.dwFlags & PFD_SUPPORT_OPENGL) != 0 &&
                      given.iPixelType == PFD_TYPE_RGBA && given.cRedBits >= 8 &&
                      given.cAlphaBits >= 8 && given.cDepthBits >= 16;
    return fits && SetPixelFormat(context, format, &given) != FALSE;
}

}  // namespace orvin::wgl
