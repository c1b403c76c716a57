// ImportedGroups: what the readers of formats with materials give: meshes by group, and the
// materials that their slots show. From here it goes into a scene as one ObjectP per group.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "geometry/Mesh3.h"
#include "geometry/ObjectP.h"
#include "render/Rgba.h"

namespace orvin {

class SceneX;

/// Groups beyond this many go into the last one, so that a file of nothing but group headers
/// doesn't fill the scene.
inline constexpr std::size_t kMaxImportedGroups = 10000;

struct ImportedMaterial {
    std::string name;
    Rgba color{0.9F, 0.9F, 0.9F, 1.0F};
    double transparency = 0.0;  // 0 solid, 1 clear
    bool shared = false;  // one that the scene has under this name serves; else it's made anew
};

struct ImportedGroup {
    static constexpr int kNoMaterial = -1;

    std::string name;
    Mesh3 mesh;                                            // faces in slots 0 to 5
    std::array<int, ObjectP::kMaterialCount> materials{};  // of each slot: index into the list

    ImportedGroup() { materials.fill(kNoMaterial); }
};

struct ImportedGroups {
    std::vector<ImportedGroup> groups;
    std::vector<ImportedMaterial> materials;  // those that nothing uses don't reach the scene

    /// Adds a group, to the last one (whose materials hold) where there are kMaxImportedGroups.
    void add(ImportedGroup group);

    std::size_t faceCount() const;  // of all groups
};

/// Makes one ObjectP per group, named after it, and the materials that they use; names are made
/// unique in the scene. The members belong to the scene. `path` and `type` say where they came
/// from. Slots without a material show the default one.
std::vector<ObjectP*> addToScene(SceneX& scene, ImportedGroups&& model,
                                 const std::filesystem::path& path, ModelFileType type);

}  // namespace orvin
