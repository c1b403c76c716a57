// EffectPanel: the small picture of the scene in the host's effect panel.
//
// Points are pixels of the panel, from its upper left corner.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "host/abi/Events.h"

namespace orvin {

class SceneX;
struct RenderParams;

/// Opaque pixels, top row first, without gaps between rows: blue, green, red, 255.
struct PanelPicture {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> bgra;
};

struct PanelPoint {
    int x = 0;
    int y = 0;
};

/// Something in the panel that the mouse works on.
class PanelControl {
  public:
    virtual ~PanelControl() = default;
    virtual void mouseDown(PanelPoint, PF_Modifiers, bool /*doubleClick*/) {}
    virtual void mouseMove(PanelPoint, PF_Modifiers) {}
    virtual void mouseUp(PanelPoint, PF_Modifiers) {}
};

class EffectPanel : public PanelControl {
  public:
    static constexpr int kWidth = 319;
    static constexpr int kHeight = 260;

    /// `window` is the native window that holds the panel, null where there is none.
    EffectPanel(void* window, const PF_Rect& bounds) : window_(window), bounds_(bounds) {}

    void* window() const { return window_; }
    const PF_Rect& bounds() const { return bounds_; }
    int width() const { return bounds_.right - bounds_.left; }
    int height() const { return bounds_.bottom - bounds_.top; }
    /// Puts the upper left corner at a place of the host's pane.
    void moveTo(int left, int top);

    bool shown() const { return shown_; }
    void show() { shown_ = true; }

    /// The control under a point, null outside the panel.
    virtual PanelControl* controlAt(PanelPoint point);
    /// The control that `address` names; null for one that isn't (or is no longer) the panel's.
    virtual PanelControl* control(const void* address);

    /// The scene as its camera sees it, quickly: draft geometry, no shadows, one sample a pixel.
    /// The picture keeps the proportions of `params`; the background fills the rest. No scene
    /// (null), or none with a camera, is all background. Throws what the renderer throws.
    PanelPicture draw(SceneX* scene, const RenderParams& params,
                      const std::array<float, 3>& background) const;

    // What the mouse changed in the scene since the last gesture ended.
    void markChanged() { changed_ = true; }
    bool changed() const { return changed_; }
    void clearChanged() { changed_ = false; }

  private:
    void* window_;
    PF_Rect bounds_;
    bool shown_ = false;
    bool changed_ = false;
};

}  // namespace orvin
