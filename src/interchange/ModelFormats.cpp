#include "interchange/ModelFormats.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include "geometry/ModelHooks.h"
#include "geometry/SmoothNormals.h"
#include "interchange/Cinema4d.h"
#include "interchange/ObjReader.h"
#include "interchange/ObjWriter.h"
#include "interchange/dxf/DxfReader.h"
#include "interchange/dxf/DxfWriter.h"
#include "interchange/fact/FactReader.h"
#include "interchange/fact/FactWriter.h"
#include "interchange/lightwave/LwoReader.h"
#include "interchange/lightwave/LwoWriter.h"
#include "scene/SceneX.h"
#include "toolkit/Ascii.h"
#include "toolkit/Questions.h"
#include "toolkit/platform/Platform.h"

namespace orvin {

namespace {

using Reader = Result (*)(SceneX& scene, const std::filesystem::path& path,
                          std::vector<ObjectP*>* made);
using Writer = Result (*)(const std::filesystem::path& path, std::span<MeshObject* const> objects,
                          const ExportOptions& options);

struct Format {
    std::string_view extension;
    ModelFileType type;
    Reader read = nullptr;  // null: told by its extension and refused
    Writer write = nullptr;
};
constexpr Format kFormats[] = {
    {".obj", ModelFileType::kObj, importObj, writeObj},
    {".fac", ModelFileType::kFact, importFact, writeFact},
    {".c4d", ModelFileType::kC4d},
    {".dxf", ModelFileType::kDxf, importDxf, writeDxf},
    {".lwo", ModelFileType::kLwo, importLwo, writeLwo},
};

constexpr std::string_view kFilePattern = "*.obj;*.fac;*.c4d;*.dxf;*.lwo";
constexpr ModelFileType kUnknownFormat = ModelFileType::kLwo;  // what a wrong extension leaves
constexpr std::string_view kFormatsThatWork = "OBJ, DXF, LightWave and FACT files work.";

const Format* formatOf(ModelFileType type) {
    const auto* const found = std::find_if(std::begin(kFormats), std::end(kFormats),
                                           [type](const Format& f) { return f.type == type; });
    return found != std::end(kFormats) ? found : nullptr;
}

std::string lastFourLowered(const std::filesystem::path& path) {
    const std::string name = platform::textFromPath(path.filename());
    return lowerCase(std::string_view(name).substr(name.size() < 4 ? 0 : name.size() - 4));
}

void reportUnknownExtension(const std::filesystem::path& path) {
    questions().showMessage(
        "Unable to open file with extension: " + platform::textFromPath(path.extension()) +
            "\r\rBe sure to select the correct file type\rin the import "
            "dialog.\r",
        false);
}

Result reportUnsupported(const std::filesystem::path& path, std::string_view why) {
    questions().showMessage("'" + platform::textFromPath(path) + "' " + std::string(why) + ' ' +
                                std::string(kFormatsThatWork),
                            false);
    return kFailure;
}

Result refuseReading(ModelFileType type, const std::filesystem::path& path) {
    if (type != ModelFileType::kC4d)
        return reportUnsupported(path, "is of no format that is read.");
    if (isCinema4dFile(path))
        return reportUnsupported(
            path, "is a Cinema 4D file, a format that isn't published and can't be read.");
    return reportUnsupported(path, "can't be read, and is no Cinema 4D file either.");
}

}  // namespace

std::optional<ModelFileType> modelFormatOf(const std::filesystem::path& path) {
    const std::string ending = lastFourLowered(path);
    for (const Format& format : kFormats)
        if (format.extension == ending) return format.type;
    return std::nullopt;
}

bool canReadModels(ModelFileType type) {
    const Format* const format = formatOf(type);
    return format != nullptr && format->read != nullptr;
}

bool canWriteModels(ModelFileType type) {
    const Format* const format = formatOf(type);
    return format != nullptr && format->write != nullptr;
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

Result importModel(SceneX& scene, const std::filesystem::path& path, ModelFileType type,
                   std::vector<ObjectP*>* made) {
    if (!canReadModels(type)) return refuseReading(type, path);
    return formatOf(type)->read(scene, path, made);
}

Result importModel(SceneX& scene, const std::filesystem::path& path, std::vector<ObjectP*>* made) {
    if (const auto format = modelFormatOf(path)) return importModel(scene, path, *format, made);
    reportUnknownExtension(path);
    return kFailure;
}

Result exportModel(const std::filesystem::path& path, std::span<MeshObject* const> objects,
                   const ExportOptions& options) {
    const auto type = modelFormatOf(path);
    if (!type) {
        questions().showMessage("Unable to export to a file with extension: " +
                                    platform::textFromPath(path.extension()) +
                                    ". Use .obj, .dxf, .lwo or .fac.",
                                false);
        return kFailure;
    }
    if (!canWriteModels(*type))
        return reportUnsupported(
            path, "would be a Cinema 4D file, a format that isn't published and can't be written.");
    return formatOf(*type)->write(path, objects, options);
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
        completeNormals(model.mesh, defaultHardShadingAngle());
        mesh = std::move(model.mesh);
        return kSuccess;
    };
    hooks.write = [](const std::string& path, const Mesh3& mesh, const std::string& name) {
        return writeObjMesh(platform::pathFromText(path), mesh, name);
    };
    setModelHooks(hooks);
}

}  // namespace orvin
