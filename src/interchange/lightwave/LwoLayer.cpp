#include "interchange/lightwave/LwoLayer.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "geometry/MeshSplit.h"
#include "interchange/lightwave/LwoFormat.h"
#include "interchange/lightwave/LwoReader.h"

namespace orvin::lwo {

namespace {

constexpr int kSlots = ObjectP::kMaterialCount;
constexpr std::size_t kMaxPointRun = 4096;  // points that share an element
constexpr int kMaxSurfaces = 100 * kSlots;  // of one layer; further ones join the last

/// Meshes of the faces of the first six materials, of the next six and so on.
std::vector<Mesh3> splitBySlots(Mesh3&& whole, int materials) {
    std::vector<std::vector<FaceRange>> ranges(
        static_cast<std::size_t>((materials + kSlots - 1) / kSlots));
    const auto forEachFace = [&whole](auto&& visit) {
        std::size_t last = std::numeric_limits<std::size_t>::max();
        for (int i = 0; i < whole.faceCount(); ++i) {
            const auto part = static_cast<std::size_t>(whole.face(i).material / kSlots);
            visit(part, static_cast<std::uint32_t>(i), part != last);
            last = part;
        }
    };
    std::vector<std::size_t> counts(ranges.size());
    forEachFace(
        [&](std::size_t part, std::uint32_t, bool isNew) { counts[part] += isNew ? 1 : 0; });
    for (std::size_t p = 0; p < ranges.size(); ++p)
        ranges[p].reserve(counts[p]);
    forEachFace([&](std::size_t part, std::uint32_t face, bool isNew) {
        if (isNew) ranges[part].push_back({face, 0});
        ++ranges[part].back().count;
    });
    for (int i = 0; i < whole.faceCount(); ++i)
        whole.setMaterial(i, whole.face(i).material % kSlots);
    const std::vector<std::span<const FaceRange>> parts(ranges.begin(), ranges.end());
    return MeshSplit::split(std::move(whole), parts);
}

}  // namespace

int Layer::addPoints(ByteReader in) {
    const int first = mesh_.vertexCount();
    const std::size_t count = in.rest() / kPointBytes;
    for (std::size_t i = 0; i < count; ++i) {
        const double x = in.f32();
        const double y = in.f32();
        mesh_.addVertex({x, y, 0.0 - in.f32()});
    }
    return first;
}

int Layer::localSurface(std::uint32_t surface) {
    if (lastNumber_ >= 0 && surface == lastSurface_) return lastNumber_;
    const auto known = numbers_.find(surface);
    if (known != numbers_.end()) {
        lastNumber_ = known->second;
    } else if (static_cast<int>(materials_.size()) == kMaxSurfaces) {
        lastNumber_ = kMaxSurfaces - 1;
    } else {
        lastNumber_ = static_cast<int>(materials_.size());
        numbers_.emplace(surface, lastNumber_);
        materials_.push_back(surfaces_.material(surface));
    }
    lastSurface_ = surface;
    return lastNumber_;
}

void Layer::reserve(const Counts& counts) {
    mesh_.reserve(counts.points, counts.texture, 0, counts.faces, counts.corners);
    room_ = counts.corners;
}

void Layer::addPolygon(std::span<const int> corners, std::span<const int> texture,
                       std::uint32_t surface) {
    const int number = localSurface(surface);
    if (corners.size() == 1) {
        if (number != pointSurface_ || points_.size() == kMaxPointRun) finishPoints();
        pointSurface_ = number;
        points_.push_back(corners[0]);
        return;
    }
    finishPoints();
    corners_.assign(corners.rbegin(), corners.rend());
    texture_.assign(texture.rbegin(), texture.rend());
    const ElementKind kind = corners.size() == 2 ? ElementKind::kLine : ElementKind::kPolygon;
    const FaceView face{kind, number, corners_, texture_, {}};
    const std::size_t most = mesh_.cornerCount() + 3 * corners.size();  // in triangles
    if (most > room_ && convexFaces_.isConcave(mesh_, face)) {
        room_ = most + most / 4;
        mesh_.reserve(0, texture.empty() ? 0U : 1U, 0, 0, room_);
    }
    convexFaces_.add(mesh_, face);
}

void Layer::addCurve(std::span<const int> corners, std::uint32_t surface) {
    finishPoints();
    mesh_.addFace(ElementKind::kLine, localSurface(surface), corners);
}

void Layer::finishPoints() {
    mesh_.addFace(ElementKind::kPointList, pointSurface_, points_);
    points_.clear();
}

void Layer::finish() {
    finishPoints();
    if (mesh_.faceCount() > 0 || mesh_.vertexCount() > 0) {
        Mesh3 whole = std::exchange(mesh_, {});
        whole.shrinkToFit();
        const auto count = static_cast<int>(materials_.size());
        if (count <= kSlots) {
            whole.dropUnused();
            give(std::move(whole), materials_);
        } else {
            std::span<const int> left = materials_;
            for (Mesh3& mesh : splitBySlots(std::move(whole), count)) {
                const auto own = left.first(std::min<std::size_t>(left.size(), kSlots));
                left = left.subspan(own.size());
                give(std::move(mesh), own);
            }
        }
    }
    name_.clear();
    materials_.clear();
    numbers_.clear();
    lastNumber_ = -1;
}

void Layer::give(Mesh3 mesh, std::span<const int> materials) {
    ImportedGroup group;
    group.name = name_.empty() ? std::string(kLwoDefaultGroup) : name_;
    group.mesh = std::move(mesh);
    std::copy(materials.begin(), materials.end(), group.materials.begin());
    model_.add(std::move(group));
}

}  // namespace orvin::lwo
