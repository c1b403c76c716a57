// What text, outline and import share: the project that they make or add to, and where in it the
// new objects stand.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "common/Options.h"
#include "geometry/ObjectXStyle.h"
#include "setup/Project.h"

namespace orvin::orvinex {

/// "-o", "--into" and what places objects, then `own`.
std::vector<apps::OptionSpec> withProjectOptions(std::vector<apps::OptionSpec> own);

class Authoring {
  public:
    /// Starts a project, or opens the one of --into. UsageError where it has nowhere to go, Failure
    /// where it can't be opened.
    explicit Authoring(const apps::ParsedOptions& options);

    SceneX& scene() { return project_.mainScene(); }

    /// The style that objects copy: the scene's "defaultObjXStyle", brought along where an old
    /// project has none.
    const ObjectXStyle& usualStyle();

    /// Places the objects that came in since the start, stands the camera so that all show (where
    /// the project is new or --fit says so), and saves.
    void finish();

  private:
    void place();

    const apps::ParsedOptions& options_;
    Project project_;
    bool adds_;
    std::size_t objectsBefore_ = 0;
    std::vector<std::string> materialsBefore_;  // of an opened project
    double flatness_ = 0.0;                     // of the new objects' curves; 0: as they come
};

}  // namespace orvin::orvinex
