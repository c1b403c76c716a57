// The text's block of the stream.
#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <iterator>

#include "scene/SceneStream.h"
#include "vector/ProfileT.h"

namespace orvin {

namespace {

constexpr int kKerningPerRow = 10;
constexpr std::array<std::string_view, 3> kJustifyWords = {"left", "center", "right"};

constexpr int kAttachedHead = 1;
constexpr int kAttachedTail = 2;
constexpr int kClosed = 4;

struct Escape {
    char character;
    std::string_view code;
};
constexpr Escape kEscapes[] = {{'\r', "\\r"}, {'\n', "\\n"}, {'\t', "\\t"}};

std::string escaped(std::string_view text) {
    std::string result;
    for (const char c : text) {
        const auto* const escape = std::find_if(std::begin(kEscapes), std::end(kEscapes),
                                                [c](const Escape& e) { return e.character == c; });
        if (escape != std::end(kEscapes))
            result += escape->code;
        else
            result += c;
    }
    return result;
}

std::string unescaped(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const auto* const escape =
            std::find_if(std::begin(kEscapes), std::end(kEscapes),
                         [text](const Escape& e) { return text.starts_with(e.code); });
        const bool found = escape != std::end(kEscapes);
        result += found ? escape->character : text.front();
        text.remove_prefix(found ? escape->code.size() : 1);
    }
    return result;
}

Result writeCurve(SceneStream& stream, const Curve2& curve) {
    const int flags = (curve.attachedHead ? kAttachedHead : 0) |
                      (curve.attachedTail ? kAttachedTail : 0) | (curve.closed ? kClosed : 0);
    stream.line().clear().text("c ").whole(flags).character(' ').whole(
        static_cast<int>(curve.type()));
    stream.line().character(' ').whole(static_cast<long long>(curve.points().size()));
    if (stream.putLine() != kSuccess) return kFailure;
    long long index = 0;
    for (const Vec2 p : curve.points()) {
        stream.line().clear().text("p ").whole(index++).character(' ').number(p.x);
        stream.line().character(' ').number(p.y);
        if (stream.putLine() != kSuccess) return kFailure;
    }
    return kSuccess;
}

Result writeGlyph(SceneStream& stream, long long code, const TextFont::Glyph& glyph) {
    stream.line().clear().text("ip ").whole(code);
    stream.line().character(' ').number(static_cast<double>(glyph.advance));
    stream.line().character(' ').number(static_cast<double>(glyph.bearing));
    stream.line().character(' ').whole(static_cast<long long>(glyph.outline.paths.size()));
    if (stream.putLine() != kSuccess) return kFailure;
    for (const CompositeCurve2& path : glyph.outline.paths) {
        stream.line().clear().text("cc ").whole(path.closed ? 1 : 0);
        stream.line().character(' ').whole(static_cast<long long>(path.curves.size()));
        if (stream.putLine() != kSuccess) return kFailure;
        for (const Curve2& curve : path.curves)
            if (writeCurve(stream, curve) != kSuccess) return kFailure;
    }
    return kSuccess;
}

}  // namespace

Result ProfileT::writeBody(SceneStream& stream) {
    if (const Result result = OutlineProfile::writeBody(stream); result != kSuccess) return result;
    if (hasText_) {
        const std::string line = escaped(text_);
        auto more = static_cast<std::size_t>(std::count(line.begin(), line.end(), '"'));
        if (line.ends_with('\\')) ++more;  // a blank may come behind it
        if (line.size() + more > kLongestText) return kFailure;
        if (stream.putText("text", line) != kSuccess) return kFailure;
    }
    // The key of the length has never been the one that is read, so kernings don't come back.
    // Files keep it.
    if (!kerning_.empty() &&
        stream.putInt("kerningLen", static_cast<long long>(kerning_.size())) != kSuccess)
        return kFailure;
    for (std::size_t row = 0; row < kerning_.size(); row += kKerningPerRow) {
        const std::size_t count = std::min<std::size_t>(kKerningPerRow, kerning_.size() - row);
        stream.line().clear().text("kerning ").whole(static_cast<long long>(row));
        stream.line().character(' ').whole(static_cast<long long>(count));
        for (std::size_t i = row; i < row + count; ++i)
            stream.line().character(' ').number(kerning_[i]);
        if (stream.putLine() != kSuccess) return kFailure;
    }
    const auto justify = static_cast<std::size_t>(justify_);
    if (justify < kJustifyWords.size() &&
        stream.putText("justify", kJustifyWords[justify]) != kSuccess)
        return kFailure;
    const double parms[] = {leading_, letterSpacing_};
    if (stream.putDoubles("textParms", parms) != kSuccess) return kFailure;
    return font_.hasName ? writeFont(stream) : kSuccess;
}

