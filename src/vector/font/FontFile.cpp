#include "vector/font/FontFile.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>

#include "toolkit/Ascii.h"
#include "vector/font/TrueTypeReader.h"
#include "vector/font/Type1Reader.h"

namespace orvin {
namespace {

std::string extensionOf(std::string_view path) {
    const std::size_t dot = path.rfind('.');
    return dot == std::string_view::npos ? std::string() : lowerCase(path.substr(dot));
}

}  // namespace

FontFile::FontFile(std::string_view path, int charsetParam) : charset(charsetParam) {
    const std::string extension = extensionOf(path);
    std::unique_ptr<FontReader> reader;
    if (extension == ".pfa" || extension == ".pfb") {
        kind = Kind::kType1;
        reader = std::make_unique<Type1Reader>(*this);
    } else if (extension == ".ttf") {
        kind = Kind::kTrueType;
        reader = std::make_unique<TrueTypeReader>(*this);
    } else {
        std::fprintf(stderr, "Unrecognized font file type: %s\n", std::string(path).c_str());
        return;
    }
    reader->read(path);
}

const FontGlyph* FontFile::glyphForCode(int code) const {
    const auto found = std::find_if(table.glyphs.begin(), table.glyphs.end(),
                                    [code](const FontGlyph& glyph) { return glyph.code == code; });
    return found != table.glyphs.end() ? &*found : nullptr;
}

void FontFile::fontError(std::string_view message) {
    if (errorText_.empty()) errorText_ = message;
    fontReport("%s\n", std::string(message).c_str());
}

bool isFontFileName(std::string_view path) {
    const std::string extension = extensionOf(path);
    return extension == ".ttf" || extension == ".pfa" || extension == ".pfb";
}

std::string_view fontStatusText(bool error) {
    static constexpr std::array<std::string_view, 2> kTexts = {"Font parsed successfully.",
                                                               "Error parsing font file."};
    return kTexts[error ? 1 : 0];
}

}  // namespace orvin
