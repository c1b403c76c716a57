// Project: one project with all that belongs to it, for programs that work without the effect.
#pragma once

#include <filesystem>
#include <string>

#include "scene/OrvinPreferences.h"
#include "scene/OrvinSceneManager.h"
#include "setup/OrvinProjectSections.h"

namespace orvin {

class Project {
  public:
    /// Registers the member classes and starts with the default scene, named "Untitled".
    Project();

    /// Replaces what is there by the project in the file. -1 where it can't be opened or read; the
    /// default scene then stands in, and failure() says why.
    Result open(const std::filesystem::path& path);

    /// -1 leaves an old file as it was; failure() says why.
    Result save(const std::filesystem::path& path);

    /// One line without a line end; empty after success.
    const std::string& failure() const { return failure_; }

    SceneX& mainScene() { return *manager_.mainScene(); }
    RenderState& renderState() { return manager_.renderState(); }
    OrvinPreferences& preferences() { return preferences_; }
    OrvinSceneManager& manager() { return manager_; }
    OrvinProjectSections& sections() { return sections_; }

  private:
    OrvinPreferences preferences_;
    OrvinProjectSections sections_;
    OrvinSceneManager manager_{preferences_, sections_};
    std::string failure_;
};

}  // namespace orvin
