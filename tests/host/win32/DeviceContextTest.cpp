// The panel on hosts that lend a device context.
#include <windows.h>

#include <gtest/gtest.h>

#include "host/PanelSurface.h"
#include "tests/host/FakeHost.h"

namespace orvin {
namespace {

TEST(DeviceContextPanel, PaintsIntoTheHostsContext) {
    HDC context = CreateCompatibleDC(nullptr);
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = 8;
    info.bmiHeader.biHeight = -8;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    HBITMAP bitmap = CreateDIBSection(context, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    ASSERT_NE(bitmap, nullptr);
    SelectObject(context, bitmap);

    FakeHost host;
    PF_Context hostContext{};
    hostContext.reserved_flt = context;
    PF_Context* pointer = &hostContext;
    PF_EventExtra event{};
    event.contextH = &pointer;

    host.version = {13, 0};
    EXPECT_EQ(openDeviceContextSurface(host.inData(), event), nullptr);
    host.version = {12, 14};
    const auto surface = openPanelSurface(host.inData(), event);
    ASSERT_NE(surface, nullptr);

    PanelPicture picture{2, 2, {1, 2, 3, 255, 4, 5, 6, 255, 7, 8, 9, 255, 10, 11, 12, 255}};
    EXPECT_TRUE(surface->paint(picture, 3, 4));
    GdiFlush();
    EXPECT_EQ(GetPixel(context, 3, 4), RGB(3, 2, 1));
    EXPECT_EQ(GetPixel(context, 4, 5), RGB(12, 11, 10));
    EXPECT_EQ(GetPixel(context, 2, 4), RGB(0, 0, 0));

    hostContext.reserved_flt = &host;  // whatever it is, it is no device context
    EXPECT_EQ(openDeviceContextSurface(host.inData(), event), nullptr);
    DeleteObject(bitmap);
    DeleteDC(context);
}

}  // namespace
}  // namespace orvin
