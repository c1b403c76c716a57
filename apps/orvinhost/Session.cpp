#include "orvinhost/Session.h"

#include "common/Files.h"
#include "orvinhost/Flat.h"
#include "orvinhost/JsonValue.h"
#include "orvinhost/KeysFile.h"
#include "orvinhost/PiplCheck.h"

#include <cstdio>

namespace orvin::stand_in {
namespace {

Comp makeComp(const SessionOptions& options) {
    const int width = options.settings.width;
    const int height = options.settings.height;
    if (!options.comp) return Comp(width, height);
    return Comp(readJson(*options.comp), *options.comp, width, height);
}

}  // namespace

Session::Session(SessionOptions options) : options_(std::move(options)), module_(options_.module) {
    options_.settings.mainWindow = makeMainWindow();
    options_.settings.moduleInstance = module_.instance();
    host_ = std::make_unique<Host>(options_.settings, makeComp(options_), rules_);
    if (options_.settings.refuseRequest > 0 && options_.settings.refuseIn < 0)
        host_->handles().refuseRequest(options_.settings.refuseRequest);
    instance_ = std::make_unique<Instance>(*host_, module_.entry());
}

Session::~Session() = default;

void Session::require(const Outcome& outcome, PF_Cmd command) {
    if (outcome.failed()) throw apps::Failure(outcome.text(command));
}

// What the host would put into a message box.
void Session::show(const Outcome& outcome) const {
    if (!outcome.failed() && !outcome.message.empty() && !options_.quiet)
        std::fprintf(stderr, "%s\n", outcome.message.c_str());
}

void Session::startModule() {
    Outcome outcome = instance_->globalSetup();
    require(outcome, PF_Cmd_GLOBAL_SETUP);
    show(outcome);
    moduleStarted_ = true;
    checkPipl();
    outcome = instance_->paramsSetup();
    require(outcome, PF_Cmd_PARAMS_SETUP);
    show(outcome);
    host_->params().checkStrings(
        [this](Rule rule, const std::string& detail) { host_->report(rule, detail); });
    applyValues();
}

void Session::checkPipl() const {
    const std::vector<std::uint8_t> resource = module_.pipl();
    if (resource.empty()) return;
    for (const std::string& fault :
         piplFaults(resource, {host_->outFlags, host_->outFlags2, host_->effectVersion}))
        host_->report(Rule::kPiPL, fault);
}

void Session::applyValues() {
    ParamList& params = host_->params();
    if (!options_.input.empty()) host_->input = std::make_shared<ImageSource>(options_.input);
    const auto setLayer = [&params](int number, const std::shared_ptr<ImageSource>& image) {
        const std::string name = "Layer Map " + std::to_string(number);
        const std::optional<int> index = params.find(name);
        if (!index || params[*index].def.param_type != PF_Param_LAYER)
            throw apps::Failure("the effect has no layer parameter \"" + name + "\"");
        params[*index].layer = image;
    };
    for (const CompLayer& layer : host_->comp().layers())
        if (layer.layerMap > 0) setLayer(layer.layerMap, layer.image);
    for (const auto& map : options_.layerMaps)
        setLayer(map.first, std::make_shared<ImageSource>(map.second));
    nlohmann::json keys = nlohmann::json::object();
    std::string source = "command line";
    if (options_.keys) {
        keys = readJson(*options_.keys);
        source = options_.keys->string();
    }
    changed_ = applyKeys(keys, source, params, host_->comp().images());
    if (options_.composite)
        for (const int index :
             applyKeys({{"Composite On Original", true}}, "--composite", params, {}))
            changed_.push_back(index);
}

void Session::openInstance() {
    if (!options_.project && !options_.flat) {
        const Outcome outcome = instance_->sequenceSetup();
        require(outcome, PF_Cmd_SEQUENCE_SETUP);
        show(outcome);
        afterOpen();
        return;
    }
    if (options_.project) {
        const std::string text = apps::readText(*options_.project);
        // The effect would open a new scene instead, as it does for a host's spoiled data.
        if (text.find("SceneX") == std::string::npos)
            throw apps::Failure(options_.project->string() + ": isn't a project, or has no scene");
        reopenInstance(flatFromProject(text));
        return;
    }
    const std::vector<std::uint8_t> flat = apps::readFile(*options_.flat);
    if (!looksFlat(flat)) throw apps::Failure(options_.flat->string() + ": isn't flat data");
    reopenInstance(flat);
}

void Session::reopenInstance(const std::vector<std::uint8_t>& flat) {
    const Outcome outcome = instance_->resetup(flat);
    require(outcome, PF_Cmd_SEQUENCE_RESETUP);
    show(outcome);
    afterOpen();
}

void Session::afterOpen() {
    const double frame = options_.firstFrame;
    if (host_->hasCustomUi && (host_->customUi.events & PF_CustomEFlag_EFFECT) != 0) {
        require(instance_->plainEvent(PF_Event_NEW_CONTEXT, frame), PF_Cmd_EVENT);
        contextOpen_ = true;
        require(instance_->plainEvent(PF_Event_ACTIVATE, frame), PF_Cmd_EVENT);
    }
    const bool updates = (host_->outFlags & PF_OutFlag_SEND_UPDATE_PARAMS_UI) != 0;
    if (updates) require(instance_->updateParamsUi(frame), PF_Cmd_UPDATE_PARAMS_UI);
    for (const int index : changed_) {
        const PF_ParamDef& added = host_->params()[index].def;
        const PF_ParamDef now = host_->params().valueAt(index, frame);
        if ((added.flags & PF_ParamFlag_SUPERVISE) == 0 || ParamList::sameValue(added, now))
            continue;
        require(instance_->userChanged(index, frame), PF_Cmd_USER_CHANGED_PARAM);
        if (updates) require(instance_->updateParamsUi(frame), PF_Cmd_UPDATE_PARAMS_UI);
    }
}

// Hosts before 13.0 draw through a device context, for which the 64-bit structures have no place.
void Session::drawPanel(double frame) {
    if (contextOpen_ && options_.settings.generation() >= kFirst64Bit &&
        instance_->controlParam() >= 0)
        require(instance_->draw(frame), PF_Cmd_EVENT);
}

void Session::closeInstance() {
    if (contextOpen_) {
        instance_->plainEvent(PF_Event_DEACTIVATE, options_.firstFrame);
        instance_->plainEvent(PF_Event_CLOSE_CONTEXT, options_.firstFrame);
        contextOpen_ = false;
    }
    if (instance_->hasSequence()) require(instance_->sequenceSetdown(), PF_Cmd_SEQUENCE_SETDOWN);
}

int Session::finish(bool failed) {
    try {
        closeInstance();
        if (moduleStarted_) require(instance_->globalSetdown(), PF_Cmd_GLOBAL_SETDOWN);
    } catch (const apps::Failure& failure) {
        std::fprintf(stderr, "orvinhost: %s\n", failure.what());
        failed = true;
    }
    host_->checkAtEnd();
    for (const Finding& finding : rules_.findings())
        if (options_.oddities || ruleText(finding.rule).weight == Weight::kBroken)
            std::fprintf(stderr, "orvinhost: %s\n", findingLine(finding).c_str());
    const int broken = rules_.brokenCount();
    if (options_.strict && broken > 0) {
        std::fprintf(stderr, "orvinhost: the effect broke %d rule(s)\n", broken);
        failed = true;
    }
    if (options_.report) apps::writeText(*options_.report, reportJson(failed).dump(2) + "\n");
    return failed ? apps::kExitFailed : apps::kExitDone;
}

nlohmann::ordered_json Session::reportJson(bool failed) const {
    nlohmann::ordered_json json;
    const HostSettings& settings = options_.settings;
    json["host"] =
        std::to_string(settings.version.major) + "." + std::to_string(settings.version.minor);
    json["failed"] = failed;
    json["broken"] = rules_.brokenCount();
    json["findings"] = nlohmann::ordered_json::array();
    for (const Finding& finding : rules_.findings()) {
        const RuleText& rule = ruleText(finding.rule);
        json["findings"].push_back(
            {{"rule", rule.id},
             {"weight", rule.weight == Weight::kBroken ? "broken" : "oddity"},
             {"command", finding.command},
             {"detail", finding.detail},
             {"times", finding.times}});
    }
    json["frames"] = frames_;
    json["effect"] = {{"version", host_->effectVersion},
                      {"out_flags", host_->outFlags},
                      {"out_flags2", host_->outFlags2},
                      {"parameters", host_->params().count()}};
    json["memory"] = {{"requests", host_->handles().requests()},
                      {"peak_bytes", host_->handles().peakBytes()},
                      {"refused", host_->handles().refused()}};
    json["polls"] = host_->polls.load();
    return json;
}

}  // namespace orvin::stand_in
