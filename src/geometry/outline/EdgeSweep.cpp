#include "geometry/outline/EdgeSweep.h"

#include <array>
#include <cmath>

#include "geometry/outline/LoopGeometry.h"

namespace orvin {

namespace {

constexpr double kMeets = 0.001;         // squared
constexpr double kSmoothClosing = 0.75;  // cosine
constexpr double kSamePoint = 1e-6;      // per axis

std::vector<Vec2> pathTangents(std::span<const Vec2> path) {
    std::vector<Vec2> tangents(path.size());
    for (std::size_t i = 0; i < path.size(); ++i) {
        const Vec2 before = i > 0 ? stepDirection(path[i] - path[i - 1]) : Vec2{};
        const Vec2 after = i + 1 < path.size() ? stepDirection(path[i + 1] - path[i]) : Vec2{};
        tangents[i] = normalize(before + after);
    }
    return tangents;
}

bool differs(Vec3 a, Vec3 b) {
    return !(std::abs(a.x - b.x) < kSamePoint && std::abs(a.y - b.y) < kSamePoint &&
             std::abs(a.z - b.z) < kSamePoint);
}

/// Rings of one loop at any distance: offset one by one, or blended from the farthest one.
class Rings {
  public:
    Rings(const EdgePath& path, const SweepLoop& loop, const SweepSettings& settings)
        : loop_(loop), settings_(settings) {
        if (settings.everyRing) return;
        for (const Vec2 p : path.points) {
            const double distance = distanceOf(p);
            if (std::abs(distance) > std::abs(farthest_)) farthest_ = distance;
        }
        far_ = offsetLoop(loop.points, farthest_, settings.repair);
    }

    double distanceOf(Vec2 pathPoint) const {
        return settings_.xScale * pathPoint.x * settings_.depth;
    }

    void at(double distance, std::vector<Vec2>& ring) const {
        if (settings_.everyRing) {
            ring = offsetLoop(loop_.points, distance, settings_.repair);
            return;
        }
        const double s = farthest_ == 0.0 ? 0.0 : distance / farthest_;
        ring.resize(loop_.points.size());
        for (std::size_t k = 0; k < ring.size(); ++k)
            ring[k] = far_[k] * s + loop_.points[k] * (1.0 - s);
    }

  private:
    const SweepLoop& loop_;
    const SweepSettings& settings_;
    double farthest_ = 0.0;
    std::vector<Vec2> far_;
};

/// `previous` and `current` are the first vertices of two rings. Texture vertices are those of the
/// last two rings added, also where `current` is an earlier one: v then still ends at 0.
void stitch(int n, int material, int previous, int current, Mesh3& mesh) {
    const int currentTexture = mesh.texVertexCount() - (n + 1);
    const int previousTexture = currentTexture - (n + 1);
    for (int j = 1; j <= n; ++j) {
        const int a = j - 1;
        const int b = j % n;
        const std::array<int, 4> corners{current + a, current + b, previous + b, previous + a};
        const std::array<int, 4> textures{currentTexture + a, currentTexture + j,
                                          previousTexture + j, previousTexture + a};
        std::array<int, 4> ids{corners[0]};
        std::array<int, 4> texture{textures[0]};
        std::size_t count = 1;
        for (std::size_t c = 1; c < 4; ++c) {
            const Vec3 p = mesh.vertex(corners[c]);
            if (!differs(p, mesh.vertex(ids[count - 1]))) continue;
            if (c == 3 && !differs(p, mesh.vertex(ids[0]))) continue;
            ids[count] = corners[c];
            texture[count++] = textures[c];
        }
        if (count < 3) continue;
        const std::span<const int> used(ids.data(), count);
        mesh.addFace(ElementKind::kPolygon, material, used,
                     std::span<const int>(texture.data(), count), used);
    }
}

/// True where the last ring lies on the first one and the path goes on in its direction.
bool closesOnFirstRing(const Mesh3& mesh, int firstVertex, int current, int n) {
    const Vec3 begin = mesh.vertex(firstVertex);
    const Vec3 end = mesh.vertex(current);
    if (!(dot(end - begin, end - begin) < kMeets)) return false;
    return dot(normalize(mesh.vertex(firstVertex + n) - begin),
               normalize(end - mesh.vertex(current - n))) > kSmoothClosing;
}

}  // namespace

void sweepPath(const EdgePath& path, const SweepLoop& loop, const SweepSettings& settings,
               Mesh3& mesh) {
    const std::size_t count = loop.points.size();
    if (count == 0) return;
    const int n = static_cast<int>(count);
    const std::vector<Vec2> tangents = pathTangents(path.points);
    const Rings rings(path, loop, settings);
    const int firstVertex = mesh.vertexCount();
    std::vector<Vec2> ring;
    for (std::size_t i = 0; i < path.points.size(); ++i) {
        const Vec2 p = path.points[i];
        rings.at(rings.distanceOf(p), ring);
        const double z = -(settings.depth * p.y);
        const double v = path.arcV[i];
        const Vec2 t = tangents[i];
        for (std::size_t k = 0; k < count; ++k) {
            mesh.addVertex({ring[k].x, ring[k].y, z});
            mesh.addTexVertex({loop.u[k], v, 0.0});
            const Vec2 out = loop.normals[k];
            mesh.addNormal(out == Vec2{}
                               ? Vec3{}
                               : normalize(Vec3{t.y * out.x, t.y * out.y, settings.xScale * t.x}));
        }
        mesh.addTexVertex({loop.closingU, v, 0.0});
        if (i == 0) continue;
        int current = mesh.vertexCount() - n;
        const int previous = current - n;
        if (i + 1 == path.points.size() && closesOnFirstRing(mesh, firstVertex, current, n))
            current = firstVertex;
        stitch(n, path.materials[i - 1], previous, current, mesh);
    }
}

}  // namespace orvin
