#include "geometry/SmoothNormals.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <unordered_map>

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

/// The corners of all faces (numbered through, faces in order), gathered by vertex.
struct CornersByVertex {
    std::vector<std::size_t> starts;  // of each vertex's corners in `corners`, and the end
    std::vector<std::uint32_t> corners;
    std::vector<std::uint32_t> faces;  // of each corner, by its number

    explicit CornersByVertex(const Mesh3& mesh)
        : starts(static_cast<std::size_t>(mesh.vertexCount()) + 1),
          corners(mesh.cornerCount()),
          faces(mesh.cornerCount()) {
        std::size_t corner = 0;
        for (int i = 0; i < mesh.faceCount(); ++i)
            for (const int vertex : mesh.face(i).vertices) {
                faces[corner++] = static_cast<std::uint32_t>(i);
                ++starts[static_cast<std::size_t>(vertex) + 1];
            }
        for (std::size_t v = 1; v < starts.size(); ++v)
            starts[v] += starts[v - 1];
        std::vector<std::size_t> next(starts.begin(), starts.end() - 1);
        corner = 0;
        for (int i = 0; i < mesh.faceCount(); ++i)
            for (const int vertex : mesh.face(i).vertices)
                corners[next[static_cast<std::size_t>(vertex)]++] =
                    static_cast<std::uint32_t>(corner++);
    }
};

}  // namespace

void smoothNormals(Mesh3& mesh, double angleDegrees) {
    const bool allHard = !(angleDegrees >= 0.0) || !std::isfinite(angleDegrees);
    const double limit = allHard ? std::numeric_limits<double>::infinity()
                                 : std::cos(angleDegrees * kRadiansPerDegree) - kDotNoise;

    std::vector<Vec3> faceNormals(static_cast<std::size_t>(mesh.faceCount()));
    for (int i = 0; i < mesh.faceCount(); ++i)
        faceNormals[static_cast<std::size_t>(i)] = mesh.facePlane(i).normal;

    const CornersByVertex byVertex(mesh);
    std::vector<Vec3> normals;
    normals.reserve(static_cast<std::size_t>(mesh.vertexCount()));
    std::vector<int> cornerNormals(mesh.cornerCount());
    const auto add = [&normals](Vec3 normal) {
        normals.push_back(normal);
        return static_cast<int>(normals.size() - 1);
    };
    Groups groups(allHard ? 1.0 : limit);
    for (std::size_t v = 0; v + 1 < byVertex.starts.size(); ++v) {
        groups.clear();
        for (std::size_t i = byVertex.starts[v]; i < byVertex.starts[v + 1]; ++i) {
            const std::uint32_t corner = byVertex.corners[i];
            const Vec3 normal = faceNormals[byVertex.faces[corner]];
            // A face without area is near nothing, as long as the angle is below a right one.
            const bool alone = allHard || (normal == Vec3{} && limit > 0.0);
            if (const Groups::Group* const group = alone ? nullptr : groups.find(normal)) {
                normals[static_cast<std::size_t>(group->normal)] += normal;
                cornerNormals[corner] = group->normal;
                continue;
            }
            cornerNormals[corner] = add(normal);
            if (!alone) groups.open(normal, cornerNormals[corner]);
        }
    }
    for (Vec3& normal : normals)
        normal = normalize(normal);
    mesh.setNormals(std::move(normals), cornerNormals);
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
    Mesh3 smooth = mesh;
    smoothNormals(smooth, angleDegrees);
    std::vector<Vec3> normals(mesh.normals().begin(), mesh.normals().end());
    const int own = mesh.normalCount();
    std::vector<int> cornerNormals;
    cornerNormals.reserve(mesh.cornerCount());
    for (int i = 0; i < mesh.faceCount(); ++i) {
        const auto kept = mesh.face(i).normals;
        cornerNormals.insert(cornerNormals.end(), kept.begin(), kept.end());
        if (!kept.empty()) continue;
        for (const int normal : smooth.face(i).normals)
            cornerNormals.push_back(own + normal);
    }
    normals.insert(normals.end(), smooth.normals().begin(), smooth.normals().end());
    mesh.setNormals(std::move(normals), cornerNormals);
    return true;
}

}  // namespace orvin
