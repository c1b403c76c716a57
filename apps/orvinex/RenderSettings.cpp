#include "orvinex/RenderSettings.h"

#include "render/shadow/ShadowPass.h"

namespace orvin::orvinex {

std::vector<apps::OptionSpec> withRenderSettings(std::vector<apps::OptionSpec> own) {
    own.insert(
        own.end(),
        {{"--size", "WxH", "picture size in pixels (the project's)"},
         {"--antialias", "LEVEL",
          "1 none; 2, 6, 10 and 14 divide pixels by 2 x 2 to 5 x 5, the three above each soften, "
          "too (the project's)"},
         {"--method", "N",
          "1 Orvinex Renderer, 2 Hi-Quality OpenGL, 3 Hiddenline, 4 Vector (the project's)"},
         {"--shadows", "on|off", "whether lights cast shadows (the project's)"},
         {"--shadow-quality", "N", "texels along a side of each shadow map (the project's)"}});
    return own;
}

bool onOffOption(const apps::ParsedOptions& options, const char* name, bool usual) {
    if (!options.has(name)) return usual;
    const std::string text = options.value(name);
    if (text != "on" && text != "off")
        throw apps::UsageError(std::string(name) + " is 'on' or 'off', not '" + text + "'");
    return text == "on";
}

void applyRenderSettings(const apps::ParsedOptions& options, RenderState& state) {
    const auto whole = [&](const char* name, int min, int max) {
        return apps::wholeOption(options.value(name), name, min, max);
    };
    if (options.has("--size")) {
        const apps::Size size = apps::sizeOption(options.value("--size"), "--size");
        state.params.width = size.width;
        state.params.height = size.height;
    }
    if (options.has("--antialias")) state.setAntiAliasLevel(whole("--antialias", 1, 17));
    if (options.has("--method")) state.renderMethod = whole("--method", 1, 4);
    state.setRendersShadows(onOffOption(options, "--shadows", state.rendersShadows()));
    if (options.has("--shadow-quality"))
        state.setShadowQuality(whole("--shadow-quality", 1, kMaxShadowResolution));
}

}  // namespace orvin::orvinex
