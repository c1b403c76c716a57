#include "geometry/SmoothNormals.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <unordered_map>
#include <utility>

#include "toolkit/Release.h"

namespace orvin {

namespace {

constexpr double kRadiansPerDegree = 0.01745329278;

// What rounding may take off the dot product of a unit vector with itself.
constexpr double kDotNoise = 1e-15;

// Smallest distance at which unit normals can differ by more than that.
constexpr double kSmallestChord = 5e-8;

/// The groups of one vertex: finds the first one whose opening normal is near enough. A few are
/// searched one by one; more go into a grid whose cells are as wide as the angle's chord, so that
/// the neighbouring cells hold all candidates and each cell only a few.
class Groups {
  public:
    explicit Groups(double limit)
        : limit_(limit),
          cellsPerUnit_(0.99 /
                        std::max(std::sqrt(std::max(2.0 - 2.0 * limit, 0.0)), kSmallestChord)) {}

    struct Group {
        Vec3 opening;
        int normal;  // its index in the mesh
    };

    void clear() {
        if (groups_.size() > kLinearLimit) grid_ = {};  // clear() would go over all its buckets
        groups_.clear();
    }

    void open(Vec3 opening, int normal) {
        groups_.push_back({opening, normal});
        if (groups_.size() == kLinearLimit + 1)
            for (std::size_t i = 0; i < groups_.size(); ++i)
                addToGrid(i);
        else if (groups_.size() > kLinearLimit)
            addToGrid(groups_.size() - 1);
    }

    /// Null where no group takes `normal`.
    const Group* find(Vec3 normal) const {
        if (groups_.size() > kLinearLimit) return findInGrid(normal);
        for (const Group& group : groups_)
            if (dot(normal, group.opening) >= limit_) return &group;
        return nullptr;
    }

  private:
    static constexpr std::size_t kLinearLimit = 32;

    struct Cell {
        std::int64_t x, y, z;
    };
    Cell cellOf(Vec3 n) const {
        const auto cell = [this](double v) {
            return static_cast<std::int64_t>(std::floor(v * cellsPerUnit_));
        };
        return {cell(n.x), cell(n.y), cell(n.z)};
    }
    // Cells of equal key only cost a comparison more.
    static std::uint64_t keyOf(Cell c) {
        std::uint64_t key = static_cast<std::uint64_t>(c.x) * 0x9E3779B97F4A7C15ULL;
        key = (key ^ static_cast<std::uint64_t>(c.y)) * 0xC2B2AE3D27D4EB4FULL;
        return (key ^ (key >> 29) ^ static_cast<std::uint64_t>(c.z)) * 0x165667B19E3779F9ULL;
    }

    void addToGrid(std::size_t i) { grid_.emplace(keyOf(cellOf(groups_[i].opening)), i); }

    const Group* findInGrid(Vec3 normal) const {
        const Cell centre = cellOf(normal);
        std::size_t best = groups_.size();
        for (std::int64_t x = centre.x - 1; x <= centre.x + 1; ++x)
            for (std::int64_t y = centre.y - 1; y <= centre.y + 1; ++y)
                for (std::int64_t z = centre.z - 1; z <= centre.z + 1; ++z) {
                    const auto range = grid_.equal_range(keyOf({x, y, z}));
                    for (auto it = range.first; it != range.second; ++it)
                        if (dot(normal, groups_[it->second].opening) >= limit_)
                            best = std::min(best, it->second);
                }
        return best < groups_.size() ? &groups_[best] : nullptr;
    }

    double limit_;
    double cellsPerUnit_;
    std::vector<Group> groups_;
    std::unordered_multimap<std::uint64_t, std::size_t> grid_;
};

/// The planes' normals of faces, made when they are asked for. The last ones are kept: faces around
/// a vertex have mostly been there for a neighbour.
class FaceNormals {
  public:
    explicit FaceNormals(const Mesh3& mesh) : mesh_(mesh), kept_(kSize) {}

    Vec3 of(int face) {
        Kept& kept = kept_[static_cast<std::size_t>(face) % kSize];
        if (kept.face != face) kept = {mesh_.facePlane(face).normal, face};
        return kept.normal;
    }

