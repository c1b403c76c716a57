// import and export.
#include <algorithm>

#include "interchange/ModelFormats.h"
#include "orvinex/Authoring.h"
#include "orvinex/Commands.h"
#include "orvinex/ShownProgress.h"
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

int qualityOption(const apps::ParsedOptions& options) {
    const std::string quality = options.value("--quality", "render");
    if (quality == "render") return 1;
    if (quality == "preview") return 0;
    throw apps::UsageError("--quality takes preview or render");
}

}  // namespace

int importCommand(const apps::ParsedOptions& options) {
    Authoring authoring(options);
    {
        const ShownProgress progress("importing", options.has("--quiet"));
        const std::string& model = options.positional()[0];
        if (importModel(authoring.scene(), platform::pathFromText(model)) != kSuccess)
            throw apps::Failure("nothing was imported from '" + model + "'");
    }
    authoring.finish();
    return apps::kExitDone;
}

int exportCommand(const apps::ParsedOptions& options) {
    const std::string output = outputOption(options);
    ExportOptions settings;
    settings.quality = qualityOption(options);
    settings.lwob = options.has("--lwob");
    if (settings.lwob && modelFormatOf(platform::pathFromText(output)) != ModelFileType::kLwo)
        throw apps::UsageError("--lwob goes with a .lwo file");
    Project project;
    openProject(project, options.positional()[0]);
    if (options.has("--frames"))
        setTotalFrames(apps::wholeOption(options.value("--frames"), "--frames", 1, kMaxFrames));
    if (options.has("--frame")) {
        const int frame = apps::wholeOption(options.value("--frame"), "--frame", 0, kMaxFrames);
        setTotalFrames(std::max(totalFrames(), frame + 1));
        setCurrentFrame(frame);
    }
    const auto objects = chosenObjects(project.mainScene(), options.all("--object"));
    const ShownProgress progress("exporting", options.has("--quiet"));
    if (exportModel(output, objects, settings) != kSuccess)
        throw apps::Failure("'" + output + "' was not written");
    return apps::kExitDone;
}

}  // namespace orvin::orvinex
