// Which glyph of a Type 1 font stands for which character code.
#pragma once

#include <span>
#include <string_view>
#include <vector>

namespace orvin {

struct EncodingEntry {
    int code = 0;           // 0 to 255
    std::string_view name;  // of the glyph, without the slash
};

/// What fonts with "StandardEncoding" get: the layout of Windows, so that typed codes match, not
/// Adobe's. A few codes stand twice, under two names.
std::span<const EncodingEntry> standardEncoding();

/// What fonts with "ISOLatin1Encoding" get: codes 32 to 126 alone.
std::span<const EncodingEntry> isoLatin1Encoding();

/// The accent or letter that a code of Adobe's StandardEncoding names in accented glyphs; empty for
/// codes that aren't known there.
std::string_view accentName(int code);

/// An encoding, searched by name. The names must outlive it.
class EncodingIndex {
  public:
    explicit EncodingIndex(std::span<const EncodingEntry> encoding);

    /// The first entry of that name; null for none.
    const EncodingEntry* find(std::string_view name) const;

  private:
    std::vector<EncodingEntry> byName_;
};

}  // namespace orvin
