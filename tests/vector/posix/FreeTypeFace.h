// FreeType as the judge of the font readers.
#pragma once

#include <ft2build.h>
#include FT_FREETYPE_H

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <type_traits>

#include "tests/vector/GlyphLoops.h"

namespace orvin::test {

inline std::string contentOf(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

struct FreeTypeDone {
    void operator()(FT_Face face) const { FT_Done_Face(face); }
    void operator()(FT_Library library) const { FT_Done_FreeType(library); }
};
using Face = std::unique_ptr<std::remove_pointer_t<FT_Face>, FreeTypeDone>;
using Library = std::unique_ptr<std::remove_pointer_t<FT_Library>, FreeTypeDone>;

inline Library openLibrary() {
    FT_Library library = nullptr;
    FT_Init_FreeType(&library);
    return Library(library);
}

/// Null for a file that isn't understood. `bytes` must outlive the face.
inline Face openFace(const Library& library, const std::string& bytes) {
    FT_Face face = nullptr;
    FT_New_Memory_Face(library.get(), reinterpret_cast<const FT_Byte*>(bytes.data()),
                       static_cast<FT_Long>(bytes.size()), 0, &face);
    return Face(face);
}

inline Loops loopsOfOutline(const FT_Outline& outline) {
    Loops loops;
    int start = 0;
    for (int c = 0; c < outline.n_contours; ++c) {
        auto& loop = loops.emplace_back();
        for (int i = start; i <= outline.contours[c]; ++i)
            loop.push_back({static_cast<std::int32_t>(outline.points[i].x),
                            static_cast<std::int32_t>(outline.points[i].y),
                            static_cast<std::uint8_t>(outline.tags[i] & 1)});
        start = outline.contours[c] + 1;
    }
    return loops;
}

}  // namespace orvin::test
