// ShadeContext: the point that the shader looks at.
#pragma once

#include <array>
#include <cstddef>

#include "render/ImageMap.h"
#include "toolkit/math/Vec.h"

namespace orvin {

struct ShadeContext {
    static constexpr std::size_t kCorners = 4;

    // All in world space.
    Vec3 eye;
    Vec3 position;
    Vec3 normal;  // unit length or zero
    // What the material needs (ShadingNeeds); the rest holds nothing of meaning.
    TextureBox texture;  // around the texture coordinates at the corners
    Vec3 tangentS;       // unit length or zero
    Vec3 tangentT;
    std::array<Vec3, kCorners> cornerPositions;  // at the corners of the pixel
    std::array<Vec3, kCorners> cornerNormals;    // unit length or zero
};

}  // namespace orvin
