#include <utility>

#include "host/HostSuite.h"
#include "host/PanelSurface.h"
#include "host/abi/Drawbot.h"

namespace orvin {

namespace {

class DrawbotSurface final : public PanelSurface {
  public:
    DrawbotSurface(const PF_InData& in, PF_ContextH context)
        : window_(mainWindow(in)),
          customUi_(in.pica_basicP, kPFEffectCustomUISuite, 1),
          draw_(in.pica_basicP, kDRAWBOT_DrawSuite, 1),
          supplierSuite_(in.pica_basicP, kDRAWBOT_SupplierSuite, 1),
          surfaceSuite_(in.pica_basicP, kDRAWBOT_SurfaceSuite, 1) {
        if (!customUi_ || !draw_ || !supplierSuite_ || !surfaceSuite_) return;
        DRAWBOT_DrawRef reference = nullptr;
        if (customUi_->PF_GetDrawingReference(context, &reference) != 0 || reference == nullptr)
            return;
        if (draw_->GetSupplier(reference, &supplier_) != 0 ||
            draw_->GetSurface(reference, &surface_) != 0)
            surface_ = nullptr;
    }

    bool usable() const { return supplier_ != nullptr && surface_ != nullptr; }

    void* window() const override { return window_; }

    bool paint(const PanelPicture& picture, int left, int top) override {
        std::vector<std::uint8_t> argb;
        const std::uint8_t* pixels = picture.bgra.data();
        DRAWBOT_PixelLayout layout = kDRAWBOT_PixelLayout_32BGRA_Premul;
        if (!says(supplierSuite_->SupportsPixelLayoutBGRA)) {
            if (!says(supplierSuite_->SupportsPixelLayoutARGB)) return false;
            argb = picture.bgra;
            for (std::size_t i = 0; i + 3 < argb.size(); i += 4) {
                std::swap(argb[i], argb[i + 3]);
                std::swap(argb[i + 1], argb[i + 2]);
            }
            pixels = argb.data();
            layout = kDRAWBOT_PixelLayout_32ARGB_Premul;
        }
        DRAWBOT_ImageRef image = nullptr;
        if (supplierSuite_->NewImageFromBuffer(supplier_, picture.width, picture.height,
                                               picture.width * 4, layout, pixels, &image) != 0 ||
            image == nullptr)
            return false;
        const DRAWBOT_PointF32 origin{static_cast<float>(left), static_cast<float>(top)};
        const SPErr drawn = surfaceSuite_->DrawImage(surface_, image, &origin, 1.0F);
        supplierSuite_->ReleaseObject(reinterpret_cast<DRAWBOT_ObjectRef>(image));
        return drawn == 0;
    }

  private:
    bool says(SPErr (*question)(DRAWBOT_SupplierRef, DRAWBOT_Boolean*)) const {
        DRAWBOT_Boolean answer = 0;
        return question(supplier_, &answer) == 0 && answer != 0;
    }

    void* window_;
    HostSuite<PF_EffectCustomUISuite1> customUi_;
    HostSuite<DRAWBOT_DrawbotSuite1> draw_;
    HostSuite<DRAWBOT_SupplierSuite1> supplierSuite_;
    HostSuite<DRAWBOT_SurfaceSuite1> surfaceSuite_;
    DRAWBOT_SupplierRef supplier_ = nullptr;
    DRAWBOT_SurfaceRef surface_ = nullptr;
};

}  // namespace

std::unique_ptr<PanelSurface> openDrawbotSurface(const PF_InData& in, const PF_EventExtra& event) {
    auto surface = std::make_unique<DrawbotSurface>(in, event.contextH);
    if (!surface->usable()) return nullptr;
    return surface;
}

std::unique_ptr<PanelSurface> openPanelSurface(const PF_InData& in, const PF_EventExtra& event) {
    if (auto surface = openDeviceContextSurface(in, event)) return surface;
    return openDrawbotSurface(in, event);
}

void* mainWindow(const PF_InData& in) {
    void* window = nullptr;
    if (in.utils == nullptr || in.utils->get_platform_data == nullptr) return nullptr;
    if (in.utils->get_platform_data(in.effect_ref, PF_PlatData_MAIN_WND, &window) != PF_Err_NONE)
        return nullptr;
    return window;
}

bool invalidatePanel(const PF_InData& in, PF_ContextH context) {
    if (context == nullptr) return false;
    // Version 1 is never asked: it has been two quite different tables.
    if (const HostSuite<PF_AppSuite7> app(in.pica_basicP, kPFAppSuite, 7); app)
        return app->PF_InvalidateRect(context, nullptr) == PF_Err_NONE;
    if (const HostSuite<PF_AppSuite6> app(in.pica_basicP, kPFAppSuite, 6); app)
        return app->PF_InvalidateRect(context, nullptr) == PF_Err_NONE;
    return false;
}

}  // namespace orvin
