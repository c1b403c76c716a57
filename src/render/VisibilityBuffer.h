// VisibilityBuffer: the visible triangles of a frame, sorted into screen tiles. Constant once it is
// built; what scanning a tile writes lies in the VisibilityTile.
//
// Besides the picture itself it serves the depth pass of a shadow map: one subpixel a pixel,
// cullBehindOpaque 0, a camera in the light's place, and the two front fragments of each list.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "geometry/MeshObject.h"
#include "render/ScreenProjection.h"
#include "render/ScreenTriangle.h"
#include "render/VisibilityTile.h"
#include "scene/RenderParams.h"

namespace orvin {

class CameraX;
class SceneX;
class TileGrid;
class TriangleSetup;

class VisibilityBuffer {
  public:
    /// An object of the frame with the lists of its owner. The scene must not change while the
    /// buffer lives.
    struct Object {
        MeshObject* owner = nullptr;
        const Mesh3* mesh = nullptr;
        std::span<const Vec3> positions;  // world space
        std::span<const Vec3> normals;    // world space, any length; see normalSign
        Matrix4 worldFromObject;
        double normalSign = 1.0;  // -1 where worldFromObject mirrors, which turns the winding
    };

    /// Fetches the meshes of all enabled objects and sorts their polygons; lines and points aren't
    /// drawn. A null camera is the scene's "dflt_cam"; without that there are no tiles. Width and
    /// height must be numbers from 0 to 32767. Throws std::bad_alloc.
    VisibilityBuffer(SceneX& scene, CameraX* camera, const RenderParams& params);

    /// Null where there is none.
    CameraX* camera() const { return camera_; }
    const std::vector<Object>& objects() const { return objects_; }
    /// The surfaces in use; null stands for faces without one.
    const std::vector<const SceneMember*>& surfaces() const { return surfaces_; }
    bool perspective() const { return perspective_; }
    int subpixels() const { return subpixels_; }

    /// All triangles that may show.
    std::span<const ScreenTriangle> triangles() const { return triangles_; }

    /// Tiles that have triangles, in tile order: k in what follows.
    std::size_t tileCount() const { return activeTiles_.size(); }
    /// In subpixels.
    const GridRect& tileRect(std::size_t k) const { return activeTiles_[k].rect; }
    /// Indices into triangles(), in scene order.
    std::span<const std::uint32_t> tileTriangles(std::size_t k) const {
        const ActiveTile& tile = activeTiles_[k];
        return std::span(tileTriangles_).subspan(tile.first, tile.count);
    }

    /// Scan-converts tile k and shows it to `visit`: whole, or in parts of whole pixels where its
    /// lists would take too much memory (many clear layers, a vast tile). `tile` is the caller's,
    /// and may serve again. False where `visit` answered false, which ends the visit.
    bool visitTile(std::size_t k, VisibilityTile& tile,
                   const std::function<bool(const VisibilityTile&)>& visit) const;

  private:
    struct ActiveTile {
        GridRect rect;
        std::size_t first;
        std::size_t count;
    };

    void addObjects(SceneX& scene, const RenderParams& params, const Matrix4& cameraFromWorld,
                    TriangleSetup& setup);
    void fillTiles(const TileGrid& grid, TriangleSetup& setup);

    CameraX* camera_ = nullptr;
    bool perspective_ = true;
    int subpixels_ = 1;
    std::vector<Object> objects_;
    std::vector<const SceneMember*> surfaces_;
    std::vector<ScreenTriangle> triangles_;
    std::vector<ActiveTile> activeTiles_;
    std::vector<std::uint32_t> tileTriangles_;  // of all active tiles, one after the other
};

}  // namespace orvin
