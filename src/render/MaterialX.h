// MaterialX: how a surface looks. Used by the software renderer and the OpenGL path alike.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "geometry/Surface.h"
#include "render/ImageMap.h"
#include "render/Rgba.h"

namespace orvin {

/// The four uses of a map.
enum class MapUse : std::size_t { kColor = 0, kReflection = 1, kTransparency = 2, kBump = 3 };
inline constexpr std::size_t kMapUses = 4;

/// The maps of a material, ready for lookup. Empty where a flag is off or nothing resolves.
struct MaterialMaps {
    ResolvedMap color;
    ResolvedMap reflection;
    ResolvedMap transparency;
    ResolvedMap bump;
};

/// What a triangle must prepare before it can be shaded.
struct ShadingNeeds {
    static constexpr unsigned kTexture = 1;   // texture coordinates
    static constexpr unsigned kTangents = 2;  // dP/ds and dP/dt
    static constexpr unsigned kCorners = 4;   // positions and normals at the pixel's corners
};

class MaterialX final : public Surface {
  public:
    // Bits of flags().
    static constexpr std::uint32_t kAmbient = 0x01;   // ambient() answers AMBIENT lights
    static constexpr std::uint32_t kDiffuse = 0x02;   // diffuse term
    static constexpr std::uint32_t kSpecular = 0x04;  // specular term
    static constexpr std::uint32_t kTransparency = 0x08;
    static constexpr std::uint32_t kColorMap = 0x10;         // colours the surface
    static constexpr std::uint32_t kReflectionMap = 0x20;    // environment
    static constexpr std::uint32_t kTransparencyMap = 0x40;  // scales opacity
    static constexpr std::uint32_t kBumpMap = 0x80;          // turns the normal

    /// The look of a surface by itself, for faces whose material is missing too.
    struct Look {
        std::uint32_t flags = kDiffuse | kSpecular | kTransparency;
        Rgba ambient{0.15F, 0.15F, 0.15F, 1.0F};
        Rgba diffuse{0.9F, 0.9F, 0.9F, 1.0F};
        double specularExponent = 80.0;  // the higher, the smaller the highlight
        double specularAmount = 0.2;     // factor of the highlight
        double transparency = 0.0;       // 0 solid, 1 clear
        double bumpScale = 0.0;          // factor of the bump map's slopes
        double reflectivity = 0.0;       // factor of the reflection map's colour

        bool has(std::uint32_t mask) const { return (flags & mask) != 0; }

        /// True unless the surface surely hides what lies behind it: transparency is exactly 0 and
        /// no map scales the opacity. The transparency flag has no say.
        bool isTransparent() const { return transparency != 0.0 || has(kTransparencyMap); }

        /// ShadingNeeds bits.
        unsigned shadingNeeds() const {
            return (has(kColorMap | kTransparencyMap | kBumpMap) ? ShadingNeeds::kTexture : 0U) |
                   (has(kBumpMap) ? ShadingNeeds::kTangents : 0U) |
                   (has(kReflectionMap) ? ShadingNeeds::kCorners : 0U);
        }
    };

    MaterialX(SceneX& scene, std::string_view name);
    MaterialX(SceneX& scene, const MaterialX& source, std::string_view name);

    const CommandRegistry& commandRegistry() const override;
    std::string_view className() const override { return "MaterialX"; }
    Result writeBody(SceneStream& stream) override;
    std::vector<NameRef*> references() override;

    bool isTransparent() const override { return look_.isTransparent(); }
    unsigned shadingNeeds() const { return look_.shadingNeeds(); }

    const Look& look() const { return look_; }
    void setLook(const Look& look) { look_ = look; }

    bool hasFlag(std::uint32_t mask) const { return look_.has(mask); }
    void setFlag(std::uint32_t mask, bool on) {
        look_.flags = on ? look_.flags | mask : look_.flags & ~mask;
    }

    // Setters of values leave the flags alone (reading a value from a file sets them) and check
    // nothing.
    const Rgba& ambient() const { return look_.ambient; }
    const Rgba& diffuse() const { return look_.diffuse; }
    double specularExponent() const { return look_.specularExponent; }
    double specularAmount() const { return look_.specularAmount; }
    double transparency() const { return look_.transparency; }
    double bumpScale() const { return look_.bumpScale; }
    double reflectivity() const { return look_.reflectivity; }
    void setAmbient(const Rgba& color) { look_.ambient = color; }
    void setDiffuse(const Rgba& color) { look_.diffuse = color; }
    void setSpecular(double exponent, double amount) {
        look_.specularExponent = exponent;
        look_.specularAmount = amount;
    }
    void setTransparency(double transparency) { look_.transparency = transparency; }
    void setBumpScale(double scale) { look_.bumpScale = scale; }
    void setReflectivity(double reflectivity) { look_.reflectivity = reflectivity; }

    /// The map of a use; null where the name is nobody's, or no map's.
    ImageMap* map(MapUse use) const;
    const NameRef& mapRef(MapUse use) const { return maps_[static_cast<std::size_t>(use)]; }
    /// By name; the map may come later. kNoMember for none. The flag is the caller's to set.
    void setMap(MapUse use, std::string_view name);
    /// True where a map is named, be it there or not.
    bool mapIsSet(MapUse use) const;

    /// Looks up the maps whose flags are on: once a frame, for the shader's inner loop.
    MaterialMaps resolveMaps() const;

    /// True where one of the four maps, by its name or its file, is the host's Layer Map n.
    bool usesExtMap(int number) override;

    /// Gives the loaded pictures of the four maps back to the cache.
    void releaseImages();

  private:
    Look look_;
    std::array<NameRef, kMapUses> maps_;
};

}  // namespace orvin
