// The three things that Windows can draw into with OpenGL.
#pragma once

#include <memory>

#include "render/gl/GlTarget.h"

namespace orvin::wgl {

// Each is null where the system, or the size, doesn't allow it. Nothing is current afterwards.
std::unique_ptr<GlTarget> openPbuffer(int width, int height);
std::unique_ptr<GlTarget> openWindow(int width, int height);
std::unique_ptr<GlTarget> openBitmap(int width, int height);

}  // namespace orvin::wgl
