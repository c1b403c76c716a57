// twOffscreenDevice: a bitmap in memory and the device context that draws into it.
#pragma once

#include <windows.h>

namespace orvin {

class twOffscreenDevice {
  public:
    /// A bitmap like the screen's or, with `section`, one of 32 bits a pixel whose memory is its
    /// own, which OpenGL's slowest road can draw into.
    twOffscreenDevice(int width, int height, bool section);
    ~twOffscreenDevice();
    twOffscreenDevice(const twOffscreenDevice&) = delete;
    twOffscreenDevice& operator=(const twOffscreenDevice&) = delete;

    bool isValid() const { return bitmap_ != nullptr; }
    HDC context() const { return context_; }

  private:
    HDC context_ = nullptr;
    HBITMAP bitmap_ = nullptr;
    HGDIOBJ before_ = nullptr;
};

}  // namespace orvin
