#include "scene/RenderState.h"

#include "scene/OrvinPreferences.h"

namespace orvin {

RenderState::RenderState() {
    params.dpi = 0.0;
    params.channels = kKeepAlpha;
}

void RenderState::setNewProjectDefaults(const OrvinPreferences& preferences) {
    params.width = 640.0;
    params.height = 480.0;
    setAntiAliasLevel(7);
    renderMethod = 1;
    setKeepsAlpha(false);
    setRendersShadows(true);
    setShadowQuality(preferences.shadowQuality);
    setGroundPlane(preferences.groundPlaneOn, preferences.groundPlaneLevel);
}

void RenderState::setAntiAliasLevel(int level) {
    antiAliasLevel = level;
    params.setAntiAliasLevel(level);
}

void RenderState::setShadowQuality(int texels) {
    params.shadowQuality = texels;
    viewer.shadowQuality = texels;
}

void RenderState::setGroundPlane(bool on, int level) {
    viewer.groundPlaneOn = on;
    viewer.groundPlaneLevel = level;
}

void RenderState::setPixelAspect(float aspect) {
    params.pixelAspect = aspect;
    viewer.pixelAspect = aspect;
}

void RenderState::setRendersShadows(bool on) {
    params.flags =
        on ? params.flags | RenderParams::kShadows : params.flags & ~RenderParams::kShadows;
}

}  // namespace orvin
