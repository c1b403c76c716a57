#include "render/gl/win32/WglTargets.h"

#include <utility>

#include "render/gl/WindowPlace.h"
#include "render/gl/win32/GlHeaders.h"
#include "render/gl/win32/WglWindow.h"
#include "toolkit/win32/twOffscreenDevice.h"

namespace orvin::wgl {

namespace {

// ---- a window that the artist sees

constexpr const char* kWindowTitle = "3D Orvinex OpenGL Render Buffer - Please Wait";
constexpr DWORD kWindowStyle = WS_POPUP | WS_CAPTION | WS_DLGFRAME;

std::optional<RECT> windowPlace(int width, int height) {
    RECT work{};
    if (SystemParametersInfoA(SPI_GETWORKAREA, 0, &work, 0) == FALSE) return std::nullopt;
    const WindowFrame frame{GetSystemMetrics(SM_CXDLGFRAME), GetSystemMetrics(SM_CYDLGFRAME),
                            GetSystemMetrics(SM_CYCAPTION)};
    const auto place =
        renderWindowPlace(width, height, frame, {work.left, work.top, work.right, work.bottom});
    if (!place) return std::nullopt;
    return RECT{place->left, place->top, place->right, place->bottom};
}

class WindowTarget final : public GlTarget {
  public:
    explicit WindowTarget(const RECT& place)
        : window_("Orvin Render", kWindowTitle, kWindowStyle, place) {}
    ~WindowTarget() override {
        releaseCurrent();
        if (context_ != nullptr) wglDeleteContext(context_);
    }

    GlTargetKind kind() const override { return GlTargetKind::kWindow; }

    bool open(int width, int height) {
        if (!window_.isValid() || !setPixelFormat(window_.context(), PFD_DRAW_TO_WINDOW))
            return false;
        ShowWindow(window_.window(), SW_SHOWNOACTIVATE);
        UpdateWindow(window_.window());
        context_ = wglCreateContext(window_.context());
        if (context_ == nullptr || !makeCurrent(width, height)) return false;
        release();
        return true;
    }

    bool makeCurrent(int width, int height) override {
        // Another thread's window answers only while that thread listens.
        if (!window_.isOfThisThread() || !resize(width, height) ||
            wglMakeCurrent(window_.context(), context_) == FALSE) {
            release();
            return false;
        }
        if (!std::exchange(isCleared_, true)) clear();
        return true;
    }
    void release() override { releaseCurrent(); }

  private:
    // What the artist sees until there is a picture. Drivers fit their buffers to a window's new
    // size when these are exchanged.
    void clear() {
        glClearColor(0.2F, 0.6F, 0.2F, 1.0F);
        glClear(GL_COLOR_BUFFER_BIT);
        SwapBuffers(window_.context());
    }

    bool resize(int width, int height) {
        if (pictureIs(width, height)) return true;
        isCleared_ = false;
        const auto place = windowPlace(width, height);
        if (!place) return false;
        SetWindowPos(window_.window(), nullptr, place->left, place->top, place->right - place->left,
                     place->bottom - place->top, SWP_NOACTIVATE | SWP_NOZORDER);
        if (pictureIs(width, height)) return true;
        // The frame isn't as thick as the metrics say.
        RECT client{};
        GetClientRect(window_.window(), &client);
        const int wide = place->right - place->left + width - client.right;
        const int high = place->bottom - place->top + height - client.bottom;
        SetWindowPos(window_.window(), nullptr, place->right - wide, place->bottom - high, wide,
                     high, SWP_NOACTIVATE | SWP_NOZORDER);
        return pictureIs(width, height);
    }
    bool pictureIs(int width, int height) const {
        RECT client{};
        return GetClientRect(window_.window(), &client) != FALSE && client.right == width &&
               client.bottom == height;
    }

    Window window_;
    HGLRC context_ = nullptr;
    bool isCleared_ = false;
};

// ---- a bitmap in memory

class BitmapTarget final : public GlTarget {
  public:
    ~BitmapTarget() override { close(); }

    GlTargetKind kind() const override { return GlTargetKind::kBitmap; }

    bool open(int width, int height) {
        auto device = std::make_unique<twOffscreenDevice>(width, height, true);
        if (!device->isValid() || !setPixelFormat(device->context(), PFD_DRAW_TO_BITMAP))
            return false;
        HGLRC const context = wglCreateContext(device->context());
        if (context == nullptr) return false;
        device_ = std::move(device);
        context_ = context;
        width_ = width;
        height_ = height;
        return true;
    }

    // A context that draws into a bitmap draws into no other.
    bool makeCurrent(int width, int height) override {
        if (width == width_ && height == height_ &&
            wglMakeCurrent(device_->context(), context_) != FALSE)
            return true;
        release();
        return false;
    }
    void release() override { releaseCurrent(); }

  private:
    void close() {
        releaseCurrent();
        if (context_ != nullptr) wglDeleteContext(std::exchange(context_, nullptr));
    }

    std::unique_ptr<twOffscreenDevice> device_;
    HGLRC context_ = nullptr;
    int width_ = 0;
    int height_ = 0;
};

}  // namespace

std::unique_ptr<GlTarget> openWindow(int width, int height) {
    const auto place = windowPlace(width, height);
    if (!place) return nullptr;
    auto target = std::make_unique<WindowTarget>(*place);
    if (!target->open(width, height)) return nullptr;
    return target;
}

std::unique_ptr<GlTarget> openBitmap(int width, int height) {
    auto target = std::make_unique<BitmapTarget>();
    if (!target->open(width, height)) return nullptr;
    return target;
}

}  // namespace orvin::wgl

namespace orvin {

std::unique_ptr<GlTarget> openGlTarget(int width, int height, const GlTargetChoice& choice,
                                       std::string& whyNot) {
    std::unique_ptr<GlTarget> target;
    if (choice.pbuffer) target = wgl::openPbuffer(width, height);
    if (!target && choice.window) target = wgl::openWindow(width, height);
    if (!target && choice.bitmap) target = wgl::openBitmap(width, height);
    if (!target) whyNot = "neither a pbuffer nor a window nor a bitmap can be drawn into";
    return target;
}

}  // namespace orvin
