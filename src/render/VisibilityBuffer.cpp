#include "render/VisibilityBuffer.h"

#include <algorithm>
#include <cstdio>
#include <optional>
#include <utility>

#include "geometry/ShownObjects.h"
#include "geometry/Surface.h"
#include "render/CameraX.h"
#include "render/TileGrid.h"
#include "render/TriangleSetup.h"
#include "scene/SceneX.h"

namespace orvin {

namespace {

// The surface's number in the order of first use. There are few.
std::uint32_t numberOf(std::vector<const SceneMember*>& surfaces, const SceneMember* surface) {
    const auto found = std::find(surfaces.begin(), surfaces.end(), surface);
    const auto index = static_cast<std::uint32_t>(found - surfaces.begin());
    if (found == surfaces.end()) surfaces.push_back(surface);
    return index;
}

bool isOpaque(const SceneMember* member) {
    const auto* surface = dynamic_cast<const Surface*>(member);
    return surface == nullptr || !surface->isTransparent();
}

// Cuts across the longer side, between two pixels. Of more than one pixel.
std::pair<GridRect, GridRect> halves(const GridRect& rect, int subpixels) {
    GridRect first = rect;
    GridRect second = rect;
    const auto middle = [subpixels](int from, int size) {
        return from + std::max(size / subpixels / 2, 1) * subpixels;
    };
    if (rect.width() > rect.height()) {
        second.left = middle(rect.left, rect.width());
        first.right = second.left - 1;
    } else {
        second.top = middle(rect.top, rect.height());
        first.bottom = second.top - 1;
    }
    return {first, second};
}

}  // namespace

VisibilityBuffer::VisibilityBuffer(SceneX& scene, CameraX* camera, const RenderParams& params)
    : camera_(camera != nullptr ? camera
                                : scene.memberAs<CameraX>(MemberKind::kCamera, kDefaultCamera)),
      subpixels_(subpixelsPerSide(params)) {
    if (camera_ == nullptr) return;
    const ScreenProjection projection(*camera_, params);
    perspective_ = projection.perspective;

    std::printf("creating visibility tiles...\n");
    std::printf("Maximum Tile Area set to %d subpixels.\n", static_cast<int>(params.maxTileArea));
    const TileGrid grid(projection.subWidth, projection.subHeight, params.maxTileArea, subpixels_);
    std::printf("Screen tiled to %d sections.\n", static_cast<int>(grid.count()));

    const Matrix4 cameraFromWorld = camera_->viewMatrix();
    TriangleSetup setup(projection, grid, cameraFromWorld.determinant3() < 0.0);
    addObjects(scene, params, cameraFromWorld, setup);
    std::printf("Scene contains %d triangles.\n", setup.seen());
    fillTiles(grid, setup);
    std::printf("setup done...\n");
}

void VisibilityBuffer::addObjects(SceneX& scene, const RenderParams& params,
                                  const Matrix4& cameraFromWorld, TriangleSetup& setup) {
    std::vector<bool> opaque;  // of each surface
    for (MeshObject* owner : shownObjects(scene)) {
        std::uint32_t revision = 0;
        const Mesh3* mesh = owner->mesh(params.bestGeometry, revision);
        if (mesh == nullptr || mesh->faceCount() == 0) continue;

        Object object;
        object.owner = owner;
        object.mesh = mesh;
        object.worldFromObject = owner->world();
        object.positions = owner->worldPositions();
        object.normals = owner->worldNormals();
        object.normalSign = object.worldFromObject.determinant3() < 0.0 ? -1.0 : 1.0;

        setup.setVertices(mesh->vertices(), object.worldFromObject * cameraFromWorld);
        TriangleId id;
        id.object = static_cast<std::uint32_t>(objects_.size());
        std::optional<int> slot;  // of the face before
        for (int i = 0; i < mesh->faceCount(); ++i) {
            const FaceView face = mesh->face(i);
            if (face.kind != ElementKind::kPolygon) continue;
            id.face = static_cast<std::uint32_t>(i);
            if (slot != face.material) {
                slot = face.material;
                id.surface = numberOf(surfaces_, owner->faceMaterial(i));
                if (id.surface == opaque.size())
                    opaque.push_back(params.cullBehindOpaque != 0 && isOpaque(surfaces_.back()));
                id.flags = opaque[id.surface] ? TriangleId::kOpaque : 0U;
            }
            setup.addPolygon(face.vertices, id);
        }
        objects_.push_back(object);
    }
}

// Counts, then fills: the lists of all tiles lie in one array.
void VisibilityBuffer::fillTiles(const TileGrid& grid, TriangleSetup& setup) {
    triangles_ = setup.takeTriangles();
    const std::span<const TileSpan> spans = setup.tileSpans();
    const auto eachTile = [&grid](const TileSpan& span, auto&& visit) {
        for (int column = span.left; column <= span.right; ++column)
            for (int row = span.top; row <= span.bottom; ++row)
                visit(grid.index(column, row));
    };
    std::vector<std::size_t> ends(grid.count());  // counts first, then where each list ends
    for (const TileSpan& span : spans)
        eachTile(span, [&](std::size_t tile) { ++ends[tile]; });
    std::size_t total = 0;
    for (std::size_t tile = 0; tile < ends.size(); ++tile) {
        const std::size_t count = ends[tile];
        if (count != 0) activeTiles_.push_back({grid.rect(tile), total, count});
        ends[tile] = total;
        total += count;
    }
    tileTriangles_.resize(total);
    for (std::size_t i = 0; i < spans.size(); ++i)
        eachTile(spans[i], [&](std::size_t tile) {
            tileTriangles_[ends[tile]++] = static_cast<std::uint32_t>(i);
        });
}

bool VisibilityBuffer::visitTile(std::size_t k, VisibilityTile& tile,
                                 const std::function<bool(const VisibilityTile&)>& visit) const {
    std::printf("getting tile %d\n", static_cast<int>(k));
    std::vector<GridRect> parts{tileRect(k)};
    while (!parts.empty()) {
        const GridRect part = parts.back();
        parts.pop_back();
        if (!tile.scan(triangles_, tileTriangles(k), part, subpixels_, perspective_)) {
            const auto [first, second] = halves(part, subpixels_);
            parts.push_back(second);
            parts.push_back(first);
        } else if (!visit(tile)) {
            return false;
        }
    }
    return true;
}

}  // namespace orvin
