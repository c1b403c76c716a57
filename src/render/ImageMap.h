// ImageMap: a picture placed on a surface: a reference to an ImageFile, the rectangle of surface
// coordinates that the picture covers, and a placement that turns reflections.
//
// A map named "|ExtMap" and a number, without a file, stands for a layer of the composition: its
// picture is found in the image cache under the map's own name.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "render/Rgba.h"
#include "scene/SceneMember.h"
#include "scene/Transform.h"

namespace orvin {

class ImageFile;
class SummedImage;

/// The name of a reference that points nowhere.
inline constexpr std::string_view kNoMember = "unnamed";

/// A rectangle of surface coordinates.
struct TextureBox {
    double sMin = 0.0;
    double tMin = 0.0;
    double sMax = 0.0;
    double tMax = 0.0;
};

/// The part of the surface that a picture covers, in surface coordinates. Low may stand above high,
/// which mirrors the picture; on an axis without extent every lookup meets the picture's edge.
struct MapDomain {
    double lowS = 0.0;
    double highS = 1.0;
    double lowT = 0.0;
    double highT = 1.0;

    friend bool operator==(const MapDomain&, const MapDomain&) = default;
};

/// A map made ready for many lookups: holds while neither the map nor the image cache changes, so
/// take it afresh each frame. Lookups allocate nothing.
class ResolvedMap {
  public:
    ResolvedMap() = default;
    ResolvedMap(const SummedImage& image, const MapDomain& domain, const Matrix4& placement);

    /// False where the reference, the path or the picture is missing; lookups then fail.
    explicit operator bool() const { return image_ != nullptr; }
    const SummedImage* image() const { return image_; }

    /// Filtered colour over a box, 0..1. Coordinates beyond the picture are held at its edge.
    bool color(const TextureBox& box, Rgba& out) const;

    /// One channel of it: 0 red, 1 green, 2 blue, 3 the alpha of a picture that has one, and the
    /// luminance of one that hasn't.
    bool channel(const TextureBox& box, int channel, float& out) const;

    /// Carries a reflection vector through the placement, as a normal is carried.
    Vec3 reflection(Vec3 direction) const { return reflection_.direction(direction); }

  private:
    const SummedImage* image_ = nullptr;
    MapDomain domain_;
    double scaleS_ = 1.0;  // texels per unit of s
    double scaleT_ = 1.0;
    Matrix4 reflection_;
};

class ImageMap final : public SceneMember {
  public:
    ImageMap(SceneX& scene, std::string_view name);
    ImageMap(SceneX& scene, const ImageMap& source, std::string_view name);

    const CommandRegistry& commandRegistry() const override;
    std::string_view className() const override { return "ImageMap"; }
    Result writeBody(SceneStream& stream) override;
    std::vector<NameRef*> references() override;

    ImageFile* imageFile() const;
    const NameRef& imageFileRef() const { return imageFile_; }
    /// By name; the file may come later. kNoMember for none.
    void setImageFile(std::string_view name);

    const MapDomain& domain() const { return domain_; }
    void setDomain(const MapDomain& domain) { domain_ = domain; }

    const Transform& placement() const { return placement_; }
    Transform& placement() { return placement_; }

    /// What the image cache knows the picture by; empty where there is none.
    std::string imagePath() const;

    /// Finds (and at need loads) the picture. Not for inner loops.
    ResolvedMap resolve() const;

    /// Single lookups, each resolving the map afresh. -1, with `found` false, where the reference,
    /// the path or the picture is missing; `out` is then left alone.
    Result colorAt(const TextureBox& box, bool& found, Rgba& out) const;
    Result channelAt(const TextureBox& box, int channel, bool& found, float& out) const;

    /// Gives the loaded picture back to the cache.
    void releaseImage();

  private:
    NameRef imageFile_;
    MapDomain domain_;
    Transform placement_;
};

}  // namespace orvin
