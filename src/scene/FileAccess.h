// FileAccess: opens and closes the files of projects and libraries.
//
// A file written with kReplace takes shape under a temporary name beside its target and takes the
// target's place in commit(): until then, and for good where anything fails, the old file stays as
// it was. Targets that aren't regular files (devices, pipes) are written in place.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>

#include "toolkit/Result.h"

namespace orvin {

class FileAccess {
  public:
    enum class Mode {
        kRead,     // read only
        kAppend,   // write only, at the end
        kReplace,  // create, in the place of what is there
        kUpdate,   // read and write; created if it isn't there
    };

    FileAccess() = default;
    ~FileAccess();
    FileAccess(const FileAccess&) = delete;
    FileAccess& operator=(const FileAccess&) = delete;

    /// -1 where it can't be opened; failure() says why.
    Result open(const std::filesystem::path& path, Mode mode);

    std::FILE* file() const { return file_; }

    /// Flushes, closes and, with kReplace, puts the file in its target's place. -1 where any of it
    /// or any write before failed; with kReplace the target is then as it was.
    Result commit();

    /// Closes; a kReplace file that wasn't committed is discarded.
    void close();

    /// The next line, without its end: a line stops at LF or CR (CR LF is one end). Longer lines
    /// are cut to `capacity` bytes. -3 at the end of the file.
    Result readLine(std::string& line, std::size_t capacity = 4096);

    // Big-endian values; -1 where the file ends before.
    Result readBig16(std::uint16_t& value);
    Result readBig32(std::uint32_t& value);
    Result writeBig16(std::uint16_t value);
    Result writeBig32(std::uint32_t value);

    const std::string& failure() const { return failure_; }

  private:
    Result fail(std::string_view what);
    Result openReplacement();

    std::FILE* file_ = nullptr;
    std::filesystem::path path_;       // that the caller named, links resolved
    std::filesystem::path temporary_;  // the file being written instead; empty where there is none
    std::string failure_;
};

}  // namespace orvin
