// SceneX: the container of one scene. It owns its members, by kind, and their names.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
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

/// How one load (of a library, say) reconciles names; the same object serves all its imports.
struct ImportPolicy {
    NameConflict answer = NameConflict::kRenameNew;
    bool standing = false;      // `answer` is for all: nobody is asked any more
    ConflictQuestion question;  // empty: `answer` stands
};

/// What drawing code keeps for a scene; goes before the members do.
class SceneCache {
  public:
    virtual ~SceneCache() = default;
};

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

    /// The members of a kind (0 to 8) in scene order; none for kind 9.
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

    /// Takes ownership: the scene destroys what stands in its lists. Construction has put the
    /// member there already.
    SceneMember& adopt(std::unique_ptr<SceneMember> member);
    template <typename T, typename... Args>
    T& make(Args&&... args) {
        return static_cast<T&>(adopt(std::make_unique<T>(*this, std::forward<Args>(args)...)));
    }
    /// Destroys a member that this scene owns, and takes it out of the selection. The root stays.
    void destroy(SceneMember& member);
    /// The same for many, each named once, in linear time; the last goes first.
    void destroyAll(std::span<SceneMember* const> doomed);

    // Called by the members themselves.
    void addMember(SceneMember& member, MemberKind kind);
    void removeMember(SceneMember& member, MemberKind kind);
    void nameFreed(std::string_view name);

    // ---- names

    /// `name` as it is while no live member bears it, else the first free one of "Bevel.1",
    /// "Bevel.2", ...; of "Bevel.7" too. At most 255 bytes.
    std::string uniqueName(std::string_view name) const;
    /// What a `name` command does: the wanted name where it is free. Where another member has it, a
    /// unique one, unless the present name is the wanted one plus a point and digits already.
    void renameOnLoad(SceneMember& member, std::string_view wanted);
    /// Largest N for which a member is named prefix and digits; 0 if none.
    int maxAutoNumber(std::string_view prefix) const;

    // ---- selection, in order

    void select(SceneMember* member);        // the only one; null empties
    void toggleSelect(SceneMember& member);  // out if it is in, else to the end
    void addSelect(SceneMember* member);     // to the end; null or one that is in: nothing
    void clearSelection();
    void bringToFront(SceneMember& member);  // a selected member comes first
    std::span<SceneMember* const> selection() const { return selection_; }
    void deleteSelected();

    // ---- Sets

    Group* set(int number) const;
    /// Selects the group of Set n; empties the selection for Set 0 and for a Set that isn't there.
    /// True for n above 0.
    bool selectSet(int number);
    /// Moves `newObject`, or else the selected objects, into Set n; where they stand doesn't
    /// change. The pivot of a Set that was empty goes to the centre of what came in. Nothing
    /// happens without anything to move or where the Set isn't there; throws kSetGroupMissing where
    /// its name is borne by something else than a group.
    void moveToSet(int number, TransformMember* newObject, bool recordUndo);

    // ---- sweep and copies

    void clearMarks(bool value);
    /// Drops objects, styles, materials, images, maps and profiles that nothing protected refers
    /// to. Bits of keepMask: 0 all objects stay, 1 all styles, 2 all materials.
    void purge(unsigned keepMask);
    /// False for a style or material that nothing protected refers to; true for all others.
    bool stillReferred(SceneMember& member);

    /// A copy of `source` under `name`; null if the name exists or the class can't be copied.
    SceneMember* cloneMember(const SceneMember& source, std::string_view name);
    /// A copy of a member of another scene; with `recursive` everything that it refers to comes
    /// along, and the copy refers to what came of that here. Names that exist are dealt with by
    /// `policy`; where the classes differ the incoming one is renamed. "defaultMtl",
    /// "defaultObjXStyle" and ProfileL members exist once: the one here serves. A replaced member's
    /// place in the scene, its parent and children and all references to it go to the copy. Null
    /// if the class can't be copied.
    SceneMember* importMember(SceneMember& source, ImportPolicy& policy, bool recursive);

    // ---- images

    /// Makes the image map "|ExtMapN", without a file, if no member of that name is there.
    void ensureExtMap(int number);
    /// True if a material shows the host's Layer Map N.
    bool usesExtMap(int number) const;

    Box3 sceneBounds() const;  // of objects and lights, in world space

    void setUndo(std::unique_ptr<UndoHook> undo) { undo_ = std::move(undo); }
    UndoHook* undo() const { return undo_.get(); }

    SceneCache* meshCache() const { return meshCache_.get(); }
    void setMeshCache(std::unique_ptr<SceneCache> cache) { meshCache_ = std::move(cache); }

  private:
    static constexpr std::size_t kListCount = 9;
    using MemberList = std::vector<SceneMember*>;

    MemberList& list(MemberKind kind) { return lists_[static_cast<std::size_t>(kind)]; }
    void deselect(SceneMember& member);
    void markFromProtected();
    void sweep(MemberKind kind);
    SceneMember* importOne(SceneMember& source, ImportPolicy& policy);
    void putInPlace(SceneMember& old, SceneMember& copy);
    std::optional<NameConflict> decide(const SceneMember& source, ImportPolicy& policy) const;

    std::string sceneName_;
    MemberRegistry names_;
    // Lowest number that may be free behind a stem: many members of one name stay cheap to number.
    mutable std::unordered_map<std::string, int> freeNumbers_;
    std::vector<SceneMember*> selection_;
    MemberList lists_[kListCount];
    std::unique_ptr<Root> root_;
    std::unique_ptr<UndoHook> undo_;
    std::unique_ptr<SceneCache> meshCache_;
};

}  // namespace orvin
