// Where an image file went that isn't where the scene says.
#pragma once

#include <optional>
#include <string>

namespace orvin {

/// The folder in which the user found the last image; at most 259 bytes, empty at first.
extern std::string gLastImageFolder;

/// Looks for the file name of `path` (either kind of slash, or a colon, divides folders) in
/// gLastImageFolder, then in the folders "Tarnwick Environments" and "Tarnwick Maps" beside the
/// module, then asks the user. Nothing when the user cancels.
std::optional<std::string> locateImage(const std::string& path);

}  // namespace orvin
