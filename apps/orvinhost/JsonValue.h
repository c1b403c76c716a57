// Reading values and key frames out of JSON files, with errors that say where.
#pragma once

#include "orvinhost/Track.h"

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>

namespace orvin::stand_in {

/// Throws Failure with the file's name and the place of the fault.
nlohmann::json readJson(const std::filesystem::path& path);

/// A number, a truth value, or an array of `count` numbers. Throws Failure that begins with
/// `what`.
Values jsonValues(const nlohmann::json& json, std::size_t count, const std::string& what);

/// Such a value, or key frames: [[frame, value], ...]. Throws Failure.
Track jsonTrack(const nlohmann::json& json, std::size_t count, const std::string& what);

/// Whether `json` is a list of key frames rather than a value.
bool isKeyList(const nlohmann::json& json);

}  // namespace orvin::stand_in
