#include "vector/font/TrueTypeReader.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "vector/font/FontBytes.h"
#include "vector/font/SfntCursor.h"
#include "vector/font/TrueTypeCharMap.h"
#include "vector/font/TrueTypeOutlines.h"

namespace orvin {
namespace {

// The four characters of a tag as one number, the first highest.
constexpr std::uint32_t tag(const char (&text)[5]) {
    std::uint32_t value = 0;
    for (int i = 0; i < 4; ++i)
        value = value << 8 | static_cast<unsigned char>(text[i]);
    return value;
}

struct TableEntry {
    std::uint32_t tag = 0;
    std::uint32_t offset = 0;
    std::uint32_t length = 0;
};

// One run over one file.
class Parse {
  public:
    Parse(FontFile& font, std::span<const std::uint8_t> file) : font_(font), file_(file) {}

    void run() {
        readDirectory();
        struct Step {
            std::uint32_t tag;
            void (Parse::*read)(const TableEntry& table);
        };
        static constexpr std::array<Step, 8> kSteps = {{{tag("name"), &Parse::readName},
                                                        {tag("maxp"), &Parse::readMaxp},
                                                        {tag("cmap"), &Parse::readCmap},
                                                        {tag("head"), &Parse::readHead},
                                                        {tag("hhea"), &Parse::readHhea},
                                                        {tag("loca"), &Parse::readLoca},
                                                        {tag("glyf"), &Parse::readGlyf},
                                                        {tag("hmtx"), &Parse::readHmtx}}};
        for (const Step& step : kSteps) {
            const auto found =
                std::find_if(directory_.begin(), directory_.end(),
                             [&step](const TableEntry& entry) { return entry.tag == step.tag; });
            if (found == directory_.end()) return;
            fontReport("Parsing '%s' table:\n", text(step.tag).data());
            (this->*step.read)(*found);
        }
        if (!charMap_.empty()) mapToCodes();
    }

  private:
    static std::array<char, 5> text(std::uint32_t tag) {
        return {static_cast<char>(tag >> 24), static_cast<char>(tag >> 16 & 255),
                static_cast<char>(tag >> 8 & 255), static_cast<char>(tag & 255), '\0'};
    }

    SfntCursor at(std::uint64_t offset) const { return {file_, offset}; }

    void readDirectory() {
        SfntCursor in = at(0);
        fontReport("sfnt version: %08x\n", in.u32());
        fontReport("Building font table directory:\n");
        const int count = in.u16();
        in.skip(6);
        for (int i = 0; i < count && !in.atEnd(); ++i) {
            TableEntry entry;
            entry.tag = in.u32();
            in.skip(4);  // checksum
            entry.offset = in.u32();
            entry.length = in.u32();
            fontReport("  %s @ %d, len: %d\n", text(entry.tag).data(),
                       static_cast<int>(entry.offset), static_cast<int>(entry.length));
            directory_.push_back(entry);
        }
    }

    void readName(const TableEntry& table) {
        constexpr int kMicrosoft = 3;
        constexpr int kMacintosh = 1;
        constexpr int kFullName = 4;
        constexpr int kAmericanEnglish = 1033;
        SfntCursor in = at(table.offset);
        in.skip(2);
        const int count = in.u16();
        const std::uint64_t strings = std::uint64_t{table.offset} + in.u16();
        for (int i = 0; i < count && !in.atEnd(); ++i) {
            const int platform = in.u16();
            in.skip(2);  // encoding
            const int language = in.u16();
            const int nameID = in.u16();
            const int length = in.u16();
            const std::uint64_t offset = strings + in.u16();
            if (platform > kMicrosoft || length > 2048) continue;
            const bool wanted = nameID == kFullName && ((platform == kMacintosh && language == 0) ||
                                                        language == kAmericanEnglish);
            if (!wanted && !fontDiagnostics()) continue;
            const std::string value = readString(offset, length, platform == kMicrosoft);
            fontReport("  %s\n", value.c_str());
            if (wanted) font_.name = value;
        }
    }

    // Of two-byte characters the low byte. A NUL ends it.
    std::string readString(std::uint64_t offset, int length, bool twoBytes) const {
        std::string value;
        SfntCursor in = at(offset);
        for (int i = 0; i < (twoBytes ? length / 2 : length); ++i) {
            const auto c = static_cast<char>(twoBytes ? in.u16() & 255 : in.u8());
            if (c == '\0') break;
            value += c;
        }
        return value;
    }

