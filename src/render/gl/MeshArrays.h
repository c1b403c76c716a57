// MeshArrays: a mesh in the form that OpenGL draws it in.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "geometry/Mesh3.h"

namespace orvin {

/// Polygons are fans of triangles, as the software renderer takes them. Corners that agree in
/// vertex, normal and texture coordinates share one entry; faces without normals are flat.
/// Elements are grouped by material slot, slots in the order of their first face.
struct MeshArrays {
    /// In OpenGL's order T2F_N3F_V3F.
    struct Vertex {
        float s, t;
        float nx, ny, nz;
        float x, y, z;
    };
    /// One slot's part of an index list.
    struct Run {
        int face = 0;  // a face of the slot
        std::size_t first = 0;
        std::size_t count = 0;
    };

    std::vector<Vertex> vertices;
    std::vector<std::uint32_t> triangles;  // three indices each
    std::vector<Run> triangleRuns;
    std::vector<std::uint32_t> lines;  // two indices each
    std::vector<Run> lineRuns;
};

/// The surfaces: triangles of all polygons; no lines.
MeshArrays surfaceArrays(const Mesh3& mesh);

/// The drawing: the edges of polygons and the elements that are lines; no triangles. Edges at which
/// a flat part of the surface is only divided are left out: two faces of one slot meet there with
/// less than half a degree between them. Faces are joined by where their corners are, whether or
/// not they share vertices.
MeshArrays edgeArrays(const Mesh3& mesh);

}  // namespace orvin
