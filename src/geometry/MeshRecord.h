// MeshRecord: points, texture vertices and normals, and faces that index them. Mesh3 and Mesh2 are
// made of it.
//
// The corner lists of all faces lie in pools of indices, so that a face costs no allocation and a
// walk over the faces reads memory in order. There is a pool for each kind of list, with the same
// places for the same corners: a face takes 12 bytes and 4 for each index. Every index in a record
// is in range: addFace() refuses others. A face has as many texture (normal) indices as vertices,
// or none at all.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>
#include <span>
#include <utility>
#include <vector>

#include "toolkit/math/Vec.h"

namespace orvin {

/// What a face's vertices mean. The numbers are those of files and of imported data.
enum class ElementKind : std::int32_t {
    kPolygon = 0,    // in Mesh2: a closed loop
    kLine = 1,       // an open polyline
    kPointList = 2,  // in Mesh2: an open path
};

/// One face, seen in place: the spans hold until the mesh is changed.
struct FaceView {
    ElementKind kind = ElementKind::kPolygon;
    int material = 0;               // slot of the object that shows the mesh; may be any number
    std::span<const int> vertices;  // at least one
    std::span<const int> texture;   // as many as vertices, or empty
    std::span<const int> normals;   // as many as vertices, or empty
};

template <typename Point>
class MeshRecord {
  public:
    // Each returns the index of what it added.
    int addVertex(Point p) { return add(vertices_, p); }
    int addNormal(Point n) { return add(normals_, n); }
    int addTexVertex(Point t) { return add(texVertices_, t); }

    /// Adds a face of vertices that are there already and returns its index. Texture or normal
    /// lists of another length than `vertices` are left out. -1, and nothing added, for a face
    /// without vertices or with an index out of range.
    int addFace(ElementKind kind, int material, std::span<const int> vertices,
                std::span<const int> texture = {}, std::span<const int> normals = {}) {
        if (texture.size() != vertices.size()) texture = {};
        if (normals.size() != vertices.size()) normals = {};
        if (vertices.empty() || !inRange(vertices, vertices_) || !inRange(texture, texVertices_) ||
            !inRange(normals, normals_))
            return -1;
        const std::size_t start = pool_.size();
        if (vertices.size() > kMaxCorners || start > kMaxStart) throw std::bad_alloc();
        Face face;
        face.start = static_cast<std::uint32_t>(start);
        face.material = material;
        face.shape = static_cast<std::uint32_t>(vertices.size()) |
                     static_cast<std::uint32_t>(kind) << kKindShift |
                     (texture.empty() ? 0 : kHasTexture) | (normals.empty() ? 0 : kHasNormals);
        pool_.insert(pool_.end(), vertices.begin(), vertices.end());
        store(texture, start, texturePool_);
        store(normals, start, normalPool_);
        return add(faces_, face);
    }

    int vertexCount() const { return size(vertices_); }
    int texVertexCount() const { return size(texVertices_); }
    int normalCount() const { return size(normals_); }
    int faceCount() const { return size(faces_); }
    std::size_t cornerCount() const { return pool_.size(); }  // of all faces

    std::span<const Point> vertices() const { return vertices_; }
    std::span<const Point> texVertices() const { return texVertices_; }
    std::span<const Point> normals() const { return normals_; }

    // By index; a zero vector for an index out of range.
    Point vertex(int i) const { return at(vertices_, i); }
    Point texVertex(int i) const { return at(texVertices_, i); }
    Point normal(int i) const { return at(normals_, i); }

    /// Face `i` of 0 to faceCount() - 1.
    FaceView face(int i) const {
        const Face& f = faces_[static_cast<std::size_t>(i)];
        return {static_cast<ElementKind>(f.shape >> kKindShift & kKindMask), f.material,
                list(pool_, f), (f.shape & kHasTexture) != 0 ? list(texturePool_, f) : NoList(),
                (f.shape & kHasNormals) != 0 ? list(normalPool_, f) : NoList()};
    }

    void setMaterial(int face, int material) {
        faces_[static_cast<std::size_t>(face)].material = material;
    }

    /// Replaces all normals. `corners` has one index for each corner of each face, faces in order
    /// (cornerCount() in all); every face then has a normal list. -1, and nothing done, where the
    /// count differs or an index is out of range.
    int setNormals(std::vector<Point> normals, std::span<const int> corners) {
        if (corners.size() != cornerCount() || !inRange(corners, normals)) return -1;
        for (Face& face : faces_)
            face.shape |= kHasNormals;
        normalPool_.assign(corners.begin(), corners.end());
        normals_ = std::move(normals);
        return 0;
    }

