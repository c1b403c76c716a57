// The table of member classes: how a SceneX makes members that live in folders above it. Each
// subsystem registers its classes in one explicit start-up function; `begin` looks them up here.
#pragma once

#include <memory>
#include <string_view>

#include "scene/SceneMember.h"

namespace orvin {

struct MemberClass {
    std::string_view className;
    /// Automatic name before the block's first `name` line: prefix and the counter. "object" for
    /// ObjectX and ObjectP, "camera", "profile", "light", "material", "imagemap", "imagefile",
    /// "objectstyle".
    std::string_view autoNamePrefix;
    std::unique_ptr<SceneMember> (*create)(SceneX& scene, std::string_view name);
    /// A copy of `source` (a member of this class, of any scene) in `scene` under `name`; null
    /// function where the class can't be copied.
    std::unique_ptr<SceneMember> (*clone)(SceneX& scene, const SceneMember& source,
                                          std::string_view name);
};

/// Adds a class; registering a name again replaces it.
void registerMemberClass(const MemberClass& memberClass);

/// Adds T, made by T(SceneX&, std::string_view name) and copied by
/// T(SceneX&, const T& source, std::string_view name).
template <typename T>
void registerMemberClass(std::string_view className, std::string_view autoNamePrefix) {
    registerMemberClass({className, autoNamePrefix,
                         [](SceneX& scene, std::string_view name) -> std::unique_ptr<SceneMember> {
                             return std::make_unique<T>(scene, name);
                         },
                         [](SceneX& scene, const SceneMember& source,
                            std::string_view name) -> std::unique_ptr<SceneMember> {
                             return std::make_unique<T>(scene, dynamic_cast<const T&>(source),
                                                        name);
                         }});
}

/// Null for a class that nobody registered.
const MemberClass* findMemberClass(std::string_view className);

/// Group: the class of this folder that stands in files (a scene's root never does).
void registerSceneClasses();

}  // namespace orvin
