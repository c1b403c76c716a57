// The effect panel of the host: a picture that DRAW events are drawn into by way of the drawing
// suites.
#pragma once

#include "common/Png.h"
#include "host/abi/Drawbot.h"
#include "orvinhost/Rules.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace orvin::stand_in {

/// What a drawing image of the effect's was made of.
struct PanelImage {
    apps::Picture picture;
    bool premultiplied = false;
    int references = 1;
};

class Panel {
  public:
    using Report = std::function<void(Rule, const std::string&)>;
    explicit Panel(Report report) : report_(std::move(report)) {}

    /// Makes the pane, in the host's grey.
    void open(int width, int height);
    bool isOpen() const { return picture_.width > 0; }
    const apps::Picture& picture() const { return picture_; }

    void beginDraw();
    /// Objects that are left, states that weren't popped.
    void endDraw();
    bool drawing() const { return drawing_; }

    // The drawing functions. Each reports what is wrong and answers bad parameter then.
    SPErr newImage(int width, int height, int rowBytes, DRAWBOT_PixelLayout layout,
                   const void* data, DRAWBOT_ImageRef* image);
    SPErr retain(const void* object);
    SPErr release(const void* object);
    SPErr pushState();
    SPErr popState();
    SPErr clip(const DRAWBOT_Rect32& rect);
    SPErr paintRect(const DRAWBOT_ColorRGBA& color, const DRAWBOT_RectF32& rect);
    SPErr drawImage(const void* image, DRAWBOT_PointF32 origin, float alpha);
    /// How many images and rectangles reached the pane in the last draw.
    int drawn() const { return drawn_; }

  private:
    struct Bounds {
        int left = 0;
        int top = 0;
        int right = 0;
        int bottom = 0;
    };
    bool mayDraw(const char* what);
    void blend(int x, int y, const double (&rgb)[3], double alpha);

    Report report_;
    apps::Picture picture_;
    std::vector<Bounds> clips_;  // the last one counts
    std::map<const void*, PanelImage> images_;
    std::uintptr_t nextImage_ = 0x1000;
    bool drawing_ = false;
    int drawn_ = 0;
};

}  // namespace orvin::stand_in
