// What the fuzz targets of model readers ask of the groups that a reader made of any bytes.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "fuzz/Fuzzing.h"
#include "geometry/SmoothNormals.h"
#include "geometry/Tangents.h"
#include "interchange/ImportedGroups.h"
#include "interchange/ImportedModel.h"
#include "interchange/ModelInput.h"

namespace orvin::fuzzing {

inline void requireSame(const Mesh3& a, const Mesh3& b) {
    const auto same = [](const auto& p, const auto& q) {
        return std::equal(p.begin(), p.end(), q.begin(), q.end());
    };
    require(a.faceCount() == b.faceCount());
    require(same(a.cornerVertices(), b.cornerVertices()));
    require(same(a.vertices(), b.vertices()) && same(a.texVertices(), b.texVertices()));
}
inline void requireSame(const ImportedGroups& a, const ImportedGroups& b) {
    for (std::size_t i = 0; i < a.groups.size(); ++i)
        requireSame(a.groups[i].mesh, b.groups[i].mesh);
}
inline void requireSame(const ImportedModel& a, const ImportedModel& b) {
    requireSame(a.mesh, b.mesh);
}

/// Reads bytes as they lie in memory, and through a window that most values reach out of; both must
/// come to the same.
template <typename Model>
Result parseBothWays(Result (*parse)(ModelInput&, Model&), Bytes bytes, Model& model) {
    Model other;
    ModelInput whole(bytes);
    ModelInput windowed(bytes, 1 + bytes.size() % 37);
    const Result result = parse(whole, model);
    require(parse(windowed, other) == result);
    require(model.groups.size() == other.groups.size());
    requireSame(model, other);
    return result;
}

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
