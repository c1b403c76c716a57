#include "vector/font/TrueTypeCharMap.h"

#include <algorithm>
#include <array>

#include "vector/font/FontDiagnostics.h"
#include "vector/font/SfntCursor.h"

namespace orvin {
namespace {

constexpr std::array<const char*, 7> kFormatNames = {
    "Apple Standard",     "INVALID (1)", "High-byte", "INVALID (3)",
    "Microsoft Standard", "INVALID (5)", "Trimmed"};
constexpr int kCodes = 256;

std::vector<std::uint16_t> readWords(SfntCursor& in, std::size_t count) {
    std::vector<std::uint16_t> words(count);
    for (std::uint16_t& word : words)
        word = in.u16();
    return words;
}

// `length` is that of the whole subtable; its header isn't taken off, so the list runs past the
// last code. Who looks codes up never sees the surplus.
std::vector<int> readByteMap(SfntCursor& in, std::uint16_t length) {
    std::vector<int> map(length);
    for (int& glyph : map)
        glyph = in.u8();
    return map;
}

// Only single bytes, those with key 0, name a glyph.
std::vector<int> readHighByteMap(SfntCursor& in, std::uint16_t length, int numGlyphs) {
    std::vector<std::uint16_t> keys = readWords(in, kCodes);
    for (std::uint16_t& key : keys)
        key = static_cast<std::uint16_t>(key >> 3);
    const int subheaders = *std::max_element(keys.begin(), keys.end());
    in.skip((static_cast<std::uint64_t>(subheaders) + 1) * 8);
    const std::vector<std::uint16_t> glyphs =
        readWords(in, static_cast<std::uint16_t>(length - subheaders * 8 - 518) / 2);
    std::vector<int> map(static_cast<std::size_t>(std::max(numGlyphs, 0)), 0);
    for (std::size_t i = 0; i < std::min({map.size(), keys.size(), glyphs.size()}); ++i)
        if (keys[i] == 0) map[i] = glyphs[i];
    return map;
}

std::vector<int> readSegmentMap(SfntCursor& in, std::uint16_t length) {
    const int segments = in.u16() / 2;
    const auto count = static_cast<std::size_t>(segments);
    in.skip(6);
    const std::vector<std::uint16_t> ends = readWords(in, count);
    in.skip(2);
    const std::vector<std::uint16_t> starts = readWords(in, count);
    const std::vector<std::uint16_t> deltas = readWords(in, count);
    const std::vector<std::uint16_t> rangeOffsets = readWords(in, count);
    const std::vector<std::uint16_t> glyphs =
        readWords(in, static_cast<std::size_t>(std::max(0, (length - (segments * 8 + 16)) / 2)));

    std::vector<int> map;
    std::size_t j = 0;
    for (int code = 0; code < kCodes; ++code) {
        j = 0;
        while (j < count && code > ends[j])
            ++j;
        if (j == count || ends[j] == 65535) break;
        int glyph = 0;
        if (starts[j] <= code) {
            if (rangeOffsets[j] == 0) {
                glyph = static_cast<std::int16_t>(deltas[j] + code);
            } else {
                const int entry =
                    rangeOffsets[j] / 2 - starts[j] - segments + code + static_cast<int>(j);
                const auto at = static_cast<std::size_t>(entry);
                if (entry >= 0 && at < glyphs.size() && glyphs[at] != 0)
                    glyph = static_cast<std::int16_t>(deltas[j] + glyphs[at]);
            }
        }
        map.push_back(glyph);
    }
    return map;
}

std::vector<int> readTrimmedMap(SfntCursor& in) {
    std::vector<int> map(in.u16(), 0);
    const std::size_t entries = in.u16();
    for (std::size_t i = 0; i < entries; ++i)
        map.push_back(in.u16());
    return map;
}

}  // namespace

std::vector<int> readCharMap(std::span<const std::uint8_t> file, std::uint64_t table,
                             int numGlyphs) {
    SfntCursor header(file, table + 2);
    if (header.u16() == 0) return {};
    header.skip(4);  // platform and encoding
    SfntCursor in(file, table + header.u32());
    const std::uint16_t format = in.u16();
    const std::uint16_t length = in.u16();
    in.skip(2);  // language
    if (format >= kFormatNames.size()) {
        fontReport("  format %d: Unknown Character Map!\n", format);
        return {};
    }
    fontReport("  format %d: %s Character Map\n", format, kFormatNames[format]);
    switch (format) {
        case 0:
            return readByteMap(in, length);
        case 2:
            return readHighByteMap(in, length, numGlyphs);
        case 4:
            return readSegmentMap(in, length);
        case 6:
            return readTrimmedMap(in);
        default:
            return {};
    }
}

}  // namespace orvin
