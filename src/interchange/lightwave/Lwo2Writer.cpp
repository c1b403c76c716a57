// LWO2: a layer for each section, with texture maps.
#include <span>
#include <string_view>
#include <vector>

#include "interchange/lightwave/LwoFormat.h"
#include "interchange/lightwave/LwoObjectWriter.h"

namespace orvin::lwo {

namespace {

constexpr std::string_view kMapName = "Texture";
constexpr std::size_t kMaxNumber = 0xFFFF;  // of layers and surfaces

class Lwo2Writer final : public ObjectWriter {
  public:
    Result writeTo(std::FILE* file) override {
        if (layerCount_ > kMaxNumber || surfaceCount() > kMaxNumber) return tooLarge();
        const ByteWriter tags = surfaceNames(kTags);
        return writeForm(file, kLwo2, {&tags, &layers_, &surfaces()});
    }

  protected:
    Result section(const Mesh3& mesh, const ExportPart& part, int section) override {
        if (static_cast<std::uint32_t>(mesh.vertexCount()) > kMaxIndex ||
            polygonCount(mesh) > kMaxIndex)
            return tooLarge();
        layer(mesh, part.groupName(section), static_cast<std::uint16_t>(surfaceOf(part, section)));
        return kSuccess;
    }

    void look(ByteWriter& surface, const Look& look) override {
        surface.text("");  // derived from no other
        std::size_t value = surface.beginSubChunk(kColor);
        for (std::size_t i = 0; i < 3; ++i)
            surface.f32(static_cast<double>(look.color[i]));
        surface.u16(0);  // no envelope
        surface.endSubChunk(value);
        if (look.transparency) {
            value = surface.beginSubChunk(kTransparency);
            surface.f32(*look.transparency);
            surface.u16(0);
            surface.endSubChunk(value);
        }
        if (look.smoothing > 0.0) {
            value = surface.beginSubChunk(kSmoothing);
            surface.f32(look.smoothing);
            surface.endSubChunk(value);
        }
    }

  private:
    static std::uint32_t polygonCount(const Mesh3& mesh) {
        std::uint32_t count = 0;
        forEachPolygon(mesh, [&count](int, const FaceView&, std::size_t, std::size_t) { ++count; });
        return count;
    }

    void index(int value) {
        const auto number = static_cast<std::uint32_t>(value);
        if (number < kFirstLongIndex)
            layers_.u16(static_cast<std::uint16_t>(number));
        else
            layers_.u32(number | 0xFF000000U);
    }

    void layer(const Mesh3& mesh, std::string_view name, std::uint16_t surface) {
        std::size_t chunk = layers_.beginChunk(kLayer);
        layers_.u16(static_cast<std::uint16_t>(layerCount_++));
        layers_.u16(0);  // flags: visible
        for (int axis = 0; axis < 3; ++axis)
            layers_.f32(0.0);  // pivot
        layers_.text(name);
        layers_.endChunk(chunk);

        chunk = layers_.beginChunk(kPoints);
        points(layers_, mesh);
        layers_.endChunk(chunk);

        const Box3 box = mesh.bounds();
        chunk = layers_.beginChunk(kBounds);
        point(layers_, {box.min.x, box.min.y, box.max.z});
        point(layers_, {box.max.x, box.max.y, box.min.z});
        layers_.endChunk(chunk);

        const std::vector<int> textureOf = vertexMap(mesh);
        polygons(mesh, surface);
        if (!textureOf.empty()) discontinuousMap(mesh, textureOf);
    }

    void texture(const Mesh3& mesh, int index) {
        const Vec3 t = mesh.texVertex(index);
        layers_.f32(t.x);
        layers_.f32(t.y);
    }

    std::size_t beginMap(std::uint32_t kind) {
        const std::size_t chunk = layers_.beginChunk(kind);
        layers_.u32(kTextureMap);
        layers_.u16(2);
        layers_.text(kMapName);
        return chunk;
    }

    /// Writes the texture coordinates that each point has in the first face that uses it, and
    /// returns which they are; nothing for a mesh without any.
    std::vector<int> vertexMap(const Mesh3& mesh) {
        std::vector<int> textureOf;
        for (int i = 0; i < mesh.faceCount(); ++i) {
            const FaceView face = mesh.face(i);
            if (face.texture.empty()) continue;
            textureOf.resize(static_cast<std::size_t>(mesh.vertexCount()), -1);
            for (std::size_t j = 0; j < face.vertices.size(); ++j) {
                int& first = textureOf[static_cast<std::size_t>(face.vertices[j])];
                if (first < 0) first = face.texture[j];
            }
        }
        if (textureOf.empty()) return textureOf;
        const std::size_t chunk = beginMap(kVertexMap);
        for (std::size_t v = 0; v < textureOf.size(); ++v) {
            if (textureOf[v] < 0) continue;
            index(static_cast<int>(v));
            texture(mesh, textureOf[v]);
        }
        layers_.endChunk(chunk);
        return textureOf;
    }

    /// Writes what differs from that.
    void discontinuousMap(const Mesh3& mesh, std::span<const int> textureOf) {
        const std::size_t before = layers_.size();
        const std::size_t chunk = beginMap(kDiscontinuousMap);
        const std::size_t empty = layers_.size();
        forEachPolygon(mesh,
                       [&](int polygon, const FaceView& face, std::size_t from, std::size_t count) {
                           if (face.texture.empty()) return;
                           for (std::size_t j = from; j < from + count; ++j) {
                               const int vertex = face.vertices[j];
                               const int shared = textureOf[static_cast<std::size_t>(vertex)];
                               if (mesh.texVertex(face.texture[j]) == mesh.texVertex(shared))
                                   continue;
                               index(vertex);
                               index(polygon);
                               texture(mesh, face.texture[j]);
                           }
                       });
        if (layers_.size() == empty)
            layers_.truncate(before);
        else
            layers_.endChunk(chunk);
    }

    void polygons(const Mesh3& mesh, std::uint16_t surface) {
        std::size_t chunk = layers_.beginChunk(kPolygons);
        layers_.u32(kFaces);
        forEachPolygon(mesh, [&](int, const FaceView& face, std::size_t from, std::size_t count) {
            layers_.u16(static_cast<std::uint16_t>(count));
            for (std::size_t j = from + count; j-- > from;)  // clockwise
                index(face.vertices[j]);
        });
        layers_.endChunk(chunk);

        chunk = layers_.beginChunk(kPolygonTags);
        layers_.u32(kSurface);
        forEachPolygon(mesh, [&](int polygon, const FaceView&, std::size_t, std::size_t) {
            index(polygon);
            layers_.u16(surface);
        });
        layers_.endChunk(chunk);
    }

    ByteWriter layers_;
    std::size_t layerCount_ = 0;
};

}  // namespace

std::unique_ptr<ObjectWriter> makeLwo2Writer() {
    return std::make_unique<Lwo2Writer>();
}

}  // namespace orvin::lwo
