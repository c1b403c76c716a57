// RenderState: the render settings of a project.
#pragma once

#include <array>
#include <cstdint>

#include "scene/RenderParams.h"

namespace orvin {

struct OrvinPreferences;

struct RenderState {
    static constexpr std::uint8_t kKeepAlpha = 4;  // value of params.channels

    /// What the viewers draw with, beside the params.
    struct ViewerBlock {
        std::array<float, 3> background{};  // red, green, blue
        float pixelAspect = 1.0F;
        int shadowQuality = 512;
        bool groundPlaneOn = true;
        int groundPlaneLevel = 0;
    };

    /// Method 1, alpha kept, resolution and dpi 0, black background.
    RenderState();

    /// The settings of a new project: 640 by 480, anti-alias level 7, alpha not kept, shadows on;
    /// shadow quality and ground plane as preferred.
    void setNewProjectDefaults(const OrvinPreferences& preferences);

    /// The level and what it means for `params`.
    void setAntiAliasLevel(int level);

    void setShadowQuality(int texels);
    void setGroundPlane(bool on, int level);

    /// Of both the params and the viewers: pixel width over height.
    void setPixelAspect(float aspect);

    bool keepsAlpha() const { return params.channels == kKeepAlpha; }
    void setKeepsAlpha(bool on) { params.channels = on ? kKeepAlpha : std::uint8_t{3}; }

    bool rendersShadows() const { return (params.flags & RenderParams::kShadows) != 0; }
    void setRendersShadows(bool on);

    std::int32_t renderMethod = 1;  // see render/RendererChoice.h
    RenderParams params;
    int resolution = 0;
    int antiAliasLevel = 6;  // 1 to 17, see RenderParams::setAntiAliasLevel
    ViewerBlock viewer;
};

}  // namespace orvin
