#include "render/TriangleSetup.h"

#include <algorithm>
#include <cmath>

namespace orvin {

namespace {

bool isEmpty(const GridRect& tiles) {
    return tiles.left > tiles.right || tiles.top > tiles.bottom;
}

// False for NaN and infinity, and for planes so steep that a sum over the grid could become either.
bool isUsable(const ScreenTriangle& t) {
    double sum = 0.0;
    for (const Vec2& p : t.corners)
        sum += std::abs(p.x) + std::abs(p.y);
    for (const GridPlane* plane : {&t.depth, &t.u, &t.v})
        sum += std::abs(plane->a) + std::abs(plane->b) + std::abs(plane->c);
    return sum < 1e290;
}

// The planes of the weights of `a` and `b`; false for corners on one line.
bool weightPlanes(Vec2 a, Vec2 b, Vec2 c, GridPlane& u, GridPlane& v) {
    const Vec2 e0 = a - c;
    const Vec2 e1 = b - c;
    const double area = e1.y * e0.x - e1.x * e0.y;
    if (area == 0.0) return false;
    const double k = 1.0 / area;
    u.a = e1.y * k;
    u.b = -e1.x * k;
    u.c = -(u.a * c.x + u.b * c.y);
    v.a = -e0.y * k;
    v.b = e0.x * k;
    v.c = -(v.a * c.x + v.b * c.y);
    return true;
}

GridPlane scaled(const GridPlane& plane, double by) {
    return {plane.a * by, plane.b * by, plane.c * by};
}

}  // namespace

void TriangleSetup::setVertices(std::span<const Vec3> vertices, const Matrix4& cameraFromObject) {
    vertices_.resize(vertices.size());
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        const Vec3 camera = cameraFromObject.point(vertices[i]);
        vertices_[i] = {camera, projection_.project(camera)};
    }
}

void TriangleSetup::addPolygon(std::span<const int> corners, TriangleId id) {
    if (corners.size() < 3) return;
    for (const int corner : corners)
        if (corner < 0 || static_cast<std::size_t>(corner) >= vertices_.size()) return;
    const auto vertex = [&](std::size_t i) -> const Vertex& {
        return vertices_[static_cast<std::size_t>(corners[i])];
    };
    for (std::size_t i = 2; i < corners.size(); ++i) {
        id.fan = static_cast<std::uint32_t>(i - 2);
        addTriangle(vertex(0), vertex(i - 1), vertex(i), id);
    }
}

void TriangleSetup::addTriangle(const Vertex& a, const Vertex& b, const Vertex& c, TriangleId id) {
    ++seen_;
    const double nearClip = projection_.nearClip;
    const bool aNear = projection_.depth(a.camera) < nearClip;
    const bool bNear = projection_.depth(b.camera) < nearClip;
    const bool cNear = projection_.depth(c.camera) < nearClip;
    if (aNear && bNear && cNear) return;
    const bool clipped = aNear || bNear || cNear;

    ScreenTriangle t;
    t.id = id;
    t.corners = {a.screen, b.screen, c.screen};
    GridRect tiles;
    if (!clipped) {
        tiles = box(t);
        if (isEmpty(tiles)) return;
    }

    const Vec3 normal = cross(a.camera - c.camera, b.camera - c.camera);
    const double d = -dot(normal, c.camera);
    const auto depth = projection_.depthPlane(normal, d);
    if (!depth || !weightPlanes(a.screen, b.screen, c.screen, t.u, t.v)) return;
    t.depth = *depth;
    if (projection_.perspective) {
        const double atA = t.depth.at(a.screen.x, a.screen.y);
        const double atB = t.depth.at(b.screen.x, b.screen.y);
        t.u = scaled(t.u, atA != 0.0 ? atA : 1.0);
        t.v = scaled(t.v, atB != 0.0 ? atB : 1.0);
    }
    const bool towardsEye = (projection_.perspective ? d : normal.z) > 0.0;
    if (towardsEye != mirrored_) t.id.flags |= TriangleId::kFacesEye;

    if (clipped)
        addClipped({&a, &b, &c}, t);
    else
        emit(t, tiles);
}

// The planes stay those of the whole triangle, so that nothing slides on it when it is cut.
void TriangleSetup::addClipped(const std::array<const Vertex*, 3>& corners,
                               ScreenTriangle& triangle) {
    const double nearClip = projection_.nearClip;
    std::array<Vec2, 4> kept;
    std::size_t count = 0;
    for (std::size_t i = 0; i < 3; ++i) {
        const Vertex& from = *corners[i];
        const Vertex& to = *corners[(i + 1) % 3];
        const double depthFrom = projection_.depth(from.camera);
        const double depthTo = projection_.depth(to.camera);
        const bool fromIn = depthFrom >= nearClip;
        const bool toIn = depthTo >= nearClip;
        if (fromIn) kept[count++] = from.screen;
        if (fromIn == toIn) continue;
        // Always from the inside out: two triangles with this edge get the same point.
        const Vec3& inside = fromIn ? from.camera : to.camera;
        const Vec3& outside = fromIn ? to.camera : from.camera;
        const double depthIn = projection_.depth(inside);
        const double k = (nearClip - depthIn) / (projection_.depth(outside) - depthIn);
        kept[count++] = projection_.project(inside + (outside - inside) * k);
    }
    for (std::size_t i = 2; i < count; ++i) {
        triangle.corners = {kept[0], kept[i - 1], kept[i]};
        const GridRect tiles = box(triangle);
        if (!isEmpty(tiles)) emit(triangle, tiles);
    }
}

GridRect TriangleSetup::box(ScreenTriangle& triangle) const {
    const auto& [a, b, c] = triangle.corners;
    triangle.yMin = std::min({a.y, b.y, c.y});
    triangle.yMax = std::max({a.y, b.y, c.y});
    return grid_.overlapped(std::min({a.x, b.x, c.x}), std::max({a.x, b.x, c.x}), triangle.yMin,
                            triangle.yMax);
}

void TriangleSetup::emit(ScreenTriangle& triangle, const GridRect& tiles) {
    if (!isUsable(triangle)) return;
    triangles_.push_back(triangle);
    spans_.push_back({static_cast<std::uint16_t>(tiles.left), static_cast<std::uint16_t>(tiles.top),
                      static_cast<std::uint16_t>(tiles.right),
                      static_cast<std::uint16_t>(tiles.bottom)});
}

}  // namespace orvin
