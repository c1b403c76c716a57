// MeshRecord: points, texture vertices and normals, and faces that index them. Mesh3 and Mesh2 are
// made of it.
//
// The corner lists of all faces lie in one pool of indices, so that a face costs no allocation and
// a walk over the faces reads memory in order. Every index in a record is in range: addFace()
// refuses others. A face has as many texture (normal) indices as vertices, or none at all.
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
        Face face;
        face.kind = kind;
        face.material = material;
        face.count = static_cast<std::uint32_t>(vertices.size());
        face.vertices = store(vertices);
        if (!texture.empty()) face.texture = store(texture);
        if (!normals.empty()) face.normals = store(normals);
        const int index = add(faces_, face);
        cornerCount_ += vertices.size();
        return index;
    }

    int vertexCount() const { return size(vertices_); }
    int texVertexCount() const { return size(texVertices_); }
    int normalCount() const { return size(normals_); }
    int faceCount() const { return size(faces_); }
    std::size_t cornerCount() const { return cornerCount_; }  // of all faces

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
        return {f.kind, f.material, list(f.vertices, f.count), list(f.texture, f.count),
                list(f.normals, f.count)};
    }

    void setMaterial(int face, int material) {
        faces_[static_cast<std::size_t>(face)].material = material;
    }

    /// Replaces all normals. `corners` has one index for each corner of each face, faces in order
    /// (cornerCount() in all); every face then has a normal list. -1, and nothing done, where the
    /// count differs or an index is out of range.
    int setNormals(std::vector<Point> normals, std::span<const int> corners) {
        if (corners.size() != cornerCount_ || !inRange(corners, normals)) return -1;
        std::size_t next = 0;
        for (Face& face : faces_) {
            const auto list = corners.subspan(next, face.count);
            next += face.count;
            if (face.normals == kNone)
                face.normals = store(list);
            else
                std::copy(list.begin(), list.end(),
                          pool_.begin() + static_cast<std::ptrdiff_t>(face.normals));
        }
        normals_ = std::move(normals);
        return 0;
    }

    /// Makes room, so that adding that many doesn't move what is there. `corners` counts the
    /// indices of all lists of all faces.
    void reserve(std::size_t vertices, std::size_t texVertices, std::size_t normals,
                 std::size_t faces, std::size_t corners) {
        vertices_.reserve(vertices);
        texVertices_.reserve(texVertices);
        normals_.reserve(normals);
        faces_.reserve(faces);
        pool_.reserve(corners);
    }

    void clear() { *this = {}; }

    /// Gives unused capacity back.
    void shrinkToFit() {
        vertices_.shrink_to_fit();
        texVertices_.shrink_to_fit();
        normals_.shrink_to_fit();
        faces_.shrink_to_fit();
        pool_.shrink_to_fit();
    }

  private:
    using PoolIndex = std::uint32_t;
    static constexpr PoolIndex kNone = std::numeric_limits<PoolIndex>::max();

    struct Face {
        ElementKind kind = ElementKind::kPolygon;
        int material = 0;
        std::uint32_t count = 0;
        PoolIndex vertices = kNone;  // starts of the lists in the pool
        PoolIndex texture = kNone;
        PoolIndex normals = kNone;
    };

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

    PoolIndex store(std::span<const int> indices) {
        const std::size_t start = pool_.size();
        if (indices.size() >= kNone - start) throw std::bad_alloc();
        pool_.insert(pool_.end(), indices.begin(), indices.end());
        return static_cast<PoolIndex>(start);
    }

    std::span<const int> list(PoolIndex start, std::uint32_t count) const {
        if (start == kNone) return {};
        return {pool_.data() + start, count};
    }

    std::vector<Point> vertices_;
    std::vector<Point> texVertices_;
    std::vector<Point> normals_;
    std::vector<Face> faces_;
    std::vector<int> pool_;
    std::size_t cornerCount_ = 0;
};

}  // namespace orvin
