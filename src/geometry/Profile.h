// Profile: the base of everything that hands out an outline: text, Illustrator art, library edges,
// cycles of profiles. A face outline or the section of an edge, that depends on who asks.
//
// A profile has a revision, the change count: whoever builds from a profile keeps the number and
// compares. Flattening at another tolerance counts as a change too.
#pragma once

#include <cstdint>
#include <string_view>

#include "geometry/Mesh3.h"
#include "geometry/outline/CompositeCurve2.h"
#include "geometry/outline/Line2.h"
#include "scene/SceneMember.h"

namespace orvin {

/// The revision after `count`: wraps to 1, so that 0 stays free for "never seen".
constexpr std::uint32_t nextRevision(std::uint32_t count) {
    return count + 1 == 0 ? 1 : count + 1;
}

class Profile : public SceneMember {
  public:
    Profile(SceneX& scene, std::string_view name)
        : SceneMember(scene, MemberKind::kProfile, name) {}
    Profile(SceneX& scene, const Profile& source, std::string_view name)
        : SceneMember(scene, source, name) {}

    /// The revision; 0 where nothing stands behind the profile.
    virtual std::uint32_t changeCount() = 0;
    /// Raises the revision, so that all who build from this do so again.
    virtual void touch() = 0;
    /// The curves; null for none.
    virtual InputProfile2* inputProfile() = 0;
    /// The curves as polylines with normals (see CompositeCurve2::emit), kept until the profile
    /// changes or another tolerance is asked for: the angle alone makes no difference. `stamp`
    /// gets the revision. Null where there is nothing to flatten.
    virtual const Mesh2* getShape(double tolerance, double hardAngle, std::uint32_t& stamp) = 0;
    /// The box of the shape as last flattened.
    virtual Box2 bounds() = 0;

    /// True where the outline follows the current frame (scene/FrameClock.h).
    virtual bool isAnimated() const { return false; }
    /// The profile whose outline all of the above speak of at the current frame: this one, but for
    /// cycles of profiles; null for none. Revisions of two profiles don't compare.
    virtual Profile* shown() { return this; }
};

/// A profile with curves of its own.
class OutlineProfile : public Profile {
  public:
    using Profile::Profile;
    OutlineProfile(SceneX& scene, const OutlineProfile& source, std::string_view name)
        : Profile(scene, source, name),
          outline_(source.outline_),
          shape_(source.shape_),
          tolerance_(source.tolerance_) {}

    std::uint32_t changeCount() override { return changeCount_; }
    void touch() override { changeCount_ = nextRevision(changeCount_); }
    InputProfile2* inputProfile() override { return &outline_; }
    const Mesh2* getShape(double tolerance, double hardAngle, std::uint32_t& stamp) override;
    Box2 bounds() override;

  protected:
    InputProfile2& outline() { return outline_; }

    /// Brings the curves up to date, before they are flattened or handed out.
    virtual void prepare() {}
    /// Fills the empty `shape` from the curves. Anything but 0: there is no shape.
    virtual Result flatten(double tolerance, double hardAngle, Mesh2& shape);

  private:
    InputProfile2 outline_;
    Mesh2 shape_;
    double tolerance_ = 0.0;
    std::uint32_t changeCount_ = 1;
    std::uint32_t shapeCount_ = 0;  // equals changeCount_ while shape_ is up to date
};

}  // namespace orvin
