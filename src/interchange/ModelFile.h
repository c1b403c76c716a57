// What the readers and writers of all formats do alike with their files.
#pragma once

#include <cstdio>
#include <filesystem>
#include <functional>
#include <string_view>

#include "toolkit/Result.h"

namespace orvin {

/// "Cannot open '...'." on standard error.
void reportUnopened(const std::filesystem::path& path);

/// Opens a file beside `path`, lets `fill` write it and puts it in its place. -1 where one of them
/// fails, with a line on standard error if that was the file's fault; what was at `path` is then as
/// it was. `writer` names the writer in that line.
Result writeModelFile(const std::filesystem::path& path, std::string_view writer,
                      const std::function<Result(std::FILE*)>& fill);

}  // namespace orvin
