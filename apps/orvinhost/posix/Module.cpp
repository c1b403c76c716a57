#include "orvinhost/Module.h"

#include "common/Options.h"
#include "toolkit/platform/Platform.h"

#include <dlfcn.h>

namespace orvin::stand_in {

Module::Module(const std::filesystem::path& path) {
    // A bare name would be looked for in the system's library folders.
    const std::filesystem::path file = std::filesystem::absolute(path);
    library_ = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library_ == nullptr) throw apps::Failure(dlerror());
    entry_ = reinterpret_cast<PF_EffectMainFn>(dlsym(library_, "main"));
    if (entry_ == nullptr) {
        dlclose(library_);
        throw apps::Failure(file.string() + ": no entry \"main\"");
    }
}

Module::~Module() {
    dlclose(library_);
}

std::vector<std::uint8_t> Module::pipl() const {
    return {};
}

std::filesystem::path Module::standardPath() {
    return platform::moduleFolder() / "3DOrvinex.so";
}

void* makeMainWindow() {
    return nullptr;
}

}  // namespace orvin::stand_in
