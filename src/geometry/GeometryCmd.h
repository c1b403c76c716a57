// GeometryCmd: the block of the word stream that holds a mesh.
//
// Only what faces use is written, numbered from 0 in the order of first use. Reading a texture
// vertex "vt a b c" stores (b, 1 - a, c), and writing doesn't turn it back: so it is.
//
// Damaged input: an index out of range or a corner without a slash fails with -1, and what was read
// stays in the mesh. Coordinates that are no finite number read as 0. A count in the file allocates
// nothing.
#pragma once

#include <vector>

#include "scene/Persistent.h"

namespace orvin {

class Mesh3;

class GeometryCmd final : public Persistent {
  public:
    /// The mesh must outlive this. Reading adds to it.
    explicit GeometryCmd(Mesh3& mesh) : mesh_(mesh) {}

    Result writeBody(SceneStream& stream) override;
    const CommandRegistry& commandRegistry() const override;
    std::string_view className() const override { return "GeometryCmd"; }

  private:
    struct Commands;

    Mesh3& mesh_;
    // The corners of the face being read.
    std::vector<int> vertices_;
    std::vector<int> texture_;
    std::vector<int> normals_;
};

}  // namespace orvin
