#include "toolkit/win32/twOffscreenDevice.h"

namespace orvin {

twOffscreenDevice::twOffscreenDevice(int width, int height, bool section) {
    HDC const screen = GetDC(nullptr);
    context_ = CreateCompatibleDC(screen);
    if (section) {
        BITMAPINFO info{};
        info.bmiHeader.biSize = sizeof info.bmiHeader;
        info.bmiHeader.biWidth = width;
        info.bmiHeader.biHeight = height;
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        info.bmiHeader.biCompression = BI_RGB;
        void* bits = nullptr;
        bitmap_ = CreateDIBSection(screen, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    } else {
        bitmap_ = CreateCompatibleBitmap(screen, width, height);
    }
    ReleaseDC(nullptr, screen);
    if (context_ != nullptr && bitmap_ != nullptr) before_ = SelectObject(context_, bitmap_);
}

twOffscreenDevice::~twOffscreenDevice() {
    if (before_ != nullptr) SelectObject(context_, before_);
    if (bitmap_ != nullptr) DeleteObject(bitmap_);
    if (context_ != nullptr) DeleteDC(context_);
}

}  // namespace orvin
