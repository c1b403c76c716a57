// orvinex: authoring, conversion, stills and inspection of projects without a host.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <new>

#include "common/Files.h"
#include "common/ProgramOutput.h"
#include "orvinex/Authoring.h"
#include "orvinex/Commands.h"
#include "orvinex/Framing.h"
#include "orvinex/RenderSettings.h"
#include "orvinex/StyleOptions.h"
#include "scene/FrameClock.h"
#include "toolkit/Errors.h"
#include "toolkit/platform/Platform.h"

namespace orvin::orvinex {

namespace {

constexpr const char* kProgram = "orvinex";
constexpr const char* kPurpose =
    "Makes, converts, renders and inspects 3D Orvinex projects (.twp).";

struct Command {
    apps::CommandSpec spec;
    std::function<int(const apps::ParsedOptions&)> run;
};

/// What the commands tell goes to `output`.
std::vector<Command> commands(apps::ProgramOutput& output) {
    const auto telling = [&output](int (*run)(const apps::ParsedOptions&, apps::ProgramOutput&)) {
        return [&output, run](const apps::ParsedOptions& options) { return run(options, output); };
    };
    static const apps::OptionSpec kOut{"-o", "FILE", "where the result goes"};
    static const apps::OptionSpec kQuiet{"--quiet", "", "no progress bar"};
    std::vector<Command> all = {
        {{"text",
          "STRING -o OUT.twp",
          1,
          1,
          "makes a project of a text that stands out; \\n in it starts a new line",
          withProjectOptions(withStyleOptions(
              {{"--font", "FILE",
                ".ttf, .pfa or .pfb: a path, or the name of an installed file (an installed font)"},
               {"--justify", "left|center|right", "how lines stand to one another (center)"},
               {"--leading", "F", "distance of lines as a factor of the font's height (1.2)"},
               {"--spacing", "F", "added between letters, as a factor of the font's width (0)"},
               {"--size", "PERCENT", "of letters; the font's height is 100 units at 100 (100)"},
               turnOption(),
               kQuiet})),
          {"orvinex text \"Hello\\nworld\" -o hello.twp",
           "orvinex text Orvinex --font DejaVuSans-Bold.ttf --edge \"Round, Half\" --depth 40 "
           "--color 0.9,0.6,0.1 --turn 20,-10 -o logo.twp",
           "orvinex text 2026 --into logo.twp --move 0,-120,0 --material Gold --looks looks.twp"}},
         textCommand},
        {{"outline",
          "FILE.ai -o OUT.twp",
          1,
          1,
          "makes a project of Illustrator art (versions 3 to 8): each object of it stands out",
          withProjectOptions(withStyleOptions(
              {{"--by-layers", "", "one object for each visible layer"},
               {"--layer", "NAME", "one object, of this layer alone"},
               {"--single", "", "one object of everything"},
               {"--cycle", "OPTION",
                "one object that shows the layers in turn: play-once, loop, "
                "ping-pong, ..."},
               {"--change-every", "N", "frames that each layer of a cycle stays (1)"},
               {"--start-frame", "N", "the first frame of the cycle (0)"},
               {"--hide-before-start", "", "nothing shows in the frames before it"},
               {"--seed", "N", "of the order of --cycle randomize (1)"},
               {"--flatten-groups", "", "what is in a group are objects of their own"},
               turnOption(),
               kQuiet})),
          {"orvinex outline logo.ai -o logo.twp",
           "orvinex outline logo.ai -o logo.twp --by-layers --edge \"Round, Half\" --depth 40"}},
         outlineCommand},
        {{"import",
          "MODEL -o OUT.twp",
          1,
          1,
          "makes a project of a model: .obj, .dxf, .lwo or .fac",
          withProjectOptions(withMaterialOptions({turnOption(), kQuiet})),
          {"orvinex import chair.obj -o chair.twp",
           "orvinex import table.lwo --into chair.twp --scale 0.5 --move 80,0,0 --set 2",
           "orvinex import gem.obj -o gem.twp --color 0.8,0.1,0.2"}},
         importCommand},
        {{"export",
          "PROJECT.twp -o OUT.obj|.dxf|.lwo|.fac",
          1,
          1,
          "writes the objects of a project as a model; the extension says which kind",
          {kOut,
           {"--object", "NAME", "only this object; may be repeated"},
           {"--quality", "preview|render", "how finely curves are divided (render)"},
           {"--frame", "N", "only this frame of changing outlines, from 0 (all)"},
           {"--frames", "TOTAL", "how many frames of changing outlines there are (30)"},
           {"--lwob", "",
            "a .lwo file as LightWave 5 and before read it: no layers, no texture coordinates, at "
            "most 65535 points (LWO2)"},
           kQuiet},
          {"orvinex export logo.twp -o logo.obj --object \"Gem\"",
           "orvinex export cycle.twp -o cycle.lwo --frames 30"}},
         exportCommand},
        {{"render",
          "PROJECT.twp -o OUT.png",
          1,
          1,
          "renders a still through the scene's own camera and lights",
          withRenderSettings(
              {kOut,
               {"--on-background", "", "opaque, on the project's background colour (transparent)"},
               {"--gl-lighting", "HOW",
                "of OpenGL: simple or advanced, with the soft cones of spot lights (the "
                "project's)"},
               {"--furniture", "",
                "as viewers show it: OpenGL with ground plane, guides, icons, names"},
               {"--camera", "NAME", "camera to look through (dflt_cam)"},
               {"--frame", "N", "the frame that changing outlines show (0)"},
               {"--pixel-aspect", "N/D", "width over height of a pixel (1)"},
               kQuiet}),
          {"orvinex render logo.twp -o still.png --size 1920x1080 --antialias 7"}},
         renderCommand},
        {{"resave",
          "IN.twp -o OUT.twp",
          1,
          1,
          "reads a project and writes it anew, with other settings where options say so",
          withRenderSettings(
              {kOut,
               {"--alpha", "on|off",
                "whether frames of the effect keep their alpha or are opaque (the project's)"},
               {"--background", "R,G,B",
                "colour behind opaque frames, each from 0 to 1 (the project's)"},
               {"--draft-textures", "on|off", "whether drafts show textures (the project's)"},
               {"--ascii", "", "thumbnails as text"}}),
          {"orvinex resave old.twp -o new.twp",
           "orvinex resave logo.twp -o logo.twp --alpha on --size 1920x1080 --antialias 9"}},
         resaveCommand},
        {{"info",
          "PROJECT.twp",
          1,
          1,
          "tells what a project holds",
          {{"--json", "", "as JSON"}},
          {"orvinex info logo.twp", "orvinex info logo.twp --json"}},
         telling(infoCommand)},
        {{"params",
          "PROJECT.twp",
          1,
          1,
          "parameter values that match the scene, as KEYS.json for orvinhost",
          {{"-o", "FILE", "where they go (standard output)"}},
          {"orvinex params logo.twp -o keys.json"}},
         telling(paramsCommand)},
        {{"edges",
          "[--list | --sheet OUT.png]",
          0,
          0,
          "tells which edges the library has, or draws them",
          {{"--list", "", "index, name, name in menus and category of each (what it does anyway)"},
           {"--sheet", "FILE", "a picture: the section of each edge beside a letter that has it"},
           {"--edge", "NAME", "only this edge, by either name; may be repeated"},
           {"--custom", "FOLDER", "the edges of the Illustrator files there, not the library's"},
           {"--columns", "N", "edges in a row of the sheet (6)"},
           {"--letter", "PIXELS", "side of each rendered letter (200; 800 for one edge)"},
           kQuiet},
          {"orvinex edges --sheet edges.png",
           "orvinex edges --edge \"Bevel, Medium\" --sheet bevel.png",
           "orvinex edges --custom \"Custom Edges\" --sheet mine.png"}},
         telling(edgesCommand)},
        {{"sheet",
          "PICTURE.png... -o OUT.png",
          1,
          10000,
          "puts pictures side by side on a contact sheet",
          {{"-o", "FILE", "where the sheet goes"},
           {"--columns", "N", "pictures in a row (4)"},
           {"--width", "PIXELS", "width of each (320)"}},
          {"orvinex sheet out/frame-00*.png -o sheet.png --columns 5"}},
         sheetCommand},
    };
    for (Command& command : all)
        command.spec.options.push_back(apps::verboseOption());
    return all;
}

bool isHelp(const std::string& word) {
    return word == "--help" || word == "-h" || word == "help";
}

int fail(const std::string& message) {
    std::fprintf(stderr, "%s: %s\n", kProgram, message.c_str());
    return apps::kExitFailed;
}

int runCommand(const Command& command, const std::vector<std::string>& arguments,
               apps::ProgramOutput& output) {
    for (const std::string& argument : arguments)
        if (isHelp(argument) && argument != "help") {
            output.write(apps::commandHelp(kProgram, command.spec));
            return apps::kExitDone;
        }
    try {
        const apps::ParsedOptions options = apps::parseOptions(command.spec, arguments);
        if (options.has(apps::verboseOption().name)) output.showDiagnostics();
        return command.run(options);
    } catch (const apps::UsageError& error) {
        std::fprintf(stderr, "%s: %s\n%s\n", kProgram, error.what(),
                     apps::usageLine(kProgram, command.spec).c_str());
        return apps::kExitUsage;
    }
}

int runNamed(const std::vector<std::string>& arguments, apps::ProgramOutput& output) {
    const std::vector<Command> all = commands(output);
    std::vector<apps::CommandSpec> specs;
    for (const Command& command : all)
        specs.push_back(command.spec);
    const std::string help = apps::programHelp(kProgram, kPurpose, specs);
    if (arguments.empty()) {
        std::fputs(help.c_str(), stderr);
        return apps::kExitUsage;
    }
    if (isHelp(arguments[0])) {
        output.write(help);
        return apps::kExitDone;
    }
    for (const Command& command : all)
        if (command.spec.name == arguments[0])
            return runCommand(command, {arguments.begin() + 1, arguments.end()}, output);
    std::fprintf(stderr, "%s: no command is named '%s'\n%s", kProgram, arguments[0].c_str(),
                 help.c_str());
    return apps::kExitUsage;
}

int run(const std::vector<std::string>& arguments) {
    try {
        apps::ProgramOutput output;
        return runNamed(arguments, output);
    } catch (const apps::Failure& error) {
        return fail(error.what());
    } catch (const std::bad_alloc&) {
        return fail("Not enough memory to complete operation.");
    } catch (eBaseError) {
        return fail("a picture of that size can't be made");
    }
}

}  // namespace

void openProject(Project& project, const std::filesystem::path& path) {
    if (project.open(path) != kSuccess) throw apps::Failure(project.failure());
}

void saveProject(Project& project, const std::filesystem::path& path) {
    apps::makeFolderOf(path);
    if (project.save(path) != kSuccess) throw apps::Failure(project.failure());
}

void goToFrame(int frame) {
    setTotalFrames(std::max(totalFrames(), frame + 1));
    setCurrentFrame(frame);
}

void goToFrame(const apps::ParsedOptions& options) {
    if (options.has("--frame"))
        goToFrame(apps::wholeOption(options.value("--frame"), "--frame", 0, kMaxFrames - 1));
}

std::string outputOption(const apps::ParsedOptions& options) {
    if (!options.has("-o")) throw apps::UsageError("-o is missing");
    return options.value("-o");
}

void keepInputs(const apps::ParsedOptions& options, const std::string& output) {
    for (const std::string& input : options.positional()) {
        std::error_code error;
        if (std::filesystem::equivalent(platform::pathFromText(input),
                                        platform::pathFromText(output), error))
            throw apps::UsageError("'" + output + "' is what is read here, and would be lost");
    }
}

std::string pictureOutput(const apps::ParsedOptions& options) {
    const std::string output = apps::pngOption(outputOption(options), "-o");
    keepInputs(options, output);
    return output;
}

}  // namespace orvin::orvinex

int main(int argc, char** argv) {
    return orvin::orvinex::run({argv + 1, argv + argc});
}
