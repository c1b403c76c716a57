#include "geometry/FaceTable.h"

#include <algorithm>

#include "toolkit/Release.h"

namespace orvin {

namespace {

// Bits of a record: the material above, then kind and lists.
constexpr unsigned kMaterialShift = 4;
constexpr unsigned kKindShift = 2;
constexpr std::uint32_t kKindMask = 3;
constexpr std::uint32_t kHasTexture = 2;
constexpr std::uint32_t kHasNormals = 1;
constexpr std::int32_t kFar = -(1 << 27);  // stands for a material that doesn't fit

std::uint32_t materialBits(std::int32_t material) {
    return static_cast<std::uint32_t>(material) << kMaterialShift;
}

bool isFar(std::int32_t material) {
    return material <= kFar || material >= -kFar;
}

}  // namespace

void FaceTable::add(const Shape& shape) {
    if (isRuns_ && (runs_.empty() || runs_.back().shape != shape)) {
        if (runs_.size() < kMaxRuns)
            runs_.push_back({static_cast<std::uint32_t>(size_), end_, shape});
        else
            dissolveRuns();
    }
    if (!isRuns_) addRecord(shape, end_);
    end_ += shape.count;
    ++size_;
}

/// What a record holds for a material; one that is far is kept beside it.
std::int32_t FaceTable::storedMaterial(std::size_t face, std::int32_t material) {
    if (!isFar(material)) return material;
    const std::size_t i = farMaterial(face);
    if (i == farMaterials_.size() || farMaterials_[i].face != face)
        farMaterials_.insert(farMaterials_.begin() + static_cast<std::ptrdiff_t>(i), {face, 0});
    farMaterials_[i].material = material;
    return kFar;
}

/// Where a face is, or would be, among the far materials.
std::size_t FaceTable::farMaterial(std::size_t face) const {
    const auto place =
        std::partition_point(farMaterials_.begin(), farMaterials_.end(),
                             [face](const FarMaterial& entry) { return entry.face < face; });
    return static_cast<std::size_t>(place - farMaterials_.begin());
}

void FaceTable::addRecord(const Shape& shape, std::uint32_t start) {
    const std::uint32_t material = materialBits(storedMaterial(records_.size(), shape.material));
    records_.push_back({start, material | static_cast<std::uint32_t>(shape.kind) << kKindShift |
                                   (shape.texture ? kHasTexture : 0) |
                                   (shape.normals ? kHasNormals : 0)});
}

void FaceTable::dissolveRuns() {
    records_.reserve(std::max(expected_, size_ + 1));
    for (std::size_t i = 0; i < size_; ++i) {
        const Place place = inRuns(i);
        addRecord(place.shape, place.start);
    }
    isRuns_ = false;
    release(runs_);
}

FaceTable::Place FaceTable::inRecords(std::size_t face) const {
    const Record& record = records_[face];
    Place place;
    place.start = record.start;
    place.shape.count = endOf(face) - record.start;
    place.shape.material = static_cast<std::int32_t>(record.bits) >> kMaterialShift;
    if (place.shape.material == kFar)
        place.shape.material = farMaterials_[farMaterial(face)].material;
    place.shape.kind = static_cast<ElementKind>(record.bits >> kKindShift & kKindMask);
    place.shape.texture = (record.bits & kHasTexture) != 0;
    place.shape.normals = (record.bits & kHasNormals) != 0;
    return place;
}

std::size_t FaceTable::faceOfCorner(std::uint32_t corner) const {
    const auto isBefore = [corner](const auto& entry) { return entry.start <= corner; };
    if (isRuns_) {
        const Run& run = *(std::partition_point(runs_.begin(), runs_.end(), isBefore) - 1);
        return run.face + (corner - run.start) / run.shape.count;
    }
    // Faces are of about the same size: look around where it would be if they were.
    const auto guess = static_cast<std::size_t>(static_cast<std::uint64_t>(corner) * size_ / end_);
    std::size_t step = 4;
    std::size_t low = guess;
    while (low > 0 && !isBefore(records_[low]))
        low -= std::min(low, step *= 2);
    std::size_t high = guess + 1;
    while (high < size_ && isBefore(records_[high]))
        high = std::min(size_, high + (step *= 2));
    const auto first = records_.begin();
    return static_cast<std::size_t>(std::partition_point(first + static_cast<std::ptrdiff_t>(low),
                                                         first + static_cast<std::ptrdiff_t>(high),
                                                         isBefore) -
                                    first) -
           1;
}

void FaceTable::setMaterial(std::size_t face, std::int32_t material) {
    if (at(face).shape.material == material) return;
    if (isRuns_) dissolveRuns();
    std::uint32_t& bits = records_[face].bits;
    bits = (bits & ((1U << kMaterialShift) - 1)) | materialBits(storedMaterial(face, material));
}

void FaceTable::setHasNormals() {
    for (Run& run : runs_)
        run.shape.normals = true;
    for (Record& record : records_)
        record.bits |= kHasNormals;
}

void FaceTable::reserve(std::size_t faces) {
    expected_ = std::max(expected_, faces);
    if (!isRuns_) records_.reserve(faces);
}

}  // namespace orvin
