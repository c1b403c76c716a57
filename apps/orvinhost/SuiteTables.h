// The function tables behind the suites that this host serves.
#pragma once

#include "host/abi/Drawbot.h"
#include "host/abi/Suites.h"

namespace orvin::stand_in {

const AEGP_PFInterfaceSuite1& pfInterfaceSuite();
const AEGP_LayerSuite1& layerSuite();
const AEGP_StreamSuite1& streamSuite();
const AEGP_LightSuite1& lightSuite();

/// PF Param Utils Suite: the first slot works, the others (more than any version has) don't.
const void* paramUtilsSuite();
/// PF Handle Suite, of either width of its sizes.
const void* handleSuite();

const void* customUiSuite();
const void* drawbotDrawSuite();
const void* drawbotSupplierSuite();
const void* drawbotSurfaceSuite();
const void* appSuite6();
const void* appSuite7();  // today's version 1 has InvalidateRect in the same slot

}  // namespace orvin::stand_in
