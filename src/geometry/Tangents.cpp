#include "geometry/Tangents.h"

#include <cmath>

namespace orvin {

namespace {

constexpr double kSmallestNormal = 1e-5;

struct Corner {
    Vec3 p;
    Vec3 t;
    std::size_t index;  // of the texture vertex
};

void addTriangle(const Corner& c0, const Corner& c1, const Corner& c2, SurfaceTangents& sums) {
    const Vec3 e1 = c1.p - c0.p;
    const Vec3 e2 = c2.p - c0.p;
    const Vec3 n = cross(e1, e2);
    const double determinant = dot(n, n);  // of the matrix of rows e1, e2, n
    if (!(std::sqrt(determinant) >= kSmallestNormal) || !std::isfinite(determinant)) return;

    // The gradient of u solves dot(e1, g) = a.x, dot(e2, g) = b.x, dot(n, g) = 0; that of v with y.
    const Vec3 column1 = cross(e2, n) * (1.0 / determinant);
    const Vec3 column2 = cross(n, e1) * (1.0 / determinant);
    const Vec3 a = c1.t - c0.t;
    const Vec3 b = c2.t - c0.t;
    const Vec3 tangent = column1 * a.x + column2 * b.x;
    const Vec3 binormal = column1 * a.y + column2 * b.y;
    for (const std::size_t i : {c0.index, c1.index, c2.index}) {
        sums.tangents[i] += tangent;
        sums.binormals[i] += binormal;
    }
}

void normalizeAll(std::vector<Vec3>& vectors) {
    for (Vec3& v : vectors) {
        v = normalize(v);
        if (!std::isfinite(v.x + v.y + v.z)) v = {};
    }
}

}  // namespace

SurfaceTangents surfaceTangents(const Mesh3& mesh, double degenerateLimit) {
    SurfaceTangents result;
    result.tangents.resize(mesh.texVertices().size());
    result.binormals.resize(mesh.texVertices().size());
    for (int i = 0; i < mesh.faceCount(); ++i) {
        const FaceView face = mesh.face(i);
        if (face.texture.empty() || mesh.isDegenerate(i, degenerateLimit)) continue;
        const auto corner = [&](std::size_t j) -> Corner {
            const auto t = static_cast<std::size_t>(face.texture[j]);
            return {mesh.vertices()[static_cast<std::size_t>(face.vertices[j])],
                    mesh.texVertices()[t], t};
        };
        const Corner first = corner(0);
        for (std::size_t j = 2; j < face.vertices.size(); ++j)
            addTriangle(first, corner(j - 1), corner(j), result);
    }
    normalizeAll(result.tangents);
    normalizeAll(result.binormals);
    return result;
}

}  // namespace orvin
