#include "vector/edges/EdgeLibrary.h"

#include <cstdio>

#include "geometry/ObjectP.h"
#include "scene/PresetStream.h"
#include "vector/edges/EdgeMenu.h"
#include "vector/illustrator/ProfileI.h"

namespace orvin {

// Made by the build.
extern const char* const kEdgeLibraryText[];
extern const char* const kSphereText[];
extern const char* const kLightIconText[];

namespace {

std::unique_ptr<SceneX> gEdgeLibrary;

/// Unlike a project, a text of our own has no excuse for an unknown word or an open block.
Result readMembers(SceneX& library, const char* const* lines) {
    PresetStream stream(&library, lines);
    while (stream.hasMore())
        if (stream.runTopCommand() != kSuccess || !sceneErrorText().empty()) return kFailure;
    if (stream.depth() == 1) return kSuccess;
    setSceneErrorText("The text ends within a block.");
    return kFailure;
}

template <typename T>
T* libraryMember(MemberKind kind, std::string_view name) {
    return gEdgeLibrary != nullptr ? gEdgeLibrary->memberAs<T>(kind, name) : nullptr;
}

}  // namespace

std::unique_ptr<SceneX> buildEdgeLibrary(const EdgeLibraryTexts& texts) {
    auto library = std::make_unique<SceneX>("EdgeLibrary");
    for (const char* const* text : {texts.edges, texts.sphere, texts.lightIcon}) {
        if (readMembers(*library, text) == kSuccess) continue;
        const std::string_view why = sceneErrorText();
        std::fprintf(stderr, "The edge library can't be built: %.*s\n",
                     static_cast<int>(why.size()), why.data());
        return nullptr;
    }
    for (SceneMember* const member : library->members(MemberKind::kProfile)) {
        auto& edge = static_cast<Profile&>(*member);
        edge.inputProfile()->orientEdgePath();
        edge.touch();
    }
    return library;
}

EdgeLibraryTexts builtInEdgeTexts() {
    return {kEdgeLibraryText, kSphereText, kLightIconText};
}

Result loadEdgeLibrary() {
    if (gEdgeLibrary != nullptr) return kFailure;
    gEdgeLibrary = buildEdgeLibrary(builtInEdgeTexts());
    return gEdgeLibrary != nullptr ? kSuccess : kFailure;
}

int edgeCount() {
    if (gEdgeLibrary == nullptr) return 0;
    return static_cast<int>(gEdgeLibrary->count(MemberKind::kProfile));
}

ProfileI* edgeAt(int index) {
    if (index < 0 || index >= edgeCount()) return nullptr;
    const auto edges = gEdgeLibrary->members(MemberKind::kProfile);
    return static_cast<ProfileI*>(edges[static_cast<std::size_t>(index)]);
}

const char* edgeName(int index) {
    const ProfileI* const edge = edgeAt(index);
    return edge != nullptr ? edge->name().c_str() : nullptr;
}

int findEdge(std::string_view name) {
    for (int i = 0; i < edgeCount(); ++i)
        if (name == edgeName(i)) return i;
    for (int i = 0; i < edgeCount(); ++i)
        if (name == shownEdgeName(edgeName(i))) return i;
    return -1;
}

ObjectP* sphereIcon() {
    return libraryMember<ObjectP>(MemberKind::kObject, "sphere");
}

ObjectP* lightIcon() {
    return libraryMember<ObjectP>(MemberKind::kObject, "lightIcon");
}

}  // namespace orvin
