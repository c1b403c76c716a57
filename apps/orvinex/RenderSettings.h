// The settings of a project that say how frames come out: for one still, or to stay.
#pragma once

#include <vector>

#include "common/Options.h"
#include "scene/RenderState.h"

namespace orvin::orvinex {

/// `own` and then --size, --antialias, --method, --shadows and --shadow-quality.
std::vector<apps::OptionSpec> withRenderSettings(std::vector<apps::OptionSpec> own);

/// Changes what the options name. Throws UsageError.
void applyRenderSettings(const apps::ParsedOptions& options, RenderState& state);

/// "on" or "off"; `usual` where the option isn't there. Throws UsageError.
bool onOffOption(const apps::ParsedOptions& options, const char* name, bool usual);

}  // namespace orvin::orvinex
