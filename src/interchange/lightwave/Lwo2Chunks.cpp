// LWO2: layers of points, polygons, maps and tags. Polygons are made when the last chunk that
// belongs to their points has been seen, since maps and tags may stand before or behind them.
#include <algorithm>
#include <string>
#include <tuple>
#include <vector>

#include "interchange/lightwave/LwoChunks.h"
#include "interchange/lightwave/LwoFormat.h"
#include "toolkit/Progress.h"
#include "toolkit/Release.h"

namespace orvin::lwo {

namespace {

constexpr int kPolygonsPerTick = 5000;
constexpr std::uint16_t kNoTag = 0xFFFF;

class Lwo2Reader {
  public:
    Lwo2Reader(ByteReader chunks, Layer& layer, Surfaces& surfaces)
        : chunks_(chunks), layer_(layer), surfaces_(surfaces) {}

    Result run() {
        for (ByteReader in = chunks_; !in.atEnd();)
            if (const IffChunk chunk = in.chunk(); chunk.id == kTags)
                surfaces_.addNames(chunk.body);
        reserve(chunks_);
        for (ByteReader in = chunks_; !in.atEnd();) {
            const IffChunk chunk = in.chunk();
            if (this->chunk(chunk) != kSuccess) return kFailure;
            if (chunk.id == kLayer) reserve(in);
        }
        if (finishLayer() != kSuccess) return kFailure;
        for (ByteReader in = chunks_; !in.atEnd();)
            if (const IffChunk chunk = in.chunk(); chunk.id == kSurface) surface(chunk.body);
        return kSuccess;
    }

  private:
    /// What a polygon says of the texture of one of its points.
    struct OwnTexture {
        std::uint32_t polygon = 0;
        std::uint32_t point = 0;
        int texture = 0;

        friend bool operator<(const OwnTexture& a, const OwnTexture& b) {
            return std::tuple(a.polygon, a.point, a.texture) <
                   std::tuple(b.polygon, b.point, b.texture);
        }
    };

    Result chunk(const IffChunk& chunk) {
        switch (chunk.id) {
            case kLayer:
                if (finishLayer() != kSuccess) return kFailure;
                startLayer(chunk.body);
                return kSuccess;
            case kPoints:
                if (finishPoints() != kSuccess) return kFailure;
                first_ = layer_.addPoints(chunk.body);
                count_ = layer_.mesh().vertexCount() - first_;
                return kSuccess;
            case kVertexMap:
                vertexMap(chunk.body);
                return kSuccess;
            case kPolygons:
            case kPolygonTags:
            case kDiscontinuousMap:
                remember(chunk);
                return kSuccess;
            default:
                return kSuccess;
        }
    }

    /// A chunk that waits until all are there.
    struct Pending {
        std::uint32_t id = 0;
        std::uint32_t position = 0;  // of its body in the file
        std::uint32_t size = 0;
    };

    ByteReader bodyOf(const Pending& pending) const {
        ByteReader in = chunks_;
        in.take(pending.position - in.position());
        return in.take(pending.size);
    }

    /// Empty polygons only matter for what follows them: it isn't of those before.
    void remember(const IffChunk& chunk) {
        constexpr std::size_t kType = 4;
        const std::size_t size = chunk.body.rest();
        const bool followsEmpty =
            !pending_.empty() && pending_.back().id == kPolygons && pending_.back().size <= kType;
        if (chunk.id != kPolygons && (followsEmpty || size <= kType)) return;
        if (followsEmpty) pending_.pop_back();
        pending_.push_back({chunk.id, static_cast<std::uint32_t>(chunk.body.position()),
                            static_cast<std::uint32_t>(size)});
    }

    /// Makes room for what stands in front of the next layer.
    void reserve(ByteReader chunks) {
        Layer::Counts counts;
        std::vector<std::uint64_t> textures;  // of the points: what the last value was
        while (!chunks.atEnd()) {
            const IffChunk chunk = chunks.chunk();
            if (chunk.id == kLayer) break;
            if (chunk.id == kPoints) {
                const std::size_t points = chunk.body.rest() / kPointBytes;
                counts.points += points;
                textures.assign(points, kNoValue);
            } else if (chunk.id == kPolygons) {
                count(chunk.body, counts);
            } else if (chunk.id == kVertexMap || chunk.id == kDiscontinuousMap) {
                counts.texture += texturesIn(chunk, textures);
            }
        }
        release(textures);
        layer_.reserve(counts);
    }

    void startLayer(ByteReader in) {
        in.take(2 + 2 + kPointBytes);  // number, flags, pivot
        layer_.setName(in.text());
    }

