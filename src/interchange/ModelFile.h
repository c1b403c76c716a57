// What the readers and writers of all formats do alike with their files.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "toolkit/Result.h"

namespace orvin {

/// The bytes of a model file; none, with "Cannot open '...'." on standard error, where it can't be
/// read.
std::optional<std::vector<std::uint8_t>> readModelFile(const std::filesystem::path& path);

/// Opens a file beside `path`, lets `fill` write it and puts it in its place. -1 where one of them
/// fails, with a line on standard error if that was the file's fault; what was at `path` is then as
/// it was. `writer` names the writer in that line.
Result writeModelFile(const std::filesystem::path& path, std::string_view writer,
                      const std::function<Result(std::FILE*)>& fill);

}  // namespace orvin
