#include "interchange/SectionMesh.h"

#include <algorithm>
#include <vector>

namespace orvin {

namespace {

/// Indices of one list in the order of first use.
class Selection {
  public:
    explicit Selection(int count) : numbers_(static_cast<std::size_t>(count), -1) {}

    /// The new numbers of `indices`, reversed where asked; `add` puts a point that is new into its
    /// list and returns its number.
    template <typename Add>
    std::span<const int> pick(std::span<const int> indices, bool reversed, Add&& add) {
        picked_.clear();
        for (const int i : indices) {
            int& number = numbers_[static_cast<std::size_t>(i)];
            if (number < 0) number = add(i);
            picked_.push_back(number);
        }
        if (reversed) std::reverse(picked_.begin(), picked_.end());
        return picked_;
    }

  private:
    std::vector<int> numbers_;
    std::vector<int> picked_;
};

}  // namespace

Mesh3 sectionMesh(const ExportPart& part, int section) {
    const Mesh3& whole = *part.mesh;
    const Matrix4& world = part.worldFromObject;
    const Matrix4 normalFromObject = normalMatrix(world);
    const bool mirrored = world.determinant3() < 0.0;
    Selection vertices(whole.vertexCount());
    Selection texture(whole.texVertexCount());
    Selection normals(whole.normalCount());
    Mesh3 mesh;
    for (int i = 0; i < whole.faceCount(); ++i) {
        const FaceView face = whole.face(i);
        if (face.material != section) continue;
        const bool reversed = mirrored && face.kind == ElementKind::kPolygon;
        mesh.addFace(
            face.kind, 0,
            vertices.pick(face.vertices, reversed,
                          [&](int v) { return mesh.addVertex(world.point(whole.vertex(v))); }),
            texture.pick(face.texture, reversed,
                         [&](int t) { return mesh.addTexVertex(whole.texVertex(t)); }),
            normals.pick(face.normals, reversed, [&](int n) {
                return mesh.addNormal(normalize(normalFromObject.direction(whole.normal(n))));
            }));
    }
    return mesh;
}

}  // namespace orvin
