// VertexWelder: gives equal points one vertex, for formats whose faces bring their own corners.
#pragma once

#include <cstdint>
#include <vector>

#include "geometry/Mesh3.h"

namespace orvin {

/// Serves one mesh, to which nobody else adds vertices. Takes five to seven bytes a vertex.
class VertexWelder {
  public:
    /// The vertex of `mesh` at exactly `p` (minus zero is zero); a new one where there is none.
    int vertexAt(Mesh3& mesh, Vec3 p);

  private:
    void grow(const Mesh3& mesh);

    std::vector<std::int32_t> table_;  // vertices by hash, open addressing
};

}  // namespace orvin
