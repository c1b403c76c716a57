// MeshObject: the base of all objects of a scene: a place in the tree, the hard shading angle, the
// mapping block, materials by slot, and the lists that renderers use beside the mesh.
//
// A mesh has a revision, which rises with each change; whoever caches something made from the mesh
// keeps the revision and compares. Lists are computed when they are asked for and kept until the
// mesh (or, for world-space lists, the pose of the object or a parent) changes. Spans hold until
// then.
//
// Degenerate input: a pose that flattens space has no inverse; normals then go through the matrix
// itself. Texture coordinates without extent give zero tangents.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "geometry/Mesh3.h"
#include "scene/TransformMember.h"
#include "toolkit/Identity.h"

namespace orvin {

/// How texture coordinates would be laid over an object. Carried as data: written, never read back,
/// never used (meshes bring their own texture coordinates).
struct Mapping {
    enum class Type : std::int32_t {
        kUv = 0,
        kPlanar = 1,
        kCylindrical = 2,
        kSpherical = 3,
        kCubic = 4
    };

    bool autoFit = true;
    Type type = Type::kUv;
    Vec3 scale{1.0, 1.0, 1.0};
    Vec3 position;
    Vec3 rotation;
    bool repeatX = false;
    bool repeatY = false;
    bool mirrorX = false;
    bool mirrorY = false;
    bool proportional = true;
};

/// Hard shading angle (degrees) that new objects start with: 20 until it is changed.
double defaultHardShadingAngle();
void setDefaultHardShadingAngle(double degrees);

class MeshObject : public TransformMember {
  public:
    MeshObject(SceneX& scene, std::string_view name);
    /// The base of copies.
    MeshObject(SceneX& scene, const MeshObject& source, std::string_view name);

    Result writeBody(SceneStream& stream) override;  // transform block, angle, mapping block

    /// The angle between faces (degrees) at which a joint turns hard. Negative: all joints are.
    double hardShadingAngle() const { return hardShadingAngle_; }

    /// Stores the angle. With `rebuild` and an angle of 0 or more the shading follows.
    virtual void setHardShadingAngle(double degrees, bool rebuild) = 0;

    const Mapping& mapping() const { return mapping_; }
    void setMapping(const Mapping& mapping) { mapping_ = mapping; }

    /// The mesh in object space, brought up to date; `revision` gets its revision. Quality 0 is for
    /// preview, 1 for rendering. Null where there is nothing to build it from.
    virtual const Mesh3* mesh(int quality, std::uint32_t& revision) = 0;

    /// True where the mesh follows the current frame (scene/FrameClock.h).
    virtual bool isAnimated() const { return false; }

    /// Revision of the mesh: 1 at first.
    std::uint32_t meshRevision() const { return meshRevision_; }

    /// With the revision: what caches outside of the scene know the mesh by.
    const Identity& identity() const { return identity_; }

    /// Box of the mesh in object space; empty without vertices.
    Box3 localBounds() override;

    // For the mesh of the last quality asked for.
    /// Vertices in world space, by vertex index.
    std::span<const Vec3> worldPositions();
    /// Normals in world space (inverse transpose, not normalised), by normal index.
    std::span<const Vec3> worldNormals();
    /// dP/du in object space, of unit length or zero, by texture vertex index.
    std::span<const Vec3> tangents();
    /// dP/dv, likewise.
    std::span<const Vec3> binormals();

    // Materials, by slot. An index out of range reads as no material and can't be set.
    virtual int materialCount() const = 0;
    virtual SceneMember* material(int slot) const = 0;
    virtual std::string_view materialName(int slot) const = 0;
    virtual void setMaterial(int slot, std::string_view name) = 0;

    /// The material slot of a face of the mesh; -1 for a face that isn't there.
    int faceMaterialIndex(int face);
    /// The member that colours a face: its slot's, else the scene's "defaultMtl". Null where
    /// neither exists.
    SceneMember* faceMaterial(int face);

    /// True where the inside of the object can be seen: it isn't closed, or (if asked for) one of
    /// its materials lets light through.
    virtual bool isOpenOrClear(bool checkMaterials) const = 0;

  protected:
    // What has to be made anew.
    static constexpr unsigned kRebuild = 1;     // the mesh itself
    static constexpr unsigned kBoxStale = 2;    // box
    static constexpr unsigned kWorldStale = 8;  // world-space lists
    static constexpr unsigned kBuiltForRender = 16;

    /// "hardShadingAngle", "selected", the transform keys, and the keys of the mapping block that
    /// are read and thrown away.
    static void registerMeshCommands(CommandRegistry& registry);

    /// Whether the scene's selection holds this.
    bool isSelected() const;

    /// Brings the mesh up to date at the quality of its last use.
    virtual void refresh() = 0;
    /// The mesh as it is; null for none.
    virtual const Mesh3* currentMesh() const = 0;
    /// Faces whose corners span less are left out of the tangents (see Mesh3::isDegenerate).
    virtual double degenerateLimit() const = 0;

    void storeHardShadingAngle(double degrees) { hardShadingAngle_ = degrees; }

    /// The mesh was changed: all lists are stale, and the revision rises.
    void meshChanged();

    bool isStale(unsigned bits) const { return (stale_ & bits) != 0; }
    void setStale(unsigned bits, bool on = true) { stale_ = on ? stale_ | bits : stale_ & ~bits; }

  private:
    void refreshBox();
    void refreshWorldLists();
    void refreshTangents();

    double hardShadingAngle_;
    Mapping mapping_;
    unsigned stale_ = kBoxStale | kWorldStale;
    std::uint32_t meshRevision_ = 1;
    Identity identity_;
    std::uint32_t tangentsRevision_ = 0;  // of the mesh they were made from
    Box3 box_;
    Matrix4 worldOfLists_;  // worldFromObject when the world-space lists were made
    std::vector<Vec3> worldPositions_;
    std::vector<Vec3> worldNormals_;
    std::vector<Vec3> tangents_;
    std::vector<Vec3> binormals_;
};

}  // namespace orvin
