#include "render/gl/MeshArrays.h"

#include <algorithm>
#include <array>
#include <bit>
#include <unordered_map>
#include <utility>

namespace orvin {

namespace {

std::uint64_t scramble(std::uint64_t x) {  // the finaliser of MurmurHash3
    x = (x ^ (x >> 33)) * 0xff51afd7ed558ccdULL;
    x = (x ^ (x >> 33)) * 0xc4ceb9fe1a85ec53ULL;
    return x ^ (x >> 33);
}

template <typename Key>
struct KeyHash {
    std::size_t operator()(const Key& key) const {
        std::uint64_t hash = 0;
        for (const auto part : key)
            hash = scramble(hash ^ static_cast<std::uint64_t>(part));
        return hash;
    }
};

template <typename Key>
using KeyMap = std::unordered_map<Key, std::uint32_t, KeyHash<Key>>;

MeshArrays::Vertex vertexAt(Vec3 p, Vec3 n, Vec3 t) {
    const auto f = [](double v) { return static_cast<float>(v); };
    return {f(t.x), f(t.y), f(n.x), f(n.y), f(n.z), f(p.x), f(p.y), f(p.z)};
}

// The faces by slot, slots in order of first use.
std::vector<std::vector<int>> facesBySlot(const Mesh3& mesh) {
    std::vector<std::vector<int>> faces;
    std::unordered_map<int, std::size_t> slots;
    for (int i = 0; i < mesh.faceCount(); ++i) {
        const auto [slot, isNew] = slots.try_emplace(mesh.face(i).material, faces.size());
        if (isNew) faces.emplace_back();
        faces[slot->second].push_back(i);
    }
    return faces;
}

void closeRun(std::vector<MeshArrays::Run>& runs, int face, std::size_t first, std::size_t end) {
    if (end > first) runs.push_back({face, first, end - first});
}

// ---- surfaces

class SurfaceBuilder {
  public:
    explicit SurfaceBuilder(const Mesh3& mesh) : mesh_(mesh) {
        corners_.reserve(static_cast<std::size_t>(mesh.vertexCount()));
    }

    void add(int face) {
        const FaceView view = mesh_.face(face);
        if (view.kind != ElementKind::kPolygon || view.vertices.size() < 3) return;
        flat_ = view.normals.empty() ? mesh_.facePlane(face).normal : Vec3{};
        const std::uint32_t first = corner(view, face, 0);
        std::uint32_t before = corner(view, face, 1);
        for (std::size_t i = 2; i < view.vertices.size(); ++i) {
            const std::uint32_t here = corner(view, face, i);
            out_.triangles.insert(out_.triangles.end(), {first, before, here});
            before = here;
        }
    }
    MeshArrays& arrays() { return out_; }

  private:
    std::uint32_t corner(const FaceView& view, int face, std::size_t i) {
        const int vertex = view.vertices[i];
        const int texture = view.texture.empty() ? -1 : view.texture[i];
        // A flat face's normal is its own.
        const int normal = view.normals.empty() ? -2 - face : view.normals[i];
        const auto next = static_cast<std::uint32_t>(out_.vertices.size());
        const auto [entry, isNew] = corners_.try_emplace({vertex, texture, normal}, next);
        if (isNew)
            out_.vertices.push_back(vertexAt(mesh_.vertex(vertex),
                                             normal < 0 ? flat_ : mesh_.normal(normal),
                                             mesh_.texVertex(texture)));
        return entry->second;
    }

    const Mesh3& mesh_;
    MeshArrays out_;
    Vec3 flat_;
    KeyMap<std::array<int, 3>> corners_;
};

// ---- edges

class EdgeBuilder {
  public:
    explicit EdgeBuilder(const Mesh3& mesh) : mesh_(mesh) { weld(); }

    void addPolygon(int face) {
        const FaceView view = mesh_.face(face);
        const std::size_t count = view.vertices.size();
        if (count < 2) return;
        const Vec3 normal = mesh_.facePlane(face).normal;
        for (std::size_t i = 0; i < count; ++i)
            meet(view.vertices[i], view.vertices[(i + 1) % count], face, view.material, normal);
    }
    void addLine(int face) {
        const FaceView view = mesh_.face(face);
        for (std::size_t i = 1; i < view.vertices.size(); ++i)
            put(point(view.vertices[i - 1]), point(view.vertices[i]), face);
    }

