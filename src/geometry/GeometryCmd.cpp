#include "geometry/GeometryCmd.h"

#include <charconv>
#include <cmath>

#include "geometry/Mesh3.h"
#include "scene/SceneStream.h"
#include "toolkit/Numbers.h"

namespace orvin {

namespace {

// A face of many corners goes on in the next line: line ends mean nothing to the reader.
constexpr std::size_t kLongLine = 3800;

/// Numbers what the faces use from 0, in the order of first use.
class Renumbering {
  public:
    explicit Renumbering(int count) : numbers_(static_cast<std::size_t>(count), -1) {}

    void use(std::span<const int> indices) {
        for (const int i : indices) {
            int& number = numbers_[static_cast<std::size_t>(i)];
            if (number >= 0) continue;
            number = static_cast<int>(used_.size());
            used_.push_back(i);
        }
    }
    int operator[](int index) const { return numbers_[static_cast<std::size_t>(index)]; }
    std::span<const int> used() const { return used_; }

  private:
    std::vector<int> numbers_;
    std::vector<int> used_;
};

Result writePoints(SceneStream& stream, std::string_view key, std::span<const Vec3> points,
                   const Renumbering& numbers) {
    for (const int i : numbers.used())
        if (stream.putVector(key, points[static_cast<std::size_t>(i)]) != kSuccess) return kFailure;
    return kSuccess;
}

// The key of a face; it holds the count of corners where the word doesn't say it.
void putFaceKey(LineBuffer& line, ElementKind kind, std::size_t count) {
    const char letter = kind == ElementKind::kPolygon ? 'f'
                        : kind == ElementKind::kLine  ? 'l'
                                                      : 'p';
    line.character(letter);
    if (kind == ElementKind::kPointList && count == 1) return;
    const bool fixed = count == 3 || count == 4 || (count == 2 && kind == ElementKind::kLine);
    if (fixed && kind != ElementKind::kPointList)
        line.whole(static_cast<long long>(count));
    else
        line.text("n ").whole(static_cast<long long>(count));
}

double finite(double value) {
    return std::isfinite(value) ? value : 0.0;
}

Result readPoint(SceneStream& stream, Vec3& point) {
    if (stream.readVector3(point) != kSuccess) return kFailure;
    point = {finite(point.x), finite(point.y), finite(point.z)};
    return kSuccess;
}

struct CornerToken {
    int vertex = 0;
    int texture = -1;
    int normal = -1;
    bool hasTexture = false;
    bool hasNormal = false;
};

// "vertex/", "vertex/texture", "vertex/texture/normal" or "vertex//normal".
Result parseCorner(std::string_view token, CornerToken& corner) {
    const char* cursor = token.data();
    const char* const end = cursor + token.size();
    const auto [afterVertex, error] = std::from_chars(cursor, end, corner.vertex);
    if (error != std::errc() || afterVertex == end || *afterVertex != '/') return kFailure;
    cursor = afterVertex + 1;
    const auto [afterTexture, textureError] = std::from_chars(cursor, end, corner.texture);
    corner.hasTexture = afterTexture != cursor;
    if (corner.hasTexture && textureError != std::errc()) return kFailure;
    cursor = afterTexture;
    if (cursor == end || *cursor != '/') return kSuccess;
    ++cursor;
    const auto [afterNormal, normalError] = std::from_chars(cursor, end, corner.normal);
    corner.hasNormal = afterNormal != cursor;
    return corner.hasNormal && normalError != std::errc() ? kFailure : kSuccess;
}

}  // namespace

Result GeometryCmd::writeBody(SceneStream& stream) {
    Renumbering vertices(mesh_.vertexCount());
    Renumbering texture(mesh_.texVertexCount());
    Renumbering normals(mesh_.normalCount());
    for (int i = 0; i < mesh_.faceCount(); ++i) {
        const FaceView face = mesh_.face(i);
        vertices.use(face.vertices);
        texture.use(face.texture);
        normals.use(face.normals);
    }
    if (writePoints(stream, "v", mesh_.vertices(), vertices) != kSuccess ||
        writePoints(stream, "vt", mesh_.texVertices(), texture) != kSuccess ||
        writePoints(stream, "vn", mesh_.normals(), normals) != kSuccess)
        return kFailure;

    const auto count = [](const Renumbering& r) { return static_cast<long long>(r.used().size()); };
    LineBuffer& line = stream.line();
    line.clear().text("# ").whole(count(vertices)).text(" vertices ");
    line.text(" ").whole(count(texture)).text(" texture vertices ");
    line.text(" ").whole(count(normals)).text(" normals");
    if (stream.putLine() != kSuccess) return kFailure;

    for (int i = 0; i < mesh_.faceCount(); ++i) {
        const FaceView face = mesh_.face(i);
        line.clear();
        putFaceKey(line, face.kind, face.vertices.size());
        line.character(' ').whole(face.material);
        for (std::size_t c = 0; c < face.vertices.size(); ++c) {
            if (line.view().size() > kLongLine && stream.putLine() != kSuccess) return kFailure;
            line.character(' ').whole(vertices[face.vertices[c]]);
            if (!face.texture.empty()) line.character('/').whole(texture[face.texture[c]]);
            if (face.texture.empty()) line.character('/');  // a corner without any can't be read
            if (!face.normals.empty()) line.character('/').whole(normals[face.normals[c]]);
        }
        if (stream.putLine() != kSuccess) return kFailure;
    }
    line.clear().text("# ").whole(mesh_.faceCount()).text(" elements");
    return stream.putLine();
}

struct GeometryCmd::Commands : CommandRegistry {
    static GeometryCmd& block(Persistent& self) { return static_cast<GeometryCmd&>(self); }

