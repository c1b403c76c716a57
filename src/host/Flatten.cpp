#include "host/Flatten.h"

#include <cstring>

#include "host/HostHandles.h"
#include "host/OrvinApp.h"
#include "host/Stash.h"

namespace orvin {

std::uint32_t flatStoredSize(std::span<const std::uint8_t> flat) {
    std::uint32_t size = 0;
    if (flat.size() >= kFlatHeaderSize) std::memcpy(&size, flat.data() + kTagSize, sizeof size);
    return size;
}

PF_Err flattenSequence(const SequenceCall& call) {
    if (!call.view.isLive()) return PF_Err_INTERNAL_STRUCT_DAMAGED;
    SequenceRecord& record = *call.view.record();
    OrvinApp& app = *record.app;

    OwnedHandle flat(call.memory, call.memory.allocate(kFlatFirstSize));
    if (!flat) return PF_Err_OUT_OF_MEMORY;

    // A flattened scene never holds what the comp drove.
    if (SceneX* scene = app.scene()) {
        if (app.useCompCamera) app.setUpPushed().restoreCamera(*scene);
        if (app.useCompLights) app.setUpPushed().restoreLights(*scene);
    }
    if (app.writeFlat(call.memory, flat.ref(), kFlatHeaderSize) != kSuccess)
        return PF_Err_INTERNAL_STRUCT_DAMAGED;

    {
        const HandleLock locked(call.memory, flat.get());
        if (locked.data() == nullptr) return PF_Err_OUT_OF_MEMORY;
        auto* bytes = static_cast<std::uint8_t*>(locked.data());
        const std::size_t size = call.memory.size(flat.get());
        const auto stored = static_cast<std::uint32_t>(size);  // of 64-bit sizes the low half
        std::memcpy(bytes, kFlatTag.data(), kTagSize);
        std::memcpy(bytes + kTagSize, &stored, sizeof stored);
        stashLiveHandle(call.memory, call.view.handle(), record, {bytes, size});
    }
    call.out.sequence_data = flat.get();
    call.view.open(flat.release());
    return PF_Err_NONE;
}

}  // namespace orvin
