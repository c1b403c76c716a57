// SceneX: the container of one scene. It owns its members, by kind, and their names.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "scene/MemberClasses.h"
#include "scene/SceneMember.h"
#include "scene/TransformMember.h"
#include "toolkit/math/Box3.h"

namespace orvin {

extern int gAutoNameCounter;  // for automatic names, over all scenes and kinds; never reset
extern int gSetCount;         // Sets of a scene, the neutral Set 0 included: 9, or 4 on old hosts

inline constexpr std::string_view kSetPrefix = "|ORVIN_GROUP";
inline constexpr std::string_view kExtMapPrefix = "|ExtMap";
inline constexpr std::string_view kDefaultCamera = "dflt_cam";
inline constexpr std::string_view kProfileCamera = "profile_cam";
inline constexpr std::string_view kLightingCamera = "lighting_cam";
inline constexpr std::string_view kDefaultMaterial = "defaultMtl";
inline constexpr std::string_view kDefaultStyle = "defaultObjXStyle";

/// "|ORVIN_GROUP3" for 3.
std::string setName(int number);
/// The number behind the marker, nothing for a name that is no Set's.
std::optional<int> setNumber(std::string_view groupName);
/// "|ExtMap3" for 3: the image name that the host's Layer Map 3 feeds.
std::string extMapName(int number);

/// What to do with an incoming member whose name exists (see importMember).
enum class NameConflict : unsigned { kIgnoreNew = 1, kReplaceOld = 2, kRenameNew = 4 };

/// Asked once per conflict for members of equal class. The second value is true when the answer
/// stands for all further conflicts of this load.
using ConflictQuestion = std::function<std::pair<NameConflict, bool>(const SceneMember& old,
                                                                     const SceneMember& incoming)>;

class UndoHook {
  public:
    virtual ~UndoHook() = default;
    virtual void recordSelection(std::span<SceneMember* const> members) = 0;
    virtual void membersDeleted() = 0;
    virtual void clear() = 0;
    virtual void setDepth(int depth) = 0;
};

class SceneX final : public Persistent {
  public:
    explicit SceneX(std::string_view name = "scene");
    ~SceneX() override;

    Result writeBody(SceneStream& stream) override;
    const CommandRegistry& commandRegistry() const override;
    std::string_view className() const override { return "SceneX"; }

    const std::string& name() const { return sceneName_; }
    void setName(std::string_view name);
    Root& root() { return *root_; }
    MemberRegistry& registry() { return names_; }

    // ---- members

    /// The members of a kind (0 to 8) in scene order.
    std::span<SceneMember* const> members(MemberKind kind) const;
    std::size_t count(MemberKind kind) const { return members(kind).size(); }

    /// The member of that name, of any kind; null on a miss.
    SceneMember* memberByName(std::string_view name) const;
    /// The member of that name if it is of `kind`; null otherwise.
    SceneMember* member(MemberKind kind, std::string_view name) const;
    template <typename T>
    T* memberAs(MemberKind kind, std::string_view name) const {
        return dynamic_cast<T*>(member(kind, name));
    }

    /// Takes ownership. Construction has put the member into its list already.
    SceneMember& adopt(std::unique_ptr<SceneMember> member);
    template <typename T, typename... Args>
    T& make(Args&&... args) {
        return static_cast<T&>(adopt(std::make_unique<T>(*this, std::forward<Args>(args)...)));
    }
    /// Destroys a member that this scene owns, and takes it out of the selection.
    void destroy(SceneMember& member);

    // Called by the members themselves.
    void addMember(SceneMember& member, MemberKind kind);
    void removeMember(SceneMember& member, MemberKind kind);

    // ---- names

    /// `name` as it is while no live member bears it, else "Bevel.1", "Bevel.2", ...
    std::string uniqueName(std::string_view name) const;
    /// What a `name` command does: see the rules of renaming on load in the source.
    void renameOnLoad(SceneMember& member, std::string_view wanted);
    /// Largest N for which a member is named prefix and digits; 0 if none.
    int maxAutoNumber(std::string_view prefix) const;

    // ---- selection, in order

    void select(SceneMember* member);  // null empties
    void toggleSelect(SceneMember& member);
    void addSelect(SceneMember* member);
    void clearSelection() { selection_.clear(); }
    void bringToFront(SceneMember& member);
    std::span<SceneMember* const> selection() const { return selection_; }
    void deleteSelected();

    // ---- Sets

    Group* set(int number) const;
    /// Selects Set n; false (and an empty selection) for 0 or a Set that isn't there.
    bool selectSet(int number);
    /// Moves `newObject`, or else the selected objects, into Set n. Into an empty Set it sets the
    /// pivot to their centre. A Set that isn't there: nothing happens.
    void moveToSet(int number, TransformMember* newObject, bool recordUndo);

    // ---- sweep and copies

    void clearMarks(bool value);
    /// Drops objects, styles, materials, images, maps and profiles that nothing protected refers
    /// to. Bits of keepMask: 0 all objects stay, 1 all styles, 2 all materials.
    void purge(unsigned keepMask);
    /// True where nothing could be swept, false for a style or material that nobody refers to.
    bool stillReferred(SceneMember& member);

    /// A copy of `source` under `name`; null if the name exists or the class can't be copied.
    SceneMember* cloneMember(const SceneMember& source, std::string_view name);
    /// A copy with everything it refers to. `policy` stands where `question` is empty.
    SceneMember* importMember(SceneMember& source, NameConflict policy,
                              const ConflictQuestion& question, bool recursive);

    // ---- images

    /// Makes the image map "|ExtMapN" if it isn't there.
    void ensureExtMap(int number);

    Box3 sceneBounds() const;  // of objects and lights, in world space

    void setUndo(std::unique_ptr<UndoHook> undo) { undo_ = std::move(undo); }
    UndoHook* undo() const { return undo_.get(); }

  private:
    static constexpr std::size_t kListCount = 9;

    std::string sceneName_;
    MemberRegistry names_;
    std::unique_ptr<Root> root_;
    std::vector<SceneMember*> selection_;
    std::vector<SceneMember*> lists_[kListCount];
    std::unique_ptr<UndoHook> undo_;
};

}  // namespace orvin
