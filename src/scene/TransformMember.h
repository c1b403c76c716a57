// TransformMember: a member with a place: a Transform, a parent and children. Root and Group are
// the two plain ones.
#pragma once

#include <cstddef>
#include <vector>

#include "scene/SceneMember.h"
#include "scene/Transform.h"
#include "toolkit/math/Box3.h"

namespace orvin {

struct Ray {
    Vec3 origin;
    Vec3 direction;  // any length
};

class TransformMember : public SceneMember {
  public:
    static constexpr unsigned kDisabled = 1;  // bit of flags()

    /// Attaches to the scene's root, unless this is the root.
    TransformMember(SceneX& scene, MemberKind kind, std::string_view name);
    /// The base of copies: flags and Transform of `source`, attached to the root of `scene`.
    TransformMember(SceneX& scene, const TransformMember& source, std::string_view name);
    ~TransformMember() override;  // children go to this member's parent and keep their world pose

    Result writeBody(SceneStream& stream) override;

    const Transform& transform() const { return transform_; }
    Transform& transform() { return transform_; }

    /// Flags and the whole Transform.
    void copyPoseFrom(const TransformMember& other);

    /// worldFromLocal: one product per parent up the chain, nothing is kept.
    Matrix4 world() const;

    /// Box in local space; empty by default.
    virtual Box3 localBounds() { return {}; }
    /// The box around the eight corners of localBounds() in world space.
    virtual Box3 worldBounds();
    /// True when the world-space ray meets localBounds().
    virtual bool rayHit(const Ray& worldRay);

    TransformMember* parent() const { return parent_; }
    std::size_t childCount() const { return children_.size(); }
    TransformMember* child(std::size_t i) const { return children_[i]; }

    /// Moves to another parent and keeps the world pose; components stay as they are where the pose
    /// is the same anyway. A name without a placed member throws std::bad_alloc. A parent that is
    /// this member or stands below it is refused: nothing happens. Nor does it for the root.
    void setParent(const NameRef& parent);
    /// Moves to another parent and leaves the local pose: what reading a file needs. Otherwise as
    /// setParent().
    void attachTo(const NameRef& parent);

    bool isEnabled() const { return (flags_ & kDisabled) == 0; }
    void setEnabled(bool on) { setFlags(!on, kDisabled); }
    unsigned flags() const { return flags_; }
    virtual void setFlags(bool on, unsigned bits) { flags_ = on ? flags_ | bits : flags_ & ~bits; }

    /// Puts the pivot into the centre of the children's bounds without moving anything. -1 where no
    /// child has bounds, or the node is flat. `ignoreDepth` takes 0 for the centre's world z.
    Result recenterOrigin(bool ignoreDepth);

  protected:
    /// "name", "end" and the transform keys.
    static void registerTransformCommands(CommandRegistry& registry);

  private:
    friend class SceneX;
    bool mayHang(const TransformMember& newParent) const;
    void moveTo(TransformMember& newParent);
    void movePoseKept(TransformMember& newParent);
    void leaveParent();
    void leaveTree();

    // Plain pointers: the tree holds whatever happens to names, and a destructor leaves it tidy.
    Transform transform_;
    TransformMember* parent_ = nullptr;
    std::vector<TransformMember*> children_;
    unsigned flags_ = 0;
};

/// The one root of a scene, member name "root". Its `name` command names the scene.
class Root final : public TransformMember {
  public:
    explicit Root(SceneX& scene);
    const CommandRegistry& commandRegistry() const override;
    std::string_view className() const override { return "Root"; }
};

/// A node without geometry. The scene's Sets are groups.
class Group final : public TransformMember {
  public:
    Group(SceneX& scene, std::string_view name);
    Group(SceneX& scene, const Group& source, std::string_view name);
    const CommandRegistry& commandRegistry() const override;
    std::string_view className() const override { return "Group"; }
};

}  // namespace orvin
