#include "geometry/ObjectXStyle.h"

#include "scene/SceneX.h"

namespace orvin {

namespace {

constexpr std::string_view kNoProfile = "unnamed";

int edgePathCount(Profile* profile) {
    const InputProfile2* const outline = profile != nullptr ? profile->inputProfile() : nullptr;
    return outline != nullptr ? static_cast<int>(outline->paths.size()) : 0;
}

void replaceIntervals(ProfileProperty& properties, int path, int pathCount,
                      const MaterialIntervals& intervals) {
    if (path >= 0) {
        properties.entryOrNew(path).intervals = intervals;
        return;
    }
    for (int i = 0; i < pathCount; ++i)
        properties.entryOrNew(i).intervals = intervals;
}

}  // namespace

ObjectXStyle::ObjectXStyle(SceneX& scene, std::string_view name, unsigned parts)
    : SceneMember(scene, MemberKind::kStyle, name),
      perim_(scene.registry(), kNoProfile),
      hole_(scene.registry(), kNoProfile) {
    recipe_.parts = parts;
    materials_.fill(NameRef(scene.registry(), kDefaultMaterial));
}

ObjectXStyle::ObjectXStyle(SceneX& scene, const ObjectXStyle& source, std::string_view name)
    : SceneMember(scene, source, name),
      recipe_(source.recipe_),
      perim_(scene.registry(), source.perimName()),
      hole_(scene.registry(), source.holeName()),
      perimProperties_(source.perimProperties_),
      holeProperties_(source.holeProperties_) {
    for (std::size_t slot = 0; slot < materials_.size(); ++slot) {
        const NameRef& wanted = source.materials_[slot];
        const bool exists = wanted.get() != nullptr ||
                            scene.member(MemberKind::kMaterial, wanted.name()) != nullptr;
        materials_[slot] =
            NameRef(scene.registry(), exists ? std::string_view(wanted.name()) : kDefaultMaterial);
    }
}

std::vector<NameRef*> ObjectXStyle::references() {
    std::vector<NameRef*> used{&perim_, &hole_};
    for (NameRef& reference : materials_)
        used.push_back(&reference);
    return used;
}

void ObjectXStyle::reset() {
    recipe_ = {};
    refer(perim_, kNoProfile);
    refer(hole_, kNoProfile);
    perimProperties_ = {};
    holeProperties_ = {};
    for (NameRef& reference : materials_)
        refer(reference, kDefaultMaterial);
    perimSeen_ = holeSeen_ = 0;
    bothChanged();
}

// ---- revisions

void ObjectXStyle::bothChanged() {
    faceChanged();
    edgeChanged();
}

void ObjectXStyle::edgeChangedIf(unsigned part) {
    if (has(part)) edgeChanged();
}

void ObjectXStyle::refer(NameRef& reference, std::string_view name) {
    reference = NameRef(scene().registry(), name);
    stylesRevision_ = nextRevision(stylesRevision_);
}

// ---- values

void ObjectXStyle::setPart(bool on, unsigned part) {
    recipe_.parts = on ? recipe_.parts | part : recipe_.parts & ~part;
    bothChanged();
}

void ObjectXStyle::setMitreMethod(Mitre method) {
    const bool changed = recipe_.mitre != method;
    recipe_.mitre = method;
    if (changed && has(kPerimEdge)) bothChanged();
}

void ObjectXStyle::setSpikeAngle(double degrees) {
    recipe_.spikeAngle = degrees;
    bothChanged();
}

void ObjectXStyle::setPullBackDistance(double distance) {
    recipe_.pullBackDistance = distance;
    bothChanged();
}

void ObjectXStyle::setFrontFaceOffset(double distance) {
    recipe_.frontFaceOffset = distance;
    bothChanged();
}

void ObjectXStyle::setPerimXScale(double scale) {
    recipe_.perimXScale = scale;
    edgeChangedIf(kPerimEdge);
    if (!recipe_.trackXScale) return;
    recipe_.holeXScale = scale;
    edgeChangedIf(kHoleEdge);
}

void ObjectXStyle::setHoleXScale(double scale) {
    if (recipe_.trackXScale) return;
    recipe_.holeXScale = scale;
    edgeChangedIf(kHoleEdge);
}

void ObjectXStyle::setDepth(double depth) {
    recipe_.depth = depth;
    if (has(kBack | kPerimEdge | kHoleEdge)) faceChanged();
}

void ObjectXStyle::setTrackProfile(bool on) {
    recipe_.trackProfile = on;
    refer(hole_, perimName());
    edgeChanged();
    // Intervals belong to the paths of an edge: another edge can't follow them.
    if (!on && recipe_.trackProperties) setTrackProperties(false);
}

void ObjectXStyle::setTrackProperties(bool on) {
    recipe_.trackProperties = on;
    holeProperties_ = perimProperties_;
    edgeChanged();
}

void ObjectXStyle::setTrackXScale(bool on) {
    recipe_.trackXScale = on;
    recipe_.holeXScale = recipe_.perimXScale;
    edgeChanged();
}

void ObjectXStyle::setFrontMtl(int slot) {
    recipe_.frontMtlidx = slot;
    if (has(kFront)) faceChanged();
}

void ObjectXStyle::setBackMtl(int slot) {
    recipe_.backMtlidx = slot;
    if (has(kBack)) faceChanged();
}

// ---- edges

void ObjectXStyle::setPerim(std::string_view name) {
    const std::string wanted(name);  // it may be the name of what goes
    refer(perim_, wanted);
    edgeChangedIf(kPerimEdge);
    perimSeen_ = 0;
    if (!recipe_.trackProfile) return;
    refer(hole_, wanted);
    edgeChangedIf(kHoleEdge);
    holeSeen_ = 0;
}

void ObjectXStyle::setHole(std::string_view name) {
    if (recipe_.trackProfile) return;
    refer(hole_, std::string(name));
    edgeChangedIf(kHoleEdge);
    holeSeen_ = 0;
}

Profile* ObjectXStyle::perimProfile() const {
    return perim_.as<Profile>();
}

Profile* ObjectXStyle::holeProfile() const {
    return recipe_.trackProfile ? perimProfile() : hole_.as<Profile>();
}

const Mesh2* ObjectXStyle::geometry(Profile* profile, std::uint32_t& seen, double flatness,
                                    double hardAngle, std::uint32_t& serial) {
    if (profile == nullptr) return nullptr;
    const Mesh2* const shape = profile->getShape(flatness, hardAngle, serial);
    if (shape == nullptr) return nullptr;
    if (serial != seen) edgeChanged();
    seen = serial;
    return shape;
}

const Mesh2* ObjectXStyle::perimGeometry(double flatness, double hardAngle, std::uint32_t& serial) {
    return geometry(perimProfile(), perimSeen_, flatness, hardAngle, serial);
}

const Mesh2* ObjectXStyle::holeGeometry(double flatness, double hardAngle, std::uint32_t& serial) {
    if (recipe_.trackProfile) return perimGeometry(flatness, hardAngle, serial);
    return geometry(hole_.as<Profile>(), holeSeen_, flatness, hardAngle, serial);
}

void ObjectXStyle::refreshEdges(double flatness, double hardAngle) {
    const std::uint32_t before = edgeRevision_;
    std::uint32_t serial = 0;
    perimGeometry(flatness, hardAngle, serial);
    holeGeometry(flatness, hardAngle, serial);
    if (edgeRevision_ == before) return;
    edgeRevision_ = nextRevision(before);
    faceChanged();
}

// ---- materials

const ProfileProperty& ObjectXStyle::effectiveHoleProperties() const {
    return recipe_.trackProperties ? perimProperties_ : holeProperties_;
}

const MaterialIntervals* ObjectXStyle::perimInterval(int path) {
    const ProfileProperty::Entry* const entry = perimProperties_.entry(path);
    return entry != nullptr ? &entry->intervals : nullptr;
}

const MaterialIntervals* ObjectXStyle::holeInterval(int path) {
    if (recipe_.trackProperties) return perimInterval(path);
    const ProfileProperty::Entry* const entry = holeProperties_.entry(path);
    return entry != nullptr ? &entry->intervals : nullptr;
}

void ObjectXStyle::setPerimIntervalMaterial(int path, const MaterialIntervals& intervals) {
    replaceIntervals(perimProperties_, path, edgePathCount(perimProfile()), intervals);
    edgeChanged();
}

void ObjectXStyle::setHoleIntervalMaterial(int path, const MaterialIntervals& intervals) {
    if (recipe_.trackProperties) return;
    replaceIntervals(holeProperties_, path, edgePathCount(holeProfile()), intervals);
    edgeChanged();
}

void ObjectXStyle::ensurePerimEntries() {
    const int count = edgePathCount(perimProfile());
    for (int path = 0; path < count; ++path)
        perimProperties_.entryOrNew(path);
}

void ObjectXStyle::ensureHoleEntries() {
    const int count = edgePathCount(holeProfile());
    // All new ones are like the one before the first of them.
    MaterialIntervals model;
    bool found = false;
    for (int path = 0; path < count; ++path) {
        const ProfileProperty::Entry* const known = holeProperties_.entry(path);
        if (known != nullptr) {
            if (!found) model = known->intervals;
            continue;
        }
        found = true;
        holeProperties_.entryOrNew(path).intervals = model;
    }
}

SceneMember* ObjectXStyle::material(int slot) const {
    if (slot < 0 || slot >= kMaterialCount) return nullptr;
    SceneMember* const member = materials_[static_cast<std::size_t>(slot)].get();
    return member != nullptr && member->memberKind() == MemberKind::kMaterial ? member : nullptr;
}

std::string_view ObjectXStyle::materialName(int slot) const {
    if (slot < 0 || slot >= kMaterialCount) return {};
    return materials_[static_cast<std::size_t>(slot)].name();
}

void ObjectXStyle::setMaterial(int slot, std::string_view name) {
    if (slot < 0 || slot >= kMaterialCount) return;
    refer(materials_[static_cast<std::size_t>(slot)], std::string(name));
    faceChanged();
}

bool ObjectXStyle::sameAs(Aspect what, const ObjectXStyle& other) const {
    switch (what) {
        case Aspect::kPerim:
            return perimName() == other.perimName();
        case Aspect::kHole: {
            const auto& mine = recipe_.trackProfile ? perimName() : holeName();
            return mine == (other.recipe_.trackProfile ? other.perimName() : other.holeName());
        }
        case Aspect::kPerimProperties:
            return perimProperties_.sameAs(other.perimProperties_);
        case Aspect::kHoleProperties:
            return effectiveHoleProperties().sameAs(other.effectiveHoleProperties());
        case Aspect::kMaterials:
            for (int slot = 0; slot < kMaterialCount; ++slot)
                if (materialName(slot) != other.materialName(slot)) return false;
            return true;
    }
    return false;
}

}  // namespace orvin
