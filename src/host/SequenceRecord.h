// SequenceRecord: what the host keeps for one instance of the effect while it runs, in a handle of
// the host's. It never leaves the process: a saved project holds the flat form (see Flatten.h).
#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

#include "host/abi/Types.h"

namespace orvin {

class OrvinApp;

inline constexpr std::string_view kLiveTag = "LIVE";
inline constexpr std::string_view kFlatTag = "FLAT";
inline constexpr std::size_t kTagSize = 4;

struct SequenceRecord {
    char tag[kTagSize] = {'L', 'I', 'V', 'E'};
    std::uint8_t paramsApplied = 0;  // set by the first render, once the Use Comp boxes are applied
    OrvinApp* app = nullptr;         // owned
    std::int32_t pendingParam = 0;   // parameter that the user changed, 0 for none
    std::int32_t lastPoseTime = 0;   // current_time of the last pose

    // The panel's bookkeeping between events.
    void* panelWindow = nullptr;      // native window that the panel stands in
    void* capturedControl = nullptr;  // PanelControl that holds the mouse during a drag
    std::int32_t uiState[4] = {-1, -1, -1, -1};
    std::int32_t lastClickTime = 0;  // seconds
    std::int16_t lastClickV = -1;
    std::int16_t lastClickH = -1;

    // A project can hold any bytes, the tag of a live record among them. Only this process knows
    // the address that a record of its own has here.
    const void* mark = liveMark();

    // The flat data that this record was flattened to; its own while it is stashed.
    std::uint64_t flatSize = 0;
    std::uint64_t flatHash = 0;

    static const void* liveMark();
};

}  // namespace orvin
