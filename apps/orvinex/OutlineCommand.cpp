// outline: a project of Illustrator art.
#include <algorithm>
#include <cctype>

#include "orvinex/Authoring.h"
#include "orvinex/Commands.h"
#include "orvinex/ShownProgress.h"
#include "orvinex/StyleOptions.h"
#include "scene/FrameClock.h"
#include "setup/ArtObjects.h"
#include "toolkit/platform/Platform.h"

namespace orvin::orvinex {

namespace {

constexpr const char* kNothingUsable = "There were no usable vector paths in this file.";

CycleOption cycleNamed(const std::string& name) {
    std::string word = name;
    for (char& c : word)
        c = c == '-' ? '_' : static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    CycleOption option{};
    if (cycleOptionOf(word, option)) return option;
    throw apps::UsageError(
        "--cycle takes play-once, play-then-hold, loop, ping-pong, randomize, reverse-play-once, "
        "reverse-play-then-hold or reverse-loop");
}

/// What says how a cycle runs, beside its option.
constexpr const char* kCycleDetails[] = {"--change-every", "--start-frame", "--seed",
                                         "--hide-before-start"};

void applyCycleDetails(const apps::ParsedOptions& options, ProfileM& cycle) {
    const auto whole = [&](const char* name, int least, int usual) {
        return options.has(name) ? apps::wholeOption(options.value(name), name, least, kMaxFrames)
                                 : usual;
    };
    const int start = whole("--start-frame", 0, 0);
    goToFrame(start);  // what the camera is to frame
    cycle.setStartFrame(start);
    cycle.setChangeCounter(whole("--change-every", 1, 1));
    cycle.setRandomSeed(whole("--seed", 0, 1));
    cycle.setShowBeforeStart(options.has("--hide-before-start") ? 0 : 1);
}

AIOptions readOptions(const apps::ParsedOptions& options) {
    const int ways = options.has("--by-layers") + options.has("--layer") + options.has("--single") +
                     options.has("--cycle");
    if (ways > 1)
        throw apps::UsageError("only one of --by-layers, --layer, --single and --cycle goes");
    for (const char* const detail : kCycleDetails)
        if (options.has(detail) && !options.has("--cycle"))
            throw apps::UsageError(std::string(detail) + " goes with --cycle");
    AIOptions wanted;
    wanted.loadByLayers = options.has("--by-layers") || options.has("--cycle");
    if (options.has("--layer")) wanted.layerName = options.value("--layer");
    wanted.singleProfile = options.has("--single");
    wanted.flattenGroups = options.has("--flatten-groups");
    return wanted;
}

/// "'Face', 'Rim'".
std::string visibleLayers(const std::filesystem::path& file) {
    SceneX scratch;
    AIParser parser(scratch);
    parser.setFileSpec(file);
    AIOptions byLayers;
    byLayers.loadByLayers = true;
    std::string names;
    if (!parser.parse(byLayers)) return names;
    for (const AIObjectRecord& record : parser.objectList())
        if (const std::string& layer = record.profile->layerName(); !layer.empty())
            names += (names.empty() ? "'" : ", '") + layer + "'";
    return names;
}

void readArt(AIParser& parser, const std::filesystem::path& file, const AIOptions& wanted) {
    const std::string shown = "'" + platform::textFromPath(file) + "'";
    parser.setFileSpec(file);
    parser.parse(wanted);
    if (parser.parserError() == AIParserError::kNotOpened)
        throw apps::Failure("can't open " + shown +
                            (std::filesystem::exists(file) ? "" : ": No such file or directory"));
    if (parser.parserError() == AIParserError::kNotIllustrator)
        throw apps::Failure(shown +
                            " is no Illustrator file of version 3 to 8 (later versions "
                            "save as these)");
    if (!wanted.layerName || !parser.objectList().empty()) return;
    const std::string layers = visibleLayers(file);
    throw apps::Failure("no visible layer of " + shown + " is named '" + *wanted.layerName + "'" +
                        (layers.empty() ? "" : "; there are " + layers));
}

}  // namespace

int outlineCommand(const apps::ParsedOptions& options) {
    const AIOptions wanted = readOptions(options);
    const std::filesystem::path file = platform::pathFromText(options.positional()[0]);
    keepInputs(options, options.value("-o"));
    Authoring authoring(options);
    SceneX& scene = authoring.scene();
    {
        // Objects copy it; it goes before the project is saved.
        ObjectXStyle style(scene, authoring.usualStyle(), scene.uniqueName("outline style"));
        applyStyleOptions(options, style);
        const ArtColors colors = materialIsGiven(options) ? ArtColors::kOfStyle : ArtColors::kOfArt;
        const ShownProgress progress("reading", options.has("--quiet"));
        AIParser parser(scene);
        readArt(parser, file, wanted);
        const std::string title = platform::textFromPath(file.stem());
        bool any = false;
        if (options.has("--cycle")) {
            const CycleOption cycle = cycleNamed(options.value("--cycle"));
            ObjectX* const object = makeCycleObject(parser, style, colors, title, cycle);
            any = object != nullptr;
            if (any) applyCycleDetails(options, dynamic_cast<ProfileM&>(*object->face()));
        } else {
            if (wanted.singleProfile)
                for (AIObjectRecord& record : parser.objectList())
                    record.name = title;
            any = !makeArtObjects(parser, style, colors).empty();
        }
        if (!any) throw apps::Failure(kNothingUsable);
    }
    authoring.finish();
    return apps::kExitDone;
}

}  // namespace orvin::orvinex
