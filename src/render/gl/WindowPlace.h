// WindowPlace: where the window goes that frames are drawn into.
#pragma once

#include <optional>

namespace orvin {

/// A rectangle of the desktop in pixels, y down; right and bottom lie outside.
struct DesktopRect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    friend bool operator==(const DesktopRect&, const DesktopRect&) = default;
};

/// What a window has around its picture.
struct WindowFrame {
    int borderX = 0;  // of one side
    int borderY = 0;
    int caption = 0;  // height
};

/// The bottom right corner of the work area, frame included; nothing where the picture doesn't fit.
constexpr std::optional<DesktopRect> renderWindowPlace(int width, int height,
                                                       const WindowFrame& frame,
                                                       const DesktopRect& workArea) {
    const long long wide = static_cast<long long>(width) + 2LL * frame.borderX;
    const long long high = static_cast<long long>(height) + 2LL * frame.borderY + frame.caption;
    if (wide > workArea.right - workArea.left || high > workArea.bottom - workArea.top)
        return std::nullopt;
    return DesktopRect{workArea.right - static_cast<int>(wide),
                       workArea.bottom - static_cast<int>(high), workArea.right, workArea.bottom};
}

}  // namespace orvin
