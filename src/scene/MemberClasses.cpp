#include "scene/MemberClasses.h"

#include <algorithm>
#include <vector>

#include "scene/SceneX.h"
#include "scene/TransformMember.h"

namespace orvin {

namespace {

// A dozen classes: a list is as quick as a map.
std::vector<MemberClass>& classes() {
    static std::vector<MemberClass> all;
    return all;
}

}  // namespace

void registerMemberClass(const MemberClass& memberClass) {
    auto& all = classes();
    const auto same = std::find_if(all.begin(), all.end(), [&](const MemberClass& c) {
        return c.className == memberClass.className;
    });
    if (same != all.end())
        *same = memberClass;
    else
        all.push_back(memberClass);
}

const MemberClass* findMemberClass(std::string_view className) {
    const auto& all = classes();
    const auto found = std::find_if(all.begin(), all.end(),
                                    [&](const MemberClass& c) { return c.className == className; });
    return found != all.end() ? &*found : nullptr;
}

void registerSceneClasses() {
    registerMemberClass({"Group", kSetPrefix,
                         [](SceneX& scene, std::string_view name) -> std::unique_ptr<SceneMember> {
                             return std::make_unique<Group>(scene, name);
                         },
                         [](SceneX& scene, const SceneMember& source,
                            std::string_view name) -> std::unique_ptr<SceneMember> {
                             return std::make_unique<Group>(
                                 scene, static_cast<const Group&>(source), name);
                         }});
}

}  // namespace orvin
