// Any bytes as an OBJ file: read, completed with normals, split by group. Groups together must hold
// every element, and no number that isn't finite may come out.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

#include "fuzz/Fuzzing.h"
#include "geometry/SmoothNormals.h"
#include "geometry/Tangents.h"
#include "interchange/ObjReader.h"

namespace {

using namespace orvin;
using fuzzing::require;

void requireFinite(std::span<const Vec3> list) {
    for (const Vec3 v : list)
        require(std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ImportedModel model;
    if (parseObj({reinterpret_cast<const char*>(data), size}, model) != kSuccess) return 0;
    require(!model.groups.empty());
    require(model.faceGroups.size() == static_cast<std::size_t>(model.mesh.faceCount()));
    require(model.mesh.cornerCount() <= size);
    requireFinite(model.mesh.vertices());
    const double angle = size % 4 == 0 ? 20.0 : static_cast<double>(size % 181) - 1.0;
    completeNormals(model.mesh, angle);
    const int faces = model.mesh.faceCount();
    int total = 0;
    for (const Mesh3& mesh : splitByGroup(std::move(model))) {
        total += mesh.faceCount();
        require(mesh.vertices().size() <= mesh.cornerCount());
        for (int i = 0; i < mesh.faceCount(); ++i)
            require(mesh.face(i).normals.size() == mesh.face(i).vertices.size());
        requireFinite(mesh.normals());
        requireFinite(surfaceTangents(mesh, 1e-5).tangents);
    }
    require(total == faces);
    return 0;
}
