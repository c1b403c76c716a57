#include "interchange/lightwave/LwoWriter.h"

#include <cstdio>
#include <string>
#include <unordered_map>
#include <vector>

#include "geometry/FaceSplit.h"
#include "interchange/ByteWriter.h"
#include "interchange/ModelFile.h"
#include "interchange/SectionMesh.h"
#include "interchange/lightwave/LwoFormat.h"
#include "render/MaterialX.h"
#include "toolkit/Progress.h"

namespace orvin {

namespace {

constexpr std::string_view kWriterName = "write_lwo";
constexpr std::string_view kMapName = "Texture";
constexpr int kMaxNumber = 0xFFFF;  // of layers and surfaces

/// Calls `visit` with the corners of each polygon that `mesh` gives, by their place in the face:
/// lines are two-point polygons there, points one-point ones. Every walk gives the same order.
template <typename Visit>
void forEachPolygon(const Mesh3& mesh, Visit&& visit) {
    int polygon = 0;
    for (int i = 0; i < mesh.faceCount(); ++i) {
        const FaceView face = mesh.face(i);
        const std::size_t count = face.vertices.size();
        if (face.kind == ElementKind::kPolygon)
            visit(polygon++, face, std::size_t{0}, count);
        else if (face.kind == ElementKind::kLine && count > 1)
            for (std::size_t j = 0; j + 1 < count; ++j)
                visit(polygon++, face, j, std::size_t{2});
        else
            for (std::size_t j = 0; j < count; ++j)
                visit(polygon++, face, j, std::size_t{1});
    }
}

int polygonCount(const Mesh3& mesh) {
    int count = 0;
    forEachPolygon(mesh, [&count](int, const FaceView&, std::size_t, std::size_t) { ++count; });
    return count;
}

class LwoWriter {
  public:
    Result part(const ExportPart& part) {
        for (int section = 0; section < kExportSections; ++section) {
            if (part.elements[static_cast<std::size_t>(section)] == 0) continue;
            if (pollProgress(section, kExportSections) != 0) return kFailure;
            Mesh3 mesh = sectionMesh(part, section);
            for (int i = 0; i < mesh.faceCount(); ++i)
                if (mesh.face(i).kind == ElementKind::kPolygon &&
                    mesh.face(i).vertices.size() > lwo::kMaxCorners) {
                    mesh =
                        quadrangulate(splitConcaveFaces(mesh), static_cast<int>(lwo::kMaxCorners));
                    break;
                }
            if (static_cast<std::uint32_t>(mesh.vertexCount()) > lwo::kMaxIndex ||
                static_cast<std::uint32_t>(polygonCount(mesh)) > lwo::kMaxIndex)
                return tooLarge();
            layer(mesh, part.groupName(section), surfaceOf(part, section));
        }
        return kSuccess;
    }

    Result writeTo(std::FILE* file) {
        ByteWriter start;
        const std::size_t tags = start.beginChunk(lwo::kTags);
        for (const std::string& name : surfaceNames_)
            start.text(name);
        start.endChunk(tags);

        const std::uint64_t size = 4 + start.size() + layers_.size() + surfaces_.size();
        if (size > 0xFFFFFFFFU || layers_.tooLarge() || layerCount_ > kMaxNumber ||
            surfaceNames_.size() > static_cast<std::size_t>(kMaxNumber))
            return tooLarge();
        ByteWriter head;
        head.u32(lwo::kForm);
        head.u32(static_cast<std::uint32_t>(size));
        head.u32(lwo::kLwo2);
        return head.writeTo(file) && start.writeTo(file) && layers_.writeTo(file) &&
                       surfaces_.writeTo(file)
                   ? kSuccess
                   : kFailure;
    }

  private:
    static Result tooLarge() {
        std::fprintf(stderr, "%s: too much geometry for a LightWave object.\n",
                     std::string(kWriterName).c_str());
        return kFailure;
    }

    void index(int value) {
        const auto number = static_cast<std::uint32_t>(value);
        if (number < lwo::kFirstLongIndex)
            layers_.u16(static_cast<std::uint16_t>(number));
        else
            layers_.u32(number | 0xFF000000U);
    }

