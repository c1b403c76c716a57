// STYLE: the options by which commands that make extruded objects tell how these look.
#pragma once

#include <string_view>
#include <vector>

#include "common/Options.h"
#include "geometry/ObjectXStyle.h"

namespace orvin::orvinex {

/// As the help lists them.
const std::vector<apps::OptionSpec>& styleOptions();

/// `own` and then the options of the style: a command's list.
std::vector<apps::OptionSpec> withStyleOptions(std::vector<apps::OptionSpec> own);

/// Changes `style` as the options say; what none of them names stays. Edges and the material of
/// "--color" come into the style's scene. Throws UsageError, or Failure for an edge that isn't
/// there.
void applyStyleOptions(const apps::ParsedOptions& options, ObjectXStyle& style);

/// True where "--color" gives all objects one material.
bool colorIsGiven(const apps::ParsedOptions& options);

}  // namespace orvin::orvinex
