// Copies of members from scene to scene, with what they refer to.
#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "scene/SceneX.h"

namespace orvin {

namespace {

// Members that exist once in every scene, under their own name.
bool existsOnce(const SceneMember& member) {
    return member.name() == kDefaultMaterial || member.name() == kDefaultStyle ||
           member.className() == "ProfileL";
}

}  // namespace

SceneMember* SceneX::cloneMember(const SceneMember& source, std::string_view name) {
    if (memberByName(name) != nullptr) return nullptr;
    const MemberClass* const memberClass = findMemberClass(source.className());
    if (memberClass == nullptr || memberClass->clone == nullptr) return nullptr;
    auto copy = memberClass->clone(*this, source, name);
    return copy != nullptr ? &adopt(std::move(copy)) : nullptr;
}

// What happens to `source` here; nothing where no member bears its name.
std::optional<NameConflict> SceneX::decide(const SceneMember& source, ImportPolicy& policy) const {
    const SceneMember* const old = memberByName(source.name());
    if (old == nullptr) return std::nullopt;
    if (old->className() != source.className()) return NameConflict::kRenameNew;
    if (existsOnce(source)) return NameConflict::kIgnoreNew;
    if (policy.standing || !policy.question) return policy.answer;
    const auto [answer, standing] = policy.question(*old, source);
    if (standing) {
        policy.answer = answer;
        policy.standing = true;
    }
    return answer;
}

// Gives the place of `old`, which goes, to `copy`.
void SceneX::putInPlace(SceneMember& old, SceneMember& copy) {
    auto* const oldPlaced = dynamic_cast<TransformMember*>(&old);
    auto* const newPlaced = dynamic_cast<TransformMember*>(&copy);
    if (oldPlaced != nullptr && newPlaced != nullptr) {
        if (oldPlaced->parent() != nullptr) newPlaced->attachTo(oldPlaced->parent()->ref());
        while (oldPlaced->childCount() > 0)
            oldPlaced->child(0)->attachTo(newPlaced->ref());
    }
    auto& all = list(old.memberKind());
    const auto oldIndex = std::find(all.begin(), all.end(), &old) - all.begin();
    if (std::exchange(old.selected_, false)) {
        std::replace(selection_.begin(), selection_.end(), &old, &copy);
        copy.selected_ = true;
    }
    const std::string name = old.name();
    copy.protectedFromSweep = copy.protectedFromSweep || old.protectedFromSweep;
    destroy(old);
    copy.setName(name);
    const auto from = std::find(all.begin(), all.end(), &copy);
    std::rotate(all.begin() + oldIndex, from, from + 1);
}

SceneMember* SceneX::importOne(SceneMember& source, ImportPolicy& policy) {
    const std::string name = source.name();
    const auto conflict = decide(source, policy);
    if (!conflict) return cloneMember(source, name);
    SceneMember* const old = memberByName(name);
    const bool overItself = old == &source && *conflict == NameConflict::kReplaceOld;
    if (*conflict == NameConflict::kIgnoreNew || overItself) return old;
    SceneMember* const copy = cloneMember(source, uniqueName(name));
    if (copy != nullptr && *conflict == NameConflict::kReplaceOld) putInPlace(*old, *copy);
    return copy;
}

SceneMember* SceneX::importMember(SceneMember& source, ImportPolicy& policy, bool recursive) {
    std::unordered_map<SceneMember*, SceneMember*> imported;  // source to what stands for it here
    std::unordered_set<SceneMember*> brought;                 // copies, by now in this scene
    std::vector<SceneMember*> open;                           // sources with references to follow

    const auto bring = [&](SceneMember& member) -> SceneMember* {
        const auto [known, isNew] = imported.try_emplace(&member, nullptr);
        if (!isNew) return known->second;
        SceneMember* const present = memberByName(member.name());
        // The name of a copy that only just came is no conflict to decide on.
        ImportPolicy renaming;
        SceneMember* const result =
            importOne(member, brought.count(present) != 0 ? renaming : policy);
        known->second = result;
        // Only a copy brings its references; one that stayed has its own.
        if (result != nullptr && result != present) {
            brought.insert(result);
            open.push_back(&member);
        }
        return result;
    };

    SceneMember* const result = bring(source);
    while (recursive && &source.scene() != this && !open.empty()) {
        SceneMember* const from = open.back();
        open.pop_back();
        SceneMember* const copy = imported[from];
        const std::vector<NameRef*> references = from->references();
        const std::vector<NameRef*> copied = copy->references();
        for (std::size_t i = 0; i < references.size() && i < copied.size(); ++i) {
            SceneMember* const used = references[i]->get();
            if (used == nullptr) continue;
            if (const SceneMember* const here = bring(*used)) *copied[i] = here->ref();
        }
    }
    return result;
}

}  // namespace orvin