    static Result vertex(SceneStream& stream, Persistent& self) {
        Vec3 p;
        if (readPoint(stream, p) != kSuccess) return kFailure;
        block(self).mesh_.addVertex(p);
        return kSuccess;
    }
    static Result texVertex(SceneStream& stream, Persistent& self) {
        Vec3 t;
        if (readPoint(stream, t) != kSuccess) return kFailure;
        block(self).mesh_.addTexVertex({t.y, 1.0 - t.x, t.z});
        return kSuccess;
    }
    static Result normal(SceneStream& stream, Persistent& self) {
        Vec3 n;
        if (readPoint(stream, n) != kSuccess) return kFailure;
        block(self).mesh_.addNormal(n);
        return kSuccess;
    }

    static Result face(SceneStream& stream, Persistent& self, ElementKind kind, int count) {
        GeometryCmd& b = block(self);
        int material = 0;
        if (count <= 0 || stream.readInt(material) != kSuccess) return kFailure;
        b.vertices_.clear();
        b.texture_.clear();
        b.normals_.clear();
        for (int i = 0; i < count; ++i) {
            std::string_view token;
            CornerToken corner;
            if (stream.nextToken(token) != kSuccess || parseCorner(token, corner) != kSuccess)
                return kFailure;
            b.vertices_.push_back(corner.vertex);
            if (corner.hasTexture) b.texture_.push_back(corner.texture);
            if (corner.hasNormal) b.normals_.push_back(corner.normal);
        }
        const int added = b.mesh_.addFace(kind, material, b.vertices_, b.texture_, b.normals_);
        return added < 0 ? kFailure : kSuccess;
    }
    template <ElementKind Kind, int Count>
    static Result fixed(SceneStream& stream, Persistent& self) {
        return face(stream, self, Kind, Count);
    }
    template <ElementKind Kind>
    static Result counted(SceneStream& stream, Persistent& self) {
        int count = 0;
        if (stream.readInt(count) != kSuccess) return kFailure;
        return face(stream, self, Kind, count);
    }

    Commands() : CommandRegistry(251) {
        lookupOrInsert("v", vertex);
        lookupOrInsert("vt", texVertex);
        lookupOrInsert("vn", normal);
        lookupOrInsert("f3", fixed<ElementKind::kPolygon, 3>);
        lookupOrInsert("f4", fixed<ElementKind::kPolygon, 4>);
        lookupOrInsert("fn", counted<ElementKind::kPolygon>);
        lookupOrInsert("l2", fixed<ElementKind::kLine, 2>);
        lookupOrInsert("l3", fixed<ElementKind::kLine, 3>);
        lookupOrInsert("l4", fixed<ElementKind::kLine, 4>);
        lookupOrInsert("ln", counted<ElementKind::kLine>);
        lookupOrInsert("p", fixed<ElementKind::kPointList, 1>);
        lookupOrInsert("pn", counted<ElementKind::kPointList>);
        lookupOrInsert("end", endCommand);
    }
};

const CommandRegistry& GeometryCmd::commandRegistry() const {
    static const Commands commands;
    return commands;
}

}  // namespace orvin
