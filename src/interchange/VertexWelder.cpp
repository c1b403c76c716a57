#include "interchange/VertexWelder.h"

#include <bit>

#include "toolkit/Release.h"

namespace orvin {

namespace {

constexpr std::int32_t kFree = -1;
constexpr std::size_t kFirstSize = 64;

std::uint64_t hashOf(Vec3 p) {
    constexpr std::uint64_t kOdd = 0x9E3779B97F4A7C15ULL;  // spreads neighbouring values
    std::uint64_t hash = std::bit_cast<std::uint64_t>(p.x) * kOdd;
    hash = (std::rotl(hash, 31) ^ std::bit_cast<std::uint64_t>(p.y)) * kOdd;
    hash = (std::rotl(hash, 31) ^ std::bit_cast<std::uint64_t>(p.z)) * kOdd;
    return hash ^ (hash >> 29);
}

/// Where the search for `p` begins in a table of `size` entries.
std::size_t placeOf(Vec3 p, std::size_t size) {
    return static_cast<std::size_t>((hashOf(p) & 0xFFFFFFFFU) * size >> 32);
}

}  // namespace

int VertexWelder::vertexAt(Mesh3& mesh, Vec3 p) {
    p += Vec3{};  // no minus zero
    const auto count = static_cast<std::size_t>(mesh.vertexCount());
    if (table_.size() < count + count / 4 + 1) grow(mesh);
    const std::size_t size = table_.size();
    for (std::size_t i = placeOf(p, size);; i = i + 1 < size ? i + 1 : 0) {
        if (table_[i] == kFree) return table_[i] = mesh.addVertex(p);
        if (mesh.vertices()[static_cast<std::size_t>(table_[i])] == p) return table_[i];
    }
}

void VertexWelder::grow(const Mesh3& mesh) {
    const std::size_t size = table_.empty() ? kFirstSize : table_.size() + table_.size() / 4;
    release(table_);  // before the new one
    table_.assign(size, kFree);
    std::int32_t vertex = 0;
    for (const Vec3 p : mesh.vertices()) {
        std::size_t i = placeOf(p, size);
        while (table_[i] != kFree)
            i = i + 1 < size ? i + 1 : 0;
        table_[i] = vertex++;
    }
}

}  // namespace orvin
