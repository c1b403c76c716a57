#include "vector/font/Type1Reader.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "vector/font/FontBytes.h"
#include "vector/font/Type1Charstring.h"
#include "vector/font/Type1Cipher.h"
#include "vector/font/Type1Encoding.h"
#include "vector/font/Type1Scanner.h"

namespace orvin {

namespace {

constexpr int kCodes = 256;
constexpr auto kNoGlyph = static_cast<std::size_t>(-1);
constexpr std::uint32_t kNoLimit = 2147483647;

constexpr int kPfbMark = 128;
constexpr int kPfbAscii = 1;
constexpr int kPfbBinary = 2;

enum class Format { kUnknown, kText, kPfb };
enum class Segment { kAscii, kBinary, kEnd };

int hexDigit(std::uint8_t c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

std::string_view withoutSlash(std::string_view name) {
    return name.starts_with('/') ? name.substr(1) : name;
}

/// One run over one file.
class Parse {
  public:
    Parse(FontFile& font, std::span<const std::uint8_t> file)
        : font_(font), file_(file), charstrings_(font) {
        firstOfCode_.fill(kNoGlyph);
    }

    void run() {
        std::size_t before = 0;
        do {
            before = at_;
            readBlock();
        } while (at_ > before && at_ < file_.size() && !font_.hasError() &&
                 segment_ != Segment::kEnd);
    }

  private:
    void readBlock();
    bool readHeader();
    bool readNameLine();
    bool readClearText();
    void readEncoding(Type1Scanner& text, bool& sawEexec);
    bool readVector(Type1Scanner& text, int count);
    std::vector<std::uint8_t> decryptPrivate();
    void readPrivate();
    void readSubroutines(Type1Scanner& text);
    void readCharstrings(Type1Scanner& text);
    std::span<const std::uint8_t> readCharstring(Type1Scanner& text);
    void addGlyph(const EncodingEntry& entry, std::span<const std::uint8_t> code);
    void assembleAccents();

    int byteAt(std::size_t at) const { return at < file_.size() ? file_[at] : -1; }
    std::uint32_t littleEndian(std::size_t at) const;
    std::span<const std::uint8_t> segmentBytes() const {
        return file_.subspan(at_, std::max(segmentEnd_, at_) - at_);
    }

    FontFile& font_;
    std::span<const std::uint8_t> file_;
    std::size_t at_ = 0;
    Format format_ = Format::kUnknown;
    Segment segment_ = Segment::kAscii;
    std::uint32_t segmentLength_ = kNoLimit;
    std::size_t segmentEnd_ = 0;

    std::vector<EncodingEntry> encoding_{standardEncoding().begin(), standardEncoding().end()};
    std::optional<EncodingIndex> encodingIndex_;  // empty while the encoding is newer
    int lenIV_ = 4;
    Type1Charstrings charstrings_;
    std::array<std::size_t, kCodes> firstOfCode_{};
    std::unordered_map<std::string_view, std::size_t> firstOfName_;  // names of the encoding
    std::vector<std::uint8_t> plain_;                                // of the charstring at hand
    bool charstringsNext_ = false;  // "/CharStrings" was met where a subroutine was looked for
};

// ---- segments

std::uint32_t Parse::littleEndian(std::size_t at) const {
    std::uint32_t value = 0;
    for (unsigned i = 0; i < 4; ++i)
        value |= static_cast<std::uint32_t>(std::max(byteAt(at + i), 0)) << 8U * i;
    return value;
}

bool Parse::readHeader() {
    const int first = byteAt(at_);
    if (first == '%') {
        if (format_ == Format::kUnknown) format_ = Format::kText;
        segment_ = Segment::kAscii;
    } else if (first == kPfbMark) {
        format_ = Format::kPfb;
        const int type = byteAt(at_ + 1);
        segment_ = type == kPfbAscii    ? Segment::kAscii
                   : type == kPfbBinary ? Segment::kBinary
                                        : Segment::kEnd;
        if (segment_ == Segment::kEnd) return false;
        segmentLength_ = littleEndian(at_ + 2);
        at_ = std::min(at_ + 6, file_.size());
    } else {
        segment_ = Segment::kEnd;
        if (font_.glyphCount() > 0) return false;
        fontReport("Unexpected first byte: '%c' (0x%02x).\n", first & 255,
                   static_cast<unsigned>(first & 255));
        font_.fontError("Invalid Type 1 font (2).");
        return false;
    }
    segmentEnd_ = std::min<std::uint64_t>(std::uint64_t{at_} + segmentLength_, file_.size());
    const std::string rule(61, '-');
    fontReport("%s\n  TYPE 1 SEGMENT HEADER: %s: %s, length: %d\n%s\n", rule.c_str(),
               format_ == Format::kPfb ? "PC Format" : "Basic Postscript",
               segment_ == Segment::kAscii ? "ASCII" : "Binary", static_cast<int>(segmentLength_),
               rule.c_str());
    return true;
}

void Parse::readBlock() {
    if (!readHeader()) return;
    if (segment_ == Segment::kAscii) {
        if (font_.glyphCount() == 0 && !readNameLine()) return;
        if (!readClearText()) return;
    }
    if (at_ >= file_.size()) {
        if (font_.glyphCount() > 0) return;
        fontReport("Unable to locate \"eexec\" section.\n");
        font_.fontError("Unable to locate font outline data.");
        return;
    }
    readPrivate();
}

// ---- clear text

bool Parse::readNameLine() {
    Type1Scanner text(segmentBytes());
    const std::string_view line = text.line();
    if (!line.starts_with("%!")) {
        font_.fontError("Invalid Type 1 font (3).");
        return false;
    }
    at_ += text.position();
    Type1Scanner words({reinterpret_cast<const std::uint8_t*>(line.data()), line.size()});
    words.next();
    font_.name = words.next();
    return true;
}

/// True where the private part follows.
bool Parse::readClearText() {
    Type1Scanner text(segmentBytes());
    bool sawEexec = false;
    for (std::string_view token; !sawEexec && text.next(token);) {
        if (token == "/Encoding") {
            readEncoding(text, sawEexec);
        } else {
            sawEexec = token == "eexec";
        }
    }
    at_ += text.position();
    if (format_ != Format::kPfb) return true;
    at_ = segmentEnd_;
    return at_ >= file_.size() || readHeader();
}

void Parse::readEncoding(Type1Scanner& text, bool& sawEexec) {
    encodingIndex_.reset();
    const auto use = [this](std::span<const EncodingEntry> table, FontFile::Encoding kind) {
        encoding_.assign(table.begin(), table.end());
        font_.encodingKind = kind;
    };
    const std::string_view token = text.next();
    if (token == "StandardEncoding") {
        use(standardEncoding(), FontFile::Encoding::kStandard);
    } else if (token == "ISOLatin1Encoding") {
        use(isoLatin1Encoding(), FontFile::Encoding::kIsoLatin1);
    } else {
        int count = 0;
        readWhole(token, count);
        font_.encodingKind = FontFile::Encoding::kCustom;
        sawEexec = readVector(text, count);
    }
}

/// True where it ended at "eexec".
bool Parse::readVector(Type1Scanner& text, int count) {
    std::array<std::string_view, kCodes> names{};
    bool any = false;
    bool sawEexec = false;
    for (int i = 0; i < count && !sawEexec; ++i) {
        std::string_view token;
        while (text.next(token) && token != "dup" && token != "eexec") {
        }
        sawEexec = token == "eexec";
        if (token != "dup") break;
        std::string_view code = text.next();
        // Foundries write "dup 65/A put" as well.
        const std::size_t slash = code.find('/');
        const std::string_view name =
            withoutSlash(slash != std::string_view::npos ? code.substr(slash) : text.next());
        int number = 0;
        readWhole(code, number);
        any = any || !name.empty();
        if (number >= 0 && number < kCodes) names[static_cast<std::size_t>(number)] = name;
    }
    if (!any) return sawEexec;
    encoding_.clear();
    for (std::size_t code = 0; code < names.size(); ++code)
        if (!names[code].empty()) encoding_.push_back({static_cast<int>(code), names[code]});
    return sawEexec;
}

// ---- private part

/// The rest of the segment, without the four bytes at its front. Binary segments that stand one
/// behind the other are one text.
std::vector<std::uint8_t> Parse::decryptPrivate() {
    constexpr std::size_t kLead = 4;
    Type1Cipher cipher(Type1Cipher::kEexecKey);
    std::vector<std::uint8_t> plain;
    if (segment_ == Segment::kAscii) {
        plain.reserve((segmentEnd_ - at_) / 2);
        int high = -1;
        for (; at_ < segmentEnd_; ++at_) {
            const int digit = hexDigit(file_[at_]);
            if (digit < 0) continue;
            if (high < 0) {
                high = digit;
                continue;
            }
            plain.push_back(cipher.decrypt(static_cast<std::uint8_t>(high << 4 | digit)));
            high = -1;
        }
    } else {
        for (;;) {
            for (; at_ < segmentEnd_; ++at_)
                plain.push_back(cipher.decrypt(file_[at_]));
            if (byteAt(at_) != kPfbMark || byteAt(at_ + 1) != kPfbBinary || !readHeader()) break;
        }
    }
    plain.erase(plain.begin(),
                plain.begin() + static_cast<std::ptrdiff_t>(std::min(plain.size(), kLead)));
    return plain;
}

void Parse::readPrivate() {
    lenIV_ = 4;
    const std::vector<std::uint8_t> plain = decryptPrivate();
    Type1Scanner text(plain);
    for (std::string_view token; text.next(token);) {
        if (token == "/lenIV") {
            lenIV_ = text.nextWhole();
        } else if (token == "/Subrs") {
            readSubroutines(text);
            if (charstringsNext_) readCharstrings(text);
        } else if (token == "/CharStrings") {
            readCharstrings(text);
        }
    }
}

/// Length, the word that stands for RD, and the bytes; decrypted, without their random front.
std::span<const std::uint8_t> Parse::readCharstring(Type1Scanner& text) {
    const int length = text.nextWhole();
    text.next();
    Type1Cipher cipher(Type1Cipher::kCharstringKey);
    const std::span<const std::uint8_t> bytes = text.take(length);
    plain_.resize(bytes.size());
    std::transform(bytes.begin(), bytes.end(), plain_.begin(),
                   [&](std::uint8_t c) { return cipher.decrypt(c); });
    const auto lead = static_cast<std::size_t>(std::max(lenIV_, 0));
    return std::span<const std::uint8_t>(plain_).subspan(std::min(lead, plain_.size()));
}

void Parse::readSubroutines(Type1Scanner& text) {
    charstringsNext_ = false;
    const int count = text.nextWhole();
    for (int i = 0; i < count; ++i) {
        std::string_view token;
        while (text.next(token) && token != "dup" && token != "/CharStrings") {
        }
        charstringsNext_ = token == "/CharStrings";
        if (token != "dup") return;
        const int number = text.nextWhole();
        const std::span<const std::uint8_t> code = readCharstring(text);
        if (fontDiagnostics()) {
            fontReport("  subr %d:", number);
            Type1Charstrings::print(code);
            fontReport("\n");
        }
        charstrings_.addSubroutine(code);
    }
}

void Parse::readCharstrings(Type1Scanner& text) {
    charstringsNext_ = false;
    if (!encodingIndex_) encodingIndex_.emplace(encoding_);
    const int count = text.nextWhole();
    for (int i = 0; i < 3; ++i)
        text.next();  // dict dup begin
    for (int i = 0; i < count; ++i) {
        // Some fonts end an entry with two words.
        std::string_view token;
        while (text.next(token) && !token.starts_with('/') && token != "end") {
        }
        if (!token.starts_with('/')) break;
        const std::string_view name = withoutSlash(token);
        const std::span<const std::uint8_t> code = readCharstring(text);
        if (const EncodingEntry* const entry = encodingIndex_->find(name)) {
            addGlyph(*entry, code);
        } else if (fontDiagnostics()) {
            fontReport("## Unable to find '%s' in the encoding vector. ## \n",
                       std::string(name).c_str());
        }
        text.next();  // ND
    }
    assembleAccents();
}

void Parse::addGlyph(const EncodingEntry& entry, std::span<const std::uint8_t> code) {
    std::vector<FontGlyph>& glyphs = font_.table.glyphs;
    FontGlyph glyph;
    glyph.code = entry.code;
    glyph.glyphName = entry.name;
    if (fontDiagnostics()) fontReport("  %s (%d):", glyph.glyphName.c_str(), glyph.code);
    charstrings_.run(code, glyph);
    fontReport("\n");
    std::size_t& first = firstOfCode_[static_cast<std::size_t>(glyph.code)];
    if (first == kNoGlyph) first = glyphs.size();
    firstOfName_.try_emplace(entry.name, glyphs.size());
    glyphs.push_back(std::move(glyph));
}

void Parse::assembleAccents() {
    std::vector<FontGlyph>& glyphs = font_.table.glyphs;
    const auto glyphOfCode = [&](std::int32_t code) {
        const std::size_t glyph =
            code >= 0 && code < kCodes ? firstOfCode_[static_cast<std::size_t>(code)] : kNoGlyph;
        return glyph != kNoGlyph ? &glyphs[glyph] : nullptr;
    };
    for (const SeacRecord& record : charstrings_.accented()) {
        FontGlyph* const composed = glyphOfCode(record.code);
        if (composed == nullptr) continue;
        const FontGlyph* const base = glyphOfCode(record.bchar);
        if (base != nullptr && !font_.table.addCopies(*composed, *base, 0, 0)) break;
        const std::string_view accent = accentName(record.achar);
        const auto found = accent.empty() ? firstOfName_.end() : firstOfName_.find(accent);
        if (found != firstOfName_.end() &&
            !font_.table.addCopies(*composed, glyphs[found->second], record.adx, record.ady))
            break;
    }
    charstrings_.accented().clear();
}

}  // namespace

void Type1Reader::read(std::string_view path) {
    const std::optional<std::vector<std::uint8_t>> bytes = readFontBytes(path);
    if (bytes) {
        parse(*bytes);
    } else {
        font_.fontError("Unable to open file for reading.");
    }
}

void Type1Reader::parse(std::span<const std::uint8_t> file) {
    Parse(font_, file).run();
}

}  // namespace orvin
