// A whole file in memory, for readers that check their input before they believe it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

namespace orvin {

/// The bytes of a regular file; none where it can't be opened or read to its end. Throws
/// std::bad_alloc where memory is short.
std::optional<std::vector<std::uint8_t>> readWholeFile(const std::filesystem::path& path);

}  // namespace orvin
