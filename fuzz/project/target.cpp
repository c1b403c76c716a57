// Whole projects, with every member class known: read from a file and from a memory handle. What
// was read is saved, and from the second saving on nothing may change any more (the first one
// rounds to six decimals and resolves names).
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <string>
#include <string_view>

#include "geometry/ModelHooks.h"
#include "scene/MemoryStream.h"
#include "scene/OrvinSceneManager.h"
#include "setup/OrvinProjectSections.h"
#include "setup/StartUp.h"
#include "toolkit/Questions.h"
#include "toolkit/platform/Platform.h"

namespace {

using namespace orvin;

class Silent : public HeadlessQuestions {
    void showMessage(std::string_view, bool) override {}
};

void require(bool holds) {
    if (!holds) std::abort();
}

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

/// Texture vertices turn by a quarter each time they are read: they can't be compared.
std::string withoutTexture(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
        const std::string_view line = text.substr(0, end);
        const std::size_t start = line.find_first_not_of(' ');
        if (start == std::string_view::npos || !line.substr(start).starts_with("vt "))
            result += line;
        text.remove_prefix(end);
    }
    return result;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Silent silent;
    static const bool ready = [] {
        setQuestions(&silent);
        registerMemberClasses();
        setModelHooks({});  // a project can name model files to load and save: not here
        return true;
    }();
    require(ready);

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
    require(withoutTexture(savedAgain(second)) == withoutTexture(second));
    return 0;
}
