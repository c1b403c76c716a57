#include "host/EffectPanel.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "render/SoftwareRenderer.h"
#include "scene/SceneX.h"
#include "toolkit/Progress.h"

namespace orvin {

namespace {

std::uint8_t toByte(float fraction) {
    return static_cast<std::uint8_t>(std::clamp(fraction, 0.0F, 1.0F) * 255.0F);
}

// The largest size of the picture's proportions that fits into the panel.
void fitInto(int width, int height, RenderParams& params) {
    const double pictureWidth = params.width * static_cast<double>(params.pixelAspect);
    double aspect = pictureWidth / params.height;
    if (!std::isfinite(aspect) || aspect <= 0.0) aspect = static_cast<double>(width) / height;
    params.width = std::clamp(std::trunc(height * aspect), 1.0, static_cast<double>(width));
    params.height = std::clamp(std::trunc(params.width / aspect), 1.0, static_cast<double>(height));
    params.pixelAspect = 1.0F;
}

}  // namespace

void EffectPanel::moveTo(int left, int top) {
    bounds_ = {left, top, left + width(), top + height()};
}

PanelControl* EffectPanel::controlAt(PanelPoint point) {
    const bool inside = point.x >= 0 && point.x < width() && point.y >= 0 && point.y < height();
    return inside ? this : nullptr;
}

PanelControl* EffectPanel::control(const void* address) {
    return address == this ? this : nullptr;
}

PanelPicture EffectPanel::draw(SceneX* scene, const RenderParams& params,
                               const std::array<float, 3>& background) const {
    PanelPicture picture{width(), height(), {}};
    const std::array<std::uint8_t, 4> back = {toByte(background[2]), toByte(background[1]),
                                              toByte(background[0]), 255};
    const auto pixels =
        static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height);
    picture.bgra.reserve(pixels * 4);
    for (std::size_t i = 0; i < pixels; ++i)
        picture.bgra.insert(picture.bgra.end(), back.begin(), back.end());
    if (scene == nullptr || scene->member(MemberKind::kCamera, kDefaultCamera) == nullptr)
        return picture;

    RenderParams draft = params;
    fitInto(picture.width, picture.height, draft);
    draft.setAntiAliasLevel(1);
    draft.flags &= ~RenderParams::kShadows;
    draft.bestGeometry = 0;
    draft.unpremultiply = 0;
    draft.channels = 4;

    clearProgressStop();
    const auto rendered = renderSoftware(*scene, draft);
    if (!rendered) return picture;

    const int left = (picture.width - rendered->width()) / 2;
    const int top = (picture.height - rendered->height()) / 2;
    std::vector<std::uint8_t> row(rendered->rowBytes());
    for (int y = 0; y < rendered->height(); ++y) {
        // Row 0 of a rendered picture is the bottom one.
        if (rendered->readRow(rendered->height() - 1 - y, row) != kSuccess) break;
        std::uint8_t* out = picture.bgra.data() +
                            (static_cast<std::size_t>(top + y) * static_cast<std::size_t>(width()) +
                             static_cast<std::size_t>(left)) *
                                4;
        for (std::size_t x = 0; x + 3 < row.size(); x += 4, out += 4) {
            const int through = 255 - row[x + 3];
            for (std::size_t c = 0; c < 3; ++c)
                out[c] = static_cast<std::uint8_t>(
                    std::min(255, row[x + 2 - c] + out[c] * through / 255));
        }
    }
    return picture;
}

}  // namespace orvin
