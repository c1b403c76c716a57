// ObjectX: the extruded object: an outline, a style, and the solid made of them.
//
// The solid is built when it is asked for and something it was built from has changed: nobody is
// notified, revisions are compared. Faces are kept when only edges changed. Quality 0 flattens
// curves coarsely, for previews, 1 finely; going from one to the other builds anew.
//
// Degenerate input: an outline without a path of three points, or one that its offset leaves empty,
// is an empty mesh with a box of zeros. A missing edge profile leaves that edge out; an edge
// without geometry, or materials that end before the edge does, fail until that is mended: there
// is no mesh then.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "geometry/MeshObject.h"
#include "geometry/ObjectXStyle.h"
#include "geometry/outline/EdgePath.h"
#include "geometry/outline/LoopOffset.h"
#include "geometry/outline/PolyShape2.h"

namespace orvin {

/// Set while a draft is drawn: picks the coarser of the two meshing resolutions. (Quality picks the
/// flatness; the two are separate.) Process-wide.
extern bool draftMode;

class ObjectX final : public MeshObject {
  public:
    /// How flat faces and edges are divided, so that they deform and shade better.
    struct Meshing {
        bool on = false;
        Vec2 draftTileResolution{25.0, 25.0};  // scene units
        Vec2 bestTileResolution{15.0, 15.0};
        double draftEdgeMeshing = 10.0;  // longest step of an edge
        double bestEdgeMeshing = 5.0;
    };

    ObjectX(SceneX& scene, std::string_view name);
    ObjectX(SceneX& scene, const ObjectX& source, std::string_view name);

    const CommandRegistry& commandRegistry() const override;
    std::string_view className() const override { return "ObjectX"; }
    Result writeBody(SceneStream& stream) override;
    std::vector<NameRef*> references() override;

    // The profile of the face and the style, by name; null where no such member is there.
    void setFace(std::string_view name);
    void setStyle(std::string_view name);
    const std::string& faceName() const { return face_.name(); }
    const std::string& styleName() const { return style_.name(); }
    Profile* face() const { return face_.as<Profile>(); }
    ObjectXStyle* style() const { return style_.as<ObjectXStyle>(); }

    double flatPreview() const { return flatPreview_; }
    double flatRender() const { return flatRender_; }
    void setFlatPreview(double flatness);
    /// Takes effect when something else is a reason to build anew.
    void setFlatRender(double flatness) { flatRender_ = flatness; }

    const Meshing& meshing() const { return meshing_; }
    void setMeshing(const Meshing& meshing);

    /// With `rebuild` and an angle of 0 or more the outline is flattened anew.
    void setHardShadingAngle(double degrees, bool rebuild) override;

    bool needsUpdate(int quality);

    /// Null without profile or style, and where building failed.
    const Mesh3* mesh(int quality, std::uint32_t& revision) override;

    bool isAnimated() const override;

    Box3 localBounds() override;

    // The style's; none without one.
    int materialCount() const override;
    SceneMember* material(int slot) const override;
    std::string_view materialName(int slot) const override;
    void setMaterial(int slot, std::string_view name) override;

    bool isOpenOrClear(bool checkMaterials) const override;

    /// Whether the styles agree; false where one is missing.
    bool sameAs(ObjectXStyle::Aspect what, const ObjectX& other) const;

  protected:
    void refresh() override;
    const Mesh3* currentMesh() const override { return &mesh_; }
    double degenerateLimit() const override { return 0.001; }

  private:
    struct Commands;

    /// Revisions of what a mesh is made from.
    struct Seen {
        // Of which profile each revision is: those of two may be equal by chance.
        const Profile* shown = nullptr;
        std::uint32_t face = 0;
        std::uint32_t styleFace = 0;
        std::uint32_t styleEdge = 0;
        const Profile* perimShown = nullptr;
        const Profile* holeShown = nullptr;
        std::uint32_t perim = 0;
        std::uint32_t hole = 0;

        bool sameEdges(const Seen& other) const {
            return perimShown == other.perimShown && holeShown == other.holeShown &&
                   perim == other.perim && hole == other.hole;
        }
        friend bool operator==(const Seen&, const Seen&) = default;
    };

    Seen currentRevisions() const;
    Result rebuild(int quality);
    Result loadOutline(int quality, PolyShape2& shape);
    void buildFaces(const PolyShape2& shape);
    Result sweep(int quality, PolyShape2 shape);
    Result edgePaths(int quality, bool perim, std::vector<EdgePath>& paths);
    void finish(int quality);
    void placePivot();

    NameRef face_;
    NameRef style_;
    double flatPreview_ = 3.0;
    double flatRender_ = 0.5;
    Meshing meshing_;
    OffsetRepair repair_ = OffsetRepair::kFans;
    Mesh3 faceMesh_;  // front and back, kept across rebuilds
    Mesh3 mesh_;
    Seen seen_;
    bool built_ = false;
};

}  // namespace orvin
