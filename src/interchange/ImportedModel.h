// ImportedModel: what a reader made of a model file: one mesh of the whole file, its faces dealt
// out to named groups. Readers fill it; from here it goes into a scene as one ObjectP per group.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "geometry/Mesh3.h"
#include "geometry/ObjectP.h"

namespace orvin {

class SceneX;

struct ImportedModel {
    /// From this face of the mesh on, up to the next start, faces belong to the group.
    struct GroupStart {
        std::uint32_t face = 0;
        std::uint32_t group = 0;
    };

    Mesh3 mesh;
    std::vector<std::string> groups;
    std::vector<GroupStart> groupStarts;  // by face; the first face has one
    std::optional<double> smoothAngle;    // groups get smooth normals with it when they are split

    /// The group of a face.
    std::uint32_t groupOf(int face) const;
};

/// Gives elements without normals smooth ones (see completeNormals of a mesh). Groups that share
/// points share normals there; where none do, and none has normals of its own, the meshes of the
/// groups are to get theirs: splitByGroup() does it.
void completeNormals(ImportedModel& model, double angleDegrees);

/// The faces of each group as a mesh of its own, with the points that it uses, in the order of
/// first use; those of a model with a single group keep the order that they have.
std::vector<Mesh3> splitByGroup(ImportedModel&& model);

/// Makes one ObjectP per group, named after it (names unique in the scene), in the order of the
/// groups. The members belong to the scene. `path` and `type` say where they came from.
std::vector<ObjectP*> addToScene(SceneX& scene, ImportedModel&& model,
                                 const std::filesystem::path& path, ModelFileType type);

}  // namespace orvin
