// ProfileL: an edge of the library, as a style refers to it. Only the index stands in a project, so
// a project follows the library of the program that reads it.
#pragma once

#include <string_view>

#include "geometry/Profile.h"

namespace orvin {

class ProfileL final : public OutlineProfile {
  public:
    ProfileL(SceneX& scene, std::string_view name) : OutlineProfile(scene, name) {}
    ProfileL(SceneX& scene, const ProfileL& source, std::string_view name)
        : OutlineProfile(scene, source, name), libIdx_(source.libIdx_) {}

    Result writeBody(SceneStream& stream) override;
    const CommandRegistry& commandRegistry() const override;
    std::string_view className() const override { return "ProfileL"; }

    /// The place in the library; -1 for none.
    int libIdx() const { return libIdx_; }
    /// The curves stay as they are until load().
    void setLibIdx(int index);
    /// Takes the curves of the library's edge; -1, and nothing changes, where there is none.
    Result load();

  private:
    struct Commands;

    int libIdx_ = -1;
};

/// The scene's member for an edge of the library: the one that is there, or a new one under the
/// library's name, numbered where that is taken. Null for an index out of range.
ProfileL* useLibraryEdge(SceneX& scene, int index);

}  // namespace orvin
