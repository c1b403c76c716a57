// SceneMember: the base of everything that lives in a SceneX.
#pragma once

#include <string>
#include <string_view>

#include "scene/NameRef.h"
#include "scene/Persistent.h"

namespace orvin {

class SceneX;

/// Member kinds: the list of the scene that a member stands in. The numbers are fixed.
enum class MemberKind : int {
    kObject = 0,     // ObjectX, ObjectP
    kStyle = 1,      // ObjectXStyle
    kLight = 2,      // LightX
    kCamera = 3,     // CameraX
    kGroup = 4,      // Group
    kImageMap = 5,   // ImageMap
    kImageFile = 6,  // ImageFile
    kMaterial = 7,   // MaterialX
    kProfile = 8,    // ProfileI, ProfileL, ProfileM, ProfileT
    kRoot = 9,       // Root
};

class SceneMember : public Persistent {
  public:
    /// Binds the name in the scene's registry and joins the scene's list of its kind. An entry that
    /// is there already is taken over, forward references included, so callers make names unique
    /// first. The scene owns members that it made; others must not outlive it.
    SceneMember(SceneX& scene, MemberKind kind, std::string_view name);
    ~SceneMember() override;
    SceneMember(const SceneMember&) = delete;
    SceneMember& operator=(const SceneMember&) = delete;

    Result writeBody(SceneStream& stream) override;  // the name line

    MemberKind memberKind() const { return kind_; }
    SceneX& scene() const { return *scene_; }

    const std::string& name() const { return name_.name(); }
    NameRef ref() const { return name_; }

    /// Renames; references follow. No change when equal.
    void setName(std::string_view name);

    /// Sets `marked` and marks every member this one refers to. Runs on cyclic references too:
    /// a member that is marked already returns at once.
    virtual void markUsed() { marked = true; }

    virtual void setSaveable(bool on) { saveable = on; }

    bool marked = false;              // reached in the sweep
    bool protectedFromSweep = false;  // a root of the sweep
    bool saveable = true;             // written by the scene

  protected:
    /// Registers the commands that every member has: "name" and "end".
    static void registerMemberCommands(CommandRegistry& registry);

  private:
    NameRef name_;
    SceneX* scene_;
    MemberKind kind_;
};

}  // namespace orvin
