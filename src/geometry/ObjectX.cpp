#include "geometry/ObjectX.h"

#include <cstdio>

#include "geometry/Surface.h"
#include "scene/SceneX.h"

namespace orvin {

bool draftMode = false;

namespace {

constexpr std::string_view kNoMember = "unnamed";

const Profile* shownBy(Profile* profile) {
    return profile != nullptr ? profile->shown() : nullptr;
}

std::uint32_t revisionOf(Profile* profile) {
    return profile != nullptr ? profile->changeCount() : 0;
}

}  // namespace

ObjectX::ObjectX(SceneX& scene, std::string_view name)
    : MeshObject(scene, name),
      face_(scene.registry(), kNoMember),
      style_(scene.registry(), kNoMember) {}

ObjectX::ObjectX(SceneX& scene, const ObjectX& source, std::string_view name)
    : MeshObject(scene, source, name),
      face_(scene.registry(), source.faceName()),
      style_(scene.registry(), source.styleName()),
      flatPreview_(source.flatPreview_),
      flatRender_(source.flatRender_),
      meshing_(source.meshing_),
      repair_(source.repair_) {}

std::vector<NameRef*> ObjectX::references() {
    return {&face_, &style_};
}

// ---- what it is built from

void ObjectX::setFace(std::string_view name) {
    face_ = NameRef(scene().registry(), std::string(name));
    setStale(kRebuild);
}

void ObjectX::setStyle(std::string_view name) {
    style_ = NameRef(scene().registry(), std::string(name));
    setStale(kRebuild);
}

void ObjectX::setFlatPreview(double flatness) {
    if (flatness == flatPreview_) return;
    flatPreview_ = flatness;
    setStale(kRebuild);
}

void ObjectX::setMeshing(const Meshing& meshing) {
    meshing_ = meshing;
    setStale(kRebuild);
}

void ObjectX::setHardShadingAngle(double degrees, bool rebuild) {
    storeHardShadingAngle(degrees);
    if (!rebuild || !(degrees >= 0.0)) return;
    setStale(kRebuild);
    if (Profile* const profile = face()) profile->touch();
    meshChanged();
}

// ---- mesh

ObjectX::Seen ObjectX::currentRevisions() const {
    Seen now;
    now.shown = shownBy(face());
    now.face = revisionOf(face());
    if (const ObjectXStyle* const recipe = style()) {
        now.styleFace = recipe->faceRevision();
        now.styleEdge = recipe->edgeRevision();
        now.perimShown = shownBy(recipe->perimProfile());
        now.holeShown = shownBy(recipe->holeProfile());
        now.perim = revisionOf(recipe->perimProfile());
        now.hole = revisionOf(recipe->holeProfile());
    }
    return now;
}

bool ObjectX::needsUpdate(int quality) {
    return isStale(kRebuild) || isStale(kBuiltForRender) != (quality == 1) ||
           !(currentRevisions() == seen_);
}

const Mesh3* ObjectX::mesh(int quality, std::uint32_t& revision) {
    if (face_.get() == nullptr || style() == nullptr) {
        std::printf("ObjectX: bad profile input.\n");
        return nullptr;
    }
    if (needsUpdate(quality) && rebuild(quality) != kSuccess) return nullptr;
    revision = meshRevision();
    return &mesh_;
}

bool ObjectX::isAnimated() const {
    const Profile* const profile = face();
    return profile != nullptr && profile->isAnimated();
}

void ObjectX::refresh() {
    const int quality = isStale(kBuiltForRender) ? 1 : 0;
    if (style() != nullptr && needsUpdate(quality)) rebuild(quality);
}

Box3 ObjectX::localBounds() {
    const Box3 box = MeshObject::localBounds();
    return box.empty() && built_ ? Box3{{}, {}} : box;
}

// ---- materials

int ObjectX::materialCount() const {
    return style() != nullptr ? ObjectXStyle::kMaterialCount : 0;
}

SceneMember* ObjectX::material(int slot) const {
    const ObjectXStyle* const recipe = style();
    return recipe != nullptr ? recipe->material(slot) : nullptr;
}

std::string_view ObjectX::materialName(int slot) const {
    const ObjectXStyle* const recipe = style();
    return recipe != nullptr ? recipe->materialName(slot) : std::string_view{};
}

void ObjectX::setMaterial(int slot, std::string_view name) {
    if (ObjectXStyle* const recipe = style()) recipe->setMaterial(slot, name);
}

bool ObjectX::isOpenOrClear(bool checkMaterials) const {
    const ObjectXStyle* const recipe = style();
    if (recipe == nullptr) return false;
    if (recipe->parts() != ObjectXStyle::kAllParts) return true;
    for (int slot = 0; checkMaterials && slot < ObjectXStyle::kMaterialCount; ++slot) {
        const auto* const surface = dynamic_cast<const Surface*>(recipe->material(slot));
        if (surface != nullptr && surface->isTransparent()) return true;
    }
    return false;
}

bool ObjectX::sameAs(ObjectXStyle::Aspect what, const ObjectX& other) const {
    const ObjectXStyle* const mine = style();
    const ObjectXStyle* const theirs = other.style();
    return mine != nullptr && theirs != nullptr && mine->sameAs(what, *theirs);
}

}  // namespace orvin
