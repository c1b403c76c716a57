// The bytes of a font file.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace orvin {

/// The whole file, or its first 512 MB. Nothing where it can't be opened.
std::optional<std::vector<std::uint8_t>> readFontBytes(std::string_view path);

}  // namespace orvin
