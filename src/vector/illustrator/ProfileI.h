// ProfileI: an outline that carries its own curves: Illustrator art, and the edges of the
// libraries.
//
// Its shape leaves out loops, closed or open, that enclose less than 0.001 square units: hairlines,
// guides, dots. A straight open path encloses nothing and goes too. Without a loop left there is no
// shape.
#pragma once

#include <string>
#include <string_view>

#include "geometry/Profile.h"

namespace orvin {

class ProfileI final : public OutlineProfile {
  public:
    static constexpr std::size_t kPathLimit = 1023;  // bytes of a path that are kept

    ProfileI(SceneX& scene, std::string_view name) : OutlineProfile(scene, name) {}
    ProfileI(SceneX& scene, const ProfileI& source, std::string_view name);

    Result writeBody(SceneStream& stream) override;
    const CommandRegistry& commandRegistry() const override;
    std::string_view className() const override { return "ProfileI"; }

    /// The file that the art came from; empty for none.
    const std::string& fileSpec() const { return fileSpec_; }
    void setFileSpec(std::string_view path) { fileSpec_ = path.substr(0, kPathLimit); }

    /// The layer that it came from; empty where the file wasn't read by layers. At most 255 bytes.
    const std::string& layerName() const { return layerName_; }
    void setLayerName(std::string_view name);

    /// The art was filled: an object of it has faces. Art that was only stroked stands as a ribbon
    /// of edges. Known while the art is read, not kept in projects.
    bool keepFaces = true;

  protected:
    Result flatten(double tolerance, double hardAngle, Mesh2& shape) override;

  private:
    struct Commands;

    std::string fileSpec_;
    std::string layerName_;
};

}  // namespace orvin
