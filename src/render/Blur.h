// Blur: the post-filter of the anti-alias levels, over a finished picture.
#pragma once

#include <functional>
#include <vector>

#include "render/image/ImageBuffer.h"
#include "scene/RenderParams.h"

namespace orvin {

struct BlurSettings {
    bool onlyContrast = false;  // leave pixels alone that look like their neighbours
    double radius = 1.0;        // pixels; held in 0 to 64, NaN counts as 0
    double contrast = 1.0;      // scales the thresholds of onlyContrast
};

/// Those of a frame whose blurOption isn't 0.
BlurSettings blurSettings(const RenderParams& params);

/// The weights along one axis: the filter's weight at (i, j) is kernel[i] * kernel[j]. They sum to
/// 1; tap i lies i - size / 2 pixels from the pixel. Only at radius 1 is the peak on the pixel
/// itself: elsewhere the picture moves by a fraction of a pixel, and has always done so.
std::vector<double> blurKernel(double radius);

/// Filters an RGB or RGBA picture in place; other kinds stay as they are. Taps are held at the
/// picture's edges. Of RGBA pixels those without alpha lend no colour to others. `pollRow` is asked
/// before each row; a non-zero answer stops with -1, as does a paged picture whose file fails.
Result blurImage(ImageBuffer& image, const BlurSettings& settings,
                 const std::function<int(int row)>& pollRow = {});

}  // namespace orvin
