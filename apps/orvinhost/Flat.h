// Flat sequence data: what a host project stores of an instance.
//
// Layout: "FLAT"; the handle's size when it was flattened (32 bits, little-endian); the project's
// text, ended by the line "**EndOfStream**" and a zero byte.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orvin::stand_in {

/// A project file's text as flat data. The end mark is added where the text has none.
std::vector<std::uint8_t> flatFromProject(std::string_view text);

/// Whether `bytes` begins like flat data.
bool looksFlat(std::span<const std::uint8_t> bytes);

}  // namespace orvin::stand_in
