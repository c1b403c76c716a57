// MeshRecord: points, texture vertices and normals, and faces that index them. Mesh3 and Mesh2 are
// made of it.
//
// The corner lists of all faces lie in pools of indices, so that a face costs no allocation and a
// walk over the faces reads memory in order. There is a pool for each kind of list, with the same
// places for the same corners: an index takes 4 bytes, a face up to 8 (see FaceTable). Every index
// in a record is in range: addFace() refuses others. A face has as many texture (normal) indices as
// vertices, or none at all.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>
#include <span>
#include <utility>
#include <vector>

#include "geometry/FaceTable.h"
#include "toolkit/math/Vec.h"

namespace orvin {

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
        const std::size_t start = faceEnd();
        pool_.resize(start);  // what a face that ran out of memory left
        pool_.insert(pool_.end(), vertices.begin(), vertices.end());
        store(texture, start, texturePool_);
        store(normals, start, normalPool_);
        return closeFace(kind, material, start, !texture.empty(), !normals.empty());
    }

    // A face corner by corner, which is never held twice: what is added belongs to the face that
    // finishFace() makes, and nothing else may be done to the record before. False, and nothing
    // added, for an index out of range.
    bool addCorner(int vertex) { return addOpen(vertex, vertices_, pool_); }
    bool addCornerTexture(int texture) {
        if (texturePool_.size() < faceEnd()) texturePool_.resize(faceEnd());
        return addOpen(texture, texVertices_, texturePool_);
    }
    bool addCornerNormal(int normal) {
        if (normalPool_.size() < faceEnd()) normalPool_.resize(faceEnd());
        return addOpen(normal, normals_, normalPool_);
    }

    /// Makes a face of the corners, as addFace() does.
    int finishFace(ElementKind kind, int material) {
        const std::size_t start = faceEnd();
        const std::size_t end = pool_.size();
        const auto isWhole = [&](std::vector<int>& pool) {
            if (pool.size() == end && end > start) return true;
            if (pool.size() > start) pool.resize(start);
            return false;
        };
        const bool texture = isWhole(texturePool_);
        const bool normals = isWhole(normalPool_);
        return end > start ? closeFace(kind, material, start, texture, normals) : -1;
    }

    int vertexCount() const { return size(vertices_); }
    int texVertexCount() const { return size(texVertices_); }
    int normalCount() const { return size(normals_); }
    int faceCount() const { return static_cast<int>(faces_.size()); }
    std::size_t cornerCount() const { return pool_.size(); }  // of all faces

    /// The vertices of all corners, faces in order.
    std::span<const int> cornerVertices() const { return pool_; }
    /// The face that has a corner, by the corner's place among all.
    int faceOfCorner(std::size_t corner) const {
        return static_cast<int>(faces_.faceOfCorner(static_cast<std::uint32_t>(corner)));
    }

    std::span<const Point> vertices() const { return vertices_; }
    std::span<const Point> texVertices() const { return texVertices_; }
    std::span<const Point> normals() const { return normals_; }

    // By index; a zero vector for an index out of range.
    Point vertex(int i) const { return at(vertices_, i); }
    Point texVertex(int i) const { return at(texVertices_, i); }
    Point normal(int i) const { return at(normals_, i); }

    /// Face `i` of 0 to faceCount() - 1.
    FaceView face(int i) const {
        const FaceTable::Place place = faces_.at(static_cast<std::size_t>(i));
        const FaceTable::Shape& shape = place.shape;
        return {shape.kind, shape.material, list(pool_, place),
                shape.texture ? list(texturePool_, place) : NoList(),
                shape.normals ? list(normalPool_, place) : NoList()};
    }

    void setMaterial(int face, int material) {
        faces_.setMaterial(static_cast<std::size_t>(face), material);
    }

    /// Replaces all normals. `corners` has one index for each corner of each face, faces in order
    /// (cornerCount() in all); every face then has a normal list. -1, and nothing done, where the
    /// count differs or an index is out of range.
    int setNormals(std::vector<Point> normals, std::vector<int> corners) {
        if (corners.size() != cornerCount() || !inRange(corners, normals)) return -1;
        faces_.setHasNormals();
        normalPool_ = std::move(corners);
        normals_ = std::move(normals);
        return 0;
    }

    /// Drops points, texture vertices and normals that no face uses. The others keep their order.
    void dropUnused() {
        dropUnused(vertices_, pool_, [](const FaceTable::Shape&) { return true; });
        dropUnused(texVertices_, texturePool_, [](const auto& shape) { return shape.texture; });
        dropUnused(normals_, normalPool_, [](const auto& shape) { return shape.normals; });
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

    /// Gives unused capacity back where it is worth a copy.
    void shrinkToFit() {
        const auto shrink = [](auto& list) {
            if (list.capacity() - list.size() > list.size() / 16) list.shrink_to_fit();
        };
        shrink(vertices_);
        shrink(texVertices_);
        shrink(normals_);
        shrink(pool_);
        shrink(texturePool_);
        shrink(normalPool_);
    }

  private:
    friend class MeshSplit;
    using NoList = std::span<const int>;

    std::size_t faceEnd() const { return faces_.cornerEnd(); }

    int closeFace(ElementKind kind, int material, std::size_t start, bool texture, bool normals) {
        constexpr std::size_t kMaxEnd = std::numeric_limits<std::uint32_t>::max();
        constexpr std::size_t kMaxFaces = std::numeric_limits<int>::max();
        if (pool_.size() > kMaxEnd || faces_.size() >= kMaxFaces) throw std::bad_alloc();
        faces_.add(
            {static_cast<std::uint32_t>(pool_.size() - start), material, kind, texture, normals});
        return faceCount() - 1;
    }

    static bool addOpen(int index, const std::vector<Point>& points, std::vector<int>& pool) {
        if (index < 0 || static_cast<std::size_t>(index) >= points.size()) return false;
        pool.push_back(index);
        return true;
    }

    /// Those of `points` that `pool` doesn't index, in faces of which `has` is true.
    template <typename Has>
    void dropUnused(std::vector<Point>& points, std::vector<int>& pool, Has&& has) {
        struct Word {
            std::uint64_t used = 0;    // a bit for each of 64 points
            std::uint32_t before = 0;  // how many are used of those before
        };
        std::vector<Word> words(points.size() / 64 + 1);
        const auto forEachIndex = [&](auto&& visit) {
            for (std::size_t f = 0; f < faces_.size(); ++f) {
                const FaceTable::Place place = faces_.at(f);
                if (!has(place.shape)) continue;
                for (std::uint32_t i = 0; i < place.shape.count; ++i)
                    visit(pool[place.start + i]);
            }
        };
        forEachIndex([&](int index) {
            const auto i = static_cast<std::size_t>(index);
            words[i / 64].used |= std::uint64_t{1} << i % 64;
        });
        std::uint32_t count = 0;
        for (Word& word : words) {
            word.before = count;
            count += static_cast<std::uint32_t>(std::popcount(word.used));
        }
        if (count == points.size()) return;
        const auto numberOf = [&](std::size_t i) {
            const Word& word = words[i / 64];
            const std::uint64_t below = word.used & ((std::uint64_t{1} << i % 64) - 1);
            return word.before + static_cast<std::uint32_t>(std::popcount(below));
        };
        for (std::size_t i = 0; i < points.size(); ++i)
            if ((words[i / 64].used >> i % 64 & 1) != 0) points[numberOf(i)] = points[i];
        points.resize(count);
        points.shrink_to_fit();
        forEachIndex([&](int& index) {
            index = static_cast<int>(numberOf(static_cast<std::size_t>(index)));
        });
    }

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

    static std::span<const int> list(const std::vector<int>& pool, const FaceTable::Place& place) {
        return {pool.data() + place.start, place.shape.count};
    }

    std::vector<Point> vertices_;
    std::vector<Point> texVertices_;
    std::vector<Point> normals_;
    FaceTable faces_;
    std::vector<int> pool_;         // vertices of all corners
    std::vector<int> texturePool_;  // in the same places, as far as any face has them
    std::vector<int> normalPool_;   // likewise
};

}  // namespace orvin
