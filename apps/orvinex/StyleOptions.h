// STYLE: the options by which commands that make objects tell how these look.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "common/Options.h"
#include "geometry/ObjectXStyle.h"

namespace orvin::orvinex {

/// `own` and then the options of the style, materials last: a command's list.
std::vector<apps::OptionSpec> withStyleOptions(std::vector<apps::OptionSpec> own);
/// The same with the materials alone.
std::vector<apps::OptionSpec> withMaterialOptions(std::vector<apps::OptionSpec> own);

/// "R,G,B", each from 0 to 1. Throws UsageError.
std::array<float, 3> colorOption(const std::string& text, const char* what);

/// The material that --color makes or --material names, brought into the scene; empty for neither.
/// Throws UsageError, or Failure for one that isn't there.
std::string materialOption(const apps::ParsedOptions& options, SceneX& scene);

/// Changes `style` as the options say; what none of them names stays. Edges and materials come
/// into the style's scene. Throws UsageError, or Failure for an edge or material that isn't there.
void applyStyleOptions(const apps::ParsedOptions& options, ObjectXStyle& style);

/// True where the options give all objects one material, whatever the colours of the art.
bool materialIsGiven(const apps::ParsedOptions& options);

}  // namespace orvin::orvinex
