// Whole projects, with every member class known: read from a file and from a memory handle. What
// was read is saved, and from the second saving on nothing may change any more (the first one
// rounds to six decimals and resolves names).
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <new>
#include <string>
#include <string_view>

#include "fuzz/ProjectFuzzing.h"
#include "scene/MemoryStream.h"
#include "scene/OrvinSceneManager.h"
#include "setup/OrvinProjectSections.h"
#include "toolkit/platform/Platform.h"

namespace {

using namespace orvin;
using namespace orvin::fuzzing;

struct Instance {
    OrvinPreferences preferences;
    OrvinProjectSections sections;
    OrvinSceneManager manager{preferences, sections};

    /// Empty where it can't be written.
    std::string text() {
        MemoryStream stream(&manager);
        return manager.writeBody(stream) == kSuccess ? stream.takeText() : std::string();
    }
};

template <typename Read>
Result attempt(Read&& read) {
    try {
        return read();
    } catch (const std::bad_alloc&) {  // a parent that isn't there
        return kFailure;
    }
}

/// What a saved project reads back and saves as.
std::string savedAgain(const std::string& text) {
    Instance instance;
    MemoryStream stream(nullptr, text);
    require(attempt([&] { return instance.manager.readProject(stream, false); }) == kSuccess);
    return instance.text();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    prepareForProjects();

    std::string first;
    {
        Instance instance;
        std::FILE* const file = platform::openTemporaryFile();
        require(file != nullptr);
        require(std::fwrite(data, 1, size, file) == size);
        std::rewind(file);
        const Result result = attempt([&] { return instance.manager.readProject(file, false); });
        std::fclose(file);
        if (result == kSuccess) first = instance.text();
        // A scene that was left half-way by a failure must still be one that can be dropped.
        instance.manager.startDefaultProject();
    }
    {
        Instance instance;
        PlainHandleMemory memory;
        Handle handle = memory.allocate(size);
        if (size > 0) std::copy(data, data + size, static_cast<std::uint8_t*>(memory.lock(handle)));
        if (size > 0) memory.unlock(handle);
        attempt([&] { return instance.manager.readProjectHandle(memory, handle, 0, false, true); });
        require(memory.lockCount(handle) == 0);
    }
    if (first.empty()) return 0;
    const std::string second = savedAgain(first);
    require(!second.empty());
    require(comparable(savedAgain(second)) == comparable(second));
    return 0;
}