    void layer(const Mesh3& mesh, std::string_view name, std::uint16_t surface) {
        std::size_t chunk = layers_.beginChunk(lwo::kLayer);
        layers_.u16(static_cast<std::uint16_t>(layerCount_++));
        layers_.u16(0);  // flags: visible
        for (int axis = 0; axis < 3; ++axis)
            layers_.f32(0.0);  // pivot
        layers_.text(name);
        layers_.endChunk(chunk);

        chunk = layers_.beginChunk(lwo::kPoints);
        for (const Vec3 p : mesh.vertices())
            point(p);
        layers_.endChunk(chunk);

        const Box3 box = mesh.bounds();
        chunk = layers_.beginChunk(lwo::kBounds);
        point({box.min.x, box.min.y, box.max.z});
        point({box.max.x, box.max.y, box.min.z});
        layers_.endChunk(chunk);

        const std::vector<int> textureOf = vertexMap(mesh);
        polygons(mesh, surface);
        if (!textureOf.empty()) discontinuousMap(mesh, textureOf);
    }

    void point(Vec3 p) {
        layers_.f32(p.x);
        layers_.f32(p.y);
        layers_.f32(0.0 - p.z);
    }

    void texture(const Mesh3& mesh, int index) {
        const Vec3 t = mesh.texVertex(index);
        layers_.f32(t.x);
        layers_.f32(t.y);
    }

    std::size_t beginMap(std::uint32_t kind) {
        const std::size_t chunk = layers_.beginChunk(kind);
        layers_.u32(lwo::kTextureMap);
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
        const std::size_t chunk = beginMap(lwo::kVertexMap);
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
        const std::size_t chunk = beginMap(lwo::kDiscontinuousMap);
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
        std::size_t chunk = layers_.beginChunk(lwo::kPolygons);
        layers_.u32(lwo::kFaces);
        forEachPolygon(mesh, [&](int, const FaceView& face, std::size_t from, std::size_t count) {
            layers_.u16(static_cast<std::uint16_t>(count));
            for (std::size_t j = from + count; j-- > from;)  // clockwise
                index(face.vertices[j]);
        });
        layers_.endChunk(chunk);

        chunk = layers_.beginChunk(lwo::kPolygonTags);
        layers_.u32(lwo::kSurface);
        forEachPolygon(mesh, [&](int polygon, const FaceView&, std::size_t, std::size_t) {
            index(polygon);
            layers_.u16(surface);
        });
        layers_.endChunk(chunk);
    }

    std::uint16_t surfaceOf(const ExportPart& part, int section) {
        const std::string name = part.materialName(section);
        const auto [found, isNew] =
            surfaceNumbers_.emplace(name, static_cast<std::uint16_t>(surfaceNames_.size()));
        if (!isNew) return found->second;
        surfaceNames_.push_back(name);
        const std::size_t chunk = surfaces_.beginChunk(lwo::kSurface);
        surfaces_.text(name);
        surfaces_.text("");  // derived from no other
        std::size_t value = surfaces_.beginSubChunk(lwo::kColor);
        const Rgba color = part.color(section);
        for (std::size_t i = 0; i < 3; ++i)
            surfaces_.f32(static_cast<double>(color[i]));
        surfaces_.u16(0);  // no envelope
        surfaces_.endSubChunk(value);
        const MaterialX* const material = part.material(section);
        if (material != nullptr && material->hasFlag(MaterialX::kTransparency)) {
            value = surfaces_.beginSubChunk(lwo::kTransparency);
            surfaces_.f32(material->transparency());
            surfaces_.u16(0);
            surfaces_.endSubChunk(value);
        }
        const double smoothing = part.object != nullptr ? part.object->hardShadingAngle() : -1.0;
        if (smoothing > 0.0) {
            value = surfaces_.beginSubChunk(lwo::kSmoothing);
            surfaces_.f32(radians(smoothing));
            surfaces_.endSubChunk(value);
        }
        surfaces_.endChunk(chunk);
        return found->second;
    }

    ByteWriter layers_;
    int layerCount_ = 0;
    ByteWriter surfaces_;
    std::vector<std::string> surfaceNames_;
    std::unordered_map<std::string, std::uint16_t> surfaceNumbers_;
};

}  // namespace

Result writeLwo(const std::filesystem::path& path, std::span<MeshObject* const> objects,
                const ExportOptions& options) {
    return writeModelFile(path, kWriterName, [&](std::FILE* file) {
        LwoWriter writer;
        const Result walked = walkExport(objects, options, kWriterName,
                                         [&](const ExportPart& part) { return writer.part(part); });
        return walked == kSuccess ? writer.writeTo(file) : kFailure;
    });
}

}  // namespace orvin
