// TriangleShade: what a triangle knows for shading, each attribute as a function of the barycentric
// weights u and v of its first and second corner.
#pragma once

#include "render/MaterialX.h"
#include "toolkit/math/Vec.h"

namespace orvin {

/// An attribute over the triangle: u a + v b + c.
template <typename V>
struct Spread {
    V a;
    V b;
    V c;

    static Spread over(V first, V second, V third) {
        return {first - third, second - third, third};
    }
    V at(double u, double v) const { return a * u + b * v + c; }
};

/// A material made ready for one frame.
struct ShadeMaterial {
    ShadeMaterial() = default;
    explicit ShadeMaterial(const MaterialX& material)
        : look(material.look()), maps(material.resolveMaps()), needs(material.shadingNeeds()) {}

    MaterialX::Look look;
    MaterialMaps maps;
    unsigned needs = 0;  // ShadingNeeds
};

struct TriangleShade {
    Spread<Vec3> position;  // world space
    Spread<Vec3> normal;    // world space, to the eye's side, of any length
    Spread<Vec2> texture;
    Spread<Vec3> tangentS;  // dP/ds, dP/dt in world space; only where the material needs them
    Spread<Vec3> tangentT;
    const ShadeMaterial* material = nullptr;
};

}  // namespace orvin
