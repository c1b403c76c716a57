// BallScene: the small pictures of materials and lights that stand in the bins: a ball with the
// material, or in the light, drawn by the software renderer.
#pragma once

#include <array>
#include <memory>

#include "toolkit/twPicture.h"

namespace orvin {

class LightX;
class MaterialX;

/// What shows around the ball: red, green, blue, 0..1.
using BallBackground = std::array<float, 3>;

/// A ball in the lights of a new scene; the maps of the material are on it. 24-bit picture. Null
/// where the progress callback stopped it. Throws what renderSoftware() throws.
std::unique_ptr<twPicture> renderMaterialBall(const MaterialX& material, int width, int height,
                                              const BallBackground& background = {});

/// A ball of the default material in that light alone, which stands where it stands in its scene;
/// one that is off is shown as if it were on. Otherwise as above.
std::unique_ptr<twPicture> renderLightBall(const LightX& light, int width, int height,
                                           const BallBackground& background = {});

}  // namespace orvin
