// resave and info.
#include <algorithm>
#include <charconv>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "geometry/MeshObject.h"
#include "orvinex/Commands.h"
#include "orvinex/RenderSettings.h"
#include "orvinex/StyleOptions.h"
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

/// Whole, or with six digits: as much as anybody wants to read.
std::string shown(const nlohmann::json& number) {
    if (number.is_number_integer()) return number.dump();
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, number.get<double>(),
                                std::chars_format::general, 6)
                      .ptr};
}

std::string memberLine(const nlohmann::json& member) {
    std::string line = "  " + member["class"].get<std::string>() + " \"" +
                       member["name"].get<std::string>() + "\"";
    if (member.contains("faces"))
        line +=
            "  " + shown(member["vertices"]) + " vertices, " + shown(member["faces"]) + " faces";
    if (member.contains("type"))
        line += "  " + member["type"].get<std::string>() + ", intensity " +
                shown(member["intensity"]) + (member["enabled"].get<bool>() ? "" : ", off");
    if (member.contains("path")) line += "  " + member["path"].get<std::string>();
    return line + "\n";
}

std::string infoText(const nlohmann::json& json) {
    const auto& render = json["render"];
    std::string text = "scene      " + json["scene"].get<std::string>() + "\nrender     " +
                       shown(render["width"]) + " x " + shown(render["height"]) +
                       ", anti-alias level " + shown(render["antiAliasLevel"]) + ", method " +
                       shown(render["method"]) +
                       (render["keepAlpha"].get<bool>() ? ", keeps alpha" : ", on the background") +
                       ", shadows " + (render["shadows"].get<bool>() ? "on" : "off") + "\n";
    for (const KindName& kind : kKinds) {
        const auto& list = json[kind.name];
        std::string heading = kind.name;
        heading.resize(11, ' ');
        text += heading + std::to_string(list.size()) + "\n";
        for (const auto& member : list)
            text += memberLine(member);
    }
    return text;
}

}  // namespace

std::vector<std::string> materialNames(Project& project) {
    std::vector<std::string> names;
    for (const SceneMember* const member : project.mainScene().members(MemberKind::kMaterial))
        names.push_back(member->name());
    return names;
}

void tellDropped(Project& project, const std::vector<std::string>& before) {
    const std::vector<std::string> kept = materialNames(project);
    std::string gone;
    for (const std::string& name : before)
        if (std::find(kept.begin(), kept.end(), name) == kept.end())
            gone += (gone.empty() ? "'" : ", '") + name + "'";
    if (!gone.empty())
        std::fprintf(stderr, "orvinex: nothing wears %s, so the saved project is without\n",
                     gone.c_str());
}

int resaveCommand(const apps::ParsedOptions& options) {
    Project project;
    openProject(project, options.positional()[0]);
    const std::vector<std::string> materials = materialNames(project);
    RenderState& state = project.renderState();
    OrvinPreferences& preferences = project.preferences();
    applyRenderSettings(options, state);
    preferences.shadowQuality = state.viewer.shadowQuality;
    state.setKeepsAlpha(onOffOption(options, "--alpha", state.keepsAlpha()));
    if (options.has("--background"))
        state.viewer.background = colorOption(options.value("--background"), "--background");
    preferences.showTexturesComp =
        onOffOption(options, "--draft-textures", preferences.showTexturesComp);
    if (options.has("--ascii")) preferences.saveMode = 1;
    saveProject(project, outputOption(options));
    tellDropped(project, materials);
    return apps::kExitDone;
}

int infoCommand(const apps::ParsedOptions& options, apps::ProgramOutput& output) {
    Project project;
    openProject(project, options.positional()[0]);
    const nlohmann::json json = projectJson(project);
    if (options.has("--json"))
        output.write(json.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n");
    else
        output.write(infoText(json));
    return apps::kExitDone;
}

}  // namespace orvin::orvinex
