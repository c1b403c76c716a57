// The three roads of Windows, on the one scene.
#include <windows.h>

#include <gtest/gtest.h>

#include "render/gl/OrvinGLRender.h"
#include "tests/render/TestScene.h"

namespace orvin {
namespace {

struct WglScene : TestScene {
    WglScene() {
        params.width = 64;
        params.height = 48;
        light(LightType::kAmbient);
        material("m", {1.0F, 0.6F, 0.2F, 1.0F});
        object(TestScene::rectangle(-2.2, -2.2, 2.2, 2.2), "m");
    }
    void expectSquare() {
        ImageBuffer buffer;
        ASSERT_EQ(gl.renderFrame(scene, params, options, buffer), kSuccess) << gl.failure();
        const Picture p(buffer);
        const int x = p.width / 2;
        const int y = p.height / 2;
        EXPECT_EQ(p.at(x, y), (std::array<int, 4>{255, 153, 51, 255}));
        EXPECT_EQ(p.at(0, 0), (std::array<int, 4>{0, 0, 0, 0}));
        EXPECT_EQ(p.at(1, p.height - 1)[3], 0);
        // Nothing is left current, neither context nor device.
        EXPECT_EQ(wglGetCurrentContext(), nullptr);
        EXPECT_EQ(wglGetCurrentDC(), nullptr);
    }

    OrvinGLRender gl;
    GlFrameOptions options;
};

// Windows of this process alone: other tests run beside this one on the same desktop.
HWND ownWindow(const char* className, const char* title) {
    for (HWND window = nullptr;
         (window = FindWindowExA(nullptr, window, className, title)) != nullptr;) {
        DWORD process = 0;
        GetWindowThreadProcessId(window, &process);
        if (process == GetCurrentProcessId()) return window;
    }
    return nullptr;
}

HWND renderWindow() {
    return ownWindow(nullptr, "3D Orvinex OpenGL Render Buffer - Please Wait");
}

TEST(WglTarget, PbuffersComeFirstAndKeepTheirContext) {
    WglScene s;
    s.expectSquare();
    EXPECT_EQ(s.gl.targetKind(), GlTargetKind::kPbuffer);
    EXPECT_EQ(renderWindow(), nullptr);
    EXPECT_EQ(ownWindow("Orvin Invisible", nullptr), nullptr);  // the query's window is gone
    s.params.width = 300;
    s.params.height = 200;
    s.expectSquare();
    s.params.width = 33;
    s.expectSquare();
    EXPECT_EQ(s.gl.meshesCompiled(), 1U);
}

TEST(WglTarget, AWindowStandsInTheCornerFromFrameToFrame) {
    WglScene s;
    s.options.targets.pbuffer = false;
    s.expectSquare();
    EXPECT_EQ(s.gl.targetKind(), GlTargetKind::kWindow);
    HWND const window = renderWindow();
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(IsWindowVisible(window));
    RECT work{};
    RECT place{};
    SystemParametersInfoA(SPI_GETWORKAREA, 0, &work, 0);
    s.params.width = 200;
    s.expectSquare();
    EXPECT_EQ(renderWindow(), window);
    GetWindowRect(window, &place);
    EXPECT_EQ(place.right, work.right);
    EXPECT_EQ(place.bottom, work.bottom);
    EXPECT_EQ(s.gl.meshesCompiled(), 1U);
    s.gl.reset();
    EXPECT_EQ(renderWindow(), nullptr);
}

TEST(WglTarget, WhatTheScreenCantHoldGoesIntoABitmap) {
    WglScene s;
    s.options.targets.pbuffer = false;
    s.params.width = GetSystemMetrics(SM_CXSCREEN) + 1;
    s.expectSquare();
    EXPECT_EQ(s.gl.targetKind(), GlTargetKind::kBitmap);
    s.params.width = 64;  // and back into a window
    s.options.targets.bitmap = false;
    s.gl.reset();
    s.expectSquare();
    EXPECT_EQ(s.gl.targetKind(), GlTargetKind::kWindow);
}

}  // namespace
}  // namespace orvin
