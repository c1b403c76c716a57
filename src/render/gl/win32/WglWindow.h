// Windows that carry OpenGL contexts.
#pragma once

#include <windows.h>

namespace orvin::wgl {

/// A top-level window of the calling thread.
class Window {
  public:
    Window(const char* className, const char* title, DWORD style, const RECT& place);
    ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    bool isValid() const { return window_ != nullptr && context_ != nullptr; }
    HWND window() const { return window_; }
    HDC context() const { return context_; }  // the window's own, for as long as it lives
    bool isOfThisThread() const { return thread_ == GetCurrentThreadId(); }

  private:
    HWND window_ = nullptr;
    HDC context_ = nullptr;
    DWORD thread_ = GetCurrentThreadId();
};

/// RGBA with depth; `target` is PFD_DRAW_TO_WINDOW or PFD_DRAW_TO_BITMAP. False where the device
/// has no such format.
bool setPixelFormat(HDC context, DWORD target);

/// Nothing is current on this thread afterwards.
inline void releaseCurrent() {
    wglMakeCurrent(nullptr, nullptr);
}

}  // namespace orvin::wgl
