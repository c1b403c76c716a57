// What the fuzz targets of model readers ask of the groups that a reader made of any bytes.
#pragma once

#include <cmath>
#include <cstddef>

#include "fuzz/Fuzzing.h"
#include "geometry/SmoothNormals.h"
#include "geometry/Tangents.h"
#include "interchange/ImportedGroups.h"

namespace orvin::fuzzing {

inline void requireFinite(std::span<const Vec3> list) {
    for (const Vec3 v : list)
        require(std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z));
}

/// No number that isn't finite comes out, slots and materials exist, and no more is made of `size`
/// bytes than a small multiple of them.
inline void requireSoundGroups(ImportedGroups& model, std::size_t size) {
    require(model.groups.size() <= kMaxImportedGroups);
    std::size_t corners = 0;
    for (ImportedGroup& group : model.groups) {
        for (const int material : group.materials)
            require(material == ImportedGroup::kNoMaterial ||
                    static_cast<std::size_t>(material) < model.materials.size());
        corners += group.mesh.cornerCount();
        require(group.mesh.vertices().size() <= group.mesh.cornerCount());
        requireFinite(group.mesh.vertices());
        requireFinite(group.mesh.texVertices());
        for (int i = 0; i < group.mesh.faceCount(); ++i) {
            const int slot = group.mesh.face(i).material;
            require(slot >= 0 && slot < ObjectP::kMaterialCount);
        }
        completeNormals(group.mesh, static_cast<double>(size % 181) - 1.0);
        requireFinite(group.mesh.normals());
        requireFinite(surfaceTangents(group.mesh, 1e-5).tangents);
    }
    require(corners <= 3 * size);
}

}  // namespace orvin::fuzzing
