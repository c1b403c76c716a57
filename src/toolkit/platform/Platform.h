// What the operating system answers. Implementations: posix/ and win32/.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace orvin::platform {

/// Folder of the module or program that this code is linked into; where the data folders lie.
std::filesystem::path moduleFolder();

/// Folders where fonts are installed, the user's own first; some may not exist, all may have
/// folders of their own.
std::vector<std::filesystem::path> fontFolders();

/// Free physical memory in bytes; what the renderer may plan with.
std::uint64_t freePhysicalMemory();

/// Hints that a large block, not written yet, will be used all over: with larger pages its first
/// touch and scattered reads cost less. May do nothing.
void preferLargePages(void* memory, std::size_t bytes);

/// Opens a new, empty temporary file for reading and writing ("w+b"). It is removed from the disk
/// when it is closed, or when the process dies, at the latest. Null on failure.
std::FILE* openTemporaryFile();

/// The path that a text of a file, or of the host, names. On Windows the text is UTF-8 or, where it
/// can't be, of the system's code page; elsewhere its bytes are the path. Never fails on odd bytes.
std::filesystem::path pathFromText(std::string_view text);

/// The text that names a path in files, messages and logs, such that pathFromText() gives the path
/// again: UTF-8 on Windows, elsewhere the path's bytes. Never fails; what is no character on
/// Windows (half a surrogate pair) turns into U+FFFD.
std::string textFromPath(const std::filesystem::path& path);

/// Opens a file whose name may hold any characters (fopen with a wide name on Windows).
std::FILE* openFile(const std::filesystem::path& path, const char* mode);

/// 64-bit seek from the start; 0 on success.
int seek(std::FILE* file, std::uint64_t offset);

/// Puts `from` in the place of `to` in one step: a reader sees the old or the new file, never half
/// of one. Flushed to the disk first. False on failure, with both files as they were and errno set.
bool replaceFile(const std::filesystem::path& from, const std::filesystem::path& to);

}  // namespace orvin::platform
