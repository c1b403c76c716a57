// The host as the effect sees it: settings of the running host, the tables that it hands over, and
// what it knows while a command is served.
//
// The effect's callbacks carry no context of their own (those on handles nothing at all), so the
// host that is running is reached through Host::active(), and the command that is being served
// through Call::current(), which belongs to the thread.
#pragma once

#include "host/abi/Abi.h"
#include "orvinhost/Comp.h"
#include "orvinhost/HandleTable.h"
#include "orvinhost/Panel.h"
#include "orvinhost/ParamList.h"
#include "orvinhost/Rules.h"
#include "orvinhost/SuiteBook.h"
#include "orvinhost/World.h"

#include <atomic>
#include <functional>
#include <map>
#include <string>

namespace orvin::stand_in {

struct HostSettings {
    PF_SpecVersion version{13, 28};
    int width = 640;  // of the layer
    int height = 480;
    PF_RationalScale frameRate{24, 1};
    int duration = 1;  // frames
    int downsample = 1;
    PF_RationalScale pixelAspect{1, 1};
    bool bestQuality = true;
    long long abortAfter = -1;  // polls that answer "go on"; -1: never abort
    int refuseRequest = 0;      // request for memory that is refused, from 1; 0: none
    PF_Cmd refuseIn = -1;       // counted from the first command of this kind; -1: from the start
    void* mainWindow = nullptr;
    void* moduleInstance = nullptr;

    int generation() const { return stand_in::generation(version.major, version.minor); }
    A_u_long timeScale() const;
    A_long timeStep() const;
    A_long timeOf(double frame) const;
    double frameOf(A_long time, A_u_long scale) const;
};

class Host;

/// What the host keeps about the command that is being served.
struct Call {
    Host& host;
    PF_Cmd command = PF_Cmd_ABOUT;
    PF_EventType event = PF_Event_NONE;
    double frame = 0.0;
    std::vector<PF_ParamDef*> params;  // what the effect was handed

    struct CheckedOut {
        int index = 0;
        World world;
        std::uint64_t checksum = 0;
    };
    std::map<PF_ParamDef*, CheckedOut> checkedOut;
    bool stopped = false;  // abort or progress answered non-zero

    explicit Call(Host& owner) : host(owner) {}
    /// Of this thread; null between commands.
    static Call* current();
};

class Host {
  public:
    Host(HostSettings settings, Comp comp, RuleBook& rules);
    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    /// The host that runs; there is one at a time.
    static Host* active();

    const HostSettings& settings() const { return settings_; }
    const Comp& comp() const { return comp_; }
    ParamList& params() { return params_; }
    HandleTable& handles() { return handles_; }
    SuiteBook& suites() { return suites_; }
    Panel& panel() { return panel_; }
    PF_UtilCallbacks& utils() { return utils_; }
    SPBasicSuite& basicSuite() { return basic_; }
    const PF_InteractCallbacks& interact() const { return interact_; }
    /// Opaque to the effect.
    PF_ProgPtr effectRef() { return reinterpret_cast<PF_ProgPtr>(this); }

    /// Writes a finding down under the command of this thread.
    void report(Rule rule, const std::string& detail);
    RuleBook& rules() { return rules_; }
    /// Rules that hold on a callback's first argument. Null, with a finding, when they are broken.
    static Call* enterCallback(const char* name, PF_ProgPtr effectRef);

    /// Number of abort and progress polls so far; answers 517 once the limit is passed.
    PF_Err poll(Call& call);
    void setProgress(std::function<void(double)> show) { showProgress_ = std::move(show); }
    void showProgress(double part) const {
        if (showProgress_) showProgress_(part);
    }

    /// What GLOBAL_SETUP declared, and what GLOBAL_SETUP and PARAMS_SETUP brought.
    PF_OutFlags outFlags = 0;
    PF_OutFlags2 outFlags2 = 0;
    std::atomic<PF_OutFlags2> currentFlags2 = 0;
    A_u_long effectVersion = 0;
    PF_Handle globalData = nullptr;
    PF_CustomUIInfo customUi{};
    bool hasCustomUi = false;
    std::atomic<long long> polls = 0;
    int invalidations = 0;

    /// The pixels of a layer parameter at a frame: the own layer for index 0 and a default of -1.
    World layerWorld(int index, double frame);
    /// Throws Failure, which names the file, where a layer has no picture for that frame.
    void requirePictures(double frame) const;
    std::shared_ptr<ImageSource> input;  // the layer's own picture; null: transparent

    /// Worlds made by the effect (PF_NEW_WORLD), by their pixels.
    std::map<const void*, World> worlds;
    /// Streams and stream values that the effect has to dispose of.
    struct OpenStream {
        int layer = 0;
        AEGP_LayerStream which = AEGP_LayerStream_NONE;
        std::unique_ptr<void*> slot;  // the handle is its address
    };
    std::map<const void*, OpenStream> streams;
    int streamValues = 0;

    /// Comp handles. Layers are handed out as pointers into a table of pointers.
    AEGP_LayerH layerHandle(int index);
    int layerIndex(AEGP_LayerH handle) const;  // -1 for none of ours
    AEGP_CompH compHandle();
    double compFrame(const A_Time& time) const;

    void checkAtEnd();

  private:
    HostSettings settings_;
    Comp comp_;
    RuleBook& rules_;
    HandleTable handles_;
    ParamList params_;
    SuiteBook suites_;
    Panel panel_;
    PF_InteractCallbacks interact_;
    PF_UtilCallbacks utils_;
    SPBasicSuite basic_;
    std::vector<void*> layerSlots_;
    void* compSlot_ = nullptr;
    std::function<void(double)> showProgress_;
};

/// Makes `call` the command of this thread while it lives.
class CallScope {
  public:
    explicit CallScope(Call& call);
    ~CallScope();
    CallScope(const CallScope&) = delete;
    CallScope& operator=(const CallScope&) = delete;

  private:
    Call* before_;
};

/// "PF_Cmd_RENDER"; an event carries its kind: "PF_Cmd_EVENT DRAW".
std::string commandName(PF_Cmd command, PF_EventType event = PF_Event_NONE);
/// By name, with or without "PF_Cmd_"; -1 for none.
PF_Cmd commandNumber(const std::string& name);

PF_InteractCallbacks interactCallbacks();
PF_UtilCallbacks utilCallbacks();
SPBasicSuite basicSuiteTable();

}  // namespace orvin::stand_in
