// Builds TrueType fonts of a few glyphs, right or wrong, for tests and for the seeds of fuzzing.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tests/vector/GlyphLoops.h"
#include "vector/font/TrueTypeReader.h"

namespace orvin::test {

inline std::string be16(int v) {
    return {static_cast<char>(v >> 8 & 255), static_cast<char>(v & 255)};
}
inline std::string be32(std::uint32_t v) {
    return be16(static_cast<int>(v >> 16)) + be16(static_cast<int>(v & 65535));
}
inline std::string words(const std::vector<int>& values) {
    std::string bytes;
    for (const int v : values)
        bytes += be16(v);
    return bytes;
}

/// A simple glyph of loops of points, all coordinates as words. The box is left at 0.
inline std::string simpleGlyph(const std::vector<std::vector<GlyphPoint>>& loops) {
    std::string glyph = be16(static_cast<int>(loops.size())) + words({0, 0, 0, 0});
    std::string flags;
    std::string xs;
    std::string ys;
    int last = -1;
    GlyphPoint before{0, 0};
    for (const auto& loop : loops) {
        last += static_cast<int>(loop.size());
        glyph += be16(last);
        for (const GlyphPoint& p : loop) {
            flags += static_cast<char>(p.onCurve);
            xs += be16(p.x - before.x);
            ys += be16(p.y - before.y);
            before = p;
        }
    }
    return glyph + be16(0) + flags + xs + ys;
}

/// A square with its lower left corner at (x, y).
inline std::string squareGlyph(int x, int y, int side) {
    return simpleGlyph({{{x, y}, {x, y + side}, {x + side, y + side}, {x + side, y}}});
}

/// A composite glyph of records: flags, glyph number, and the bytes of arguments and matrix.
struct ComponentRecord {
    int flags;
    int glyph;
    std::string rest;
};
inline std::string compositeGlyph(const std::vector<ComponentRecord>& records) {
    std::string glyph = be16(-1) + words({0, 0, 0, 0});
    for (std::size_t i = 0; i < records.size(); ++i) {
        const int more = i + 1 < records.size() ? 32 : 0;
        glyph += words({records[i].flags | more, records[i].glyph}) + records[i].rest;
    }
    return glyph;
}

/// A cmap of one subtable.
inline std::string cmapOf(const std::string& subtable) {
    return words({0, 1, 3, 1}) + be32(12) + subtable;
}
inline std::string trimmedMap(int firstCode, const std::vector<int>& glyphs) {
    const int count = static_cast<int>(glyphs.size());
    return cmapOf(words({6, 10 + 2 * count, 0, firstCode, count}) + words(glyphs));
}

struct TinyTrueType {
    std::vector<std::string> glyphs;
    std::string cmap = cmapOf(words({12, 0, 0}));           // unhandled: glyphs keep their numbers
    std::vector<std::pair<int, int>> metrics = {{500, 0}};  // advance, left side bearing
    std::vector<int> box = {-10, -200, 990, 800};           // x min, y min, x max, y max
    std::string name = words({0, 1, 18, 1, 0, 0, 4, 4, 0}) + "Tiny";
    bool longOffsets = false;
    std::map<std::string, std::string> tables;  // replace those made; an empty text takes one out

    std::string build() const {
        const int count = static_cast<int>(glyphs.size());
        std::string loca;
        std::string glyf;
        const auto offset = [&] {
            return longOffsets ? be32(static_cast<std::uint32_t>(glyf.size()))
                               : be16(static_cast<int>(glyf.size() / 2));
        };
        for (const std::string& glyph : glyphs) {
            loca += offset();
            glyf += glyph;
            if (glyf.size() % 2 != 0) glyf += '\0';
        }
        loca += offset();
        std::string hmtx;
        for (const auto& [advance, bearing] : metrics)
            hmtx += words({advance, bearing});
        for (std::size_t i = metrics.size(); i < glyphs.size(); ++i)
            hmtx += be16(7);
        std::map<std::string, std::string> all = {
            {"name", name},
            {"maxp", be32(65536) + be16(count) + words({0, 0, 0, 0})},
            {"cmap", cmap},
            {"head", std::string(18, '\0') + be16(1000) + std::string(16, '\0') + words(box) +
                         words({0, 0, 0, longOffsets ? 1 : 0, 0})},
            {"hhea", std::string(34, '\0') + be16(static_cast<int>(metrics.size()))},
            {"loca", loca},
            {"glyf", glyf},
            {"hmtx", hmtx}};
        for (const auto& [tag, bytes] : tables)
            all[tag] = bytes;
        std::erase_if(all, [](const auto& table) { return table.second.empty(); });

        std::string directory = be32(65536) + be16(static_cast<int>(all.size())) + words({0, 0, 0});
        std::string body;
        for (const auto& [tag, bytes] : all) {
            const auto at = static_cast<std::uint32_t>(12 + 16 * all.size() + body.size());
            directory += tag + be32(0) + be32(at) + be32(static_cast<std::uint32_t>(bytes.size()));
            body += bytes;
        }
        return directory + body;
    }
};

inline FontFile parsed(const std::string& bytes) {
    return parsedBy<TrueTypeReader>(FontFile::Kind::kTrueType, bytes);
}

}  // namespace orvin::test
