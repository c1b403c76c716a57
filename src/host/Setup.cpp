#include "host/Setup.h"

#include <cstring>
#include <new>

#include "host/Flatten.h"
#include "host/HostState.h"
#include "host/OrvinApp.h"
#include "host/PanelSurface.h"
#include "host/Stash.h"

namespace orvin {

namespace {

// A live record under construction: its app and its handle go again unless it is handed over.
class LiveRecord {
  public:
    explicit LiveRecord(HandleMemory& memory)
        : memory_(memory), handle_(memory.allocate(sizeof(SequenceRecord))) {}
    ~LiveRecord() {
        if (handle_ != nullptr) memory_.dispose(handle_);
    }
    LiveRecord(const LiveRecord&) = delete;
    LiveRecord& operator=(const LiveRecord&) = delete;

    /// Builds the app. 4 without memory of the host's, 512 where the app can't work.
    PF_Err build() {
        if (handle_ == nullptr) return PF_Err_OUT_OF_MEMORY;
        app_ = std::make_unique<OrvinApp>();
        if (!app_->Init()) return PF_Err_INTERNAL_STRUCT_DAMAGED;
        app_->applyHardShadingAngle();
        return PF_Err_NONE;
    }

    OrvinApp& app() { return *app_; }

    /// The finished handle; the record owns the app from now on.
    Handle handOver() {
        const HandleLock locked(memory_, handle_);
        if (locked.data() == nullptr) throw std::bad_alloc();
        auto* record = new (locked.data()) SequenceRecord;
        record->app = app_.release();
        Handle handle = handle_;
        handle_ = nullptr;
        return handle;
    }

  private:
    HandleMemory& memory_;
    Handle handle_;
    std::unique_ptr<OrvinApp> app_;
};

void handToHost(const SequenceCall& call, Handle handle) {
    call.out.sequence_data = handle;
    call.in.sequence_data = handle;
    call.view.open(handle);
}

PF_Err setUpFromFlat(const SequenceCall& call) {
    Handle flat = call.view.handle();
    LiveRecord live(call.memory);
    if (const PF_Err error = live.build(); error != PF_Err_NONE) return error;

    const bool holdsProject = flatStoredSize(call.view.bytes()) != 0;
    call.view.close();
    if (!holdsProject || live.app().readFlat(call.memory, flat, kFlatHeaderSize) != kSuccess)
        live.app().newScene();
    live.app().settleScene();

    call.memory.dispose(flat);
    handToHost(call, live.handOver());
    return PF_Err_NONE;
}

}  // namespace

PF_Err setUpSequence(const SequenceCall& call) {
    call.out.sequence_data = nullptr;
    dropStash(call.memory);
    LiveRecord live(call.memory);
    if (const PF_Err error = live.build(); error != PF_Err_NONE) return error;
    if (live.app().StartupDialog() != 0) return PF_Err_INTERNAL_STRUCT_DAMAGED;
    invalidateMainWindow(call.in);
    live.app().settleScene();

    Handle handle = live.handOver();
    call.out.sequence_data = handle;
    call.view.open(handle);
    return PF_Err_NONE;
}

PF_Err setUpSequenceAgain(const SequenceCall& call) {
    if (call.view.empty() || call.in.sequence_data == nullptr)
        return PF_Err_INTERNAL_STRUCT_DAMAGED;

    if (call.view.isFlat() && stashHolds(call.memory, call.view.bytes())) {
        Handle flat = call.view.handle();
        call.view.close();
        call.memory.dispose(flat);
        handToHost(call, takeStash());
        return PF_Err_NONE;
    }

    call.out.sequence_data = nullptr;
    if (call.view.isLive()) {
        call.out.sequence_data = call.view.handle();
        return PF_Err_NONE;
    }
    if (call.view.isFlat()) return setUpFromFlat(call);

    Handle foreign = call.view.handle();
    call.view.close();
    call.memory.dispose(foreign);
    call.in.sequence_data = nullptr;
    return PF_Err_INTERNAL_STRUCT_DAMAGED;
}

void setDownSequence(const SequenceCall& call) {
    if (!call.view.empty()) {
        if (call.view.isLive())
            delete call.view.record()->app;
        else if (call.view.isFlat() && stashHolds(call.memory, call.view.bytes()))
            dropStash(call.memory);
        Handle handle = call.view.handle();
        call.view.close();
        call.memory.dispose(handle);
    }
    call.out.sequence_data = nullptr;
    call.in.sequence_data = nullptr;
}

}  // namespace orvin
