#include "render/gl/win32/WglProbe.h"
#include "render/gl/win32/WglTargets.h"

namespace orvin::wgl {

namespace {

class Pbuffer {
  public:
    Pbuffer(const Pbuffers& functions, HDC device, int format, int width, int height)
        : functions_(functions), width_(width), height_(height) {
        const int none = 0;
        pbuffer_ = functions.create(device, format, width, height, &none);
        if (pbuffer_ != nullptr) context_ = functions.getContext(pbuffer_);
    }
    ~Pbuffer() {
        if (context_ != nullptr) functions_.releaseContext(pbuffer_, context_);
        if (pbuffer_ != nullptr) functions_.destroy(pbuffer_);
    }
    Pbuffer(const Pbuffer&) = delete;
    Pbuffer& operator=(const Pbuffer&) = delete;

    HDC context() const { return context_; }
    bool has(int width, int height) const { return width == width_ && height == height_; }

    /// It is there, as large as it was asked for, and its memory wasn't taken for another use.
    bool isWhole() const {
        return context_ != nullptr && answer(WGL_PBUFFER_WIDTH_ARB) == width_ &&
               answer(WGL_PBUFFER_HEIGHT_ARB) == height_ && answer(WGL_PBUFFER_LOST_ARB) == 0;
    }

  private:
    int answer(int question) const {
        int value = -1;
        return functions_.query(pbuffer_, question, &value) != FALSE ? value : -1;
    }

    const Pbuffers& functions_;
    HPBUFFERARB pbuffer_ = nullptr;
    HDC context_ = nullptr;
    int width_;
    int height_;
};

class PbufferTarget final : public GlTarget {
  public:
    explicit PbufferTarget(const Pbuffers& functions) : functions_(functions) {}
    ~PbufferTarget() override {
        releaseCurrent();
        if (context_ != nullptr) wglDeleteContext(context_);
    }

    GlTargetKind kind() const override { return GlTargetKind::kPbuffer; }

    bool resize(int width, int height) {
        if (pbuffer_ && pbuffer_->has(width, height)) return pbuffer_->isWhole();
        const QueryWindow window;
        if (!window.isCurrent()) return false;
        if (format_ == 0) format_ = functions_.format(window.device());
        if (format_ == 0) return false;
        auto made = std::make_unique<Pbuffer>(functions_, window.device(), format_, width, height);
        if (!made->isWhole()) return false;
        // A context may go from one drawable to another of its format.
        if (context_ == nullptr) context_ = wglCreateContext(made->context());
        if (context_ == nullptr) return false;
        pbuffer_ = std::move(made);
        return true;
    }

    bool makeCurrent(int width, int height) override {
        if (resize(width, height) && wglMakeCurrent(pbuffer_->context(), context_) != FALSE)
            return true;
        release();
        return false;
    }
    void release() override { releaseCurrent(); }

  private:
    const Pbuffers& functions_;
    int format_ = 0;
    std::unique_ptr<Pbuffer> pbuffer_;
    HGLRC context_ = nullptr;
};

}  // namespace

std::unique_ptr<GlTarget> openPbuffer(int width, int height) {
    const Pbuffers* functions = pbuffers();
    if (functions == nullptr) return nullptr;
    auto target = std::make_unique<PbufferTarget>(*functions);
    if (!target->resize(width, height)) return nullptr;
    return target;
}

}  // namespace orvin::wgl
