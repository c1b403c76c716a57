// KEYS.json: values and key frames for the effect's parameters.
#pragma once

#include "orvinhost/ParamList.h"

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace orvin::stand_in {

/// Sets the parameters that `file` names; returns their indices, in rising order. Values outside a
/// parameter's valid range, keys on one that can't be animated, unknown and ambiguous names throw
/// Failure. Layer parameters take the name of one of `layers`, or null.
std::vector<int> applyKeys(const nlohmann::json& keys, const std::string& file, ParamList& params,
                           const std::map<std::string, std::shared_ptr<ImageSource>>& layers);

}  // namespace orvin::stand_in