Result ProfileT::writeFont(SceneStream& stream) {
    stream.line().clear().text("fontName ");
    if (font_.name.empty() || font_.name.find_first_of("\" \t\r\n#") != std::string::npos)
        stream.line().quoted(font_.name);
    else
        stream.line().text(font_.name);
    stream.line().character(' ').whole(font_.param);
    if (stream.putLine() != kSuccess) return kFailure;
    // The low and the high half of one number's bits, and not two numbers: see
    // TextFont::measures().
    const auto bits = std::bit_cast<std::uint64_t>(static_cast<double>(font_.height));
    stream.line().clear().text("fontParms ").whole(static_cast<std::int32_t>(bits));
    stream.line().character(' ').whole(static_cast<std::int32_t>(bits >> 32));
    if (stream.putLine() != kSuccess) return kFailure;
    if (stream.putDouble("fontPSize", pointSize_) != kSuccess) return kFailure;
    for (unsigned code = 0; code < TextFont::kCodes; ++code)
        if (writeGlyph(stream, code, font_.glyph(static_cast<unsigned char>(code))) != kSuccess)
            return kFailure;
    return stream.putDouble("eMWidth", font_.emWidth);
}

struct ProfileT::Commands : CommandRegistry {
    static ProfileT& profile(Persistent& self) { return static_cast<ProfileT&>(self); }

    static Result readText(SceneStream& stream, Persistent& self) {
        std::string text;
        if (stream.readText(text, kLineCapacity) != kSuccess) return kFailure;
        profile(self).setText(unescaped(text));
        return kSuccess;
    }
    static Result readKerningLength(SceneStream& stream, Persistent& self) {
        int length = 0;
        if (stream.readInt(length) != kSuccess || length < 0) return kFailure;
        profile(self).setKerningLength(static_cast<std::size_t>(length));
        return kSuccess;
    }
    static Result readKerning(SceneStream& stream, Persistent& self) {
        int first = 0;
        int count = 0;
        if (stream.readInt(first) != kSuccess || stream.readInt(count) != kSuccess) return kFailure;
        for (int i = 0; i < count; ++i) {
            double value = 0.0;
            if (stream.readDouble(value) != kSuccess) return kFailure;
            const long long at = static_cast<long long>(first) + i;
            if (at >= 0) profile(self).setKerningAt(static_cast<std::size_t>(at), value);
        }
        return kSuccess;
    }
    static Result readJustify(SceneStream& stream, Persistent& self) {
        std::string word;
        if (stream.readText(word) != kSuccess) return kFailure;
        const auto* const found = std::find(kJustifyWords.begin(), kJustifyWords.end(), word);
        if (found == kJustifyWords.end()) return kFailure;
        profile(self).setJustify(static_cast<Justify>(found - kJustifyWords.begin()));
        return kSuccess;
    }
    static Result readTextParms(SceneStream& stream, Persistent& self) {
        Vec2 parms;
        if (stream.readVector2(parms) != kSuccess) return kFailure;
        profile(self).setTextParms(parms.x, parms.y);
        return kSuccess;
    }
    static Result readFontName(SceneStream& stream, Persistent& self) {
        TextFont& font = profile(self).font_;
        if (stream.readText(font.name) != kSuccess) return kFailure;
        font.hasName = true;
        return stream.readInt(font.param);
    }
    static Result readFontParms(SceneStream& stream, Persistent& self) {
        float height = 0.0f;
        float width = 0.0f;
        if (stream.readFloat(height) != kSuccess || stream.readFloat(width) != kSuccess)
            return kFailure;
        profile(self).setFontParms(height, width);
        return kSuccess;
    }
    static Result readPointSize(SceneStream& stream, Persistent& self) {
        return stream.readDouble(profile(self).pointSize_);
    }
    static Result readEmWidth(SceneStream& stream, Persistent& self) {
        return stream.readDouble(profile(self).font_.emWidth);
    }

