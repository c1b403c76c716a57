// What the file being read or written says about the data inside it.
#pragma once

namespace orvin {

/// The file being read was written on the other platform: thumbnails have four bytes a pixel, and
/// image data the other byte order. Only true while such a project is read.
extern bool gFileFromOtherPlatform;

/// Thumbnails are written as hexadecimal text rather than as bytes.
extern bool gSaveThumbnailsAscii;

/// Sets a flag for the time of a scope.
class FlagScope {
  public:
    FlagScope(bool& flag, bool value) : flag_(flag), before_(flag) { flag_ = value; }
    ~FlagScope() { flag_ = before_; }
    FlagScope(const FlagScope&) = delete;
    FlagScope& operator=(const FlagScope&) = delete;

  private:
    bool& flag_;
    bool before_;
};

}  // namespace orvin