    Result finishLayer() {
        if (finishPoints() != kSuccess) return kFailure;
        layer_.finish();
        return kSuccess;
    }

    /// Makes the polygons of the points that came last.
    Result finishPoints() {
        for (std::size_t i = 0; i < pending_.size(); ++i) {
            if (pending_[i].id != kPolygons) continue;
            std::size_t end = i + 1;
            while (end < pending_.size() && pending_[end].id != kPolygons)
                ++end;
            if (polygons(bodyOf(pending_[i]), std::span(pending_).subspan(i + 1, end - i - 1)) !=
                kSuccess)
                return kFailure;
        }
        pending_.clear();
        release(textureOf_);
        release(lastOf_);
        release(ownTextures_);
        release(tags_);
        count_ = 0;
        return kSuccess;
    }

    // ---- maps and tags

    /// Reads type, dimension and name of a map; true if it holds texture coordinates.
    static bool isTextureMap(ByteReader& in) {
        const std::uint32_t type = in.u32();
        const std::uint16_t dimension = in.u16();
        in.skipText();
        return type == kTextureMap && dimension == 2 && !in.failed();
    }

    /// The texture vertex that `in` tells, or `known` if that is the same.
    int textureVertex(ByteReader& in, int known) {
        const double u = in.f32();
        const Vec3 texture{u, in.f32(), 0.0};
        if (known != kNoTexture && layer_.mesh().texVertex(known) == texture) return known;
        return layer_.mesh().addTexVertex(texture);
    }

    static constexpr std::uint64_t kNoValue = ~std::uint64_t{0};  // no pair of numbers

    /// How many texture vertices a map makes; about, as they are compared by their bytes.
    static std::size_t texturesIn(const IffChunk& map, std::span<std::uint64_t> ofPoints) {
        ByteReader in = map.body;
        if (!isTextureMap(in)) return 0;
        std::size_t count = 0;
        while (!in.atEnd()) {
            const std::uint32_t point = index(in);
            if (map.id == kDiscontinuousMap) index(in);
            const std::uint64_t u = in.u32();
            const std::uint64_t value = u << 32 | in.u32();
            if (in.failed() || point >= ofPoints.size()) continue;
            std::uint64_t& known = ofPoints[point];
            if (map.id == kVertexMap ? known != kNoValue : known == value) continue;
            known = value;
            ++count;
        }
        return count;
    }

    /// How many values a map with the polygons' own has.
    static std::size_t valuesIn(ByteReader map) {
        if (!isTextureMap(map)) return 0;
        std::size_t count = 0;
        for (; !map.atEnd(); ++count) {
            index(map);
            index(map);
            map.take(8);
        }
        return count;
    }

    void vertexMap(ByteReader in) {
        if (!isTextureMap(in)) return;
        textureOf_.resize(static_cast<std::size_t>(count_), kNoTexture);
        while (!in.atEnd()) {
            const std::uint32_t point = index(in);
            ByteReader values = in.take(8);
            if (in.failed()) return;
            if (point >= textureOf_.size() || textureOf_[point] != kNoTexture) continue;
            textureOf_[point] = textureVertex(values, kNoTexture);
        }
    }

    void discontinuousMap(const Pending& map) {
        ByteReader in = bodyOf(map);
        if (ownTextures_.empty()) ownTextures_.reserve(valuesIn(in));
        if (!isTextureMap(in)) return;
        if (lastOf_.empty()) {
            lastOf_ = textureOf_;
            lastOf_.resize(static_cast<std::size_t>(count_), kNoTexture);
        }
        while (!in.atEnd()) {
            const std::uint32_t point = index(in);
            const std::uint32_t polygon = index(in);
            ByteReader values = in.take(8);
            if (in.failed()) return;
            if (point >= lastOf_.size()) continue;
            int& last = lastOf_[point];  // most polygons around a point say the same
            last = textureVertex(values, last);
            ownTextures_.push_back({polygon, point, last});
        }
    }

    void polygonTags(ByteReader in) {
        if (in.u32() != kSurface) return;
        while (!in.atEnd()) {
            const std::uint32_t polygon = index(in);
            const std::uint16_t tag = in.u16();
            if (in.failed()) return;
            if (polygon < tags_.size()) tags_[polygon] = tag;
        }
    }

    // ---- polygons

