// How ObjectX is built: outline, faces, edges, pivot.
#include <algorithm>
#include <cstdio>
#include <utility>

#include "geometry/ObjectX.h"
#include "geometry/outline/EdgeSweep.h"
#include "geometry/outline/FaceMesh.h"
#include "geometry/outline/LoopGeometry.h"
#include "geometry/outline/OutlinePreparation.h"

namespace orvin {

namespace {

constexpr double kWeld = 0.001;
// Faces deserve finer curves than edges.
constexpr double kFaceFlatness = 0.5;

SweepLoop sweepLoop(const PolyShape2& shape, const LoopInfo& info, bool perim) {
    SweepLoop loop;
    loop.points = shape.loopPoints(info.head);
    loop.normals = cornerNormals(loop.points);
    loopArc(loop.points, loop.u);
    // Holes run clockwise; turned round, the texture runs alike as seen from outside.
    if (info.depth % 2 != 0)
        for (double& u : loop.u)
            u = 1.0 - u;
    loop.closingU = perim ? 1.0 : 0.0;
    return loop;
}

/// How much a sweep adds to a mesh at most.
class SweepSize {
  public:
    void add(const std::vector<SweepLoop>& loops, const std::vector<EdgePath>& paths) {
        std::size_t rings = 0;
        std::size_t strips = 0;
        for (const EdgePath& path : paths) {
            rings += path.points.size();
            strips += path.points.empty() ? 0 : path.points.size() - 1;
        }
        for (const SweepLoop& loop : loops) {
            vertices_ += loop.points.size() * rings;
            texVertices_ += (loop.points.size() + 1) * rings;
            faces_ += loop.points.size() * strips;
        }
    }
    void reserve(Mesh3& mesh) const {
        constexpr std::size_t kCorners = 4;  // of a face, at most
        const auto count = [](int n) { return static_cast<std::size_t>(n); };
        mesh.reserve(count(mesh.vertexCount()) + vertices_,
                     count(mesh.texVertexCount()) + texVertices_,
                     count(mesh.normalCount()) + vertices_, count(mesh.faceCount()) + faces_,
                     mesh.cornerCount() + kCorners * faces_);
    }

