// MeshSplit: cuts a mesh into meshes of some of its faces each.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "geometry/Mesh3.h"

namespace orvin {

/// Faces of a mesh that follow one another.
struct FaceRange {
    std::uint32_t first = 0;
    std::uint32_t count = 0;
};

class MeshSplit {
  public:
    /// A mesh for each list of `parts`, with its faces in that order and the points, texture
    /// vertices and normals that they use, in the order of first use. The whole mesh goes list by
    /// list while the parts come, so that both are never held at once.
    static std::vector<Mesh3> split(Mesh3&& whole,
                                    std::span<const std::span<const FaceRange>> parts);
};

}  // namespace orvin
