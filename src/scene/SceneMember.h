// SceneMember: the base of everything that lives in a SceneX.
#pragma once

#include <string>
#include <string_view>
#include <vector>

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
    /// first. A member on the heap is the scene's from then on (SceneX::adopt); one on the stack
    /// must go before the scene does.
    SceneMember(SceneX& scene, MemberKind kind, std::string_view name);

    /// The base of copies: kind and `saveable` of `source`, in `scene`, under `name` or, where a
    /// live member bears that, under a name made unique.
    SceneMember(SceneX& scene, const SceneMember& source, std::string_view name);

    ~SceneMember() override;
    SceneMember(const SceneMember&) = delete;
    SceneMember& operator=(const SceneMember&) = delete;

    Result writeBody(SceneStream& stream) override;  // the name line

    MemberKind memberKind() const { return kind_; }
    SceneX& scene() const { return *scene_; }

    const std::string& name() const { return name_.name(); }
    NameRef ref() const { return name_; }

    /// Renames; references follow. No change when equal. Names longer than 255 bytes are cut. A
    /// live member of that name loses it, so make names unique first (SceneX::uniqueName).
    void setName(std::string_view name);

    /// The references to members that this one uses (material, style, maps; not its parent): what
    /// the sweep follows and what an import brings along and rebinds. The pointers hold as long as
    /// the member isn't changed.
    virtual std::vector<NameRef*> references() { return {}; }

    /// True where this member shows the host's Layer Map `number`. By itself: where it refers to
    /// the image map of that name (see extMapName).
    virtual bool usesExtMap(int number);

    /// Sets `marked` here and, over references(), on every member reached. Chains of any length and
    /// cycles are fine: a member that is marked already stops it.
    void markUsed();

    virtual void setSaveable(bool on) { saveable = on; }

    bool marked = false;              // reached in the sweep
    bool protectedFromSweep = false;  // a root of the sweep
    bool saveable = true;             // written by the scene

  protected:
    /// Registers the commands that every member has: "name" and "end".
    static void registerMemberCommands(CommandRegistry& registry);

  private:
    friend class SceneX;
    void bind();
    void noteName();

    NameRef name_;
    SceneX* scene_;
    MemberKind kind_;
    bool listed_ = false;    // stands in its scene's list
    bool selected_ = false;  // stands in its scene's selection
};

}  // namespace orvin