  private:
    struct Kept {
        Vec3 normal;
        int face = -1;
    };
    static constexpr std::size_t kSize = 4096;

    const Mesh3& mesh_;
    std::vector<Kept> kept_;
};

struct CornerNormals {
    std::vector<Vec3> normals;
    std::vector<int> corners;  // of each corner, faces in order: its normal
};

/// Smooth normals of all faces. Beside them it takes four bytes a vertex.
CornerNormals smoothCorners(const Mesh3& mesh, double angleDegrees) {
    const bool allHard = !(angleDegrees >= 0.0) || !std::isfinite(angleDegrees);
    const double limit = allHard ? std::numeric_limits<double>::infinity()
                                 : std::cos(angleDegrees * kRadiansPerDegree) - kDotNoise;

    // The corners of a vertex are chained where their normals will stand.
    constexpr int kEnd = -1;
    const std::span<const int> vertices = mesh.cornerVertices();
    std::vector<int> corners(vertices.size());
    std::vector<int> first(static_cast<std::size_t>(mesh.vertexCount()), kEnd);
    for (std::size_t corner = vertices.size(); corner-- > 0;)
        corners[corner] = std::exchange(first[static_cast<std::size_t>(vertices[corner])],
                                        static_cast<int>(corner));

    FaceNormals faceNormals(mesh);
    int count = 0;
    Groups groups(allHard ? 1.0 : limit);
    for (int corner : first) {
        groups.clear();
        while (corner != kEnd) {
            const auto place = static_cast<std::uint32_t>(corner);  // there may be more than 2^31
            const Vec3 normal = faceNormals.of(mesh.faceOfCorner(place));
            // A face without area is near nothing, as long as the angle is below a right one.
            const bool alone = allHard || (normal == Vec3{} && limit > 0.0);
            const Groups::Group* const group = alone ? nullptr : groups.find(normal);
            const int number = group != nullptr ? group->normal : count++;
            if (group == nullptr && !alone) groups.open(normal, number);
            corner = std::exchange(corners[place], number);
        }
    }
    release(first);

    // Minus zero: the sum of one normal is that normal.
    std::vector<Vec3> normals(static_cast<std::size_t>(count), Vec3{-0.0, -0.0, -0.0});
    auto corner = corners.begin();
    for (int face = 0; face < mesh.faceCount(); ++face) {
        const Vec3 normal = mesh.facePlane(face).normal;
        for (std::size_t i = mesh.face(face).vertices.size(); i > 0; --i)
            normals[static_cast<std::size_t>(*corner++)] += normal;
    }
    for (Vec3& normal : normals)
        normal = normalize(normal);
    return {std::move(normals), std::move(corners)};
}

}  // namespace

void smoothNormals(Mesh3& mesh, double angleDegrees) {
    CornerNormals smooth = smoothCorners(mesh, angleDegrees);
    mesh.setNormals(std::move(smooth.normals), std::move(smooth.corners));
}

bool completeNormals(Mesh3& mesh, double angleDegrees) {
    int without = 0;
    for (int i = 0; i < mesh.faceCount(); ++i)
        if (mesh.face(i).normals.empty()) ++without;
    if (without == 0) return false;
    if (without == mesh.faceCount()) {
        smoothNormals(mesh, angleDegrees);
        return true;
    }
    CornerNormals all = smoothCorners(mesh, angleDegrees);
    const int own = mesh.normalCount();
    std::vector<Vec3> normals;
    normals.reserve(static_cast<std::size_t>(own) + all.normals.size());
    normals.assign(mesh.normals().begin(), mesh.normals().end());
    normals.insert(normals.end(), all.normals.begin(), all.normals.end());
    release(all.normals);
    auto corner = all.corners.begin();
    for (int i = 0; i < mesh.faceCount(); ++i) {
        const FaceView face = mesh.face(i);
        for (std::size_t c = 0; c < face.vertices.size(); ++c, ++corner)
            *corner = face.normals.empty() ? own + *corner : face.normals[c];
    }
    mesh.setNormals(std::move(normals), std::move(all.corners));
    return true;
}

}  // namespace orvin
