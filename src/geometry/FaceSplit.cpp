#include "geometry/FaceSplit.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <span>
#include <vector>

#include "geometry/outline/FacePeeler.h"
#include "geometry/outline/LoopGeometry.h"

namespace orvin {

namespace {

void copyPoints(const Mesh3& source, Mesh3& target) {
    for (const Vec3 p : source.vertices())
        target.addVertex(p);
    for (const Vec3 t : source.texVertices())
        target.addTexVertex(t);
    for (const Vec3 n : source.normals())
        target.addNormal(n);
}

/// Adds the face that some corners of `face` make.
void addPiece(const FaceView& face, std::span<const int> corners, Mesh3& target) {
    const auto pick = [&](std::span<const int> list) {
        std::vector<int> picked;
        if (list.empty()) return picked;
        for (const int corner : corners)
            picked.push_back(list[static_cast<std::size_t>(corner)]);
        return picked;
    };
    target.addFace(face.kind, face.material, pick(face.vertices), pick(face.texture),
                   pick(face.normals));
}

/// A polygon's corners in its plane; the sense of rotation stays. Empty without a plane.
void flatten(const Mesh3& mesh, std::span<const int> vertices, std::vector<Vec2>& points) {
    points.clear();
    const Vec3 n = mesh.planeOf(vertices).normal;
    if (n == Vec3{}) return;
    Vec3 first = normalize(std::abs(n.x) <= std::abs(n.z) ? cross(n, {0, 1, 0}) : Vec3{});
    if (first == Vec3{}) first = normalize(cross(n, {0, 0, 1}));
    const Vec3 second = normalize(cross(n, first));
    const Vec3 origin = mesh.vertex(vertices[0]);
    for (const int v : vertices) {
        const Vec3 p = mesh.vertex(v) - origin;
        points.push_back({dot(p, first), dot(p, second)});
    }
}

bool isConvex(std::span<const Vec2> loop) {
    bool left = false;
    bool right = false;
    const std::size_t n = loop.size();
    for (std::size_t i = 0; i < n; ++i) {
        const Vec2 corner = loop[(i + 1) % n];
        const double turn = cross(corner - loop[i], loop[(i + 2) % n] - corner);
        left = left || turn > 0.0;
        right = right || turn < 0.0;
    }
    return !(left && right);
}

}  // namespace

Mesh3 quadrangulate(const Mesh3& source, int maxSides) {
    std::printf("quadrangulating to %d sides.\n", maxSides);
    const int step = std::max(maxSides, 3) - 2;
    Mesh3 target;
    copyPoints(source, target);
    std::vector<int> piece;
    for (int f = 0; f < source.faceCount(); ++f) {
        const FaceView face = source.face(f);
        const int count = static_cast<int>(face.vertices.size());
        for (int from = 1; from < count - 1; from += step) {
            const int to = count - 1 - from > step ? from + step : count - 1;
            piece.assign(1, 0);
            for (int corner = from; corner <= to; ++corner)
                piece.push_back(corner);
            addPiece(face, piece, target);
            if (to == count - 1) break;
        }
    }
    return target;
}

Mesh3 splitConcaveFaces(Mesh3 source) {
    ConvexFaces convex;
    int firstConcave = 0;
    while (firstConcave < source.faceCount() &&
           !convex.isConcave(source, source.face(firstConcave)))
        ++firstConcave;
    if (firstConcave == source.faceCount()) return source;

    Mesh3 target;
    copyPoints(source, target);
    for (int f = 0; f < source.faceCount(); ++f)
        convex.add(target, source.face(f));
    return target;
}

bool ConvexFaces::isConcave(const Mesh3& mesh, const FaceView& face) {
    if (face.kind != ElementKind::kPolygon || face.vertices.size() < 4) return false;
    flatten(mesh, face.vertices, points_);
    return !isConvex(points_);
}

void ConvexFaces::add(Mesh3& mesh, const FaceView& face) {
    if (!isConcave(mesh, face)) {
        mesh.addFace(face.kind, face.material, face.vertices, face.texture, face.normals);
        return;
    }
    PolyShape2 shape;
    shape.addLoop(points_, cornerNormals(points_));
    FacePeeler(std::move(shape)).forEachPolygon([&](std::span<const int> corners) {
        addPiece(face, corners, mesh);
    });
}

}  // namespace orvin
