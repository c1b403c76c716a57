// ObjectXStyle: the recipe that turns an outline into a solid: which parts it has, which edges run
// around it, how deep it is, how corners are mitred, and which materials go where. Objects share
// styles.
//
// Nobody is notified of changes: objects compare the two revisions before each use. A setter raises
// only what it says, on purpose: the depth of an object that has nothing but a front makes no
// difference to it.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "geometry/Profile.h"
#include "geometry/ProfileProperty.h"
#include "scene/SceneMember.h"

namespace orvin {

class ObjectXStyle final : public SceneMember {
  public:
    // Parts of the solid.
    static constexpr unsigned kFront = 1;
    static constexpr unsigned kBack = 2;
    static constexpr unsigned kPerimEdge = 4;  // around outer loops
    static constexpr unsigned kHoleEdge = 8;   // around holes and islands in them
    static constexpr unsigned kAllParts = 15;

    static constexpr int kMaterialCount = 6;

    enum class Mitre : std::int32_t {
        kFast = 0,     // one offset per loop; rings are blends
        kComplex = 1,  // every ring is offset and repaired by itself
    };
    /// What sameAs() compares.
    enum class Aspect {
        kPerim = 0,
        kHole = 1,
        kPerimProperties = 2,
        kHoleProperties = 3,
        kMaterials = 4
    };

    ObjectXStyle(SceneX& scene, std::string_view name, unsigned parts = kAllParts);
    /// The base of copies. References keep their names; materials that neither scene has become
    /// the default one.
    ObjectXStyle(SceneX& scene, const ObjectXStyle& source, std::string_view name);

    Result writeBody(SceneStream& stream) override;
    const CommandRegistry& commandRegistry() const override;
    std::string_view className() const override { return "ObjectXStyle"; }
    std::vector<NameRef*> references() override;

    /// Everything back to what a new style has.
    void reset();

    unsigned parts() const { return recipe_.parts; }
    bool has(unsigned parts) const { return (recipe_.parts & parts) != 0; }
    Mitre mitreMethod() const { return recipe_.mitre; }
    double spikeAngle() const { return recipe_.spikeAngle; }  // degrees; 0: spikes stay
    double pullBackDistance() const { return recipe_.pullBackDistance; }
    double frontFaceOffset() const { return recipe_.frontFaceOffset; }
    double perimXScale() const { return recipe_.perimXScale; }
    double holeXScale() const { return recipe_.holeXScale; }
    double depth() const { return recipe_.depth; }
    bool trackProfile() const { return recipe_.trackProfile; }
    bool trackProperties() const { return recipe_.trackProperties; }
    bool trackXScale() const { return recipe_.trackXScale; }
    int frontMtlidx() const { return recipe_.frontMtlidx; }
    int backMtlidx() const { return recipe_.backMtlidx; }

    void setPart(bool on, unsigned part);
    void setMitreMethod(Mitre method);
    void setSpikeAngle(double degrees);
    void setPullBackDistance(double distance);
    void setFrontFaceOffset(double distance);
    void setPerimXScale(double scale);
    void setHoleXScale(double scale);  // not while it tracks
    void setDepth(double depth);
    void setTrackProfile(bool on);
    void setTrackProperties(bool on);
    void setTrackXScale(bool on);
    void setFrontMtl(int slot);
    void setBackMtl(int slot);

    // ---- edges

    void setPerim(std::string_view name);
    void setHole(std::string_view name);  // not while it tracks
    const std::string& perimName() const { return perim_.name(); }
    const std::string& holeName() const { return hole_.name(); }
    /// Null where the name is no profile's.
    Profile* perimProfile() const;
    Profile* holeProfile() const;

    /// The flattened edge; null where it is missing. A revision other than the one of the last
    /// request raises edgeRevision().
    const Mesh2* perimGeometry(double flatness, double hardAngle, std::uint32_t& serial);
    const Mesh2* holeGeometry(double flatness, double hardAngle, std::uint32_t& serial);
    /// Both requests; if one found its edge changed, both revisions rise by one.
    void refreshEdges(double flatness, double hardAngle);

    // ---- materials

    /// The materials along path `path`; null where the path has no entry.
    const MaterialIntervals* perimInterval(int path);
    const MaterialIntervals* holeInterval(int path);
    ProfileProperty& perimProperties() { return perimProperties_; }
    ProfileProperty& holeProperties() { return holeProperties_; }

    /// Replaces the intervals of one path of the edge, or with -1 of all.
    void setPerimIntervalMaterial(int path, const MaterialIntervals& intervals);
    void setHoleIntervalMaterial(int path, const MaterialIntervals& intervals);
    /// Makes entries until there is one per path of the edge.
    void ensurePerimEntries();
    void ensureHoleEntries();

    /// Slots out of range read as none and can't be set.
    SceneMember* material(int slot) const;
    std::string_view materialName(int slot) const;
    void setMaterial(int slot, std::string_view name);

    bool sameAs(Aspect what, const ObjectXStyle& other) const;

    // ---- revisions

    std::uint32_t faceRevision() const { return faceRevision_; }
    std::uint32_t edgeRevision() const { return edgeRevision_; }
    std::uint32_t stylesRevision() const { return stylesRevision_; }  // of the references

  private:
    struct Commands;

    /// The plain values, with their defaults.
    struct Recipe {
        unsigned parts = kAllParts;
        int frontMtlidx = 0;
        int backMtlidx = 0;
        Mitre mitre = Mitre::kFast;
        double spikeAngle = 0.0;
        double pullBackDistance = 0.1;
        double frontFaceOffset = 0.0;
        double perimXScale = 1.0;
        double holeXScale = 1.0;
        double depth = 30.0;
        bool trackProfile = true;
        bool trackProperties = true;
        bool trackXScale = true;
    };

    void faceChanged() { faceRevision_ = nextRevision(faceRevision_); }
    void edgeChanged() { edgeRevision_ = nextRevision(edgeRevision_); }
    void bothChanged();
    void edgeChangedIf(unsigned part);
    void refer(NameRef& reference, std::string_view name);
    const Mesh2* geometry(Profile* profile, std::uint32_t& seen, double flatness, double hardAngle,
                          std::uint32_t& serial);
    const ProfileProperty& effectiveHoleProperties() const;

    Recipe recipe_;
    NameRef perim_;
    NameRef hole_;
    ProfileProperty perimProperties_;
    ProfileProperty holeProperties_;
    std::array<NameRef, kMaterialCount> materials_;
    std::uint32_t faceRevision_ = 1;
    std::uint32_t edgeRevision_ = 1;
    std::uint32_t perimSeen_ = 0;
    std::uint32_t holeSeen_ = 0;
    std::uint32_t stylesRevision_ = 0;
};

}  // namespace orvin
