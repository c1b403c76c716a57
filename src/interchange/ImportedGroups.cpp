#include "interchange/ImportedGroups.h"

#include <algorithm>
#include <utility>

#include "render/MaterialX.h"
#include "scene/SceneX.h"
#include "toolkit/platform/Platform.h"

namespace orvin {

namespace {

/// The name of the scene's member that shows an imported material.
std::string materialInScene(SceneX& scene, const ImportedMaterial& material) {
    if (material.shared &&
        scene.memberAs<MaterialX>(MemberKind::kMaterial, material.name) != nullptr)
        return material.name;
    auto& made = scene.make<MaterialX>(scene.uniqueName(material.name));
    MaterialX::Look look = made.look();
    look.diffuse = material.color;
    look.transparency = material.transparency;
    made.setLook(look);
    return made.name();
}

/// Adds the mesh of `group` to another one.
void append(ImportedGroup& to, const ImportedGroup& group) {
    const int vertices = to.mesh.vertexCount();
    const int texture = to.mesh.texVertexCount();
    const int normals = to.mesh.normalCount();
    for (const Vec3 p : group.mesh.vertices())
        to.mesh.addVertex(p);
    for (const Vec3 t : group.mesh.texVertices())
        to.mesh.addTexVertex(t);
    for (const Vec3 n : group.mesh.normals())
        to.mesh.addNormal(n);
    const auto moved = [](std::span<const int> indices, int by) {
        std::vector<int> list(indices.begin(), indices.end());
        for (int& index : list)
            index += by;
        return list;
    };
    for (int i = 0; i < group.mesh.faceCount(); ++i) {
        const FaceView face = group.mesh.face(i);
        to.mesh.addFace(face.kind, face.material, moved(face.vertices, vertices),
                        moved(face.texture, texture), moved(face.normals, normals));
    }
}

}  // namespace

void ImportedGroups::add(ImportedGroup group) {
    if (groups.size() < kMaxImportedGroups)
        groups.push_back(std::move(group));
    else
        append(groups.back(), group);
}

std::size_t ImportedGroups::faceCount() const {
    std::size_t count = 0;
    for (const ImportedGroup& group : groups)
        count += static_cast<std::size_t>(group.mesh.faceCount());
    return count;
}

std::vector<ObjectP*> addToScene(SceneX& scene, ImportedGroups&& model,
                                 const std::filesystem::path& path, ModelFileType type) {
    std::vector<std::string> materialNames(model.materials.size());
    std::vector<ObjectP*> made;
    for (ImportedGroup& group : model.groups) {
        auto& object = scene.make<ObjectP>(scene.uniqueName(group.name));
        object.setFileName(platform::textFromPath(path));
        object.setFileType(type);
        object.setOriginalName(group.name);
        object.setMesh(std::move(group.mesh));
        for (int slot = 0; slot < ObjectP::kMaterialCount; ++slot) {
            const int material = group.materials[static_cast<std::size_t>(slot)];
            if (material == ImportedGroup::kNoMaterial) continue;
            std::string& name = materialNames[static_cast<std::size_t>(material)];
            if (name.empty())
                name = materialInScene(scene, model.materials[static_cast<std::size_t>(material)]);
            object.setMaterial(slot, name);
        }
        made.push_back(&object);
    }
    return made;
}

}  // namespace orvin
