// params: the scene in the words of the effect's parameters, as a KEYS.json for orvinhost.
#include <cstring>
#include <nlohmann/json.hpp>

#include "common/Files.h"
#include "host/DescribeParameters.h"
#include "host/SceneDrive.h"
#include "orvinex/Commands.h"

namespace orvin::orvinex {

namespace {

// The generation that the effect's indices are made for.
constexpr PF_SpecVersion kHost{13, 0};

nlohmann::json valueOf(const PF_ParamDef& def) {
    switch (def.param_type) {
        case PF_Param_FIX_SLIDER:
            return fromFixed(def.u.fd.value);
        case PF_Param_POPUP:
            return def.u.pd.value;
        case PF_Param_COLOR:
            return {def.u.cd.value.red, def.u.cd.value.green, def.u.cd.value.blue};
        default:
            return {};
    }
}

}  // namespace

int paramsCommand(const apps::ParsedOptions& options, apps::ProgramOutput& output) {
    if (options.has("-o")) keepInputs(options, options.value("-o"));
    Project project;
    openProject(project, options.positional()[0]);
    std::vector<PF_ParamDef> defs = describeParameters(kHost);
    PF_ParamDef input;
    std::memset(&input, 0, sizeof(input));
    std::vector<PF_ParamDef*> params{&input};
    for (PF_ParamDef& def : defs)
        params.push_back(&def);
    showScene(project.mainScene(), params.data(), SceneGroup::kAll);

    // In the order of the list, not of the alphabet.
    nlohmann::ordered_json keys = nlohmann::ordered_json::object();
    for (const PF_ParamDef& def : defs) {
        const nlohmann::json value = valueOf(def);
        if (!value.is_null()) keys[def.name] = value;
    }
    const std::string text = keys.dump(2) + "\n";
    if (options.has("-o"))
        apps::writeText(options.value("-o"), text);
    else
        output.write(text);
    return apps::kExitDone;
}

}  // namespace orvin::orvinex
