// The command line's share of a Session.
#include "orvinhost/Session.h"

#include "common/Files.h"
#include "common/Png.h"

namespace orvin::stand_in {
namespace {

using apps::UsageError;

PF_SpecVersion hostVersion(const std::string& text) {
    if (text == "13" || text == "13.x") return {13, 28};
    const std::size_t dot = text.find('.');
    if (dot == std::string::npos) throw UsageError("--host: \"" + text + "\" isn't MAJOR.MINOR");
    return {static_cast<A_short>(apps::wholeOption(text.substr(0, dot), "--host", 11, 13)),
            static_cast<A_short>(apps::wholeOption(text.substr(dot + 1), "--host", 0, 99))};
}

// "N" or "COMMAND:N".
void refusal(const std::string& text, HostSettings& settings) {
    const std::size_t colon = text.find(':');
    if (colon != std::string::npos) {
        settings.refuseIn = commandNumber(text.substr(0, colon));
        if (settings.refuseIn < 0)
            throw UsageError("--refuse-handle: no command \"" + text.substr(0, colon) + "\"");
    }
    settings.refuseRequest = apps::wholeOption(
        colon == std::string::npos ? text : text.substr(colon + 1), "--refuse-handle", 1, 1 << 30);
}

std::pair<int, std::string> layerMap(const std::string& text) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos)
        throw UsageError("--layer-map: \"" + text + "\" isn't N=IMAGE");
    return {apps::wholeOption(text.substr(0, equals), "--layer-map", 1, 1000),
            text.substr(equals + 1)};
}

}  // namespace

std::vector<apps::OptionSpec> sessionOptionSpecs() {
    return {
        {"--size", "WxH", "layer size in pixels (the input's, or 640x480)"},
        {"--fps", "N", "frames a second: 24, 29.97, 30000/1001 (24)"},
        {"--duration", "FRAMES", "length of the layer (up to the last frame)"},
        {"--quality", "best|draft", "quality switch of the layer (best)"},
        {"--draft", "", "the same as --quality draft"},
        {"--downsample", "N", "1 full, 2 half, 3 third, ... (1)"},
        {"--pixel-aspect", "N/D", "pixel aspect ratio, width over height (1)"},
        {"--keys", "KEYS.json", "parameter values and key frames"},
        {"--comp", "COMP.json", "the comp's camera, lights and image layers"},
        {"--input", "IMAGE.png", "picture of the layer, or a pattern like clip-%04d.png"},
        {"--layer-map", "N=IMAGE.png", "picture of the parameter Layer Map N; may be repeated"},
        {"--composite", "", "switches Composite On Original on"},
        {"--flat", "FILE", "open flat data as --save-flat wrote it, instead of a project"},
        {"--host", "VERSION", "generation of the host: 12.10, or 13.0 to 13.28 (13.28)"},
        {"--module", "PATH", "the effect (3DOrvinex.aex or .so beside the program)"},
        {"--abort-after", "N", "stop the effect once it has polled N times"},
        {"--refuse-handle", "[CMD:]N",
         "refuse the N-th request for memory, counted from the start or from a command"},
        {"--strict", "on|off", "a broken rule makes the exit status 1 (on)"},
        {"--oddities", "", "prints customs that cost nothing, too (the report has them always)"},
        {"--report", "FILE.json", "writes what happened and which rules were broken"},
        {"--quiet", "", "no progress bar, no messages but errors"},
    };
}

SessionOptions sessionOptions(const apps::ParsedOptions& parsed) {
    SessionOptions options;
    HostSettings& settings = options.settings;
    const auto path = [&parsed](const char* name) {
        return parsed.has(name) ? std::optional<std::filesystem::path>(parsed.value(name))
                                : std::nullopt;
    };
    options.module = parsed.has("--module") ? std::filesystem::path(parsed.value("--module"))
                                            : Module::standardPath();
    options.flat = path("--flat");
    options.keys = path("--keys");
    options.comp = path("--comp");
    options.report = path("--report");
    options.input = parsed.value("--input");
    options.composite = parsed.has("--composite");
    options.quiet = parsed.has("--quiet");
    options.oddities = parsed.has("--oddities");
    if (!parsed.positional().empty()) options.project = parsed.positional()[0];
    if (options.project && options.flat) throw UsageError("--flat and a project: only one of them");

    if (parsed.has("--size")) {
        const apps::Size size = apps::sizeOption(parsed.value("--size"), "--size");
        settings.width = size.width;
        settings.height = size.height;
    } else if (!options.input.empty()) {
        const apps::Picture picture = ImageSource(options.input).picture(0);
        settings.width = picture.width;
        settings.height = picture.height;
    }
    const apps::Ratio rate = apps::ratioOption(parsed.value("--fps", "24"), "--fps");
    settings.frameRate = {rate.num, static_cast<A_u_long>(rate.den)};
    const apps::Ratio aspect =
        apps::ratioOption(parsed.value("--pixel-aspect", "1"), "--pixel-aspect");
    settings.pixelAspect = {aspect.num, static_cast<A_u_long>(aspect.den)};
    settings.duration = parsed.has("--duration")
                            ? apps::wholeOption(parsed.value("--duration"), "--duration", 1, 100000)
                            : 0;
    settings.downsample =
        apps::wholeOption(parsed.value("--downsample", "1"), "--downsample", 1, 64);
    const std::string quality = parsed.value("--quality", "best");
    if (quality != "best" && quality != "draft")
        throw UsageError("--quality: \"" + quality + "\" isn't best or draft");
    settings.bestQuality = quality == "best" && !parsed.has("--draft");
    settings.version = hostVersion(parsed.value("--host", "13.28"));
    if (parsed.has("--abort-after"))
        settings.abortAfter =
            apps::wholeOption(parsed.value("--abort-after"), "--abort-after", 0, 1 << 30);
    if (parsed.has("--refuse-handle")) refusal(parsed.value("--refuse-handle"), settings);
    for (const std::string& map : parsed.all("--layer-map"))
        options.layerMaps.push_back(layerMap(map));
    const std::string strict = parsed.value("--strict", "on");
    if (strict != "on" && strict != "off")
        throw UsageError("--strict: \"" + strict + "\" isn't on or off");
    options.strict = strict == "on";
    return options;
}

}  // namespace orvin::stand_in
