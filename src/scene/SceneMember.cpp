#include "scene/SceneMember.h"

#include <algorithm>
#include <utility>

#include "scene/SceneStream.h"
#include "scene/SceneX.h"

namespace orvin {

namespace {

std::string_view cutName(std::string_view name) {
    return name.substr(0, kNameCapacity - 1);
}

Result nameCommand(SceneStream& stream, Persistent& self) {
    std::string wanted;
    if (stream.readText(wanted) != kSuccess) return kFailure;
    auto& member = static_cast<SceneMember&>(self);
    member.scene().renameOnLoad(member, wanted);
    return kSuccess;
}

}  // namespace

SceneMember::SceneMember(SceneX& scene, MemberKind kind, std::string_view name)
    : name_(scene.registry(), cutName(name)), scene_(&scene), kind_(kind) {
    bind();
}

SceneMember::SceneMember(SceneX& scene, const SceneMember& source, std::string_view name)
    : saveable(source.saveable),
      name_(scene.registry(), scene.uniqueName(cutName(name))),
      scene_(&scene),
      kind_(source.kind_) {
    bind();
}

void SceneMember::bind() {
    name_.resolved()->value = this;
    noteName();
    scene_->addMember(*this, kind_);
}

SceneMember::~SceneMember() {
    scene_->nameFreed(name());
    if (listed_) scene_->removeMember(*this, kind_);
    // A member that took the name over keeps it.
    auto* const entry = name_.resolved();
    if (entry->value == this) entry->value = nullptr;
}

Result SceneMember::writeBody(SceneStream& stream) {
    return stream.putName("name", name());
}

void SceneMember::setName(std::string_view name) {
    name = cutName(name);
    if (name == this->name()) return;
    scene_->nameFreed(this->name());
    auto* const entry = name_.resolved();
    if (entry->value == this) {
        name_.entry_ = scene_->registry().rename(entry, name);
    } else {  // another member took the old name over, and the references with it
        name_ = NameRef(scene_->registry(), name);
        name_.resolved()->value = this;
    }
    noteName();
}

// The default material and style are roots of the sweep wherever they come from.
void SceneMember::noteName() {
    if ((kind_ == MemberKind::kMaterial && name() == kDefaultMaterial) ||
        (kind_ == MemberKind::kStyle && name() == kDefaultStyle))
        protectedFromSweep = true;
}

bool SceneMember::usesExtMap(int number) {
    const std::string wanted = extMapName(number);
    const auto all = references();
    return std::any_of(all.begin(), all.end(),
                       [&](const NameRef* reference) { return reference->name() == wanted; });
}

void SceneMember::markUsed() {
    if (marked) return;
    marked = true;
    std::vector<SceneMember*> reached{this};
    while (!reached.empty()) {
        SceneMember* const member = reached.back();
        reached.pop_back();
        for (const NameRef* reference : member->references()) {
            SceneMember* const used = reference->get();
            if (used != nullptr && !std::exchange(used->marked, true)) reached.push_back(used);
        }
    }
}

void SceneMember::registerMemberCommands(CommandRegistry& registry) {
    registry.lookupOrInsert("name", nameCommand);
    registry.lookupOrInsert("end", endCommand);
}

}  // namespace orvin
