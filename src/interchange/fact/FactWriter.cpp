#include "interchange/fact/FactWriter.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>

#include "interchange/ByteWriter.h"
#include "interchange/ModelFile.h"
#include "interchange/SectionMesh.h"
#include "interchange/fact/FactFormat.h"
#include "render/MaterialX.h"
#include "toolkit/Progress.h"

namespace orvin {

namespace {

constexpr std::string_view kWriterName = "write_fact";
constexpr double kFloatLoss = 1e-6;  // of a group's size, that 32-bit points may cost

bool floatsSuffice(const Mesh3& mesh) {
    const double allowed = kFloatLoss * length(mesh.bounds().size());
    const auto holds = [allowed](double v) {
        return std::abs(static_cast<double>(static_cast<float>(v)) - v) <= allowed;
    };
    return std::all_of(mesh.vertices().begin(), mesh.vertices().end(),
                       [&](Vec3 p) { return holds(p.x) && holds(p.y) && holds(p.z); });
}

class FactWriter {
  public:
    FactWriter() {
        file_ = out_.beginChunk(fact::kForm);
        out_.u32(fact::kFile);
    }

    Result part(const ExportPart& part) {
        for (int section = 0; section < kExportSections; ++section) {
            if (part.elements[static_cast<std::size_t>(section)] == 0) continue;
            if (pollProgress(section, kExportSections) != 0) return kFailure;
            group(sectionMesh(part, section), part, section);
        }
        return kSuccess;
    }

    Result writeTo(std::FILE* file) {
        out_.endChunk(file_);
        if (out_.tooLarge()) {
            std::fprintf(stderr, "%s: too much geometry for a FACT file.\n",
                         std::string(kWriterName).c_str());
            return kFailure;
        }
        return out_.writeTo(file) ? kSuccess : kFailure;
    }

  private:
    void group(const Mesh3& mesh, const ExportPart& part, int section) {
        const std::size_t group = out_.beginChunk(fact::kForm);
        out_.u32(fact::kGroup);
        header(mesh, part, section);

        const bool narrow = floatsSuffice(mesh);
        std::size_t chunk = out_.beginChunk(narrow ? fact::kPoints32 : fact::kPoints64);
        for (const Vec3 p : mesh.vertices())
            for (const double v : {p.x, p.y, 0.0 - p.z}) {
                if (narrow)
                    out_.f32(v);
                else
                    out_.f64(v);
            }
        out_.endChunk(chunk);
        if (mesh.texVertexCount() > 0) {
            chunk = out_.beginChunk(fact::kTexture);
            for (const Vec3 t : mesh.texVertices())
                point32(t);
            out_.endChunk(chunk);
        }
        if (mesh.normalCount() > 0) {
            chunk = out_.beginChunk(fact::kNormals);
            for (const Vec3 n : mesh.normals())
                point32({n.x, n.y, 0.0 - n.z});
            out_.endChunk(chunk);
        }
        elements(mesh);
        out_.endChunk(group);
    }

    void point32(Vec3 p) {
        out_.f32(p.x);
        out_.f32(p.y);
        out_.f32(p.z);
    }

    void header(const Mesh3& mesh, const ExportPart& part, int section) {
        const std::size_t header = out_.beginChunk(fact::kForm);
        out_.u32(fact::kGroupHeader);
        std::size_t chunk = out_.beginChunk(fact::kInfo);
        for (const int count :
             {mesh.vertexCount(), mesh.texVertexCount(), mesh.normalCount(), mesh.faceCount()})
            out_.i32(count);
        out_.endChunk(chunk);

        chunk = out_.beginChunk(fact::kAttributes);
        out_.u16(0);  // slot
        const Rgba color = part.color(section);
        for (std::size_t i = 0; i < 3; ++i)
            out_.f32(static_cast<double>(color[i]));
        const MaterialX* const material = part.material(section);
        out_.f32(material != nullptr ? material->transparency() : 0.0);
        out_.text(part.materialName(section));
        out_.endChunk(chunk);

        chunk = out_.beginChunk(fact::kLink);
        out_.i32(-1);
        out_.endChunk(chunk);
        chunk = out_.beginChunk(fact::kName);
        out_.text(part.groupName(section));
        out_.endChunk(chunk);
        out_.endChunk(header);
    }

    void elements(const Mesh3& mesh) {
        const std::size_t chunk = out_.beginChunk(fact::kElements);
        for (int i = 0; i < mesh.faceCount(); ++i) {
            const FaceView face = mesh.face(i);
            out_.u8(static_cast<std::uint8_t>(face.kind));
            out_.u8(static_cast<std::uint8_t>((face.texture.empty() ? 0 : fact::kHasTexture) |
                                              (face.normals.empty() ? 0 : fact::kHasNormals)));
            out_.u16(static_cast<std::uint16_t>(face.material));
            out_.u32(static_cast<std::uint32_t>(face.vertices.size()));
            for (const auto list : {face.vertices, face.texture, face.normals})
                for (const int index : list)
                    out_.i32(index);
        }
        out_.endChunk(chunk);
    }

    ByteWriter out_;
    std::size_t file_ = 0;  // start of the outer FORM
};

}  // namespace

Result writeFact(const std::filesystem::path& path, std::span<MeshObject* const> objects,
                 const ExportOptions& options) {
    return writeModelFile(path, kWriterName, [&](std::FILE* file) {
        FactWriter writer;
        const Result walked = walkExport(objects, options, kWriterName,
                                         [&](const ExportPart& part) { return writer.part(part); });
        return walked == kSuccess ? writer.writeTo(file) : kFailure;
    });
}

}  // namespace orvin
