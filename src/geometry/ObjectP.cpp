#include "geometry/ObjectP.h"

#include <algorithm>
#include <utility>

#include "geometry/ModelHooks.h"
#include "geometry/SmoothNormals.h"
#include "scene/SceneStream.h"
#include "scene/SceneX.h"

namespace orvin {

namespace {

constexpr std::string_view kFileTypeWords[] = {"FACT", "C4D", "OBJ", "DXF", "LWO", "3DS"};

}  // namespace

std::string_view modelFileTypeWord(ModelFileType type) {
    const int number = static_cast<int>(type);
    if (number < 0 || number >= static_cast<int>(std::size(kFileTypeWords))) return "Unknown";
    return kFileTypeWords[number];
}

ModelFileType modelFileTypeOf(std::string_view word) {
    const auto* const found = std::find(std::begin(kFileTypeWords), std::end(kFileTypeWords), word);
    if (found == std::end(kFileTypeWords)) return ModelFileType::kObj;
    return static_cast<ModelFileType>(found - std::begin(kFileTypeWords));
}

ObjectP::ObjectP(SceneX& scene, std::string_view name) : MeshObject(scene, name) {
    materials_.fill(NameRef(scene.registry(), kDefaultMaterial));
}

ObjectP::ObjectP(SceneX& scene, const ObjectP& source, std::string_view name)
    : MeshObject(scene, source, name),
      fileName_(source.fileName_),
      fileType_(source.fileType_),
      originalName_(source.originalName_),
      mesh_(source.mesh_) {
    for (int slot = 0; slot < kMaterialCount; ++slot)
        setMaterial(slot, source.materialName(slot));
    setStale(kRebuild, source.isStale(kRebuild));
}

// ---- mesh

void ObjectP::setMesh(Mesh3 mesh) {
    mesh_ = std::move(mesh);
    dataChanged();
}

void ObjectP::dataChanged() {
    setStale(kRebuild);
    meshChanged();
}

void ObjectP::refresh() {
    if (!isStale(kRebuild)) return;
    setStale(kRebuild, false);
    completeNormals(mesh_, hardShadingAngle());
}

const Mesh3* ObjectP::mesh(int /*quality*/, std::uint32_t& revision) {
    refresh();
    revision = meshRevision();
    return &mesh_;
}

void ObjectP::setHardShadingAngle(double degrees, bool rebuild) {
    storeHardShadingAngle(degrees);
    if (!rebuild || !(degrees >= 0.0)) return;
    smoothNormals(mesh_, degrees);
    meshChanged();
}

Result ObjectP::load(const std::string& path) {
    const auto read = modelHooks().read;
    Mesh3 mesh;
    if (read == nullptr || read(path, mesh) != kSuccess) return kFailure;
    setFileName(path);
    setMesh(std::move(mesh));
    return kSuccess;
}

Result ObjectP::save(const std::string& path) {
    const auto write = modelHooks().write;
    if (write == nullptr) return kFailure;
    refresh();
    return write(path, mesh_, name()) == kSuccess ? kSuccess : kFailure;
}

// ---- materials

SceneMember* ObjectP::material(int slot) const {
    if (slot < 0 || slot >= kMaterialCount) return nullptr;
    SceneMember* const member = materials_[static_cast<std::size_t>(slot)].get();
    return member != nullptr && member->memberKind() == MemberKind::kMaterial ? member : nullptr;
}

std::string_view ObjectP::materialName(int slot) const {
    if (slot < 0 || slot >= kMaterialCount) return {};
    return materials_[static_cast<std::size_t>(slot)].name();
}

void ObjectP::setMaterial(int slot, std::string_view name) {
    if (slot < 0 || slot >= kMaterialCount) return;
    materials_[static_cast<std::size_t>(slot)] = NameRef(scene().registry(), name);
}

std::vector<NameRef*> ObjectP::references() {
    std::vector<NameRef*> used;
    for (NameRef& reference : materials_)
        used.push_back(&reference);
    return used;
}

// ---- stream

struct ObjectP::Commands : CommandRegistry {
    static ObjectP& object(Persistent& self) { return static_cast<ObjectP&>(self); }

    static Result fileName(SceneStream& stream, Persistent& self) {
        return stream.readText(object(self).fileName_, kFileNameLimit + 1);
    }
    static Result fileType(SceneStream& stream, Persistent& self) {
        std::string word;
        if (stream.readText(word) != kSuccess) return kFailure;
        object(self).fileType_ = modelFileTypeOf(word);
        return kSuccess;
    }
    static Result originalName(SceneStream& stream, Persistent& self) {
        return stream.readText(object(self).originalName_, kOriginalNameLimit + 1);
    }
    static Result material(SceneStream& stream, Persistent& self) {
        int slot = 0;
        std::string name;
        if (stream.readInt(slot) != kSuccess || stream.readText(name) != kSuccess) return kFailure;
        object(self).setMaterial(slot, name);
        return kSuccess;
    }
    static Result load(SceneStream& stream, Persistent& self) {
        std::string path;
        if (stream.readText(path, kFileNameLimit + 1) != kSuccess) return kFailure;
        return object(self).load(path);
    }
    static Result save(SceneStream& stream, Persistent& self) {
        std::string path;
        if (stream.readText(path, kFileNameLimit + 1) != kSuccess) return kFailure;
        // A project from elsewhere must not overwrite files by being opened.
        return stream.mayWriteFiles ? object(self).save(path) : kFailure;
    }
    static Result begin(SceneStream& stream, Persistent& self) {
        ObjectP& target = object(self);
        std::string_view word;
        if (stream.nextToken(word) != kSuccess || word != target.geometry_.className())
            return kFailure;
        target.dataChanged();  // now, for a block that never ends, and again at the end
        stream.push(target.geometry_);
        return kSuccess;
    }
    static Result end(SceneStream& stream, Persistent& self) {
        object(self).dataChanged();
        return endCommand(stream, self);
    }

    Commands() : CommandRegistry(64) {
        registerMeshCommands(*this);
        lookupOrInsert("filename", fileName);
        lookupOrInsert("fileType", fileType);
        lookupOrInsert("origName", originalName);
        lookupOrInsert("material", material);
        lookupOrInsert("load", load);
        lookupOrInsert("save", save);
        lookupOrInsert("begin", begin);
        lookupOrInsert("end", end);
    }
};

const CommandRegistry& ObjectP::commandRegistry() const {
    static const Commands commands;
    return commands;
}

Result ObjectP::writeBody(SceneStream& stream) {
    refresh();  // a face without normals could not be read back
    if (const Result result = MeshObject::writeBody(stream); result != kSuccess) return result;
    const bool failed = stream.putText("filename", fileName_) != kSuccess ||
                        stream.putText("fileType", modelFileTypeWord(fileType_)) != kSuccess ||
                        stream.putText("origName", originalName_) != kSuccess ||
                        stream.putInt("selected", isSelected() ? 1 : 0) != kSuccess;
    if (failed) return kFailure;
    for (int slot = 0; slot < kMaterialCount; ++slot) {
        stream.line()
            .clear()
            .text("material ")
            .whole(slot)
            .character(' ')
            .quotedName(materialName(slot));
        if (stream.putLine() != kSuccess) return kFailure;
    }
    return stream.writeObject(geometry_);
}

}  // namespace orvin
