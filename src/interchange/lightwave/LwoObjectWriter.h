// What the writers of both kinds of LightWave objects do alike: sections, points and surfaces.
#pragma once

#include <cstdint>
#include <cstdio>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "geometry/Mesh3.h"
#include "interchange/ByteWriter.h"
#include "interchange/ExportWalk.h"
#include "render/Rgba.h"
#include "toolkit/Result.h"

namespace orvin {
class MaterialX;
}

namespace orvin::lwo {

inline constexpr std::string_view kWriterName = "write_lwo";

class ObjectWriter {
  public:
    ObjectWriter() = default;
    virtual ~ObjectWriter() = default;
    ObjectWriter(const ObjectWriter&) = delete;
    ObjectWriter& operator=(const ObjectWriter&) = delete;

    /// Takes the sections of a part. -1, with a line on standard error, where the kind can't number
    /// all of it; without one when the progress callback stopped it.
    Result part(const ExportPart& part);

    /// Writes what was taken, once. -1, with a line on standard error where the object is too
    /// large.
    virtual Result writeTo(std::FILE* file) = 0;

  protected:
    struct Look {
        Rgba color;
        std::optional<double> transparency;  // 0 to 1; none where it is off
        double smoothing = 0.0;  // radians; faces that meet at less are smooth; 0 is flat
    };

    /// Takes one section, none of whose polygons has more than kMaxCorners corners.
    virtual Result section(const Mesh3& mesh, const ExportPart& part, int section) = 0;

    /// Writes what follows the name in the chunk of a surface.
    virtual void look(ByteWriter& surface, const Look& look) = 0;

    /// The number, from 0, of the surface that shows the section's material. Each material has one,
    /// smooth as the first object that shows it; a name that another one has gains a number.
    std::size_t surfaceOf(const ExportPart& part, int section);
    std::size_t surfaceCount() const { return surfaceNames_.size(); }

    /// The chunks of all surfaces, and a chunk of their names.
    const ByteWriter& surfaces() const { return surfaces_; }
    ByteWriter surfaceNames(std::uint32_t chunk) const;

    static void point(ByteWriter& out, Vec3 p);
    static void points(ByteWriter& out, const Mesh3& mesh);

    /// Writes the FORM of these chunks.
    static Result writeForm(std::FILE* file, std::uint32_t type,
                            std::initializer_list<const ByteWriter*> chunks);
    static Result tooLarge();

    /// Calls `visit` with the polygons that `mesh` gives, each as a face, the place of its first
    /// corner there and their count: lines are two-point polygons there, points one-point ones.
    /// Every walk gives the same order.
    template <typename Visit>
    static void forEachPolygon(const Mesh3& mesh, Visit&& visit) {
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

  private:
    std::string distinctName(std::string name);

    ByteWriter surfaces_;
    std::vector<std::string> surfaceNames_;
    std::unordered_set<std::string> takenNames_;
    std::unordered_map<const MaterialX*, std::size_t> surfaceNumbers_;
};

std::unique_ptr<ObjectWriter> makeLwobWriter();
std::unique_ptr<ObjectWriter> makeLwo2Writer();

}  // namespace orvin::lwo
