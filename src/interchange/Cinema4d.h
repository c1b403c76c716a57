// Cinema 4D files are known when they are seen; their content isn't published, and not guessed at.
#pragma once

#include <filesystem>

namespace orvin {

/// True for a file whose head bears one of the format's tags, "MC50" and "DOK5".
bool isCinema4dFile(const std::filesystem::path& path);

}  // namespace orvin
