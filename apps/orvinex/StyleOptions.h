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

/// Changes `style` as the options say; what none of them names stays. Edges and materials come
/// into the style's scene. Throws UsageError, or Failure for an edge or material that isn't there.
void applyStyleOptions(const apps::ParsedOptions& options, ObjectXStyle& style);

/// True where the options give all objects one material, whatever the colours of the art.
bool materialIsGiven(const apps::ParsedOptions& options);

}  // namespace orvin::orvinex
