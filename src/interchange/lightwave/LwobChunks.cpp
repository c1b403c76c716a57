// LWOB: one list of points, polygons with their surface behind their corners.
#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "interchange/lightwave/LwoChunks.h"
#include "interchange/lightwave/LwoFormat.h"
#include "toolkit/Progress.h"

namespace orvin::lwo {

namespace {

constexpr int kPolygonsPerTick = 5000;

class LwobReader {
  public:
    LwobReader(Layer& layer, Surfaces& surfaces) : layer_(layer), surfaces_(surfaces) {}

    Result run(ByteReader chunks) {
        // Polygons first name their surfaces when those are known: names may stand behind them.
        // The room for all of them is made at once.
        Layer::Counts counts;
        for (ByteReader in = chunks; !in.atEnd();)
            look(in.chunk(), counts);
        layer_.reserve(counts);
        for (ByteReader in = chunks; !in.atEnd();)
            if (this->chunk(in.chunk()) != kSuccess) return kFailure;
        layer_.finish();
        for (ByteReader in = chunks; !in.atEnd();)
            if (const IffChunk chunk = in.chunk(); chunk.id == kSurface) surface(chunk.body);
        return kSuccess;
    }

  private:
    Result chunk(const IffChunk& chunk) {
        switch (chunk.id) {
            case kPoints:
                first_ = layer_.addPoints(chunk.body);
                return kSuccess;
            case kPolygons:
            case kPatches:
                return polygons(chunk.body, false);
            case kCurves:
                return polygons(chunk.body, true);
            default:
                return kSuccess;
        }
    }

    void look(const IffChunk& chunk, Layer::Counts& counts) {
        if (chunk.id == kSurfaceNames)
            surfaces_.addNames(chunk.body);
        else if (chunk.id == kPoints)
            counts.points += chunk.body.rest() / kPointBytes;
        else if (chunk.id == kPolygons || chunk.id == kPatches || chunk.id == kCurves)
            count(chunk.body, chunk.id == kCurves, counts);
    }

    Result polygons(ByteReader in, bool curves) {
        for (int i = 0; !in.atEnd(); ++i) {
            if (i % kPolygonsPerTick == 0 && pollProgress(i, 0) != 0) return kFailure;
            const int points = layer_.mesh().vertexCount() - first_;
            const std::size_t count = in.u16();
            bool valid = count <= in.rest() / 2;
            corners_.clear();
            ByteReader indices = in.take(2 * count);
            while (valid && !indices.atEnd()) {
                const int index = indices.u16();
                valid = index < points;
                corners_.push_back(first_ + index);
            }
            const int surface = in.i16();
            if (curves)
                in.u16();  // which ends are only there for direction
            else if (surface < 0)
                in.u16();  // how many details lie on it: polygons like others, which follow
            if (in.failed() || !valid || corners_.empty()) continue;
            const auto number = static_cast<std::uint32_t>(std::abs(surface)) - 1;  // from 1
            if (curves)
                layer_.addCurve(corners_, number);
            else
                layer_.addPolygon(corners_, {}, number);
        }
        return kSuccess;
    }

    /// Counts the polygons of a chunk: their number isn't told anywhere.
    static void count(ByteReader in, bool curves, Layer::Counts& counts) {
        while (!in.atEnd()) {
            const std::size_t count = std::min<std::size_t>(in.u16(), in.rest() / 2);
            in.take(2 * count);
            if (const int surface = in.i16(); curves || surface < 0) in.u16();
            counts.faces += count > 1 ? 1 : 0;  // points share a face
            counts.corners += count;
        }
    }

    void surface(ByteReader in) {
        const std::string name = in.text();
        Surfaces::Look look;
        while (!in.atEnd()) {
            const IffChunk part = in.subChunk();
            ByteReader value = part.body;
            if (part.id == kColor) {
                for (std::size_t i = 0; i < 3; ++i)
                    look.color[i] = static_cast<float>(value.u8()) / 255.0F;
            } else if (part.id == kTransparency) {
                look.transparency = value.u16() / 256.0;
            } else if (part.id == kExactTransparency) {
                look.transparency = value.f32();
            }
        }
        surfaces_.setLook(name, look);
    }

    Layer& layer_;
    Surfaces& surfaces_;
    int first_ = 0;  // point of the mesh that the file's point 0 is
    std::vector<int> corners_;
};

}  // namespace

Result readLwobChunks(ByteReader chunks, Layer& layer, Surfaces& surfaces) {
    return LwobReader(layer, surfaces).run(chunks);
}

}  // namespace orvin::lwo