    void readMaxp(const TableEntry& table) {
        SfntCursor in = at(std::uint64_t{table.offset} + 4);
        numGlyphs_ = in.u16();
        fontReport("  num glyphs: %d\n", numGlyphs_);
        fontReport("  max points: %hu\n", in.u16());
        fontReport("  max contours: %hu\n", in.u16());
        fontReport("  max composite points: %hu\n", in.u16());
        fontReport("  max composite contours: %hu\n", in.u16());
    }

    void readCmap(const TableEntry& table) {
        charMap_ = readCharMap(file_, table.offset, numGlyphs_);
    }

    void readHead(const TableEntry& table) {
        SfntCursor in = at(std::uint64_t{table.offset} + 18);
        fontReport("  units per em: %hd\n", in.i16());
        in.skip(16);  // dates
        fontReport("  x min: %hd\n", static_cast<short>(font_.xMin = in.i16()));
        fontReport("  y min: %hd\n", static_cast<short>(font_.yMin = in.i16()));
        fontReport("  x max: %hd\n", static_cast<short>(font_.xMax = in.i16()));
        fontReport("  y max: %hd\n", static_cast<short>(font_.yMax = in.i16()));
        in.skip(6);
        const int format = in.i16();
        longOffsets_ = format != 0;
        fontReport("  location table format: %d\n", format);
    }

    void readHhea(const TableEntry& table) {
        SfntCursor in = at(std::uint64_t{table.offset} + 4);
        fontReport("  ascender:  %hd\n", in.i16());
        fontReport("  descender: %hd\n", in.i16());
        fontReport("  line gap:  %hd\n", in.i16());
        fontReport("  advance width max: %hd\n", in.i16());
        fontReport("  min left sidebearing:  %hd\n", in.i16());
        fontReport("  min right sidebearing: %hd\n", in.i16());
        fontReport("  max x extent: %hd\n", in.i16());
        in.skip(16);
        numHMetrics_ = in.u16();
        fontReport("  num horizontal metrics: %d\n", numHMetrics_);
    }

    void readLoca(const TableEntry& table) {
        fontReport("  num location table entries: %d (should equal: %d + 1)\n",
                   static_cast<int>(table.length / (longOffsets_ ? 4 : 2)), numGlyphs_);
        SfntCursor in = at(table.offset);
        const auto next = [&]() -> std::uint32_t {
            return longOffsets_ ? in.u32() : in.u16() * 2u;
        };
        std::uint32_t start = next();
        locations_.reserve(static_cast<std::size_t>(numGlyphs_));
        for (int i = 0; i < numGlyphs_; ++i) {
            const std::uint32_t end = next();
            locations_.push_back({start, std::int64_t{end} - std::int64_t{start}});
            start = end;
        }
    }

    void readGlyf(const TableEntry& table) {
        TrueTypeOutlines(file_, font_.table).read(table.offset, locations_);
    }

    void readHmtx(const TableEntry& table) {
        SfntCursor in = at(table.offset);
        int advance = 0;
        int i = 0;
        for (FontGlyph& glyph : font_.table.glyphs) {
            const bool own = i < numHMetrics_;
            if (own) advance = in.u16();
            glyph.advanceWidth = advance;
            glyph.leftSideBearing = in.i16();
            fontReport("%s %3d: width: %5d, lsb: %5d\n", own ? " " : "-", i, advance,
                       glyph.leftSideBearing);
            ++i;
        }
    }

    // From here on glyphs go by character code; what no code names is gone.
    void mapToCodes() {
        std::vector<FontGlyph>& glyphs = font_.table.glyphs;
        if (glyphs.empty()) return;
        std::vector<FontGlyph> byCode;
        byCode.reserve(charMap_.size());
        for (const int number : charMap_) {
            const bool known = number >= 0 && static_cast<std::size_t>(number) < glyphs.size();
            byCode.push_back(glyphs[known ? static_cast<std::size_t>(number) : 0]);
            byCode.back().code = static_cast<int>(byCode.size()) - 1;
        }
        glyphs = std::move(byCode);
    }

    FontFile& font_;
    std::span<const std::uint8_t> file_;
    std::vector<TableEntry> directory_;
    std::vector<int> charMap_;  // glyph number by code
    std::vector<GlyphLocation> locations_;
    int numGlyphs_ = 0;
    int numHMetrics_ = 0;
    bool longOffsets_ = true;
};

}  // namespace

void TrueTypeReader::read(std::string_view path) {
    if (font_.glyphCount() > 0) return;
    const std::optional<std::vector<std::uint8_t>> bytes = readFontBytes(path);
    if (bytes) parse(*bytes);
}

void TrueTypeReader::parse(std::span<const std::uint8_t> file) {
    if (font_.glyphCount() > 0) return;
    Parse(font_, file).run();
}

}  // namespace orvin
