// Shading: the colour of a surface at a point.
#pragma once

#include <span>

#include "render/LightX.h"
#include "render/Rgba.h"
#include "render/ShadeContext.h"
#include "render/TriangleShade.h"

namespace orvin {

/// The colour of `material` at `context` in the light of `lights` (enabled ones, prepared for the
/// frame, in scene order). Each channel is at most 1 and never NaN, and may be negative where the
/// scene has negative colours. Colour is multiplied by alpha where `premultiplied`; highlights and
/// reflections come on top of it, and add to alpha.
Rgba shade(const ShadeMaterial& material, const ShadeContext& context,
           std::span<const LightX* const> lights, bool premultiplied);

}  // namespace orvin
