// Off-screen drawing through EGL, found at run time: a machine without it has no OpenGL frames and
// needs no library for them.
#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <dlfcn.h>

#include <array>
#include <string>
#include <type_traits>

#include "render/gl/GlTarget.h"

namespace orvin {

namespace {

// The functions of EGL, under their own names.
struct Egl {
    decltype(&eglGetProcAddress) getProcAddress = nullptr;
    decltype(&eglGetDisplay) getDisplay = nullptr;
    decltype(&eglInitialize) initialize = nullptr;
    decltype(&eglBindAPI) bindApi = nullptr;
    decltype(&eglChooseConfig) chooseConfig = nullptr;
    decltype(&eglCreateContext) createContext = nullptr;
    decltype(&eglDestroyContext) destroyContext = nullptr;
    decltype(&eglCreatePbufferSurface) createPbufferSurface = nullptr;
    decltype(&eglDestroySurface) destroySurface = nullptr;
    decltype(&eglQuerySurface) querySurface = nullptr;
    decltype(&eglMakeCurrent) makeCurrent = nullptr;
    PFNEGLGETPLATFORMDISPLAYEXTPROC getPlatformDisplay = nullptr;  // may stay null

    bool load(std::string& whyNot);
};

bool Egl::load(std::string& whyNot) {
    // Never closed: drivers keep threads and thread-local data that outlive their displays.
    void* library = dlopen("libEGL.so.1", RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        whyNot = "there is no libEGL.so.1";
        return false;
    }
    bool all = true;
    const auto find = [library, &all](auto& function, const char* name) {
        function =
            reinterpret_cast<std::remove_reference_t<decltype(function)>>(dlsym(library, name));
        all = all && function != nullptr;
    };
    find(getProcAddress, "eglGetProcAddress");
    find(getDisplay, "eglGetDisplay");
    find(initialize, "eglInitialize");
    find(bindApi, "eglBindAPI");
    find(chooseConfig, "eglChooseConfig");
    find(createContext, "eglCreateContext");
    find(destroyContext, "eglDestroyContext");
    find(createPbufferSurface, "eglCreatePbufferSurface");
    find(destroySurface, "eglDestroySurface");
    find(querySurface, "eglQuerySurface");
    find(makeCurrent, "eglMakeCurrent");
    if (!all) {
        whyNot = "libEGL.so.1 is too old";
        return false;
    }
    getPlatformDisplay = reinterpret_cast<PFNEGLGETPLATFORMDISPLAYEXTPROC>(
        getProcAddress("eglGetPlatformDisplayEXT"));
    return true;
}

class EglTarget final : public GlTarget {
  public:
    ~EglTarget() override;

    bool open(int width, int height, std::string& whyNot);

    GlTargetKind kind() const override { return GlTargetKind::kPbuffer; }
    bool makeCurrent(int width, int height) override;
    void release() override;

  private:
    bool openDisplay();
    bool openContext();
    bool resize(int width, int height);

    Egl egl_;
    EGLDisplay display_ = EGL_NO_DISPLAY;  // the process's: initialised often, never terminated
    EGLConfig config_ = nullptr;
    EGLContext context_ = EGL_NO_CONTEXT;
    EGLSurface surface_ = EGL_NO_SURFACE;
    int width_ = 0;
    int height_ = 0;
};

bool EglTarget::openDisplay() {
    // Without a display first: it works on machines that have one, too.
    if (egl_.getPlatformDisplay != nullptr) {
        display_ =
            egl_.getPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
        if (display_ != EGL_NO_DISPLAY && egl_.initialize(display_, nullptr, nullptr) == EGL_TRUE)
            return true;
    }
    display_ = egl_.getDisplay(EGL_DEFAULT_DISPLAY);
    return display_ != EGL_NO_DISPLAY && egl_.initialize(display_, nullptr, nullptr) == EGL_TRUE;
}

bool EglTarget::openContext() {
    if (egl_.bindApi(EGL_OPENGL_API) != EGL_TRUE) return false;
    for (const EGLint depth : {32, 24, 16}) {
        const std::array<EGLint, 15> wishes{EGL_SURFACE_TYPE,
                                            EGL_PBUFFER_BIT,
                                            EGL_RENDERABLE_TYPE,
                                            EGL_OPENGL_BIT,
                                            EGL_RED_SIZE,
                                            8,
                                            EGL_GREEN_SIZE,
                                            8,
                                            EGL_BLUE_SIZE,
                                            8,
                                            EGL_ALPHA_SIZE,
                                            8,
                                            EGL_DEPTH_SIZE,
                                            depth,
                                            EGL_NONE};
        EGLint count = 0;
        if (egl_.chooseConfig(display_, wishes.data(), &config_, 1, &count) != EGL_TRUE ||
            count == 0)
            continue;
        context_ = egl_.createContext(display_, config_, EGL_NO_CONTEXT, nullptr);
        if (context_ != EGL_NO_CONTEXT) return true;
    }
    return false;
}

bool EglTarget::open(int width, int height, std::string& whyNot) {
    if (!egl_.load(whyNot)) return false;
    if (!openDisplay()) {
        whyNot = "EGL has no display to draw for";
        return false;
    }
    if (!openContext()) {
        whyNot = "EGL gives no OpenGL context";
        return false;
    }
    if (!resize(width, height)) {
        whyNot = "EGL has no room for a picture of that size";
        return false;
    }
    return true;
}

EglTarget::~EglTarget() {
    release();
    if (surface_ != EGL_NO_SURFACE) egl_.destroySurface(display_, surface_);
    if (context_ != EGL_NO_CONTEXT) egl_.destroyContext(display_, context_);
}

bool EglTarget::resize(int width, int height) {
    if (surface_ != EGL_NO_SURFACE && width == width_ && height == height_) return true;
    const std::array<EGLint, 5> size{EGL_WIDTH, width, EGL_HEIGHT, height, EGL_NONE};
    const EGLSurface surface = egl_.createPbufferSurface(display_, config_, size.data());
    if (surface == EGL_NO_SURFACE) return false;
    EGLint madeWidth = 0;
    EGLint madeHeight = 0;
    egl_.querySurface(display_, surface, EGL_WIDTH, &madeWidth);
    egl_.querySurface(display_, surface, EGL_HEIGHT, &madeHeight);
    if (madeWidth != width || madeHeight != height) {
        egl_.destroySurface(display_, surface);
        return false;
    }
    if (surface_ != EGL_NO_SURFACE) egl_.destroySurface(display_, surface_);
    surface_ = surface;
    width_ = width;
    height_ = height;
    return true;
}

bool EglTarget::makeCurrent(int width, int height) {
    // Which API a thread speaks is the thread's own.
    if (egl_.bindApi(EGL_OPENGL_API) == EGL_TRUE && resize(width, height) &&
        egl_.makeCurrent(display_, surface_, surface_, context_) == EGL_TRUE)
        return true;
    release();
    return false;
}

void EglTarget::release() {
    if (display_ != EGL_NO_DISPLAY)
        egl_.makeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
}

}  // namespace

std::unique_ptr<GlTarget> openGlTarget(int width, int height, const GlTargetChoice& choice,
                                       std::string& whyNot) {
    if (!choice.pbuffer && !choice.window && !choice.bitmap) {
        whyNot = "nothing may be drawn into";
        return nullptr;
    }
    auto target = std::make_unique<EglTarget>();
    if (!target->open(width, height, whyNot)) return nullptr;
    return target;
}

}  // namespace orvin
