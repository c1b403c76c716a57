#include "geometry/MeshSplit.h"

#include <utility>

#include "toolkit/Release.h"

namespace orvin {

namespace {

constexpr int kUnused = -1;

template <typename Visit>
void forEachFace(std::span<const FaceRange> ranges, Visit&& visit) {
    for (const FaceRange& range : ranges)
        for (std::uint32_t i = 0; i < range.count; ++i)
            visit(std::size_t{range.first} + i);
}

/// One list of a mesh: points, and for each corner an index of one.
struct List {
    std::vector<Vec3>& points;
    std::vector<int>& pool;
};

}  // namespace

std::vector<Mesh3> MeshSplit::split(Mesh3&& whole,
                                    std::span<const std::span<const FaceRange>> parts) {
    std::vector<Mesh3> meshes(parts.size());
    for (std::size_t p = 0; p < parts.size(); ++p) {
        std::size_t count = 0;
        for (const FaceRange& range : parts[p])
            count += range.count;
        meshes[p].faces_.reserve(count);
        forEachFace(parts[p],
                    [&](std::size_t face) { meshes[p].faces_.add(whole.faces_.at(face).shape); });
    }

    const auto splitList = [&](List from, auto&& listOf, auto&& has) {
        std::vector<int> numbers(from.points.size(), kUnused);
        std::vector<int> used;  // of the part, in the order of first use
        for (std::size_t p = 0; p < parts.size(); ++p) {
            const List to = listOf(meshes[p]);
            std::size_t end = 0;  // of the pool: nothing stands behind the last face with a list
            std::size_t corners = 0;
            used.clear();
            forEachFace(parts[p], [&](std::size_t face) {
                const FaceTable::Place place = whole.faces_.at(face);
                corners += place.shape.count;
                if (!has(place.shape)) return;
                end = corners;
                for (std::uint32_t i = 0; i < place.shape.count; ++i) {
                    const int index = from.pool[place.start + i];
                    int& number = numbers[static_cast<std::size_t>(index)];
                    if (number != kUnused) continue;
                    number = static_cast<int>(used.size());
                    used.push_back(index);
                }
            });
            to.pool.resize(end);
            std::size_t corner = 0;
            forEachFace(parts[p], [&](std::size_t face) {
                const FaceTable::Place place = whole.faces_.at(face);
                for (std::uint32_t i = 0; has(place.shape) && i < place.shape.count; ++i)
                    to.pool[corner + i] =
                        numbers[static_cast<std::size_t>(from.pool[place.start + i])];
                corner += place.shape.count;
            });
            to.points.reserve(used.size());
            for (const int index : used) {
                to.points.push_back(from.points[static_cast<std::size_t>(index)]);
                numbers[static_cast<std::size_t>(index)] = kUnused;
            }
        }
        release(from.points);
        release(from.pool);
    };
    splitList(
        {whole.vertices_, whole.pool_},
        [](Mesh3& mesh) {
            return List{mesh.vertices_, mesh.pool_};
        },
        [](const FaceTable::Shape&) { return true; });
    splitList(
        {whole.texVertices_, whole.texturePool_},
        [](Mesh3& mesh) {
            return List{mesh.texVertices_, mesh.texturePool_};
        },
        [](const FaceTable::Shape& shape) { return shape.texture; });
    splitList(
        {whole.normals_, whole.normalPool_},
        [](Mesh3& mesh) {
            return List{mesh.normals_, mesh.normalPool_};
        },
        [](const FaceTable::Shape& shape) { return shape.normals; });
    whole.clear();
    return meshes;
}

}  // namespace orvin
