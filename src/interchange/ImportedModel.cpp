#include "interchange/ImportedModel.h"

#include <span>
#include <utility>

#include "interchange/ImportedGroups.h"

namespace orvin {

namespace {

// Gives indices of one list new numbers in the order of first use; reset() is as cheap as the use
// that was made.
class Compaction {
  public:
    explicit Compaction(std::span<const Vec3> points)
        : points_(points), numbers_(points.size(), -1) {}

    /// The new numbers of `indices`; `add` puts a point into the new list and returns its number.
    template <typename Add>
    std::span<const int> renumber(std::span<const int> indices, Add&& add) {
        corners_.clear();
        for (const int i : indices) {
            int& number = numbers_[static_cast<std::size_t>(i)];
            if (number < 0) {
                number = add(points_[static_cast<std::size_t>(i)]);
                used_.push_back(i);
            }
            corners_.push_back(number);
        }
        return corners_;
    }

    void reset() {
        for (const int i : used_)
            numbers_[static_cast<std::size_t>(i)] = -1;
        used_.clear();
    }

  private:
    std::span<const Vec3> points_;
    std::vector<int> numbers_;
    std::vector<int> used_;
    std::vector<int> corners_;
};

}  // namespace

std::vector<Mesh3> splitByGroup(ImportedModel&& model) {
    std::vector<Mesh3> meshes(model.groups.size());
    if (meshes.size() == 1) {
        meshes[0] = std::move(model.mesh);
        meshes[0].dropUnused();
        return meshes;
    }
    const Mesh3& whole = model.mesh;

    // Faces gathered by group, in order.
    std::vector<std::size_t> starts(model.groups.size() + 1);
    for (const std::uint32_t group : model.faceGroups)
        ++starts[group + 1];
    for (std::size_t g = 1; g < starts.size(); ++g)
        starts[g] += starts[g - 1];
    std::vector<int> faces(model.faceGroups.size());
    std::vector<std::size_t> next(starts.begin(), starts.end() - 1);
    for (std::size_t i = 0; i < faces.size(); ++i)
        faces[next[model.faceGroups[i]]++] = static_cast<int>(i);

    Compaction vertices(whole.vertices());
    Compaction texture(whole.texVertices());
    Compaction normals(whole.normals());
    for (std::size_t g = 0; g < meshes.size(); ++g) {
        Mesh3& mesh = meshes[g];
        for (std::size_t i = starts[g]; i < starts[g + 1]; ++i) {
            const FaceView face = whole.face(faces[i]);
            mesh.addFace(
                face.kind, face.material,
                vertices.renumber(face.vertices, [&](Vec3 p) { return mesh.addVertex(p); }),
                texture.renumber(face.texture, [&](Vec3 t) { return mesh.addTexVertex(t); }),
                normals.renumber(face.normals, [&](Vec3 n) { return mesh.addNormal(n); }));
        }
        vertices.reset();
        texture.reset();
        normals.reset();
    }
    return meshes;
}

std::vector<ObjectP*> addToScene(SceneX& scene, ImportedModel&& model,
                                 const std::filesystem::path& path, ModelFileType type) {
    ImportedGroups groups;
    groups.groups.resize(model.groups.size());
    for (std::size_t g = 0; g < model.groups.size(); ++g)
        groups.groups[g].name = std::move(model.groups[g]);
    std::vector<Mesh3> meshes = splitByGroup(std::move(model));
    for (std::size_t g = 0; g < meshes.size(); ++g)
        groups.groups[g].mesh = std::move(meshes[g]);
    return addToScene(scene, std::move(groups), path, type);
}

}  // namespace orvin
