// Custom edges: sections that artists draw in Illustrator and put into the folder "Custom Edges"
// beside the module. Each layer of each file is an edge.
//
// An edge is drawn in a box of 100 by 100: from (0, 0), the front face, to (0, 100), the back one,
// x standing out. It may run either way, and ends that nearly lie on the faces are put there.
// Drawn straight, an edge has no shape (ProfileI); without paths, neither: makesSolids() tells.
#pragma once

#include <filesystem>
#include <memory>
#include <string_view>

#include "scene/SceneX.h"

namespace orvin {

class ProfileI;

/// Whether solids can have it as their edge: it has paths, and each has a shape.
bool makesSolids(ProfileI& edge);

/// The folder beside the module.
std::filesystem::path customEdgesFolder();

class CustomEdges {
  public:
    CustomEdges();

    /// Forgets the edges and reads the files of the folder anew, in the order of their names;
    /// folders in it are passed over. A file that isn't Illustrator art or can't be read is left
    /// out with a line on standard error. No folder: no edges.
    void reload(const std::filesystem::path& folder = customEdgesFolder());

    int count() const;
    /// Null for an index out of range. Named as its layer is, made unique by numbers.
    ProfileI* edge(int index) const;

    /// Null where none has that name.
    ProfileI* find(std::string_view name) const;

    /// The scene "UserEdgeStyles" that holds them; another one after each reload().
    SceneX& scene() { return *scene_; }

  private:
    void read(const std::filesystem::path& file);

    std::unique_ptr<SceneX> scene_;
};

}  // namespace orvin