    Result polygons(ByteReader in, std::span<const Pending> properties) {
        const std::uint32_t type = in.u32();
        const bool curves = type == kCurve;
        if (!curves && type != kFaces && type != kSubPatch && type != kSubDivision) return kSuccess;
        tags_.assign(polygonsIn(in), kNoTag);
        ownTextures_.clear();
        for (const Pending& chunk : properties) {
            if (chunk.id == kPolygonTags)
                polygonTags(bodyOf(chunk));
            else
                discontinuousMap(chunk);
        }
        std::sort(ownTextures_.begin(), ownTextures_.end());

        auto own = ownTextures_.begin();
        for (std::uint32_t polygon = 0; !in.atEnd(); ++polygon) {
            if (polygon % kPolygonsPerTick == 0 && pollProgress(static_cast<int>(polygon), 0) != 0)
                return kFailure;
            const std::size_t count = in.u16() & kMaxCorners;  // flags stand above
            const bool valid = readCorners(in, count);
            while (own != ownTextures_.end() && own->polygon < polygon)
                ++own;
            if (in.failed() || !valid || count == 0) continue;
            findTexture({own, ownTextures_.end()}, polygon);
            const std::uint16_t tag = tags_[polygon];
            const std::uint32_t surface = tag == kNoTag ? Surfaces::kNone : tag;
            if (curves)
                layer_.addCurve(corners_, surface);
            else
                layer_.addPolygon(corners_, texture_, surface);
        }
        return kSuccess;
    }

    /// Counts polygons, since their number isn't told anywhere.
    static void count(ByteReader in, Layer::Counts& counts) {
        in.u32();  // type
        while (!in.atEnd()) {
            const std::size_t corners = skipPolygon(in);
            counts.faces += corners > 1 ? 1 : 0;  // points share a face
            counts.corners += corners;
        }
    }
    static std::size_t polygonsIn(ByteReader in) {
        std::size_t polygons = 0;
        for (; !in.atEnd(); ++polygons)
            skipPolygon(in);
        return polygons;
    }
    static std::size_t skipPolygon(ByteReader& in) {
        const std::size_t count = in.u16() & kMaxCorners;  // flags stand above
        for (std::size_t i = 0; i < count; ++i)
            index(in);
        return count;
    }

    bool readCorners(ByteReader& in, std::size_t count) {
        corners_.clear();
        bool valid = true;
        for (std::size_t i = 0; i < count; ++i) {
            const std::uint32_t point = index(in);
            valid = valid && point < static_cast<std::uint32_t>(count_);
            corners_.push_back(first_ + static_cast<int>(point));
        }
        return valid;
    }

    /// Texture vertices of the corners, the polygon's own or their points'; none unless all have.
    void findTexture(std::span<const OwnTexture> own, std::uint32_t polygon) {
        texture_.clear();
        if (textureOf_.empty() && own.empty()) return;
        for (const int corner : corners_) {
            const auto point = static_cast<std::uint32_t>(corner - first_);
            int texture = point < textureOf_.size() ? textureOf_[point] : kNoTexture;
            if (!own.empty() && own.front().polygon == polygon) {
                const auto found =
                    std::lower_bound(own.begin(), own.end(), OwnTexture{polygon, point, 0});
                if (found != own.end() && found->polygon == polygon && found->point == point)
                    texture = found->texture;
            }
            if (texture == kNoTexture) {
                texture_.clear();
                return;
            }
            texture_.push_back(texture);
        }
    }

    void surface(ByteReader in) {
        const std::string name = in.text();
        in.skipText();  // of the surface that this one is derived from
        Surfaces::Look look;
        while (!in.atEnd()) {
            const IffChunk part = in.subChunk();
            ByteReader value = part.body;
            if (part.id == kColor && value.rest() >= kPointBytes)
                for (std::size_t i = 0; i < 3; ++i)
                    look.color[i] = static_cast<float>(value.f32());
            else if (part.id == kTransparency)
                look.transparency = value.f32();
        }
        surfaces_.setLook(name, look);
    }

    static constexpr int kNoTexture = -1;

    ByteReader chunks_;
    Layer& layer_;
    Surfaces& surfaces_;
    // Of the points that came last:
    int first_ = 0;  // point of the mesh that their point 0 is
    int count_ = 0;
    std::vector<int> textureOf_;    // of each; empty where no map was seen
    std::vector<int> lastOf_;       // that a polygon gave it
    std::vector<Pending> pending_;  // polygons, and tags and maps behind those that they belong to
    // Of the polygons that are being made:
    std::vector<std::uint16_t> tags_;
    std::vector<OwnTexture> ownTextures_;  // sorted
    std::vector<int> corners_;
    std::vector<int> texture_;
};

}  // namespace

Result readLwo2Chunks(ByteReader chunks, Layer& layer, Surfaces& surfaces) {
    return Lwo2Reader(chunks, layer, surfaces).run();
}

}  // namespace orvin::lwo
