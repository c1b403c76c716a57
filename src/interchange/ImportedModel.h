// ImportedModel: what a reader made of a model file: one mesh of the whole file, its faces dealt
// out to named groups. Readers fill it; from here it goes into a scene as one ObjectP per group.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "geometry/Mesh3.h"
#include "geometry/ObjectP.h"

namespace orvin {

class SceneX;

struct ImportedModel {
    Mesh3 mesh;
    std::vector<std::string> groups;
    std::vector<std::uint32_t> faceGroups;  // group of each face of the mesh
};

/// The faces of each group as a mesh of its own, with the points that it uses, in the order of
/// first use; those of a model with a single group keep the order that they have.
std::vector<Mesh3> splitByGroup(ImportedModel&& model);

/// Makes one ObjectP per group, named after it (names unique in the scene), in the order of the
/// groups. The members belong to the scene. `path` and `type` say where they came from.
std::vector<ObjectP*> addToScene(SceneX& scene, ImportedModel&& model,
                                 const std::filesystem::path& path, ModelFileType type);

}  // namespace orvin
