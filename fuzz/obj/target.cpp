// Any bytes as an OBJ file: read, completed with normals, split by group. Groups together must hold
// every element, and no number that isn't finite may come out.
#include <cstddef>
#include <cstdint>
#include <utility>

#include "fuzz/ModelFuzzing.h"
#include "geometry/SmoothNormals.h"
#include "geometry/Tangents.h"
#include "interchange/ObjReader.h"

namespace {

using namespace orvin;
using fuzzing::require;
using fuzzing::requireFinite;
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ImportedModel model;
    if (fuzzing::parseBothWays(parseObj, {data, size}, model) != kSuccess) return 0;
    require(!model.groups.empty());
    for (int i = 0; i < model.mesh.faceCount(); ++i)
        require(model.groupOf(i) < model.groups.size());
    require(model.mesh.cornerCount() <= size);
    requireFinite(model.mesh.vertices());
    const double angle = size % 4 == 0 ? 20.0 : static_cast<double>(size % 181) - 1.0;
    completeNormals(model, angle);
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
