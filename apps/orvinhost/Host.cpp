#include "orvinhost/Host.h"

#include "orvinhost/Unsupported.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>

namespace orvin::stand_in {
namespace {

std::atomic<Host*> gActiveHost = nullptr;
thread_local Call* tCurrentCall = nullptr;

constexpr std::array<const char*, 34> kCommands{"ABOUT",
                                                "GLOBAL_SETUP",
                                                "UNUSED_0",
                                                "GLOBAL_SETDOWN",
                                                "PARAMS_SETUP",
                                                "SEQUENCE_SETUP",
                                                "SEQUENCE_RESETUP",
                                                "SEQUENCE_FLATTEN",
                                                "SEQUENCE_SETDOWN",
                                                "DO_DIALOG",
                                                "FRAME_SETUP",
                                                "RENDER",
                                                "FRAME_SETDOWN",
                                                "USER_CHANGED_PARAM",
                                                "UPDATE_PARAMS_UI",
                                                "EVENT",
                                                "GET_EXTERNAL_DEPENDENCIES",
                                                "COMPLETELY_GENERAL",
                                                "QUERY_DYNAMIC_FLAGS",
                                                "AUDIO_RENDER",
                                                "AUDIO_SETUP",
                                                "AUDIO_SETDOWN",
                                                "ARBITRARY_CALLBACK",
                                                "SMART_PRE_RENDER",
                                                "SMART_RENDER",
                                                "RESERVED1",
                                                "RESERVED2",
                                                "RESERVED3",
                                                "GET_FLATTENED_SEQUENCE_DATA",
                                                "TRANSLATE_PARAMS_TO_PREFS",
                                                "RESERVED4",
                                                "SMART_RENDER_GPU",
                                                "GPU_DEVICE_SETUP",
                                                "GPU_DEVICE_SETDOWN"};

constexpr std::array<const char*, 12> kEvents{
    "NEW_CONTEXT",   "ACTIVATE", "DO_CLICK",         "DRAG",          "DRAW",    "DEACTIVATE",
    "CLOSE_CONTEXT", "IDLE",     "KEYDOWN_OBSOLETE", "ADJUST_CURSOR", "KEYDOWN", "MOUSE_EXITED"};

}  // namespace

// Times aren't counted in frames: a scale of ten units a frame and more shows an effect that takes
// them for that.
A_u_long HostSettings::timeScale() const {
    return static_cast<A_u_long>(frameRate.num) * (frameRate.num < 1000 ? 100u : 1u);
}

A_long HostSettings::timeStep() const {
    return static_cast<A_long>(frameRate.den) * (frameRate.num < 1000 ? 100 : 1);
}

A_long HostSettings::timeOf(double frame) const {
    return static_cast<A_long>(std::lround(frame * timeStep()));
}

double HostSettings::frameOf(A_long time, A_u_long scale) const {
    return static_cast<double>(time) / scale * timeScale() / timeStep();
}

Call* Call::current() {
    return tCurrentCall;
}

CallScope::CallScope(Call& call) : before_(tCurrentCall) {
    tCurrentCall = &call;
}

CallScope::~CallScope() {
    tCurrentCall = before_;
}

Host::Host(HostSettings settings, Comp comp, RuleBook& rules)
    : settings_(settings),
      comp_(std::move(comp)),
      rules_(rules),
      handles_([this](Rule rule, const std::string& detail) { report(rule, detail); }),
      suites_(settings.generation(),
              [this](Rule rule, const std::string& detail) { report(rule, detail); }),
      panel_([this](Rule rule, const std::string& detail) { report(rule, detail); }),
      interact_(interactCallbacks()),
      utils_(utilCallbacks()),
      basic_(basicSuiteTable()),
      layerSlots_(comp_.layers().size(), nullptr) {
    gActiveHost = this;
}

Host::~Host() {
    gActiveHost = nullptr;
}

Host* Host::active() {
    return gActiveHost;
}

void Host::report(Rule rule, const std::string& detail) {
    const Call* call = Call::current();
    rules_.record(rule, call == nullptr ? "" : commandName(call->command, call->event), detail);
}

Call* Host::enterCallback(const char* name, PF_ProgPtr effectRef) {
    Host* host = active();
    Call* call = Call::current();
    if (host == nullptr) return nullptr;
    if (call == nullptr) {
        host->report(Rule::kCallbackOutside, name);
        return nullptr;
    }
    if (effectRef != host->effectRef()) {
        host->report(Rule::kCallbackRef, name);
        return nullptr;
    }
    return call;
}

PF_Err Host::poll(Call& call) {
    const long long count = ++polls;
    if (settings_.abortAfter < 0 || count <= settings_.abortAfter) return PF_Err_NONE;
    call.stopped = true;
    return PF_Interrupt_CANCEL;
}

void Host::requirePictures(double frame) const {
    const int atComp = static_cast<int>(std::lround(frame + comp_.layerStart()));
    if (input != nullptr) input->picture(static_cast<int>(std::lround(frame)));
    for (int i = 0; i < params_.count(); ++i)
        if (params_[i].layer != nullptr) params_[i].layer->picture(atComp);
}

World Host::layerWorld(int index, double frame) {
    const Param& param = params_[index];
    std::shared_ptr<ImageSource> source = param.layer;
    const bool own = param.def.u.ld.dephault == -1 && source == nullptr;
    if (own) source = input;
    const int picture = static_cast<int>(std::lround(own ? frame : frame + comp_.layerStart()));
    if (source != nullptr) return source->world(picture, settings_.downsample);
    if (!own) return {};
    const auto scaled = [this](int side) {
        return (side + settings_.downsample - 1) / settings_.downsample;
    };
    World world(scaled(settings_.width), scaled(settings_.height));
    world.fill({0, 0, 0, 0});
    return world;
}

AEGP_LayerH Host::layerHandle(int index) {
    return reinterpret_cast<AEGP_LayerH>(&layerSlots_[static_cast<std::size_t>(index)]);
}

int Host::layerIndex(AEGP_LayerH handle) const {
    for (std::size_t i = 0; i < layerSlots_.size(); ++i)
        if (static_cast<const void*>(handle) == static_cast<const void*>(&layerSlots_[i]))
            return static_cast<int>(i);
    return -1;
}

AEGP_CompH Host::compHandle() {
    return reinterpret_cast<AEGP_CompH>(&compSlot_);
}

double Host::compFrame(const A_Time& time) const {
    return settings_.frameOf(time.value, time.scale);
}

void Host::checkAtEnd() {
    params_.checkStrings([this](Rule rule, const std::string& detail) { report(rule, detail); });
    if (!worlds.empty()) report(Rule::kWorldLeak, std::to_string(worlds.size()) + " world(s) left");
    if (!streams.empty() || streamValues != 0)
        report(Rule::kStreamLeak, std::to_string(streams.size()) + " stream(s) and " +
                                      std::to_string(streamValues) + " value(s) left");
    suites_.checkAtEnd();
    handles_.checkAtEnd();
}

std::string commandName(PF_Cmd command, PF_EventType event) {
    const bool known = command >= 0 && command < static_cast<int>(kCommands.size());
    std::string name = known ? std::string("PF_Cmd_") + kCommands[static_cast<std::size_t>(command)]
                             : "command " + std::to_string(command);
    if (event >= 0 && event < static_cast<int>(kEvents.size()))
        name += std::string(" ") + kEvents[static_cast<std::size_t>(event)];
    return name;
}

PF_Cmd commandNumber(const std::string& name) {
    const std::string bare = name.rfind("PF_Cmd_", 0) == 0 ? name.substr(7) : name;
    const auto found = std::find(kCommands.begin(), kCommands.end(), bare);
    return found == kCommands.end() ? -1 : static_cast<PF_Cmd>(found - kCommands.begin());
}

PF_Err reportUnsupported(std::string_view name) {
    if (Host* host = Host::active()) host->report(Rule::kCallbackUnsupported, std::string(name));
    return PF_Err_INVALID_CALLBACK;
}

}  // namespace orvin::stand_in
