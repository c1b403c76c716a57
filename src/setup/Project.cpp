#include "setup/Project.h"

#include <new>

#include "scene/SceneStream.h"
#include "setup/StartUp.h"
#include "toolkit/platform/Platform.h"

namespace orvin {

Project::Project() {
    registerMemberClasses();
    manager_.startDefaultProject();
}

Result Project::open(const std::filesystem::path& path) {
    failure_.clear();
    Result result = kFailure;
    try {
        result = manager_.openProject(path, true);
        failure_ = manager_.failure();
    } catch (const std::bad_alloc&) {
        // Also what a member's missing parent comes out as.
        failure_ = "not enough memory, or a member whose parent is missing";
    }
    if (result == kSuccess) return kSuccess;
    if (failure_.empty())
        failure_ = "can't read " + platform::textFromPath(path) + ": it is no complete project";
    manager_.startDefaultProject();
    return kFailure;
}

Result Project::save(const std::filesystem::path& path) {
    const Result result = manager_.saveProjectTo(path);
    failure_ = manager_.failure();
    return result;
}

}  // namespace orvin
