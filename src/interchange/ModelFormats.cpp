#include "interchange/ModelFormats.h"

#include <string>
#include <utility>

#include "geometry/ModelHooks.h"
#include "interchange/ObjReader.h"
#include "interchange/ObjWriter.h"
#include "scene/SceneX.h"
#include "toolkit/Questions.h"
#include "toolkit/platform/Platform.h"

namespace orvin {

namespace {

struct Format {
    std::string_view extension;
    ModelFileType type;
};
constexpr Format kFormats[] = {
    {".obj", ModelFileType::kObj}, {".fac", ModelFileType::kFact}, {".c4d", ModelFileType::kC4d},
    {".dxf", ModelFileType::kDxf}, {".lwo", ModelFileType::kLwo},
};

constexpr std::string_view kFilePattern = "*.obj;*.fac;*.c4d;*.dxf;*.lwo";
constexpr ModelFileType kUnknownFormat = ModelFileType::kLwo;  // what a wrong extension leaves

std::string lastFourLowered(const std::filesystem::path& path) {
    std::string name = platform::textFromPath(path.filename());
    name.erase(0, name.size() < 4 ? 0 : name.size() - 4);
    for (char& c : name)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return name;
}

void reportUnknownExtension(const std::filesystem::path& path) {
    questions().showMessage(
        "Unable to open file with extension: " + platform::textFromPath(path.extension()) +
            "\r\rBe sure to select the correct file type\rin the import "
            "dialog.\r",
        false);
}

Result reportUnsupported(const char* what, ModelFileType format,
                         const std::filesystem::path& path) {
    std::string text = std::string(modelFileTypeWord(format)) + " files can't be " + what +
                       " yet: '" + platform::textFromPath(path) + "'. Use OBJ instead.";
    questions().showMessage(text, false);
    return kFailure;
}

}  // namespace

std::optional<ModelFileType> modelFormatOf(const std::filesystem::path& path) {
    const std::string ending = lastFourLowered(path);
    for (const Format& format : kFormats)
        if (format.extension == ending) return format.type;
    return std::nullopt;
}

bool canReadModels(ModelFileType format) {
    return format == ModelFileType::kObj;
}

bool canWriteModels(ModelFileType format) {
    return format == ModelFileType::kObj;
}

Result chooseImportFile(std::filesystem::path& path, ModelFileType& format) {
    const auto chosen = questions().openFile("Select File to Import", kFilePattern);
    if (!chosen) return kFailure;
    path = *chosen;
    const auto known = modelFormatOf(path);
    format = known.value_or(kUnknownFormat);
    if (known) return kSuccess;
    reportUnknownExtension(path);
    return kFailure;
}

Result importModel(SceneX& scene, const std::filesystem::path& path, ModelFileType format,
                   std::vector<ObjectP*>* made) {
    if (!canReadModels(format)) return reportUnsupported("read", format, path);
    return importObj(scene, path, made);
}

Result importModel(SceneX& scene, const std::filesystem::path& path, std::vector<ObjectP*>* made) {
    if (const auto format = modelFormatOf(path)) return importModel(scene, path, *format, made);
    reportUnknownExtension(path);
    return kFailure;
}

Result exportModel(const std::filesystem::path& path, std::span<MeshObject* const> objects,
                   const ExportOptions& options) {
    const auto format = modelFormatOf(path);
    if (!format) {
        questions().showMessage("Unable to export to a file with extension: " +
                                    platform::textFromPath(path.extension()) + ". Use .obj.",
                                false);
        return kFailure;
    }
    if (!canWriteModels(*format)) return reportUnsupported("written", *format, path);
    return writeObj(path, objects, options);
}

std::vector<MeshObject*> objectsToExport(SceneX& scene, bool selectedOnly) {
    std::vector<MeshObject*> objects;
    const auto from = selectedOnly ? scene.selection() : scene.members(MemberKind::kObject);
    for (SceneMember* const member : from)
        if (auto* const object = dynamic_cast<MeshObject*>(member)) objects.push_back(object);
    return objects;
}

Result exportObjects(SceneX& scene, bool selectedOnly, const ExportOptions& options) {
    const auto path = questions().saveFile("Export object(s) to:", kFilePattern);
    if (!path) return kFailure;
    return exportModel(*path, objectsToExport(scene, selectedOnly), options);
}

void installModelHooks() {
    ModelHooks hooks;
    hooks.read = [](const std::string& path, Mesh3& mesh) -> Result {
        ImportedModel model;
        if (readObj(platform::pathFromText(path), model) != kSuccess) return kFailure;
        mesh = std::move(model.mesh);
        return kSuccess;
    };
    hooks.write = [](const std::string& path, const Mesh3& mesh, const std::string& name) {
        return writeObjMesh(platform::pathFromText(path), mesh, name);
    };
    setModelHooks(hooks);
}

}  // namespace orvin
