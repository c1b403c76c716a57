#include "interchange/ObjWriter.h"

#include <cstdio>
#include <functional>

#include "interchange/ModelFile.h"
#include "interchange/TextOutput.h"
#include "toolkit/Progress.h"

namespace orvin {

namespace {

constexpr std::string_view kWriterName = "write_obj";
constexpr int kLinesPerTick = 5000;

class ObjWriter {
  public:
    ObjWriter(std::FILE* file, std::string_view lineEnd) : out_(file, lineEnd) {
        out_.text("# *** Tarnwick Orvinex generated OBJ file ***").endLine();
    }

    Result part(const ExportPart& part) {
        const Mesh3& mesh = *part.mesh;
        header(part);
        const Matrix4 normalFromObject = normalMatrix(part.worldFromObject);
        const bool whole =
            points("v", mesh.vertices(), [&](Vec3 p) { return part.worldFromObject.point(p); }) &&
            points("vt", mesh.texVertices(), [](Vec3 t) { return t; }) &&
            points("vn", mesh.normals(),
                   [&](Vec3 n) { return normalize(normalFromObject.direction(n)); });
        if (!whole) return kFailure;
        const bool mirrored = part.worldFromObject.determinant3() < 0.0;
        for (int section = 0; section < kExportSections; ++section)
            if (part.elements[static_cast<std::size_t>(section)] > 0) {
                out_.text("#").endLine();
                out_.text("g ").text(part.groupName(section)).endLine();
                if (elements(mesh, section, mirrored) != kSuccess) return kFailure;
            }
        firstVertex_ += mesh.vertexCount();
        firstTexture_ += mesh.texVertexCount();
        firstNormal_ += mesh.normalCount();
        return out_.failed() ? kFailure : kSuccess;
    }

    Result finish() {
        out_.flush();
        return out_.failed() ? kFailure : kSuccess;
    }

  private:
    void header(const ExportPart& part) {
        out_.text("#").endLine();
        out_.text("# Object '").text(part.name).text("'").endLine();
        if (part.frame >= 0) out_.text("# -Frame ").whole(part.frame + 1).endLine();
        count(part.mesh->vertexCount(), " vertices.");
        count(part.mesh->texVertexCount(), " texture vertices.");
        count(part.mesh->normalCount(), " normals.");
        count(part.elementCount(), " polygons.");
    }
    void count(int number, std::string_view what) {
        out_.text("# ").whole(number).text(what).endLine();
    }

    // False when progress stopped it.
    template <typename Convert>
    bool points(std::string_view keyword, std::span<const Vec3> list, Convert&& convert) {
        if (list.empty()) return true;
        out_.text("#").endLine();
        for (const Vec3 p : list) {
            point(keyword, convert(p));
            if (!tick()) return false;
        }
        return true;
    }

    void point(std::string_view keyword, Vec3 p) {
        out_.text(keyword);
        for (int axis = 0; axis < 3; ++axis)
            out_.character(' ').fixed(p[axis]);
        out_.endLine();
    }

    Result elements(const Mesh3& mesh, int section, bool mirrored) {
        constexpr char kKeywords[] = {'f', 'l', 'p'};
        for (int i = 0; i < mesh.faceCount(); ++i) {
            const FaceView face = mesh.face(i);
            if (face.material != section) continue;
            out_.character(kKeywords[static_cast<int>(face.kind)]);
            const std::size_t count = face.vertices.size();
            const bool reversed = mirrored && face.kind == ElementKind::kPolygon;
            for (std::size_t j = 0; j < count; ++j)
                corner(face, reversed ? count - 1 - j : j);
            out_.endLine();
            if (!tick()) return kFailure;
        }
        return kSuccess;
    }

    void corner(const FaceView& face, std::size_t j) {
        out_.character(' ').whole(firstVertex_ + face.vertices[j]);
        if (!face.texture.empty()) out_.character('/').whole(firstTexture_ + face.texture[j]);
        if (face.normals.empty()) return;
        if (face.texture.empty()) out_.character('/');
        out_.character('/').whole(firstNormal_ + face.normals[j]);
    }

    bool tick() { return ++lines_ % kLinesPerTick != 0 || pollProgress(0, 100) == 0; }

    TextOutput out_;
    // Numbers of the next object's first ones: they run on through the file.
    long long firstVertex_ = 1;
    long long firstTexture_ = 1;
    long long firstNormal_ = 1;
    long long lines_ = 0;
};

Result writeFile(const std::filesystem::path& path, std::string_view lineEnd,
                 const std::function<Result(ObjWriter&)>& write) {
    return writeModelFile(path, kWriterName, [&](std::FILE* file) {
        ObjWriter writer(file, lineEnd);
        return write(writer) == kSuccess ? writer.finish() : kFailure;
    });
}

}  // namespace

Result writeObj(const std::filesystem::path& path, std::span<MeshObject* const> objects,
                const ExportOptions& options) {
    return writeFile(path, options.lineEnd, [&](ObjWriter& writer) {
        return walkExport(objects, options, kWriterName,
                          [&](const ExportPart& part) { return writer.part(part); });
    });
}

Result writeObjMesh(const std::filesystem::path& path, const Mesh3& mesh, const std::string& name) {
    ExportPart part;
    part.name = onOneLine(name);
    part.mesh = &mesh;
    if (countSections(mesh, part) != kSuccess) return kFailure;
    if (part.elementCount() == 0) {
        std::fprintf(stderr, "%s: no geometry to export!\n", std::string(kWriterName).c_str());
        return kFailure;
    }
    return writeFile(path, "\n", [&](ObjWriter& writer) { return writer.part(part); });
}

}  // namespace orvin