    static Result readGlyph(SceneStream& stream, Persistent& self) {
        int code = 0;
        float advance = 0.0f;
        float bearing = 0.0f;
        int paths = 0;
        if (stream.readInt(code) != kSuccess || stream.readFloat(advance) != kSuccess ||
            stream.readFloat(bearing) != kSuccess || stream.readInt(paths) != kSuccess)
            return kFailure;
        ProfileT& text = profile(self);
        text.touch();
        text.currentGlyph_ = nullptr;
        if (code < 0 || code >= static_cast<int>(TextFont::kCodes)) return kSuccess;
        TextFont::Glyph& glyph = text.font_.glyph(static_cast<unsigned char>(code));
        glyph.outline.clear();  // that of the default font
        glyph.advance = advance;
        glyph.bearing = bearing;
        text.currentGlyph_ = &glyph;
        return kSuccess;
    }
    static Result readPath(SceneStream& stream, Persistent& self) {
        int closed = 0;
        int curves = 0;
        if (stream.readInt(closed) != kSuccess || stream.readInt(curves) != kSuccess)
            return kFailure;
        if (TextFont::Glyph* const glyph = profile(self).currentGlyph_)
            glyph->outline.paths.emplace_back().closed = closed == 1;
        return kSuccess;
    }
    static Result readCurve(SceneStream& stream, Persistent& self) {
        int flags = 0;
        int kind = 0;
        int points = 0;
        if (stream.readInt(flags) != kSuccess || stream.readInt(kind) != kSuccess ||
            stream.readInt(points) != kSuccess || (kind != 0 && kind != 2 && kind != 4))
            return kFailure;
        ProfileT& text = profile(self);
        text.pointsDue_ = points > 0 ? static_cast<std::size_t>(points) : 0;
        if (text.currentGlyph_ == nullptr || text.currentGlyph_->outline.paths.empty())
            return kSuccess;
        Curve2& curve = text.currentGlyph_->outline.paths.back().curves.emplace_back();
        curve.attachedHead = (flags & kAttachedHead) != 0;
        curve.attachedTail = (flags & kAttachedTail) != 0;
        curve.closed = (flags & kClosed) != 0;
        curve.setType(static_cast<Curve2::Type>(kind));
        return kSuccess;
    }
    /// Points come in order; so a file gets no more memory than it has lines.
    static Result readPoint(SceneStream& stream, Persistent& self) {
        int index = 0;
        Vec2 p;
        if (stream.readInt(index) != kSuccess || stream.readVector2(p) != kSuccess) return kFailure;
        ProfileT& text = profile(self);
        if (text.currentGlyph_ == nullptr || text.currentGlyph_->outline.paths.empty() ||
            text.currentGlyph_->outline.paths.back().curves.empty())
            return kSuccess;
        Curve2& curve = text.currentGlyph_->outline.paths.back().curves.back();
        const auto at = static_cast<std::size_t>(index);
        if (index < 0 || at > curve.points().size() || at >= text.pointsDue_) return kFailure;
        if (at == curve.points().size())
            curve.addPoint(p);
        else
            curve.setPoint(at, p);
        if (at + 1 == text.pointsDue_) curve.computeLength();
        return kSuccess;
    }

    Commands() : CommandRegistry(16) {
        registerMemberCommands(*this);
        lookupOrInsert("text", readText);
        lookupOrInsert("kerningLength", readKerningLength);
        lookupOrInsert("kerning", readKerning);
        lookupOrInsert("eMWidth", readEmWidth);
        lookupOrInsert("fontName", readFontName);
        lookupOrInsert("justify", readJustify);
        lookupOrInsert("textParms", readTextParms);
        lookupOrInsert("fontParms", readFontParms);
        lookupOrInsert("fontPSize", readPointSize);
        lookupOrInsert("ip", readGlyph);
        lookupOrInsert("cc", readPath);
        lookupOrInsert("c", readCurve);
        lookupOrInsert("p", readPoint);
    }
};

const CommandRegistry& ProfileT::commandRegistry() const {
    static const Commands commands;
    return commands;
}

}  // namespace orvin
