// LWOB: one list of points and one of polygons for all parts, without layers and texture maps.
#include <algorithm>
#include <string>

#include "interchange/lightwave/LwoFormat.h"
#include "interchange/lightwave/LwoObjectWriter.h"
#include "render/PixelWriter.h"

namespace orvin::lwo {

namespace {

constexpr int kMaxPoints = 0xFFFF;              // their indices have 16 bits
constexpr int kMaxSurfaces = 0x7FFF;            // numbers below zero say that details follow
constexpr std::uint16_t kSmoothShading = 0x04;  // of the flags of a surface
constexpr std::uint16_t kWhole = 256;           // what 100 % is in two bytes

class LwobWriter final : public ObjectWriter {
  public:
    LwobWriter() {
        pointsStart_ = points_.beginChunk(kPoints);
        polygonsStart_ = polygons_.beginChunk(kPolygons);
    }

    Result writeTo(std::FILE* file) override {
        points_.endChunk(pointsStart_);
        polygons_.endChunk(polygonsStart_);
        const ByteWriter names = surfaceNames(kSurfaceNames);
        return writeForm(file, kLwob, {&points_, &names, &polygons_, &surfaces()});
    }

  protected:
    Result section(const Mesh3& mesh, const ExportPart& part, int section) override {
        if (mesh.vertexCount() > kMaxPoints - pointCount_) return beyond(kMaxPoints, "points");
        const auto surface = static_cast<int>(surfaceOf(part, section)) + 1;
        if (surface > kMaxSurfaces) return beyond(kMaxSurfaces, "surfaces");
        points(points_, mesh);
        forEachPolygon(mesh, [&](int, const FaceView& face, std::size_t from, std::size_t count) {
            polygons_.u16(static_cast<std::uint16_t>(count));
            for (std::size_t j = from + count; j-- > from;)  // clockwise
                polygons_.u16(static_cast<std::uint16_t>(pointCount_ + face.vertices[j]));
            polygons_.u16(static_cast<std::uint16_t>(surface));
        });
        pointCount_ += mesh.vertexCount();
        return kSuccess;
    }

    void look(ByteWriter& surface, const Look& look) override {
        std::size_t value = surface.beginSubChunk(kColor);
        for (std::size_t i = 0; i < 3; ++i)
            surface.u8(channelToByte(look.color[i]));
        surface.u8(0);
        surface.endSubChunk(value);
        const bool smooth = look.smoothing > 0.0;
        number(surface, kFlags, smooth ? kSmoothShading : 0);
        number(surface, kDiffuse, kWhole);
        if (const double clear = look.transparency.value_or(0.0); clear > 0.0) {
            number(surface, kTransparency, std::lround(std::clamp(clear, 0.0, 1.0) * kWhole));
            exactNumber(surface, kExactTransparency, clear);
        }
        // Behind the flags: readers take those for an angle of their own.
        if (smooth) exactNumber(surface, kSmoothing, look.smoothing);
    }

  private:
    static void number(ByteWriter& surface, std::uint32_t id, long value) {
        const std::size_t start = surface.beginSubChunk(id);
        surface.u16(static_cast<std::uint16_t>(value));
        surface.endSubChunk(start);
    }

    static void exactNumber(ByteWriter& surface, std::uint32_t id, double value) {
        const std::size_t start = surface.beginSubChunk(id);
        surface.f32(value);
        surface.endSubChunk(start);
    }

    static Result beyond(int most, const char* what) {
        std::fprintf(stderr,
                     "%s: more than %d %s, the most that the older LightWave form (LWOB) can "
                     "number. Write fewer objects, or LWO2.\n",
                     std::string(kWriterName).c_str(), most, what);
        return kFailure;
    }

    ByteWriter points_;
    ByteWriter polygons_;
    std::size_t pointsStart_ = 0;
    std::size_t polygonsStart_ = 0;
    int pointCount_ = 0;
};

}  // namespace

std::unique_ptr<ObjectWriter> makeLwobWriter() {
    return std::make_unique<LwobWriter>();
}

}  // namespace orvin::lwo
