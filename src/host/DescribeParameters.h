// The parameters as the host gets them.
#pragma once

#include <vector>

#include "host/abi/InData.h"

namespace orvin {

/// All that is added on a host of that interface version, in order, with default values; entry i
/// stands at index i + 1 of the host's array, behind the input layer.
std::vector<PF_ParamDef> describeParameters(PF_SpecVersion host);

}  // namespace orvin
