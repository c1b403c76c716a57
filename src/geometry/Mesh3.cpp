#include "geometry/Mesh3.h"

#include <cmath>

namespace orvin {

Plane Mesh3::planeOf(std::span<const int> corners) const {
    if (corners.size() < 3) return {};
    const std::span<const Vec3> points = vertices();
    const auto corner = [&](std::size_t i) { return points[static_cast<std::size_t>(corners[i])]; };

    // Newell's sum with the first corner as origin: far from the world's origin the plain sum
    // cancels.
    const Vec3 first = corner(0);
    Vec3 area;  // twice the area along the normal
    Vec3 sum;   // of the corners, from the first
    Vec3 previous = corner(1) - first;
    for (std::size_t i = 2; i < corners.size(); ++i) {
        const Vec3 next = corner(i) - first;
        area += cross(previous, next);
        sum += previous;
        previous = next;
    }
    sum += previous;

    const double twice = length(area);
    if (!(twice > 0.0) || !std::isfinite(twice)) return {};
    const Vec3 normal = area * (1.0 / twice);
    const Vec3 centre = first + sum * (1.0 / static_cast<double>(corners.size()));
    return {normal, dot(normal, centre)};
}

bool Mesh3::isDegenerate(int face, double epsilon) const {
    const std::span<const int> corners = this->face(face).vertices;
    const std::span<const Vec3> points = vertices();
    Vec3 previous = points[static_cast<std::size_t>(corners.back())];
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const Vec3 p = points[static_cast<std::size_t>(corners[i])];
        const Vec3 next = points[static_cast<std::size_t>(corners[(i + 1) % corners.size()])];
        const Vec3 normal = cross(p - previous, p - next);
        if (dot(normal, normal) > epsilon) return false;
        previous = p;
    }
    return true;
}

Box3 Mesh3::bounds() const {
    Box3 box;
    for (const Vec3 p : vertices())
        box.add(p);
    return box;
}

}  // namespace orvin
