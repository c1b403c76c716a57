#include "vector/edges/ProfileL.h"

#include "scene/SceneStream.h"
#include "scene/SceneX.h"
#include "vector/edges/EdgeLibrary.h"
#include "vector/illustrator/ProfileI.h"

namespace orvin {

void ProfileL::setLibIdx(int index) {
    libIdx_ = index;
    touch();
}

Result ProfileL::load() {
    ProfileI* const edge = edgeAt(libIdx_);
    if (edge == nullptr) return kFailure;
    outline() = *edge->inputProfile();
    touch();
    return kSuccess;
}

Result ProfileL::writeBody(SceneStream& stream) {
    const bool failed = OutlineProfile::writeBody(stream) != kSuccess ||
                        stream.putInt("libIdx", libIdx_) != kSuccess;
    if (failed) return kFailure;
    if (edgeName(libIdx_) == nullptr) return kSuccess;  // a "load" would fail on reading
    stream.line().clear().text("load");
    return stream.putLine();
}

struct ProfileL::Commands : CommandRegistry {
    static ProfileL& profile(Persistent& self) { return static_cast<ProfileL&>(self); }

    static Result readIndex(SceneStream& stream, Persistent& self) {
        int index = -1;
        if (stream.readInt(index) != kSuccess) return kFailure;
        profile(self).setLibIdx(index);
        return kSuccess;
    }
    static Result load(SceneStream&, Persistent& self) { return profile(self).load(); }

    Commands() : CommandRegistry(16) {
        registerMemberCommands(*this);
        lookupOrInsert("libIdx", readIndex);
        lookupOrInsert("load", load);
    }
};

const CommandRegistry& ProfileL::commandRegistry() const {
    static const Commands commands;
    return commands;
}

ProfileL* useLibraryEdge(SceneX& scene, int index) {
    const char* const name = edgeName(index);
    if (name == nullptr) return nullptr;
    for (SceneMember* const member : scene.members(MemberKind::kProfile)) {
        auto* const present = dynamic_cast<ProfileL*>(member);
        if (present != nullptr && present->libIdx() == index) return present;
    }
    auto& edge = scene.make<ProfileL>(scene.uniqueName(name));
    edge.setLibIdx(index);
    edge.load();
    return &edge;
}

}  // namespace orvin
