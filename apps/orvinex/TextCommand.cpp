// text: a project of a word or a few lines, set in a font.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "geometry/ObjectX.h"
#include "orvinex/Authoring.h"
#include "orvinex/Commands.h"
#include "orvinex/StyleOptions.h"
#include "toolkit/platform/Platform.h"
#include "vector/ProfileT.h"
#include "vector/font/FontFile.h"
#include "vector/text/FindFont.h"

namespace orvin::orvinex {

namespace {

/// "\n" becomes a line end, and two backslashes one.
std::string withLineEnds(const std::string& text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char next = i + 1 < text.size() ? text[i + 1] : '\0';
        const bool escape = text[i] == '\\' && (next == 'n' || next == '\\');
        result += !escape ? text[i] : next == 'n' ? '\n' : '\\';
        if (escape) ++i;
    }
    return result;
}

/// The characters of UTF-8 text; none where it is something else.
std::optional<std::vector<std::uint32_t>> charactersOf(const std::string& text) {
    std::vector<std::uint32_t> characters;
    for (std::size_t i = 0; i < text.size();) {
        const auto lead = static_cast<unsigned char>(text[i++]);
        const int more = lead < 0x80             ? 0
                         : (lead & 0xe0) == 0xc0 ? 1
                         : (lead & 0xf0) == 0xe0 ? 2
                         : (lead & 0xf8) == 0xf0 ? 3
                                                 : -1;
        if (more < 0) return std::nullopt;
        std::uint32_t character = more == 0 ? lead : lead & (0x3fU >> more);
        for (int k = 0; k < more; ++k, ++i) {
            if (i >= text.size() || (text[i] & 0xc0) != 0x80) return std::nullopt;
            character = character << 6 | (static_cast<unsigned char>(text[i]) & 0x3fU);
        }
        characters.push_back(character);
    }
    return characters;
}

std::string hex(std::uint32_t number) {
    std::string digits;
    for (int shift = 20; shift >= 0; shift -= 4)
        if (shift < 16 || number >> shift != 0) digits += "0123456789ABCDEF"[number >> shift & 15U];
    return digits;
}

/// A text has 8-bit codes, as the font maps them: Latin 1 in nearly all. Bytes that are no UTF-8
/// are taken for codes.
std::string codesOf(const std::string& text) {
    const auto characters = charactersOf(text);
    if (!characters) return text;
    std::string codes;
    for (const std::uint32_t character : *characters) {
        if (character > 255)
            throw apps::Failure("a text holds characters up to U+00FF; character " +
                                std::to_string(codes.size() + 1) + " is U+" + hex(character));
        codes += static_cast<char>(character);
    }
    return codes;
}

std::string quoted(const std::string& text) {
    return "'" + text + "'";
}

/// The font that the command line names, or one of the system's.
std::string fontPath(const apps::ParsedOptions& options) {
    if (!options.has("--font")) {
        const std::filesystem::path found = findDefaultFont();
        if (found.empty())
            throw apps::Failure("no font is installed where fonts usually are; --font names one");
        return platform::textFromPath(found);
    }
    const std::string name = options.value("--font");
    if (!isFontFileName(name))
        throw apps::Failure(quoted(name) +
                            " is no font that can be read: its name must end in .ttf, .pfa or "
                            ".pfb");
    std::error_code error;
    const std::filesystem::path path = platform::pathFromText(name);
    if (std::filesystem::exists(path, error)) return name;
    const bool plainName = !path.has_parent_path();
    const std::filesystem::path installed =
        plainName ? findInstalledFont(name) : std::filesystem::path();
    if (installed.empty())
        throw apps::Failure("there is no file " + quoted(name) +
                            (plainName ? ", and no installed font of that name" : ""));
    return platform::textFromPath(installed);
}

/// Throws where the file gives no outlines, with the reason; `verbose` reports all that is in it.
void chooseFont(ProfileT& text, const std::string& path, bool verbose) {
    std::FILE* const file = platform::openFile(platform::pathFromText(path), "rb");
    if (file == nullptr) throw apps::Failure("can't open " + quoted(path));
    std::fclose(file);
    {
        setFontDiagnostics(verbose);
        const FontFile font(path, -1);
        fontReport("%s\n", std::string(fontStatusText(font.hasError())).c_str());
        if (font.hasError()) throw apps::Failure(quoted(path) + ": " + font.errorText());
    }
    text.setFont(path, -1);
    if (text.font().outlineCount() == 0)
        throw apps::Failure(
            "found no outlines for codes 0 to 255 in " + quoted(path) +
            ": it is damaged, maps its letters elsewhere (as symbol fonts do), or is a Type 1 "
            "font whose encrypted part is neither hexadecimal nor in segments");
}

std::string listed(const std::string& codes) {
    std::string list;
    for (const char c : codes)
        list += (list.empty() ? "" : ", ") + std::to_string(static_cast<unsigned char>(c));
    return list;
}

void tellOddLetters(const ProfileT& text) {
    std::string missing;
    std::string narrow;
    std::string astray;
    bool any = false;
    for (const char c : text.text()) {
        if (c == '\n' || c == '\r') continue;
        const TextFont::Glyph& glyph = text.font().glyph(static_cast<unsigned char>(c));
        const bool drawn = !glyph.outline.paths.empty();
        const bool wide = glyph.advance > 0.0F;
        any = any || (drawn && wide);
        std::string& kind = wide ? astray : drawn ? narrow : missing;
        const bool odd = !wide || glyph.isAstray();
        if (odd && kind.find(c) == std::string::npos) kind += c;
    }
    if (!any)
        throw apps::Failure(narrow.empty()
                                ? "nothing of the text shows: it has no letter that the font has"
                                : "nothing of the text shows: the font gives its letters no width");
    if (!missing.empty())
        std::fprintf(stderr, "orvinex: the font has nothing for code %s\n",
                     listed(missing).c_str());
    if (!narrow.empty())
        std::fprintf(stderr,
                     "orvinex: the font gives the letter of code %s no width: it doesn't show\n",
                     listed(narrow).c_str());
    if (!astray.empty())
        std::fprintf(stderr,
                     "orvinex: the letter of code %s lies far outside: the font mirrors a part of "
                     "it, and such parts go astray\n",
                     listed(astray).c_str());
}

Justify justifyOption(const apps::ParsedOptions& options) {
    const std::string word = options.value("--justify", "center");
    if (word == "left") return Justify::kLeft;
    if (word == "center") return Justify::kCenter;
    if (word == "right") return Justify::kRight;
    throw apps::UsageError("--justify takes left, center or right");
}

double bounded(const apps::ParsedOptions& options, const char* name, double usual, double min,
               double max, const char* complaint) {
    if (!options.has(name)) return usual;
    const double value = apps::realOption(options.value(name), name, -1e9, 1e9);
    if (!(value >= min && value <= max)) throw apps::UsageError(complaint);
    return value;
}

/// Projects write ends of lines and tabs with a backslash, and no backslash otherwise.
void refuseLostBackslash(const std::string& text) {
    for (const char* const lost : {"\\n", "\\r", "\\t"})
        if (text.find(lost) != std::string::npos)
            throw apps::Failure("a project can't hold a text with a backslash before n, r or t");
}

void setText(ProfileT& text, const apps::ParsedOptions& options) {
    const std::string wanted = withLineEnds(options.positional()[0]);
    refuseLostBackslash(wanted);
    text.setText(codesOf(wanted));
    text.setJustify(justifyOption(options));
    text.setTextParms(bounded(options, "--leading", text.leading(), 0.0, 20.0,
                              "Text leading must be between 0 and 2000%."),
                      bounded(options, "--spacing", text.letterSpacing(), -1.0, 10.0,
                              "Letter spacing must be between -100% and 1000%."));
    text.setPointSize(apps::realOption(options.value("--size", "100"), "--size", 0.01, 1e6));
}

std::string titleOf(const std::string& text) {
    constexpr std::size_t kLongest = 40;
    const std::size_t start = text.find_first_not_of("\r\n \t");
    if (start == std::string::npos) return "Text";
    return text.substr(start, std::min(text.find_first_of("\r\n", start) - start, kLongest));
}

}  // namespace

int textCommand(const apps::ParsedOptions& options) {
    Authoring authoring(options);
    SceneX& scene = authoring.scene();
    auto& text = scene.make<ProfileT>(scene.uniqueName("Text"));
    setText(text, options);
    const std::string font = fontPath(options);
    chooseFont(text, font, options.has(apps::verboseOption().name));
    if (!options.has("--font") && !options.has("--quiet"))
        std::fprintf(stderr, "orvinex: font %s\n", font.c_str());
    tellOddLetters(text);

    auto& object = scene.make<ObjectX>(scene.uniqueName(titleOf(text.text())));
    auto& style = scene.make<ObjectXStyle>(authoring.usualStyle(),
                                           scene.uniqueName(object.name() + " Style"));
    applyStyleOptions(options, style);
    object.setStyle(style.name());
    object.setFace(text.name());
    try {
        authoring.finish();
    } catch (const apps::Failure&) {
        if (text.text().size() > ProfileT::kLongestText / 2)
            throw apps::Failure("the text may be too long: a project holds " +
                                std::to_string(ProfileT::kLongestText) + " characters");
        throw;
    }
    return apps::kExitDone;
}

}  // namespace orvin::orvinex
