#include "interchange/dxf/DxfWriter.h"

#include <algorithm>
#include <cstdio>

#include "geometry/FaceSplit.h"
#include "geometry/ObjectX.h"
#include "interchange/ModelFile.h"
#include "interchange/TextOutput.h"
#include "interchange/dxf/DxfColors.h"
#include "toolkit/Progress.h"

namespace orvin {

namespace {

constexpr std::string_view kWriterName = "write_dxf";
constexpr std::string_view kNotInLayerNames = " !.\\/(),";
constexpr int kMaxCorners = 4;
constexpr int kPolygonsPerTick = 5000;

class DxfWriter {
  public:
    DxfWriter(std::FILE* file, std::string_view lineEnd) : out_(file, lineEnd) {
        for (const std::string_view line : {"999", "CREATED_BY_TARNWICK_3D-ORVINEX", "999",
                                            "DXF_FILE", "  0", "SECTION", "  2", "ENTITIES"})
            out_.text(line).endLine();
    }

    Result part(const ExportPart& part) {
        const bool extruded = dynamic_cast<const ObjectX*>(part.object) != nullptr;
        const Mesh3 cut = extruded ? quadrangulate(*part.mesh, kMaxCorners) : Mesh3();
        const Mesh3& mesh = extruded ? cut : *part.mesh;
        points_.clear();
        for (const Vec3 p : mesh.vertices())
            points_.push_back(part.worldFromObject.point(p));

        const bool mirrored = part.worldFromObject.determinant3() < 0.0;
        int tooMany = 0;
        for (int section = 0; section < kExportSections; ++section) {
            if (part.elements[static_cast<std::size_t>(section)] == 0) continue;
            const std::string layer = dxfLayerName(part.groupName(section, "-Sec "));
            const Rgba color = part.color(section);
            const int index = nearestDxfColor({color[0], color[1], color[2]});
            for (int i = 0; i < mesh.faceCount(); ++i) {
                if (!tick()) return kFailure;
                const FaceView face = mesh.face(i);
                if (face.material != section || face.kind != ElementKind::kPolygon) continue;
                if (face.vertices.size() == 3 || face.vertices.size() == kMaxCorners)
                    polygon(face, layer, index, mirrored);
                else if (face.vertices.size() > kMaxCorners)
                    ++tooMany;
            }
        }
        if (tooMany > 0)
            std::fprintf(stderr, "%s: %d polygons of '%s' have more than %d corners: left out.\n",
                         std::string(kWriterName).c_str(), tooMany, part.name.c_str(), kMaxCorners);
        return out_.failed() ? kFailure : kSuccess;
    }

    Result finish() {
        for (const std::string_view line : {"0", "ENDSEC", "   0", "EOF"})
            out_.text(line).endLine();
        out_.flush();
        return out_.failed() ? kFailure : kSuccess;
    }

  private:
    void polygon(const FaceView& face, std::string_view layer, int color, bool mirrored) {
        out_.text("0").endLine().text("3DFACE").endLine();
        out_.text("  8").endLine().text(layer).endLine();
        out_.text("62").endLine().text("   ").whole(color).endLine();
        const std::size_t count = face.vertices.size();
        for (std::size_t corner = 0; corner < kMaxCorners; ++corner) {
            const std::size_t i = std::min(corner, count - 1);  // a triangle's last one twice
            const int vertex = face.vertices[mirrored ? count - 1 - i : i];
            const Vec3 p = points_[static_cast<std::size_t>(vertex)];
            coordinate('1', corner, p.x);
            coordinate('2', corner, -p.z);
            coordinate('3', corner, p.y);
        }
    }

    void coordinate(char axis, std::size_t corner, double value) {
        out_.character(axis).character(static_cast<char>('0' + corner)).endLine();
        out_.fixed(value).endLine();
    }

    bool tick() { return ++polygons_ % kPolygonsPerTick != 0 || pollProgress(0, 100) == 0; }

    TextOutput out_;
    std::vector<Vec3> points_;  // of the part, in world space
    long long polygons_ = 0;
};

}  // namespace

std::string dxfLayerName(std::string name) {
    for (char& c : name)
        if (kNotInLayerNames.find(c) != std::string_view::npos) c = '_';
    return name;
}

Result writeDxf(const std::filesystem::path& path, std::span<MeshObject* const> objects,
                const ExportOptions& options) {
    return writeModelFile(path, kWriterName, [&](std::FILE* file) {
        DxfWriter writer(file, options.lineEnd);
        const Result walked = walkExport(objects, options, kWriterName,
                                         [&](const ExportPart& part) { return writer.part(part); });
        return walked == kSuccess ? writer.finish() : kFailure;
    });
}

}  // namespace orvin
