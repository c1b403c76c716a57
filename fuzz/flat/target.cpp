// Flat sequence data: a project behind an eight-byte header that belongs to the host's side. What
// loads is flattened again, with and without objects, and that must load and flatten the same.
#include <algorithm>
#include <cstdint>
#include <new>
#include <string>
#include <string_view>

#include "fuzz/ProjectFuzzing.h"
#include "scene/OrvinSceneManager.h"
#include "setup/OrvinProjectSections.h"

namespace {

using namespace orvin;
using namespace orvin::fuzzing;

constexpr std::size_t kHeader = 8;

/// One effect instance that is set up from flat data.
class Instance {
  public:
    /// False where the data doesn't load: the host's side then starts a default scene.
    bool load(const std::string& flat) {
        Handle handle = memory_.allocate(flat.size());
        std::copy(flat.begin(), flat.end(), static_cast<char*>(memory_.lock(handle)));
        memory_.unlock(handle);
        Result result = kFailure;
        try {
            result = manager_.readProjectHandle(memory_, handle, kHeader, false, true);
        } catch (const std::bad_alloc&) {  // a parent that isn't there
        }
        require(memory_.lockCount(handle) == 0);
        memory_.dispose(handle);
        return result == kSuccess;
    }

    std::string flatten(std::size_t room, bool wholeProject, bool withObjects) {
        Handle handle = memory_.allocate(kHeader + room);
        std::string flat;
        if (manager_.saveProjectHandle(memory_, handle, kHeader, wholeProject, withObjects) ==
            kSuccess) {
            flat.assign(static_cast<const char*>(memory_.lock(handle)), memory_.size(handle));
            memory_.unlock(handle);
            std::fill_n(flat.begin(), kHeader, '-');
            require(flat.ends_with(std::string_view("**EndOfStream**\n\0", 17)));
        }
        require(memory_.lockCount(handle) == 0);
        memory_.dispose(handle);
        require(memory_.liveHandles() == 0);
        return flat;
    }

  private:
    PlainHandleMemory memory_;
    OrvinPreferences preferences_;
    OrvinProjectSections sections_;
    OrvinSceneManager manager_{preferences_, sections_};
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    prepareForProjects();

    std::string flat(kHeader, '-');
    flat.append(reinterpret_cast<const char*>(data), size);
    Instance first;
    if (!first.load(flat)) return 0;
    first.flatten(size % 100, false, true);
    first.flatten(50'000, true, false);
    const std::string whole = first.flatten(size % 5000, true, true);
    if (whole.empty()) return 0;

    Instance second;
    require(second.load(whole));
    const std::string again = second.flatten(50'000, true, true);
    Instance third;
    require(third.load(again));
    require(comparable(third.flatten(1, true, true)) == comparable(again));
    return 0;
}