  private:
    std::size_t vertices_ = 0;
    std::size_t texVertices_ = 0;
    std::size_t faces_ = 0;
};

}  // namespace

Result ObjectX::rebuild(int quality) {
    ObjectXStyle* const recipe = style();
    if (recipe == nullptr) {
        mesh_.clear();
        return kFailure;
    }
    const Seen now = currentRevisions();
    const bool facesChanged = now.shown != seen_.shown || now.face != seen_.face ||
                              now.styleFace != seen_.styleFace ||
                              isStale(kBuiltForRender) != (quality == 1) || isStale(kRebuild);
    PolyShape2 shape;
    if (loadOutline(quality, shape) != kSuccess) {
        mesh_.clear();
        finish(quality);
        transform().setOrigin({});
        transform().setOrder("trs");
        return kSuccess;
    }
    if (recipe->has(ObjectXStyle::kFront | ObjectXStyle::kBack)) {
        if (facesChanged) buildFaces(shape);
        mesh_ = faceMesh_;  // into the memory of the mesh before
    } else {
        mesh_.clear();
    }
    const bool edgesChanged =
        facesChanged || !now.sameEdges(seen_) || now.styleEdge != seen_.styleEdge;
    if (recipe->depth() != 0.0 && edgesChanged &&
        recipe->has(ObjectXStyle::kPerimEdge | ObjectXStyle::kHoleEdge) &&
        sweep(quality, std::move(shape)) != kSuccess) {
        mesh_.clear();
        return kFailure;
    }
    finish(quality);
    placePivot();
    return kSuccess;
}

Result ObjectX::loadOutline(int quality, PolyShape2& shape) {
    SceneMember* const member = face_.get();
    if (member == nullptr) {
        std::printf("profile '%s' not found.\n", faceName().c_str());
        return kFailure;
    }
    Profile* const profile = face();
    if (profile == nullptr) {
        std::printf("'%s' is not a profile.\n", faceName().c_str());
        return kFailure;
    }
    const double flatness = (quality == 1 ? flatRender_ : flatPreview_) * kFaceFlatness;
    std::uint32_t stamp = 0;
    const Mesh2* const geometry = profile->getShape(flatness, hardShadingAngle(), stamp);
    if (geometry == nullptr) {
        std::printf("'%s' has no geometry.\n", faceName().c_str());
        return kFailure;
    }
    loadLoops(*geometry, shape);
    if (shape.precs.empty()) return kFailure;
    shape.normalizeOrientation();
    const ObjectXStyle& recipe = *style();
    if (recipe.frontFaceOffset() != 0.0) offsetFrontFace(shape, recipe.frontFaceOffset(), repair_);
    if (recipe.spikeAngle() != 0.0)
        removeSpikes(shape, recipe.spikeAngle(), recipe.pullBackDistance());
    return shape.precs.empty() ? kFailure : kSuccess;
}

void ObjectX::buildFaces(const PolyShape2& shape) {
    const ObjectXStyle& recipe = *style();
    PolyShape2 welded = shape;
    welded.weld(kWeld);
    if (meshing_.on) {
        const Vec2 tile = draftMode ? meshing_.draftTileResolution : meshing_.bestTileResolution;
        welded.tile(tile.x, tile.y, 0.0, 0.0, false);
    }
    FaceSettings settings;
    settings.front = recipe.has(ObjectXStyle::kFront);
    settings.back = recipe.has(ObjectXStyle::kBack);
    settings.depth = recipe.depth();
    settings.frontMaterial = recipe.frontMtlidx();
    settings.backMaterial = recipe.backMtlidx();
    faceMesh_.clear();
    meshFaces(welded, settings, faceMesh_);
}

Result ObjectX::edgePaths(int quality, bool perim, std::vector<EdgePath>& paths) {
    ObjectXStyle& recipe = *style();
    Profile* const profile = perim ? recipe.perimProfile() : recipe.holeProfile();
    const InputProfile2* const edge = profile != nullptr ? profile->inputProfile() : nullptr;
    paths.clear();
    if (edge == nullptr) return kSuccess;  // an object without that edge
    const double flatness = quality == 1 ? flatRender_ : flatPreview_;
    std::uint32_t serial = 0;
    EdgePathSettings settings;
    settings.depth = recipe.depth();
    settings.xScale = perim ? recipe.perimXScale() : recipe.holeXScale();
    if (meshing_.on)
        settings.longestStep = draftMode ? meshing_.draftEdgeMeshing : meshing_.bestEdgeMeshing;
    for (int i = 0; i < static_cast<int>(edge->paths.size()); ++i) {
        const Mesh2* const geometry =
            perim ? recipe.perimGeometry(flatness, hardShadingAngle(), serial)
                  : recipe.holeGeometry(flatness, hardShadingAngle(), serial);
        if (geometry == nullptr || i >= geometry->faceCount()) {
            std::printf("bad sweep profile (1)!\n");
            return kFailure;
        }
        const MaterialIntervals* const materials =
            perim ? recipe.perimInterval(i) : recipe.holeInterval(i);
        if (prepareEdgePath(*geometry, *edge, i, materials, settings, paths.emplace_back()) !=
            kSuccess)
            return kFailure;
    }
    return kSuccess;
}

Result ObjectX::sweep(int quality, PolyShape2 shape) {
    const ObjectXStyle& recipe = *style();
    std::vector<EdgePath> perimPaths;
    std::vector<EdgePath> holePaths;
    if (edgePaths(quality, true, perimPaths) != kSuccess) return kFailure;
    if (edgePaths(quality, false, holePaths) != kSuccess) {
        std::printf("bad hole path.\n");
        return kFailure;
    }
    if (!recipe.has(ObjectXStyle::kPerimEdge)) perimPaths.clear();
    if (!recipe.has(ObjectXStyle::kHoleEdge)) holePaths.clear();

    std::vector<SweepLoop> perimLoops;
    std::vector<SweepLoop> holeLoops;
    for (const LoopInfo& info : shape.classifyLoops()) {
        // An island in a hole goes with the holes.
        const bool perim = info.depth == 0;
        (perim ? perimLoops : holeLoops).push_back(sweepLoop(shape, info, perim));
    }
    SweepSize size;
    size.add(perimLoops, perimPaths);
    size.add(holeLoops, holePaths);
    size.reserve(mesh_);

    SweepSettings settings;
    settings.depth = recipe.depth();
    settings.everyRing = recipe.mitreMethod() == ObjectXStyle::Mitre::kComplex;
    settings.repair = repair_;
    settings.xScale = recipe.perimXScale();
    for (const SweepLoop& loop : perimLoops)
        for (const EdgePath& path : perimPaths)
            sweepPath(path, loop, settings, mesh_);
    settings.xScale = recipe.holeXScale();
    for (const SweepLoop& loop : holeLoops)
        for (const EdgePath& path : holePaths)
            sweepPath(path, loop, settings, mesh_);
    return kSuccess;
}

void ObjectX::finish(int quality) {
    setStale(kRebuild, false);
    setStale(kBuiltForRender, quality == 1);
    seen_ = currentRevisions();
    built_ = true;
    mesh_.shrinkToFit();
    meshChanged();
}

/// Text keeps its own left baseline; everything else turns about its middle.
void ObjectX::placePivot() {
    const Box3 box = mesh_.bounds();
    Vec3 pivot = box.empty() ? Vec3{} : box.center();
    if (const Profile* const profile = face(); profile->className() == "ProfileT")
        pivot.x = pivot.y = 0.0;
    const Matrix4 pose = transform().matrix();
    transform().setOrigin(pivot);
    transform().setOrder("trs");
    transform().setMatrix(pose);
}

}  // namespace orvin
