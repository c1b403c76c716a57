// resave and info.
#include <cstdio>
#include <nlohmann/json.hpp>

#include "geometry/MeshObject.h"
#include "orvinex/Commands.h"
#include "render/CameraX.h"
#include "render/ImageFile.h"
#include "render/LightX.h"

namespace orvin::orvinex {

namespace {

struct KindName {
    MemberKind kind;
    const char* name;
};
constexpr KindName kKinds[] = {
    {MemberKind::kCamera, "cameras"},     {MemberKind::kObject, "objects"},
    {MemberKind::kLight, "lights"},       {MemberKind::kMaterial, "materials"},
    {MemberKind::kImageMap, "imageMaps"}, {MemberKind::kImageFile, "imageFiles"},
    {MemberKind::kStyle, "styles"},       {MemberKind::kProfile, "profiles"},
    {MemberKind::kGroup, "groups"},
};

nlohmann::json vectorJson(Vec3 v) {
    return {v.x, v.y, v.z};
}

nlohmann::json memberJson(SceneMember& member) {
    nlohmann::json json{{"name", member.name()}, {"class", member.className()}};
    if (auto* const object = dynamic_cast<MeshObject*>(&member)) {
        std::uint32_t revision = 0;
        if (const Mesh3* const mesh = object->mesh(1, revision)) {
            json["vertices"] = mesh->vertexCount();
            json["faces"] = mesh->faceCount();
        }
        const Box3 box = object->worldBounds();
        if (!box.empty()) json["bounds"] = {vectorJson(box.min), vectorJson(box.max)};
        if (object->parent() != nullptr) json["parent"] = object->parent()->name();
    } else if (const auto* const light = dynamic_cast<LightX*>(&member)) {
        json["type"] = lightTypeName(light->type());
        json["intensity"] = light->intensity();
        json["enabled"] = light->isEnabled();
    } else if (const auto* const camera = dynamic_cast<CameraX*>(&member)) {
        json["eye"] = vectorJson(camera->pose().eye);
        json["fieldOfView"] = camera->fieldOfView();
    } else if (const auto* const image = dynamic_cast<ImageFile*>(&member)) {
        json["path"] = image->path();
    }
    return json;
}

nlohmann::json projectJson(Project& project) {
    SceneX& scene = project.mainScene();
    const RenderState& state = project.renderState();
    nlohmann::json json;
    json["scene"] = scene.name();
    json["render"] = {{"width", state.params.width},
                      {"height", state.params.height},
                      {"antiAliasLevel", state.antiAliasLevel},
                      {"method", state.renderMethod},
                      {"keepAlpha", state.keepsAlpha()},
                      {"shadows", state.rendersShadows()}};
    for (const KindName& kind : kKinds) {
        nlohmann::json list = nlohmann::json::array();
        for (SceneMember* const member : scene.members(kind.kind))
            list.push_back(memberJson(*member));
        json[kind.name] = std::move(list);
    }
    return json;
}

void printText(const nlohmann::json& json) {
    std::printf("scene      %s\n", json["scene"].get<std::string>().c_str());
    const auto& render = json["render"];
    std::printf("render     %g x %g, anti-alias level %d, method %d, %s, shadows %s\n",
                render["width"].get<double>(), render["height"].get<double>(),
                render["antiAliasLevel"].get<int>(), render["method"].get<int>(),
                render["keepAlpha"].get<bool>() ? "keeps alpha" : "on the background",
                render["shadows"].get<bool>() ? "on" : "off");
    for (const KindName& kind : kKinds) {
        const auto& list = json[kind.name];
        std::printf("%-10s %zu\n", kind.name, list.size());
        for (const auto& member : list) {
            std::printf("  %s \"%s\"", member["class"].get<std::string>().c_str(),
                        member["name"].get<std::string>().c_str());
            if (member.contains("faces"))
                std::printf("  %d vertices, %d faces", member["vertices"].get<int>(),
                            member["faces"].get<int>());
            if (member.contains("type"))
                std::printf("  %s, intensity %g%s", member["type"].get<std::string>().c_str(),
                            member["intensity"].get<double>(),
                            member["enabled"].get<bool>() ? "" : ", off");
            if (member.contains("path"))
                std::printf("  %s", member["path"].get<std::string>().c_str());
            std::printf("\n");
        }
    }
}

}  // namespace

int resaveCommand(const apps::ParsedOptions& options) {
    Project project;
    openProject(project, options.positional()[0]);
    project.preferences().saveMode = options.has("--ascii") ? 1 : project.preferences().saveMode;
    saveProject(project, outputOption(options));
    return apps::kExitDone;
}

int infoCommand(const apps::ParsedOptions& options) {
    Project project;
    openProject(project, options.positional()[0]);
    const nlohmann::json json = projectJson(project);
    if (options.has("--json")) {
        const std::string text =
            json.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
        std::fwrite(text.data(), 1, text.size(), stdout);
    } else {
        printText(json);
    }
    return apps::kExitDone;
}

}  // namespace orvin::orvinex
