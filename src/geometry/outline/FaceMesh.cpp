#include "geometry/outline/FaceMesh.h"

#include <vector>

#include "geometry/outline/FacePeeler.h"

namespace orvin {

void meshFaces(const PolyShape2& shape, const FaceSettings& settings, Mesh3& mesh) {
    if (!settings.front && !settings.back) return;
    Box2 box;
    for (const Vec2 p : shape.vertices)
        box.add(p);
    const double width = box.width();
    const double height = box.height();
    const auto u = [&](Vec2 p) { return width != 0.0 ? (p.x - box.xmin) / width : 0.0; };
    const auto v = [&](Vec2 p) { return height != 0.0 ? (p.y - box.ymin) / height : 0.0; };

    const int base = mesh.vertexCount();
    for (const Vec2 p : shape.vertices) {
        mesh.addVertex({p.x, p.y, 0.0});
        mesh.addTexVertex({u(p), v(p), 0.0});
        mesh.addNormal({0.0, 0.0, 1.0});
    }
    const bool back = settings.back && settings.depth > 0.0;
    if (settings.depth > 0.0) {
        for (const Vec2 p : shape.vertices) {
            mesh.addVertex({p.x, p.y, -settings.depth});
            mesh.addTexVertex({1.0 - u(p), v(p), 0.0});
            mesh.addNormal({0.0, 0.0, -1.0});
        }
    }
    const int backOffset = static_cast<int>(shape.vertices.size());

    std::vector<int> corners;
    FacePeeler(shape).forEachPolygon([&](std::span<const int> ids) {
        const auto add = [&](int material) {
            mesh.addFace(ElementKind::kPolygon, material, corners, corners, corners);
        };
        corners.clear();
        for (const int id : ids)
            corners.push_back(base + id);
        if (settings.front) add(settings.frontMaterial);
        if (!back) return;
        corners.clear();
        for (auto id = ids.rbegin(); id != ids.rend(); ++id)
            corners.push_back(base + backOffset + *id);
        add(settings.backMaterial);
    });
}

}  // namespace orvin
