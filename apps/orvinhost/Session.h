// A run of the stand-in host: the module, the comp and the parameters as the command line asked
// for, one instance opened from a project and closed again, and the account at the end.
#pragma once

#include "common/Options.h"
#include "orvinhost/Instance.h"
#include "orvinhost/Module.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace orvin::stand_in {

struct SessionOptions {
    HostSettings settings;
    std::filesystem::path module;
    std::optional<std::filesystem::path> project;  // .twp
    std::optional<std::filesystem::path> flat;     // flat data, as --save-flat wrote it
    std::optional<std::filesystem::path> keys;
    std::optional<std::filesystem::path> comp;
    std::string input;  // picture or numbered pattern; empty: a transparent layer
    std::vector<std::pair<int, std::string>> layerMaps;  // Layer Map number, picture
    bool composite = false;
    bool strict = true;  // a broken rule is a failure
    bool quiet = false;
    bool oddities = false;  // print them, too
    std::optional<std::filesystem::path> report;
    double firstFrame = 0.0;
};

/// Reads the options that all commands with a project share. Throws UsageError.
SessionOptions sessionOptions(const apps::ParsedOptions& parsed);
/// Those options, for the help.
std::vector<apps::OptionSpec> sessionOptionSpecs();

class Session {
  public:
    explicit Session(SessionOptions options);
    ~Session();

    const SessionOptions& options() const { return options_; }
    Host& host() { return *host_; }
    Instance& instance() { return *instance_; }
    PF_EffectMainFn entry() const { return module_.entry(); }

    /// GLOBAL_SETUP and PARAMS_SETUP, then the values of the command line. Throws Failure.
    void startModule();
    /// RESETUP from the project (SEQUENCE_SETUP without one), the panel's context, UPDATE_PARAMS_UI
    /// and the user's changes. Throws Failure.
    void openInstance();
    /// The same from flat data at hand: as when a saved project is opened again.
    void reopenInstance(const std::vector<std::uint8_t>& flat);
    void closeInstance();
    /// Draws the panel when the host has the suites for it.
    void drawPanel(double frame);
    /// What a frame's line in the report says.
    void noteFrame(nlohmann::ordered_json frame) { frames_.push_back(std::move(frame)); }

    /// Throws Failure when the command failed.
    static void require(const Outcome& outcome, PF_Cmd command);
    /// Sets everything down, prints the findings and writes the report. The exit status;
    /// `failed` says that the work itself failed.
    int finish(bool failed);

  private:
    void applyValues();
    void afterOpen();
    void checkPipl() const;
    void show(const Outcome& outcome) const;
    nlohmann::ordered_json reportJson(bool failed) const;

    SessionOptions options_;
    RuleBook rules_;
    Module module_;
    std::unique_ptr<Host> host_;
    std::unique_ptr<Instance> instance_;
    std::vector<int> changed_;  // parameters that the command line set
    bool moduleStarted_ = false;
    bool contextOpen_ = false;
    nlohmann::ordered_json frames_ = nlohmann::ordered_json::array();
};

}  // namespace orvin::stand_in
