#include "orvinhost/Commands.h"

#include "common/Files.h"
#include "common/ProgramOutput.h"
#include "orvinhost/RenderJob.h"
#include "orvinhost/Session.h"

#include <algorithm>
#include <cstdio>
#include <exception>

namespace orvin::stand_in {
namespace {

constexpr const char* kProgram = "orvinhost";

// Runs the body of a command; whatever goes wrong, the effect is set down and the account given.
template <typename Body>
int withSession(const SessionOptions& options, Body body) {
    Session session(options);
    bool failed = false;
    try {
        session.startModule();
        body(session);
    } catch (const apps::Failure& failure) {
        std::fprintf(stderr, "%s: %s\n", kProgram, failure.what());
        failed = true;
    }
    return session.finish(failed);
}

int render(const apps::ParsedOptions& parsed, apps::ProgramOutput&) {
    RenderJob job = renderJob(parsed);
    return withSession(job.session, [&job](Session& session) { job.run(session); });
}

int params(const apps::ParsedOptions& parsed, apps::ProgramOutput& output) {
    const SessionOptions options = sessionOptions(parsed);
    return withSession(options, [&](Session& session) {
        const std::string text = session.host().params().json().dump(2) + "\n";
        if (parsed.has("--out"))
            apps::writeText(parsed.value("--out"), text);
        else
            output.write(text);
    });
}

int about(const apps::ParsedOptions& parsed, apps::ProgramOutput& output) {
    const SessionOptions options = sessionOptions(parsed);
    return withSession(options, [&output](Session& session) {
        const Outcome outcome = session.instance().about();
        Session::require(outcome, PF_Cmd_ABOUT);
        output.write(outcome.message + "\n");
    });
}

PF_Point point(const std::string& text, const char* what) {
    const std::size_t comma = text.find(',');
    if (comma == std::string::npos)
        throw apps::UsageError(std::string(what) + ": \"" + text + "\" isn't X,Y");
    return {apps::wholeOption(text.substr(0, comma), what, -30000, 30000),
            apps::wholeOption(text.substr(comma + 1), what, -30000, 30000)};
}

int panel(const apps::ParsedOptions& parsed, apps::ProgramOutput&) {
    SessionOptions options = sessionOptions(parsed);
    if (!options.project && !options.flat) throw apps::UsageError("a project is missing");
    if (!parsed.has("--out")) throw apps::UsageError("--out is missing");
    const std::string out = apps::pngOption(parsed.value("--out"), "--out");
    options.firstFrame =
        apps::wholeOption(parsed.value("--frame", "0"), "--frame", -1000000, 1000000);
    options.settings.duration =
        std::max(options.settings.duration, static_cast<int>(options.firstFrame) + 1);
    std::vector<PF_Point> path;
    for (const std::string& text : parsed.all("--drag"))
        path.push_back(point(text, "--drag"));
    const std::string click = parsed.value("--click");
    if (click.empty() && !path.empty()) throw apps::UsageError("--drag wants --click before it");
    const PF_Point first = click.empty() ? PF_Point{} : point(click, "--click");
    return withSession(options, [&](Session& session) {
        const double frame = session.options().firstFrame;
        session.openInstance();
        session.drawPanel(frame);
        if (!click.empty()) {
            Session::require(session.instance().click(frame, first, path), PF_Cmd_EVENT);
            session.drawPanel(frame);
        }
        if (session.host().panel().drawn() == 0)
            throw apps::Failure("the effect drew nothing into its panel");
        apps::writePng(out, session.host().panel().picture());
    });
}

int dialog(const apps::ParsedOptions& parsed, apps::ProgramOutput&) {
    const SessionOptions options = sessionOptions(parsed);
    return withSession(options, [&parsed](Session& session) {
        session.openInstance();
        if ((session.host().outFlags & PF_OutFlag_I_DO_DIALOG) == 0)
            throw apps::Failure("the effect has no dialog");
        Session::require(session.instance().doDialog(0.0), PF_Cmd_DO_DIALOG);
        if (!parsed.has("--save-flat")) return;
        std::vector<std::uint8_t> flat;
        Session::require(session.instance().flatten(flat), PF_Cmd_SEQUENCE_FLATTEN);
        Session::require(session.instance().resetup(), PF_Cmd_SEQUENCE_RESETUP);
        apps::writeFile(parsed.value("--save-flat"), flat);
    });
}

int rules(const apps::ParsedOptions&, apps::ProgramOutput& output) {
    std::string text;
    for (const RuleText& rule : allRules()) {
        std::string id = rule.id;
        id.resize(std::max<std::size_t>(id.size(), 24), ' ');
        text +=
            id + (rule.weight == Weight::kBroken ? " rule    " : " oddity  ") + rule.text + "\n";
    }
    output.write(text);
    return apps::kExitDone;
}

std::vector<apps::OptionSpec> with(std::vector<apps::OptionSpec> first) {
    const std::vector<apps::OptionSpec> shared = sessionOptionSpecs();
    first.insert(first.end(), shared.begin(), shared.end());
    return first;
}

struct Command {
    apps::CommandSpec spec;
    int (*run)(const apps::ParsedOptions& parsed, apps::ProgramOutput& output);  // the exit status
};

std::vector<Command> commands() {
    std::vector<Command> all{
        {{"render",
          "PROJECT.twp --out DIR/frame-%04d.png",
          0,
          1,
          "Renders frames of a project through the effect, as PNG with straight alpha.\n"
          "The effect goes through its whole life, with a flatten and re-setup after the first "
          "frame.",
          with({{"--out", "PATTERN", "where the frames go, like out/frame-%04d.png"},
                {"--frames", "A-B[:STEP]", "frames of the layer (all of --duration, or 0)"},
                {"--save-flat", "FILE", "writes the flat data that a host project would store"},
                {"--render-thread", "",
                 "render on a thread of its own from a copy of the project, as hosts do from 13.9"},
                {"--reload", "",
                 "after the first frame, set the instance down and open it again "
                 "from its flat data"}}),
          {"orvinhost render logo.twp --out out/frame-%04d.png --size 1280x720 --frames 0-59",
           "orvinhost render logo.twp --out still.png --keys keys.json --comp comp.json",
           "orvinhost render logo.twp --out half.png --downsample 2 --quality draft",
           "orvinhost render logo.twp --out x.png --abort-after 10 --report report.json"}},
         render},
        {{"params",
          "",
          0,
          0,
          "Prints the parameter list as the effect adds it, as JSON.",
          with({{"--out", "FILE.json", "into a file"}}),
          {"orvinhost params > params.json", "orvinhost params --host 12.10"}},
         params},
        {{"panel",
          "PROJECT.twp --out PANEL.png",
          0,
          1,
          "Draws the effect's panel into a picture, after a click or drag if asked.",
          with({{"--out", "PNG", "where the picture goes"},
                {"--frame", "N", "frame of the layer (0)"},
                {"--click", "X,Y", "click at a point of the control first"},
                {"--drag", "X,Y", "drag on to a point; may be repeated"}}),
          {"orvinhost panel logo.twp --out panel.png",
           "orvinhost panel logo.twp --out turned.png --click 160,130 --drag 200,130 --drag "
           "240,130"}},
         panel},
        {{"dialog",
          "PROJECT.twp",
          0,
          1,
          "Opens the Set-Up window of the effect (where the platform has windows).",
          with({{"--save-flat", "FILE", "writes the flat data after the dialog"}}),
          {"orvinhost dialog logo.twp"}},
         dialog},
        {{"about",
          "",
          0,
          0,
          "Prints what the effect says about itself.",
          with({}),
          {"orvinhost about"}},
         about},
        {{"rules",
          "",
          0,
          0,
          "Lists the rules that the effect is held to.",
          {},
          {"orvinhost rules"}},
         rules},
    };
    for (Command& command : all)
        command.spec.options.push_back(apps::verboseOption());
    return all;
}

int runCommand(const Command& command, std::span<const std::string> arguments,
               apps::ProgramOutput& output) {
    for (const std::string& argument : arguments)
        if (argument == "--help" || argument == "-h") {
            output.write(apps::commandHelp(kProgram, command.spec));
            return apps::kExitDone;
        }
    try {
        const apps::ParsedOptions parsed = apps::parseOptions(command.spec, arguments);
        if (parsed.has(apps::verboseOption().name)) output.showDiagnostics();
        return command.run(parsed, output);
    } catch (const apps::UsageError& error) {
        std::fprintf(stderr, "%s: %s\n%s\n", kProgram, error.what(),
                     apps::usageLine(kProgram, command.spec).c_str());
        return apps::kExitUsage;
    }
}

int runNamed(std::span<const std::string> arguments, apps::ProgramOutput& output) {
    constexpr const char* kPurpose =
        "Plays the host for the effect: loads the module, renders through its entry, and says\n"
        "which of the host's rules it broke.";
    const std::vector<Command> all = commands();
    const std::string name = arguments.empty() ? "" : arguments[0];
    if (name == "--help" || name == "-h" || name == "help") {
        std::vector<apps::CommandSpec> specs;
        for (const Command& command : all)
            specs.push_back(command.spec);
        output.write(apps::programHelp(kProgram, kPurpose, specs));
        return apps::kExitDone;
    }
    if (name == "--list-rules") return rules({}, output);
    for (const Command& command : all)
        if (command.spec.name == name) return runCommand(command, arguments.subspan(1), output);
    if (!name.empty()) std::fprintf(stderr, "%s: unknown command \"%s\"\n", kProgram, name.c_str());
    std::fprintf(stderr, "usage: %s render|params|panel|dialog|about|rules ... (--help)\n",
                 kProgram);
    return apps::kExitUsage;
}

}  // namespace

int runProgram(std::span<const std::string> arguments) {
    try {
        apps::ProgramOutput output;
        return runNamed(arguments, output);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", kProgram, error.what());
        return apps::kExitFailed;
    }
}

}  // namespace orvin::stand_in
