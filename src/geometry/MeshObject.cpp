#include "geometry/MeshObject.h"

#include <algorithm>
#include <cmath>

#include "geometry/Tangents.h"
#include "scene/SceneStream.h"
#include "scene/SceneX.h"

namespace orvin {

namespace {

double& defaultAngle() {
    static double degrees = 20.0;
    return degrees;
}

std::string_view mappingTypeWord(Mapping::Type type) {
    switch (type) {
        case Mapping::Type::kUv:
            return "MAP_TYPE_UV";
        case Mapping::Type::kPlanar:
            return "MAP_TYPE_PLANAR";
        case Mapping::Type::kCylindrical:
            return "MAP_TYPE_CYLINDRICAL";
        case Mapping::Type::kSpherical:
            return "MAP_TYPE_SPHERICAL";
        case Mapping::Type::kCubic:
            return "MAP_TYPE_CUBIC";
    }
    return {};
}

Result writeMapping(SceneStream& stream, const Mapping& mapping) {
    const std::string_view type = mappingTypeWord(mapping.type);
    const bool failed = stream.putInt("mapAutoFit", mapping.autoFit ? 1 : 0) != kSuccess ||
                        (!type.empty() && stream.putText("mapType", type) != kSuccess) ||
                        stream.putVector("mapScale", mapping.scale) != kSuccess ||
                        stream.putVector("mapPosition", mapping.position) != kSuccess ||
                        stream.putVector("mapRotation", mapping.rotation) != kSuccess ||
                        stream.putInt("mapRepeatX", mapping.repeatX ? 1 : 0) != kSuccess ||
                        stream.putInt("mapRepeatY", mapping.repeatY ? 1 : 0) != kSuccess ||
                        stream.putInt("mapMirrorX", mapping.mirrorX ? 1 : 0) != kSuccess ||
                        stream.putInt("mapMirrorY", mapping.mirrorY ? 1 : 0) != kSuccess ||
                        stream.putInt("mapProportional", mapping.proportional ? 1 : 0) != kSuccess;
    return failed ? kFailure : kSuccess;
}

// The keys of the mapping block that are read: their values go nowhere.
Result ignoreInt(SceneStream& stream, Persistent&) {
    int value = 0;
    return stream.readInt(value);
}
Result ignoreWord(SceneStream& stream, Persistent&) {
    std::string_view word;
    return stream.nextToken(word) == kSuccess ? kSuccess : kFailure;
}
Result ignoreVector(SceneStream& stream, Persistent&) {
    Vec3 value;
    return stream.readVector3(value);
}

Result readHardShadingAngle(SceneStream& stream, Persistent& self) {
    double degrees = 0.0;
    if (stream.readDouble(degrees) != kSuccess) return kFailure;
    static_cast<MeshObject&>(self).setHardShadingAngle(degrees, false);
    return kSuccess;
}

}  // namespace

double defaultHardShadingAngle() {
    return defaultAngle();
}

void setDefaultHardShadingAngle(double degrees) {
    defaultAngle() = degrees;
}

MeshObject::MeshObject(SceneX& scene, std::string_view name)
    : TransformMember(scene, MemberKind::kObject, name), hardShadingAngle_(defaultAngle()) {}

MeshObject::MeshObject(SceneX& scene, const MeshObject& source, std::string_view name)
    : TransformMember(scene, source, name),
      hardShadingAngle_(source.hardShadingAngle_),
      mapping_(source.mapping_) {}

Result MeshObject::writeBody(SceneStream& stream) {
    if (const Result result = TransformMember::writeBody(stream); result != kSuccess) return result;
    const Result angle = hardShadingAngle_ < 0.0
                             ? stream.putWord("hardShadingAngle", "-1.0")
                             : stream.putDouble("hardShadingAngle", hardShadingAngle_);
    if (angle != kSuccess) return angle;
    return writeMapping(stream, mapping_);
}

void MeshObject::registerMeshCommands(CommandRegistry& registry) {
    registerTransformCommands(registry);
    registry.lookupOrInsert("hardShadingAngle", readHardShadingAngle);
    registry.lookupOrInsert("selected", [](SceneStream& stream, Persistent& self) {
        auto& object = static_cast<MeshObject&>(self);
        bool on = false;
        if (stream.readBool(on) != kSuccess) return kFailure;
        if (on != object.isSelected()) object.scene().toggleSelect(object);
        return kSuccess;
    });
    for (const auto* key : {"mapAutoFitCmd", "mapRepeatXCmd", "mapRepeatYCmd", "mapMirrorXCmd",
                            "mapMirrorYCmd", "mapProportionalCmd"})
        registry.lookupOrInsert(key, ignoreInt);
    registry.lookupOrInsert("mapTypeCmd", ignoreWord);
    for (const auto* key : {"mapScaleCmd", "mapPositionCmd", "mapRotationCmd"})
        registry.lookupOrInsert(key, ignoreVector);
}

bool MeshObject::isSelected() const {
    const auto selection = scene().selection();
    return std::find(selection.begin(), selection.end(), this) != selection.end();
}

void MeshObject::meshChanged() {
    setStale(kBoxStale | kWorldStale);
    if (++meshRevision_ == 0) meshRevision_ = 1;
}

void MeshObject::refreshBox() {
    refresh();
    if (!isStale(kBoxStale)) return;
    const Mesh3* const mesh = currentMesh();
    box_ = mesh != nullptr ? mesh->bounds() : Box3{};
    setStale(kBoxStale, false);
}

Box3 MeshObject::localBounds() {
    refreshBox();
    return box_;
}

void MeshObject::refreshWorldLists() {
    refresh();
    const Matrix4 worldFromObject = world();
    if (!isStale(kWorldStale) && worldFromObject == worldOfLists_) return;
    worldPositions_.clear();
    worldNormals_.clear();
    if (const Mesh3* const mesh = currentMesh()) {
        worldPositions_.reserve(mesh->vertices().size());
        for (const Vec3 p : mesh->vertices())
            worldPositions_.push_back(worldFromObject.point(p));
        const Matrix4 normals = normalMatrix(worldFromObject);
        worldNormals_.reserve(mesh->normals().size());
        for (const Vec3 n : mesh->normals())
            worldNormals_.push_back(normals.direction(n));
    }
    worldOfLists_ = worldFromObject;
    setStale(kWorldStale, false);
}

std::span<const Vec3> MeshObject::worldPositions() {
    refreshWorldLists();
    return worldPositions_;
}

std::span<const Vec3> MeshObject::worldNormals() {
    refreshWorldLists();
    return worldNormals_;
}

void MeshObject::refreshTangents() {
    refresh();
    if (tangentsRevision_ == meshRevision_) return;
    SurfaceTangents made;
    if (const Mesh3* const mesh = currentMesh()) made = surfaceTangents(*mesh, degenerateLimit());
    tangents_ = std::move(made.tangents);
    binormals_ = std::move(made.binormals);
    tangentsRevision_ = meshRevision_;
}

std::span<const Vec3> MeshObject::tangents() {
    refreshTangents();
    return tangents_;
}

std::span<const Vec3> MeshObject::binormals() {
    refreshTangents();
    return binormals_;
}

int MeshObject::faceMaterialIndex(int face) {
    const Mesh3* const mesh = currentMesh();
    if (mesh == nullptr || face < 0 || face >= mesh->faceCount()) return -1;
    return mesh->face(face).material;
}

SceneMember* MeshObject::faceMaterial(int face) {
    SceneMember* const own = material(faceMaterialIndex(face));
    return own != nullptr ? own : scene().member(MemberKind::kMaterial, kDefaultMaterial);
}

}  // namespace orvin
