// SuiteSet: the host's suites, each fetched when it is first asked for and given back at the end.
// Build one on the stack where suites are needed.
#pragma once

#include <array>
#include <cstdint>

#include "host/abi/BasicSuite.h"
#include "host/abi/Suites.h"

namespace orvin {

class SuiteSet {
  public:
    static constexpr int kSlots = 37;

    // Slots, counted from 1, of the suites that are called.
    static constexpr int kLayerSlot = 3;
    static constexpr int kStreamSlot = 4;
    static constexpr int kLightSlot = 11;
    static constexpr int kPFInterfaceSlot = 24;
    static constexpr int kParamUtilsSlot = 27;

    /// `basic` is in_data->pica_basicP; null makes every suite one that the host refuses.
    explicit SuiteSet(const SPBasicSuite* basic) : basic_(basic) {}
    ~SuiteSet();
    SuiteSet(const SuiteSet&) = delete;
    SuiteSet& operator=(const SuiteSet&) = delete;

    /// The table in `slot` (1 to kSlots). A suite that the host refuses sets gLastError to 516 and
    /// throws that number as a plain long.
    const void* suite(int slot);

    const AEGP_LayerSuite1& layer() { return as<AEGP_LayerSuite1>(kLayerSlot); }
    const AEGP_StreamSuite1& stream() { return as<AEGP_StreamSuite1>(kStreamSlot); }
    const AEGP_LightSuite1& light() { return as<AEGP_LightSuite1>(kLightSlot); }
    const AEGP_PFInterfaceSuite1& pfInterface() {
        return as<AEGP_PFInterfaceSuite1>(kPFInterfaceSlot);
    }
    /// Hosts number this suite 1, 2 or 3; whichever is there.
    const PF_ParamUtilsSuite& paramUtils() { return as<PF_ParamUtilsSuite>(kParamUtilsSlot); }

  private:
    template <typename Table>
    const Table& as(int slot) {
        return *static_cast<const Table*>(suite(slot));
    }

    const SPBasicSuite* basic_;
    std::array<const void*, kSlots> tables_{};
};

}  // namespace orvin
