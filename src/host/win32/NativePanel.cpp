#include <windows.h>

#include "host/PanelSurface.h"

namespace orvin {

namespace {

class DeviceContextSurface final : public PanelSurface {
  public:
    explicit DeviceContextSurface(HDC context) : context_(context) {}

    void* window() const override { return WindowFromDC(context_); }

    bool paint(const PanelPicture& picture, int left, int top) override {
        BITMAPINFO info{};
        info.bmiHeader.biSize = sizeof info.bmiHeader;
        info.bmiHeader.biWidth = picture.width;
        info.bmiHeader.biHeight = -picture.height;  // top row first
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        info.bmiHeader.biCompression = BI_RGB;
        const int rows = SetDIBitsToDevice(context_, left, top, static_cast<DWORD>(picture.width),
                                           static_cast<DWORD>(picture.height), 0, 0, 0,
                                           static_cast<UINT>(picture.height), picture.bgra.data(),
                                           &info, DIB_RGB_COLORS);
        return rows == picture.height;
    }

  private:
    HDC context_;
};

}  // namespace

std::unique_ptr<PanelSurface> openDeviceContextSurface(const PF_InData& in,
                                                       const PF_EventExtra& event) {
    if (in.version.major >= 13 || event.contextH == nullptr || *event.contextH == nullptr)
        return nullptr;
    auto* context = static_cast<HDC>((*event.contextH)->reserved_flt);
    const DWORD kind = GetObjectType(context);
    if (kind != OBJ_DC && kind != OBJ_MEMDC) return nullptr;
    return std::make_unique<DeviceContextSurface>(context);
}

void invalidateMainWindow(const PF_InData& in) {
    if (auto* window = static_cast<HWND>(mainWindow(in))) InvalidateRect(window, nullptr, FALSE);
}

}  // namespace orvin