    /// All edges with their faces; those of one face follow each other.
    struct Edge {
        std::uint32_t from, to;
        int face;
        int slot;
        Vec3 normal;  // of the face
        int faces = 1;
        bool shown = true;
    };
    const std::vector<Edge>& edges() const { return edges_; }
    const std::vector<MeshArrays::Vertex>& vertices() const { return vertices_; }

  private:
    // One number for each place.
    void weld() {
        KeyMap<std::array<std::uint64_t, 3>> places;
        places.reserve(static_cast<std::size_t>(mesh_.vertexCount()));
        for (const Vec3& p : mesh_.vertices()) {
            // Adding 0 turns -0 into 0.
            const std::array<std::uint64_t, 3> key{std::bit_cast<std::uint64_t>(p.x + 0.0),
                                                   std::bit_cast<std::uint64_t>(p.y + 0.0),
                                                   std::bit_cast<std::uint64_t>(p.z + 0.0)};
            const auto next = static_cast<std::uint32_t>(vertices_.size());
            const auto [place, isNew] = places.try_emplace(key, next);
            if (isNew) vertices_.push_back(vertexAt(p, {}, {}));
            points_.push_back(place->second);
        }
    }
    std::uint32_t point(int vertex) const { return points_[static_cast<std::size_t>(vertex)]; }

    void put(std::uint32_t from, std::uint32_t to, int face) {
        edges_.push_back({from, to, face, mesh_.face(face).material, {}});
    }

    void meet(int a, int b, int face, int slot, Vec3 normal) {
        const std::uint32_t from = point(a);
        const std::uint32_t to = point(b);
        if (from == to) return;
        const std::array<std::uint32_t, 2> key{std::min(from, to), std::max(from, to)};
        const auto next = static_cast<std::uint32_t>(edges_.size());
        const auto [entry, isNew] = joints_.try_emplace(key, next);
        if (isNew) {
            edges_.push_back({from, to, face, slot, normal});
            return;
        }
        Edge& edge = edges_[entry->second];
        // cos 0.5 degrees; faces without area bend nothing.
        constexpr double kFlat = 0.99996192;
        const double bend = dot(edge.normal, normal);
        const bool someArea = dot(edge.normal, edge.normal) > 0.0 && dot(normal, normal) > 0.0;
        edge.shown = ++edge.faces > 2 || edge.slot != slot || (someArea && bend < kFlat);
    }

    const Mesh3& mesh_;
    std::vector<std::uint32_t> points_;  // by mesh vertex
    std::vector<MeshArrays::Vertex> vertices_;
    std::vector<Edge> edges_;
    KeyMap<std::array<std::uint32_t, 2>> joints_;
};

}  // namespace

MeshArrays surfaceArrays(const Mesh3& mesh) {
    SurfaceBuilder builder(mesh);
    for (const std::vector<int>& faces : facesBySlot(mesh)) {
        const std::size_t first = builder.arrays().triangles.size();
        for (const int face : faces)
            builder.add(face);
        closeRun(builder.arrays().triangleRuns, faces.front(), first,
                 builder.arrays().triangles.size());
    }
    return std::move(builder.arrays());
}

MeshArrays edgeArrays(const Mesh3& mesh) {
    EdgeBuilder builder(mesh);
    MeshArrays out;
    std::vector<std::size_t> ends;  // of each slot's edges
    const std::vector<std::vector<int>> slots = facesBySlot(mesh);
    for (const std::vector<int>& faces : slots) {
        for (const int face : faces) {
            const ElementKind kind = mesh.face(face).kind;
            if (kind == ElementKind::kPolygon) builder.addPolygon(face);
            if (kind == ElementKind::kLine) builder.addLine(face);
        }
        ends.push_back(builder.edges().size());
    }
    std::size_t next = 0;
    for (std::size_t slot = 0; slot < ends.size(); ++slot) {
        const std::size_t first = out.lines.size();
        for (; next < ends[slot]; ++next) {
            const EdgeBuilder::Edge& edge = builder.edges()[next];
            if (edge.shown) out.lines.insert(out.lines.end(), {edge.from, edge.to});
        }
        closeRun(out.lineRuns, slots[slot].front(), first, out.lines.size());
    }
    out.vertices = builder.vertices();
    return out;
}

}  // namespace orvin
