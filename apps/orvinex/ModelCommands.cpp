// import and export.
#include "common/Files.h"
#include "interchange/ModelFormats.h"
#include "orvinex/Authoring.h"
#include "orvinex/Commands.h"
#include "orvinex/ShownProgress.h"
#include "orvinex/StyleOptions.h"
#include "scene/FrameClock.h"
#include "toolkit/platform/Platform.h"

namespace orvin::orvinex {

namespace {

std::vector<MeshObject*> chosenObjects(SceneX& scene, const std::vector<std::string>& names) {
    if (names.empty()) return objectsToExport(scene, false);
    std::vector<MeshObject*> objects;
    for (const std::string& name : names) {
        auto* const object = scene.memberAs<MeshObject>(MemberKind::kObject, name);
        if (object == nullptr) throw apps::Failure("no object is named '" + name + "'");
        objects.push_back(object);
    }
    return objects;
}

bool hasElements(ObjectP* object) {
    std::uint32_t revision = 0;
    return object->mesh(1, revision)->faceCount() > 0;
}

int qualityOption(const apps::ParsedOptions& options) {
    const std::string quality = options.value("--quality", "render");
    if (quality == "render") return 1;
    if (quality == "preview") return 0;
    throw apps::UsageError("--quality takes preview or render");
}

}  // namespace

int importCommand(const apps::ParsedOptions& options) {
    keepInputs(options, options.value("-o"));
    Authoring authoring(options);
    {
        const ShownProgress progress("importing", options.has("--quiet"));
        const std::string& model = options.positional()[0];
        std::vector<ObjectP*> objects;
        const Result read = importModel(authoring.scene(), platform::pathFromText(model), &objects);
        if (read != kSuccess || std::none_of(objects.begin(), objects.end(), hasElements))
            throw apps::Failure("nothing was imported from '" + model + "'");
        const std::string material = materialOption(options, authoring.scene());
        for (ObjectP* const object : objects)
            for (int slot = 0; !material.empty() && slot < object->materialCount(); ++slot)
                object->setMaterial(slot, material);
    }
    authoring.finish();
    return apps::kExitDone;
}

int exportCommand(const apps::ParsedOptions& options) {
    const std::string output = outputOption(options);
    keepInputs(options, output);
    ExportOptions settings;
    settings.quality = qualityOption(options);
    settings.lwob = options.has("--lwob");
    if (settings.lwob && modelFormatOf(platform::pathFromText(output)) != ModelFileType::kLwo)
        throw apps::UsageError("--lwob goes with a .lwo file");
    if (options.has("--frame") && options.has("--frames"))
        throw apps::UsageError("only one of --frame and --frames goes");
    settings.allFrames = !options.has("--frame");
    Project project;
    openProject(project, options.positional()[0]);
    if (options.has("--frames"))
        setTotalFrames(apps::wholeOption(options.value("--frames"), "--frames", 1, kMaxFrames));
    goToFrame(options);
    const auto objects = chosenObjects(project.mainScene(), options.all("--object"));
    const ShownProgress progress("exporting", options.has("--quiet"));
    apps::makeFolderOf(platform::pathFromText(output));
    if (exportModel(output, objects, settings) != kSuccess)
        throw apps::Failure("'" + output + "' was not written");
    return apps::kExitDone;
}

}  // namespace orvin::orvinex
