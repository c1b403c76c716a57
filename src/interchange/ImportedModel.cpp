#include "interchange/ImportedModel.h"

#include <algorithm>
#include <span>
#include <utility>

#include "geometry/MeshSplit.h"
#include "geometry/SmoothNormals.h"
#include "interchange/ImportedGroups.h"
#include "toolkit/Release.h"

namespace orvin {

std::uint32_t ImportedModel::groupOf(int face) const {
    const auto next =
        std::upper_bound(groupStarts.begin(), groupStarts.end(), static_cast<std::uint32_t>(face),
                         [](std::uint32_t f, const GroupStart& start) { return f < start.face; });
    return (next - 1)->group;
}

namespace {

/// The face behind the ones that a start says the group of.
std::uint32_t endOf(const ImportedModel& model, std::size_t start) {
    return start + 1 < model.groupStarts.size()
               ? model.groupStarts[start + 1].face
               : static_cast<std::uint32_t>(model.mesh.faceCount());
}

bool groupsSharePoints(const ImportedModel& model) {
    constexpr std::uint32_t kNone = 0xFFFFFFFF;
    std::vector<std::uint32_t> groups(static_cast<std::size_t>(model.mesh.vertexCount()), kNone);
    for (std::size_t i = 0; i < model.groupStarts.size(); ++i) {
        const auto [first, group] = model.groupStarts[i];
        for (std::uint32_t face = first; face < endOf(model, i); ++face)
            for (const int vertex : model.mesh.face(static_cast<int>(face)).vertices) {
                const std::uint32_t before =
                    std::exchange(groups[static_cast<std::size_t>(vertex)], group);
                if (before != kNone && before != group) return true;
            }
    }
    return false;
}

/// A mesh with smooth normals, in the order of first use.
Mesh3 smoothed(Mesh3 mesh, double angleDegrees) {
    completeNormals(mesh, angleDegrees);
    const FaceRange all{0, static_cast<std::uint32_t>(mesh.faceCount())};
    const std::span<const FaceRange> part(&all, 1);
    return std::move(MeshSplit::split(std::move(mesh), {&part, 1}).front());
}

}  // namespace

void completeNormals(ImportedModel& model, double angleDegrees) {
    if (model.groups.size() > 1 && model.mesh.normalCount() == 0 && !groupsSharePoints(model))
        model.smoothAngle = angleDegrees;
    else
        completeNormals(model.mesh, angleDegrees);
}

std::vector<Mesh3> splitByGroup(ImportedModel&& model) {
    const std::size_t count = model.groups.size();
    if (count == 1) {
        std::vector<Mesh3> meshes(1);
        meshes[0] = std::move(model.mesh);
        meshes[0].dropUnused();
        return meshes;
    }

    // Faces gathered by group, in order.
    const auto& starts = model.groupStarts;
    std::vector<std::size_t> next(count + 1);
    for (const auto& start : starts)
        ++next[start.group + 1];
    for (std::size_t g = 1; g <= count; ++g)
        next[g] += next[g - 1];
    std::vector<FaceRange> ranges(starts.size());
    std::vector<std::span<const FaceRange>> parts(count);
    for (std::size_t g = 0; g < count; ++g)
        parts[g] = std::span(ranges).subspan(next[g], next[g + 1] - next[g]);
    for (std::size_t i = 0; i < starts.size(); ++i) {
        ranges[next[starts[i].group]++] = {starts[i].face, endOf(model, i) - starts[i].face};
    }
    release(model.groupStarts);
    std::vector<Mesh3> meshes = MeshSplit::split(std::move(model.mesh), parts);
    if (model.smoothAngle)
        for (Mesh3& mesh : meshes)
            mesh = smoothed(std::move(mesh), *model.smoothAngle);
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
