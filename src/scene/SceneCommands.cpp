// The stream commands of a scene.
#include <memory>
#include <new>

#include "scene/SceneStream.h"
#include "scene/SceneX.h"

namespace orvin {

namespace {

SceneX& sceneOf(Persistent& self) {
    return static_cast<SceneX&>(self);
}

Result nameCommand(SceneStream& stream, Persistent& self) {
    std::string name;
    if (stream.readText(name) != kSuccess) return kFailure;
    sceneOf(self).setName(name);
    return kSuccess;
}

SceneMember* readMember(SceneStream& stream, const SceneX& scene) {
    std::string name;
    return stream.readText(name) == kSuccess ? scene.memberByName(name) : nullptr;
}

Result selectCommand(SceneStream& stream, Persistent& self) {
    SceneMember* const member = readMember(stream, sceneOf(self));
    if (member == nullptr) return kFailure;
    sceneOf(self).select(member);
    return kSuccess;
}

Result selectToggleCommand(SceneStream& stream, Persistent& self) {
    SceneMember* const member = readMember(stream, sceneOf(self));
    if (member == nullptr) return kFailure;
    sceneOf(self).toggleSelect(*member);
    return kSuccess;
}

// A name that nobody bears and nobody refers to: an automatic name lasts until the block's `name`
// line, and forward references to it must not follow the member to that name.
std::string automaticName(SceneX& scene, std::string_view prefix) {
    const std::string name = std::string(prefix) + std::to_string(++gAutoNameCounter);
    std::string candidate = name;
    for (int n = 1; scene.registry().find(candidate) != nullptr; ++n)
        candidate = name + "." + std::to_string(n);
    return candidate;
}

Result beginCommand(SceneStream& stream, Persistent& self) {
    std::string className;
    if (stream.readText(className) != kSuccess) return kFailure;
    const MemberClass* const memberClass = findMemberClass(className);
    if (memberClass == nullptr) return kFailure;
    SceneX& scene = sceneOf(self);
    auto member = memberClass->create(scene, automaticName(scene, memberClass->autoNamePrefix));
    if (member == nullptr) throw std::bad_alloc();
    stream.push(scene.adopt(std::move(member)));
    return kSuccess;
}

Result deleteCommand(SceneStream&, Persistent& self) {
    sceneOf(self).deleteSelected();
    return kSuccess;
}

Result queryCommand(SceneStream& stream, Persistent& self) {
    return stream.writeObject(self);
}

Result dumpCommand(SceneStream& stream, Persistent& self) {
    return self.writeBody(stream);
}

}  // namespace

const CommandRegistry& SceneX::commandRegistry() const {
    static const auto kCommands = [] {
        auto commands = std::make_unique<CommandRegistry>();
        commands->lookupOrInsert("name", nameCommand);
        commands->lookupOrInsert("select", selectCommand);
        commands->lookupOrInsert("selectToggle", selectToggleCommand);
        commands->lookupOrInsert("begin", beginCommand);
        commands->lookupOrInsert("end", endCommand);
        commands->lookupOrInsert("delete", deleteCommand);
        commands->lookupOrInsert("query", queryCommand);
        commands->lookupOrInsert("?", queryCommand);
        commands->lookupOrInsert("dump", dumpCommand);
        return commands;
    }();
    return *kCommands;
}

}  // namespace orvin
