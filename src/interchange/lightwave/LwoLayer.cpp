#include "interchange/lightwave/LwoLayer.h"

#include <algorithm>
#include <utility>

#include "geometry/FaceSplit.h"
#include "interchange/ImportedModel.h"
#include "interchange/lightwave/LwoFormat.h"
#include "interchange/lightwave/LwoReader.h"

namespace orvin::lwo {

namespace {

constexpr int kSlots = ObjectP::kMaterialCount;
constexpr std::size_t kMaxPointRun = 4096;  // points that share an element
constexpr int kMaxSurfaces = 100 * kSlots;  // of one layer; further ones join the last

}  // namespace

int Layer::addPoints(Bytes points) {
    const int first = mesh_.vertexCount();
    const std::size_t count = points.size() / kPointBytes;
    if (first == 0) mesh_.reserve(count, 0, 0, 0, 0);
    ByteReader in(points);
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

void Layer::reserve(std::size_t faces, std::size_t corners) {
    const auto count = [](int n) { return static_cast<std::size_t>(n); };
    const std::size_t before = mesh_.cornerCount();
    if (corners < before) return;  // growing by itself is cheaper than many exact steps
    mesh_.reserve(count(mesh_.vertexCount()), count(mesh_.texVertexCount()), 0,
                  count(mesh_.faceCount()) + faces, before + corners);
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
    mesh_.addFace(kind, number, corners_, texture_);
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
        Mesh3 whole = splitConcaveFaces(std::exchange(mesh_, {}));
        const auto count = static_cast<int>(materials_.size());
        if (count <= kSlots) {
            whole.dropUnused();
            give(std::move(whole), materials_);
        } else {
            ImportedModel parts;
            parts.groups.resize(static_cast<std::size_t>((count + kSlots - 1) / kSlots));
            for (int i = 0; i < whole.faceCount(); ++i) {
                const int number = whole.face(i).material;
                parts.faceGroups.push_back(static_cast<std::uint32_t>(number / kSlots));
                whole.setMaterial(i, number % kSlots);
            }
            parts.mesh = std::move(whole);
            std::span<const int> left = materials_;
            for (Mesh3& mesh : splitByGroup(std::move(parts))) {
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
