// TriangleSetup: from the faces of a mesh to the triangles of the grid: projection, planes, the
// near clip, and the tiles that each triangle touches.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "render/ScreenProjection.h"
#include "render/TileGrid.h"
#include "toolkit/math/Matrix4.h"

namespace orvin {

/// The tiles that a triangle touches, as columns and rows of the TileGrid.
struct TileSpan {
    std::uint16_t left;
    std::uint16_t top;
    std::uint16_t right;
    std::uint16_t bottom;
};

class TriangleSetup {
  public:
    /// `mirrored` for a camera whose matrix mirrors: its winding then runs the other way round.
    TriangleSetup(const ScreenProjection& projection, const TileGrid& grid, bool mirrored)
        : projection_(projection), grid_(grid), mirrored_(mirrored) {}

    /// Projects the vertices of the next object.
    void setVertices(std::span<const Vec3> vertices, const Matrix4& cameraFromObject);

    /// Adds a polygon as a fan, of which `id` has everything but the fan index and facing. Indices
    /// are into the vertices; a polygon with one that isn't there adds nothing. Left out are
    /// triangles in front of the near clip, outside the picture, seen edge-on or without area, and
    /// with coordinates that are no number or too large to reckon with.
    void addPolygon(std::span<const int> corners, TriangleId id);

    /// Triangles of all polygons so far, left out or not.
    int seen() const { return seen_; }

    /// What is left, each with its tiles.
    std::vector<ScreenTriangle> takeTriangles() { return std::move(triangles_); }
    std::span<const TileSpan> tileSpans() const { return spans_; }

  private:
    struct Vertex {
        Vec3 camera;
        Vec2 screen;
    };

    void addTriangle(const Vertex& a, const Vertex& b, const Vertex& c, TriangleId id);
    void addClipped(const std::array<const Vertex*, 3>& corners, ScreenTriangle& triangle);
    void emit(ScreenTriangle& triangle, const GridRect& tiles);
    GridRect box(ScreenTriangle& triangle) const;

    const ScreenProjection& projection_;
    const TileGrid& grid_;
    bool mirrored_;
    std::vector<Vertex> vertices_;
    std::vector<ScreenTriangle> triangles_;
    std::vector<TileSpan> spans_;
    int seen_ = 0;
};

}  // namespace orvin
