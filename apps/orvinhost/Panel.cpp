#include "orvinhost/Panel.h"

#include "host/abi/BasicSuite.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace orvin::stand_in {
namespace {

constexpr std::uint8_t kGrey = 0x26;

struct Layout {
    int bytes;
    int red;
    int green;
    int blue;
    int alpha;  // -1: none
    bool premultiplied;
};

// In the order of the pixel layout numbers.
constexpr std::array<Layout, 8> kLayouts{{{3, 0, 1, 2, -1, false},
                                          {3, 2, 1, 0, -1, false},
                                          {4, 0, 1, 2, -1, false},
                                          {4, 2, 1, 0, -1, false},
                                          {4, 1, 2, 3, 0, false},
                                          {4, 1, 2, 3, 0, true},
                                          {4, 2, 1, 0, 3, false},
                                          {4, 2, 1, 0, 3, true}}};

}  // namespace

void Panel::open(int width, int height) {
    picture_ = apps::Picture(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            std::uint8_t* p = picture_.pixel(x, y);
            p[0] = p[1] = p[2] = kGrey;
            p[3] = 255;
        }
}

void Panel::beginDraw() {
    drawing_ = true;
    drawn_ = 0;
    clips_.assign(1, {0, 0, picture_.width, picture_.height});
}

void Panel::endDraw() {
    drawing_ = false;
    if (!images_.empty())
        report_(Rule::kDrawLeak, std::to_string(images_.size()) + " image(s) not released");
    if (clips_.size() > 1)
        report_(Rule::kDrawLeak, std::to_string(clips_.size() - 1) + " state(s) not popped");
    images_.clear();
}

bool Panel::mayDraw(const char* what) {
    if (drawing_) return true;
    report_(Rule::kDrawOutside, what);
    return false;
}

SPErr Panel::newImage(int width, int height, int rowBytes, DRAWBOT_PixelLayout layout,
                      const void* data, DRAWBOT_ImageRef* image) {
    if (!mayDraw("NewImageFromBuffer")) return kSPBadParameterError;
    const bool known = layout >= 0 && layout < static_cast<int>(kLayouts.size());
    const Layout& form = kLayouts[static_cast<std::size_t>(known ? layout : 0)];
    if (!known || data == nullptr || image == nullptr || width < 1 || height < 1 || width > 30000 ||
        height > 30000 || rowBytes < width * form.bytes) {
        report_(Rule::kDrawObject, "NewImageFromBuffer with bad arguments");
        return kSPBadParameterError;
    }
    PanelImage made;
    made.picture = apps::Picture(width, height);
    made.premultiplied = form.premultiplied;
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    for (int y = 0; y < height; ++y) {
        const std::uint8_t* from =
            bytes + static_cast<std::size_t>(y) * static_cast<std::size_t>(rowBytes);
        std::uint8_t* to = made.picture.pixel(0, y);
        for (int x = 0; x < width; ++x, from += form.bytes, to += 4) {
            to[0] = from[form.red];
            to[1] = from[form.green];
            to[2] = from[form.blue];
            to[3] = form.alpha < 0 ? std::uint8_t{255} : from[form.alpha];
        }
    }
    nextImage_ += 16;
    *image = reinterpret_cast<DRAWBOT_ImageRef>(nextImage_);
    images_.emplace(static_cast<const void*>(*image), std::move(made));
    return kSPNoError;
}

SPErr Panel::retain(const void* object) {
    const auto found = images_.find(object);
    if (found == images_.end()) {
        report_(Rule::kDrawObject, "RetainObject of no living object");
        return kSPBadParameterError;
    }
    ++found->second.references;
    return kSPNoError;
}

SPErr Panel::release(const void* object) {
    const auto found = images_.find(object);
    if (found == images_.end()) {
        report_(Rule::kDrawObject, "ReleaseObject of no living object");
        return kSPBadParameterError;
    }
    if (--found->second.references == 0) images_.erase(found);
    return kSPNoError;
}

SPErr Panel::pushState() {
    if (!mayDraw("PushStateStack")) return kSPBadParameterError;
    clips_.push_back(clips_.back());
    return kSPNoError;
}

SPErr Panel::popState() {
    if (!mayDraw("PopStateStack")) return kSPBadParameterError;
    if (clips_.size() == 1) {
        report_(Rule::kDrawObject, "PopStateStack of an empty stack");
        return kSPBadParameterError;
    }
    clips_.pop_back();
    return kSPNoError;
}

SPErr Panel::clip(const DRAWBOT_Rect32& rect) {
    if (!mayDraw("Clip")) return kSPBadParameterError;
    Bounds& bounds = clips_.back();
    bounds.left = std::max(bounds.left, rect.left);
    bounds.top = std::max(bounds.top, rect.top);
    bounds.right = std::min(bounds.right, rect.left + rect.width);
    bounds.bottom = std::min(bounds.bottom, rect.top + rect.height);
    return kSPNoError;
}

void Panel::blend(int x, int y, const double (&rgb)[3], double alpha) {
    std::uint8_t* p = picture_.pixel(x, y);
    for (int c = 0; c < 3; ++c)
        p[c] = static_cast<std::uint8_t>(
            std::clamp(std::lround(rgb[c] * alpha + p[c] * (1.0 - alpha)), 0L, 255L));
}

SPErr Panel::paintRect(const DRAWBOT_ColorRGBA& color, const DRAWBOT_RectF32& rect) {
    if (!mayDraw("PaintRect")) return kSPBadParameterError;
    ++drawn_;
    const double rgb[3] = {static_cast<double>(color.red) * 255.0,
                           static_cast<double>(color.green) * 255.0,
                           static_cast<double>(color.blue) * 255.0};
    const Bounds& bounds = clips_.back();
    for (int y = bounds.top; y < bounds.bottom; ++y)
        for (int x = bounds.left; x < bounds.right; ++x) {
            // Pixel centres lie at half coordinates.
            const double cx = x + 0.5 - static_cast<double>(rect.left);
            const double cy = y + 0.5 - static_cast<double>(rect.top);
            if (cx >= 0 && cy >= 0 && cx < static_cast<double>(rect.width) &&
                cy < static_cast<double>(rect.height))
                blend(x, y, rgb, static_cast<double>(color.alpha));
        }
    return kSPNoError;
}

SPErr Panel::drawImage(const void* image, DRAWBOT_PointF32 origin, float alpha) {
    if (!mayDraw("DrawImage")) return kSPBadParameterError;
    const auto found = images_.find(image);
    if (found == images_.end()) {
        report_(Rule::kDrawObject, "DrawImage of no living image");
        return kSPBadParameterError;
    }
    ++drawn_;
    const PanelImage& source = found->second;
    const Bounds& bounds = clips_.back();
    const int left = static_cast<int>(std::lround(origin.x));
    const int top = static_cast<int>(std::lround(origin.y));
    for (int y = std::max(0, bounds.top - top);
         y < std::min(source.picture.height, bounds.bottom - top); ++y)
        for (int x = std::max(0, bounds.left - left);
             x < std::min(source.picture.width, bounds.right - left); ++x) {
            const std::uint8_t* p = source.picture.pixel(x, y);
            const double weight = p[3] / 255.0;
            double rgb[3] = {double(p[0]), double(p[1]), double(p[2])};
            if (source.premultiplied && p[3] > 0)
                for (double& channel : rgb)
                    channel /= weight;
            blend(left + x, top + y, rgb, weight * static_cast<double>(alpha));
        }
    return kSPNoError;
}

}  // namespace orvin::stand_in
