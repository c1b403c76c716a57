#include "scene/SceneX.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <iterator>
#include <unordered_set>

#include "scene/SceneStream.h"
#include "toolkit/Errors.h"

namespace orvin {

int gAutoNameCounter = 0;
int gSetCount = 9;

namespace {

std::string numbered(std::string_view stem, long long number) {
    return std::string(stem) + std::to_string(number);
}

constexpr MemberKind kAllKinds[] = {
    MemberKind::kCamera,   MemberKind::kObject,    MemberKind::kLight,
    MemberKind::kGroup,    MemberKind::kProfile,   MemberKind::kMaterial,
    MemberKind::kImageMap, MemberKind::kImageFile, MemberKind::kStyle,
};

// Later members find earlier ones by name: what is referred to, and above all parents, goes first.
constexpr MemberKind kWritingOrder[] = {
    MemberKind::kCamera,   MemberKind::kImageFile, MemberKind::kImageMap,
    MemberKind::kMaterial, MemberKind::kStyle,     MemberKind::kGroup,
    MemberKind::kObject,   MemberKind::kLight,     MemberKind::kProfile,
};

constexpr MemberKind kDestroyingOrder[] = {
    MemberKind::kStyle,    MemberKind::kCamera,   MemberKind::kLight,
    MemberKind::kObject,   MemberKind::kProfile,  MemberKind::kGroup,
    MemberKind::kMaterial, MemberKind::kImageMap, MemberKind::kImageFile,
};

// The member that must be written before this one; null for none.
SceneMember* parentOf(SceneMember* member) {
    const auto* const placed = dynamic_cast<TransformMember*>(member);
    TransformMember* const parent = placed != nullptr ? placed->parent() : nullptr;
    return parent != nullptr && parent->memberKind() != MemberKind::kRoot ? parent : nullptr;
}

}  // namespace

std::string setName(int number) {
    return numbered(kSetPrefix, number);
}

std::optional<int> setNumber(std::string_view groupName) {
    if (!groupName.starts_with(kSetPrefix)) return std::nullopt;
    groupName.remove_prefix(kSetPrefix.size());
    int number = 0;
    const auto [end, error] =
        std::from_chars(groupName.data(), groupName.data() + groupName.size(), number);
    if (error != std::errc()) return std::nullopt;
    return number;
}

std::string extMapName(int number) {
    return numbered(kExtMapPrefix, number);
}

SceneX::SceneX(std::string_view name) : root_(std::make_unique<Root>(*this)) {
    setName(name);
}

SceneX::~SceneX() {
    meshCache_.reset();
    clearSelection();
    for (const MemberKind kind : kAllKinds)
        for (SceneMember* member : list(kind))
            if (auto* const placed = dynamic_cast<TransformMember*>(member)) placed->leaveTree();
    root_->leaveTree();
    for (const MemberKind kind : kDestroyingOrder)
        while (!list(kind).empty())
            destroy(*list(kind).back());
}

void SceneX::setName(std::string_view name) {
    sceneName_ = name.substr(0, kNameCapacity - 1);
}

// ---- members

std::span<SceneMember* const> SceneX::members(MemberKind kind) const {
    if (kind == MemberKind::kRoot) return {};
    return lists_[static_cast<std::size_t>(kind)];
}

SceneMember* SceneX::memberByName(std::string_view name) const {
    const auto* const entry = names_.find(name);
    return entry != nullptr ? entry->value : nullptr;
}

SceneMember* SceneX::member(MemberKind kind, std::string_view name) const {
    SceneMember* const found = memberByName(name);
    return found != nullptr && found->memberKind() == kind ? found : nullptr;
}

SceneMember& SceneX::adopt(std::unique_ptr<SceneMember> member) {
    return *member.release();
}

void SceneX::destroy(SceneMember& member) {
    if (member.memberKind() != MemberKind::kRoot) delete &member;
}

void SceneX::destroyAll(std::span<SceneMember* const> doomed) {
    // Out of the lists in one go, so that none is looked for there.
    for (SceneMember* member : doomed) {
        member->listed_ = false;
        member->selected_ = false;
    }
    for (MemberList& all : lists_)
        std::erase_if(all, [](const SceneMember* m) { return !m->listed_; });
    std::erase_if(selection_, [](const SceneMember* m) { return !m->selected_; });
    for (auto member = doomed.rbegin(); member != doomed.rend(); ++member)
        destroy(**member);
}

void SceneX::addMember(SceneMember& member, MemberKind kind) {
    if (kind == MemberKind::kRoot) return;
    list(kind).push_back(&member);
    member.listed_ = true;
}

void SceneX::removeMember(SceneMember& member, MemberKind kind) {
    deselect(member);
    if (kind == MemberKind::kRoot) return;
    const auto index = static_cast<std::size_t>(kind);
    if (index < kListCount) {
        // Newest first: that is who goes, mostly.
        auto& all = lists_[index];
        const auto found = std::find(all.rbegin(), all.rend(), &member);
        if (found != all.rend()) {
            all.erase(std::next(found).base());
            member.listed_ = false;
            return;
        }
    }
    std::printf("Exception: SceneMember unable to be removed from scene!\n");
}

// ---- selection

void SceneX::clearSelection() {
    for (SceneMember* member : selection_)
        member->selected_ = false;
    selection_.clear();
}

void SceneX::deselect(SceneMember& member) {
    if (std::exchange(member.selected_, false)) std::erase(selection_, &member);
}

void SceneX::select(SceneMember* member) {
    clearSelection();
    addSelect(member);
}

void SceneX::toggleSelect(SceneMember& member) {
    if (member.selected_)
        deselect(member);
    else
        addSelect(&member);
}

void SceneX::addSelect(SceneMember* member) {
    if (member != nullptr && !std::exchange(member->selected_, true)) selection_.push_back(member);
}

void SceneX::bringToFront(SceneMember& member) {
    const auto found = std::find(selection_.begin(), selection_.end(), &member);
    if (found != selection_.end()) std::rotate(selection_.begin(), found, found + 1);
}

void SceneX::deleteSelected() {
    const auto doomed = selection_;
    clearSelection();
    destroyAll(doomed);
    if (undo_) undo_->membersDeleted();
}

// ---- Sets

Group* SceneX::set(int number) const {
    return memberAs<Group>(MemberKind::kGroup, orvin::setName(number));
}

bool SceneX::selectSet(int number) {
    Group* const group = number > 0 ? set(number) : nullptr;
    select(group);
    return number > 0;
}

void SceneX::moveToSet(int number, TransformMember* newObject, bool recordUndo) {
    if (newObject == nullptr && selection_.empty()) return;
    const std::string name = orvin::setName(number);
    if (memberByName(name) == nullptr) return;
    Group* const group = set(number);
    if (group == nullptr) throw kSetGroupMissing;
    const bool wasEmpty = group->childCount() == 0;

    MemberList moved;
    if (newObject != nullptr)
        moved.push_back(newObject);
    else
        std::copy_if(selection_.begin(), selection_.end(), std::back_inserter(moved),
                     [](const SceneMember* m) { return m->memberKind() == MemberKind::kObject; });
    if (recordUndo && undo_) undo_->recordSelection(moved);

    Box3 box;
    for (SceneMember* member : moved) {
        auto* const object = dynamic_cast<TransformMember*>(member);
        if (object == nullptr) continue;
        object->setParent(group->ref());
        box.merge(object->worldBounds());
    }
    // So that turning the Set turns it about its first content.
    if (wasEmpty && !box.empty()) group->transform().setOrigin(box.center());
}

// ---- sweep

void SceneX::clearMarks(bool value) {
    for (const MemberKind kind : kAllKinds)
        for (SceneMember* member : list(kind))
            member->marked = value;
}

void SceneX::markFromProtected() {
    clearMarks(false);
    for (const MemberKind kind : kAllKinds)
        for (SceneMember* member : list(kind))
            if (member->protectedFromSweep) member->markUsed();
}

void SceneX::sweep(MemberKind kind) {
    MemberList doomed;
    std::copy_if(list(kind).begin(), list(kind).end(), std::back_inserter(doomed),
                 [](const SceneMember* m) { return !m->marked; });
    destroyAll(doomed);
}

void SceneX::purge(unsigned keepMask) {
    markFromProtected();
    const auto markAll = [this](MemberKind kind) {
        for (SceneMember* member : list(kind))
            member->markUsed();
    };
    if ((keepMask & 4) != 0) markAll(MemberKind::kMaterial);
    if ((keepMask & 2) != 0) markAll(MemberKind::kStyle);
    if ((keepMask & 1) != 0) markAll(MemberKind::kObject);
    for (const MemberKind kind :
         {MemberKind::kObject, MemberKind::kStyle, MemberKind::kMaterial, MemberKind::kImageFile,
          MemberKind::kImageMap, MemberKind::kProfile})
        sweep(kind);
}

bool SceneX::stillReferred(SceneMember& member) {
    markFromProtected();
    const MemberKind kind = member.memberKind();
    return member.marked || (kind != MemberKind::kStyle && kind != MemberKind::kMaterial);
}

// ---- images

void SceneX::ensureExtMap(int number) {
    const std::string name = extMapName(number);
    if (memberByName(name) != nullptr) return;
    if (const MemberClass* imageMap = findMemberClass("ImageMap"))
        adopt(imageMap->create(*this, name));
}

bool SceneX::usesExtMap(int number) const {
    const auto materials = members(MemberKind::kMaterial);
    return std::any_of(materials.begin(), materials.end(),
                       [number](SceneMember* material) { return material->usesExtMap(number); });
}

Box3 SceneX::sceneBounds() const {
    Box3 box;
    for (const MemberKind kind : {MemberKind::kObject, MemberKind::kLight})
        for (SceneMember* member : members(kind))
            if (auto* const placed = dynamic_cast<TransformMember*>(member))
                box.merge(placed->worldBounds());
    return box;
}

// ---- stream form

Result SceneX::writeBody(SceneStream& stream) {
    if (const Result result = stream.putName("name", sceneName_); result != kSuccess) return result;
    std::unordered_set<SceneMember*> done;
    std::vector<SceneMember*> chain;  // a member and its parents that aren't written yet
    for (const MemberKind kind : kWritingOrder)
        for (SceneMember* member : list(kind)) {
            for (SceneMember* m = member; m != nullptr && done.insert(m).second; m = parentOf(m))
                chain.push_back(m);
            for (; !chain.empty(); chain.pop_back()) {
                if (!chain.back()->saveable) continue;
                if (const Result result = stream.writeObject(*chain.back()); result != kSuccess)
                    return result;
            }
        }
    return kSuccess;
}

}  // namespace orvin
