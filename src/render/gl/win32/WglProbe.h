// What the graphics driver offers for drawing off-screen.
#pragma once

#include <windows.h>

#include <GL/gl.h>
#include <GL/wglext.h>

#include "render/gl/win32/WglWindow.h"

namespace orvin::wgl {

/// The driver's functions for pbuffers; they hold for every context of the process.
struct Pbuffers {
    PFNWGLGETEXTENSIONSSTRINGEXTPROC getExtensionsStringExt = nullptr;
    PFNWGLGETEXTENSIONSSTRINGARBPROC getExtensionsStringArb = nullptr;
    PFNWGLCHOOSEPIXELFORMATARBPROC choosePixelFormat = nullptr;
    PFNWGLCREATEPBUFFERARBPROC create = nullptr;
    PFNWGLDESTROYPBUFFERARBPROC destroy = nullptr;
    PFNWGLGETPBUFFERDCARBPROC getContext = nullptr;
    PFNWGLRELEASEPBUFFERDCARBPROC releaseContext = nullptr;
    PFNWGLQUERYPBUFFERARBPROC query = nullptr;

    /// The first format of RGBA with depth that pbuffers can have; 0 for none.
    int format(HDC device) const;
};

/// A hidden window with a context that is current while this lives: what the driver's functions are
/// asked in.
class QueryWindow {
  public:
    QueryWindow();
    ~QueryWindow();
    QueryWindow(const QueryWindow&) = delete;
    QueryWindow& operator=(const QueryWindow&) = delete;

    bool isCurrent() const { return isCurrent_; }
    HDC device() const { return window_.context(); }

  private:
    Window window_;
    HGLRC context_ = nullptr;
    bool isCurrent_ = false;
};

/// Null where there are no pbuffers. Looked for once, at the first call.
const Pbuffers* pbuffers();

}  // namespace orvin::wgl
