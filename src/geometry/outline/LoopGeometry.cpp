#include "geometry/outline/LoopGeometry.h"

namespace orvin {

namespace {

constexpr double kNoDirection = 0.001;

}  // namespace

Vec2 stepDirection(Vec2 step) {
    return length(step) > kNoDirection ? normalize(step) : step;
}

std::vector<Vec2> cornerNormals(std::span<const Vec2> loop) {
    const std::size_t n = loop.size();
    std::vector<Vec2> normals(n);
    for (std::size_t k = 0; k < n; ++k) {
        const Vec2 before = stepDirection(loop[k] - loop[(k + n - 1) % n]);
        const Vec2 after = stepDirection(loop[(k + 1) % n] - loop[k]);
        normals[k] = leftNormal(normalize(before + after)) * -1.0;
    }
    return normals;
}

bool loopArc(std::span<const Vec2> loop, std::vector<double>& u) {
    u.assign(loop.size(), 0.0);
    if (loop.empty()) return false;
    for (std::size_t k = 1; k < loop.size(); ++k)
        u[k] = u[k - 1] + length(loop[k] - loop[k - 1]);
    const double total = u.back() + length(loop.front() - loop.back());
    if (!(total > 0.0)) return false;
    for (double& value : u)
        value /= total;
    return true;
}

}  // namespace orvin
