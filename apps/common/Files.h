// Whole files in and out, and numbered file names.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orvin::apps {

inline constexpr unsigned kMaxPictureSide = 30000;  // the host's largest world

/// Throws Failure that names the file when it can't be read (or holds more than 2 GB).
std::vector<std::uint8_t> readFile(const std::filesystem::path& path);
std::string readText(const std::filesystem::path& path);

/// Makes the folders above `path`; where that fails, writing there will tell.
void makeFolderOf(const std::filesystem::path& path);

/// Makes the folders above `path`, writes a temporary file beside it and renames it over the old
/// one. Throws Failure; the old file is then as it was.
void writeFile(const std::filesystem::path& path, std::span<const std::uint8_t> bytes);
void writeText(const std::filesystem::path& path, std::string_view text);

/// A file name with the frame's number in it: "frame-%04d.png" (also "%d"; "%%" is a percent sign).
class FramePattern {
  public:
    /// Throws UsageError unless there is at most one "%d" or "%0Nd" and nothing else after a
    /// percent sign.
    explicit FramePattern(std::string_view pattern);
    bool numbered() const { return numbered_; }
    std::filesystem::path path(int frame) const;

  private:
    std::string before_;
    std::string after_;
    int digits_ = 0;
    bool numbered_ = false;
};

}  // namespace orvin::apps