    /// Drops points, texture vertices and normals that no face uses. The others keep their order.
    void dropUnused() {
        const auto keep = [this](std::vector<Point>& points, std::vector<int>& pool,
                                 std::uint32_t lists) {
            constexpr int kUnused = -1;
            std::vector<int> numbers(points.size(), kUnused);
            const auto forEachIndex = [&](auto&& visit) {
                for (const Face& face : faces_)
                    for (std::uint32_t i = 0; (face.shape & lists) == lists && i < count(face); ++i)
                        visit(pool[face.start + i]);
            };
            forEachIndex([&](int index) { numbers[static_cast<std::size_t>(index)] = 0; });
            int next = 0;
            for (std::size_t i = 0; i < points.size(); ++i) {
                if (numbers[i] == kUnused) continue;
                points[static_cast<std::size_t>(next)] = points[i];
                numbers[i] = next++;
            }
            if (next == size(points)) return;
            points.resize(static_cast<std::size_t>(next));
            forEachIndex([&](int& index) { index = numbers[static_cast<std::size_t>(index)]; });
        };
        keep(vertices_, pool_, 0);
        keep(texVertices_, texturePool_, kHasTexture);
        keep(normals_, normalPool_, kHasNormals);
    }

    /// Makes room, so that adding that many doesn't move what is there. `corners` counts those of
    /// all faces; their texture and normal lists get room where there is any for what they index.
    void reserve(std::size_t vertices, std::size_t texVertices, std::size_t normals,
                 std::size_t faces, std::size_t corners) {
        vertices_.reserve(vertices);
        texVertices_.reserve(texVertices);
        normals_.reserve(normals);
        faces_.reserve(faces);
        pool_.reserve(corners);
        if (texVertices > 0) texturePool_.reserve(corners);
        if (normals > 0) normalPool_.reserve(corners);
    }

    void clear() { *this = {}; }

    /// Gives unused capacity back.
    void shrinkToFit() {
        vertices_.shrink_to_fit();
        texVertices_.shrink_to_fit();
        normals_.shrink_to_fit();
        faces_.shrink_to_fit();
        pool_.shrink_to_fit();
        texturePool_.shrink_to_fit();
        normalPool_.shrink_to_fit();
    }

  private:
    struct Face {
        std::uint32_t start = 0;  // of the corners in the pools
        std::int32_t material = 0;
        std::uint32_t shape = 0;  // count of corners, kind, and which lists there are
    };
    static constexpr std::uint32_t kMaxCorners = (1U << 28) - 1;
    static constexpr unsigned kKindShift = 28;
    static constexpr std::uint32_t kKindMask = 3;
    static constexpr std::uint32_t kHasTexture = 1U << 30;
    static constexpr std::uint32_t kHasNormals = 1U << 31;
    static constexpr std::size_t kMaxStart = std::numeric_limits<std::uint32_t>::max();
    using NoList = std::span<const int>;

    static std::uint32_t count(const Face& face) { return face.shape & kMaxCorners; }

    template <typename T>
    static int size(const std::vector<T>& list) {
        return static_cast<int>(list.size());
    }

    template <typename T>
    static int add(std::vector<T>& list, const T& value) {
        if (list.size() >= static_cast<std::size_t>(std::numeric_limits<int>::max()))
            throw std::bad_alloc();
        list.push_back(value);
        return size(list) - 1;
    }

    static Point at(const std::vector<Point>& list, int i) {
        return i >= 0 && i < size(list) ? list[static_cast<std::size_t>(i)] : Point{};
    }

    static bool inRange(std::span<const int> indices, const std::vector<Point>& list) {
        for (const int i : indices)
            if (i < 0 || static_cast<std::size_t>(i) >= list.size()) return false;
        return true;
    }

    /// Puts a list at its corners' place; faces before it without one leave a gap.
    static void store(std::span<const int> indices, std::size_t start, std::vector<int>& pool) {
        if (indices.empty()) return;
        pool.resize(start);
        pool.insert(pool.end(), indices.begin(), indices.end());
    }

    static std::span<const int> list(const std::vector<int>& pool, const Face& face) {
        return {pool.data() + face.start, count(face)};
    }

    std::vector<Point> vertices_;
    std::vector<Point> texVertices_;
    std::vector<Point> normals_;
    std::vector<Face> faces_;
    std::vector<int> pool_;         // vertices of all corners
    std::vector<int> texturePool_;  // in the same places, as far as any face has them
    std::vector<int> normalPool_;   // likewise
};

}  // namespace orvin
