#include "vector/ProfileT.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace orvin {
namespace {

// Points, and what takes memory without any: files may hold paths and curves that are empty.
std::size_t partCount(const InputProfile2& outline) {
    std::size_t count = outline.paths.size();
    for (const CompositeCurve2& path : outline.paths) {
        count += path.curves.size();
        for (const Curve2& curve : path.curves)
            count += curve.points().size();
    }
    return count;
}

}  // namespace

ProfileT::ProfileT(SceneX& scene, std::string_view name) : OutlineProfile(scene, name) {
    setFont(kDefaultFont, -1);
}

ProfileT::ProfileT(SceneX& scene, const ProfileT& source, std::string_view name)
    : OutlineProfile(scene, source, name),
      justify_(source.justify_),
      leading_(source.leading_),
      letterSpacing_(source.letterSpacing_),
      hasText_(source.hasText_),
      text_(source.text_),
      kerning_(source.kerning_),
      pointSize_(source.pointSize_),
      font_(source.font_) {}

Result ProfileT::setFont(std::string_view path, int param) {
    if (font_.load(path, param) != kSuccess) return kFailure;
    touch();
    return kSuccess;
}

void ProfileT::setText(std::string_view text) {
    text_ = text.substr(0, text.find('\0'));
    hasText_ = true;
    touch();
}

void ProfileT::setJustify(Justify justify) {
    justify_ = justify;
    touch();
}

void ProfileT::setTextParms(double leading, double letterSpacing) {
    leading_ = leading;
    letterSpacing_ = letterSpacing;
    touch();
}

void ProfileT::setFontParms(float height, float width) {
    font_.height = height;
    font_.width = width;
}

void ProfileT::setKerningLength(std::size_t length) {
    kerning_.assign(std::min(length, kMostKerning), 0.0);
}

void ProfileT::setKerningAt(std::size_t i, double em) {
    if (i < kerning_.size()) kerning_[i] = em;
}

void ProfileT::touch() {
    OutlineProfile::touch();
    laidOut_ = false;
}

// ---- layout

// Of a visible character; 0 for others.
double ProfileT::advanceOf(char c) const {
    const float advance = font_.glyph(static_cast<unsigned char>(c)).advance;
    return advance > 0.0f ? static_cast<double>(advance) * letterScale_ : 0.0;
}

// The kerning before a letter counts here if the letter before it has any, and behind a letter in
// setLine(): lines with kerning stand off their middle by that difference, in old projects too.
double ProfileT::widthOf(const Line& line, double spacing) const {
    double width = 0.0;
    bool first = true;
    for (std::size_t k = 0; k < line.text.size(); ++k) {
        const float advance = font_.glyph(static_cast<unsigned char>(line.text[k])).advance;
        if (!(advance > 0.0f)) continue;
        const std::size_t i = line.first + k;
        if (!first) {
            width += spacing;
            if (kerningAt(i - 1) != 0.0) width += font_.emWidth * kerningAt(i);
        }
        width += advanceOf(line.text[k]);
        first = false;
    }
    return width;
}

void ProfileT::setLine(const Line& line, double spacing, Vec2& pen) {
    for (std::size_t k = 0; k < line.text.size(); ++k) {
        const auto code = static_cast<unsigned char>(line.text[k]);
        const TextFont::Glyph& glyph = font_.glyph(code);
        if (!(glyph.advance > 0.0f)) continue;
        if (!glyph.outline.paths.empty()) letters_.push_back({code, pen});
        pen.x += spacing + advanceOf(line.text[k]);
        if (kerningAt(line.first + k) != 0.0) pen.x += font_.emWidth * kerningAt(line.first + k);
    }
}

void ProfileT::layOut() {
    letters_.clear();
    curvesBuilt_ = false;
    letterScale_ = pointSize_ * 0.01;
    const TextFont::Measures measures = font_.measures();
    const double spacing = measures.width * letterSpacing_;
    const std::string_view text = text_;
    Vec2 pen;
    std::size_t at = 0;
    std::size_t index = 0;  // characters so far, but for line ends
    while (at < text.size()) {
        const std::size_t end = std::min(text.find_first_of("\r\n", at), text.size());
        const Line line{text.substr(at, end - at), index};
        if (justify_ == Justify::kLeft) {
            pen.x = 0.0;
        } else if (justify_ == Justify::kCenter) {
            pen.x = -widthOf(line, spacing) * 0.5;
        } else if (justify_ == Justify::kRight) {
            pen.x = -widthOf(line, spacing);
        }
        setLine(line, spacing, pen);
        index += line.text.size();
        for (at = end; at < text.size() && (text[at] == '\r' || text[at] == '\n'); ++at)
            if (text[at] == '\n') pen.y -= measures.height * leading_;
    }
    laidOut_ = true;
}

std::span<const ProfileT::Letter> ProfileT::letters() {
    prepare();
    return letters_;
}

void ProfileT::prepare() {
    if (!laidOut_) layOut();
}

// ---- what comes of it

InputProfile2 ProfileT::sizedOutline(unsigned char code) const {
    InputProfile2 outline = font_.glyph(code).outline;
    if (letterScale_ != 1.0) outline.scale(letterScale_);
    return outline;
}

InputProfile2* ProfileT::inputProfile() {
    prepare();
    if (!curvesBuilt_) {
        outline().clear();
        std::size_t parts = 0;
        for (const Letter& letter : letters_) {
            InputProfile2 curves = sizedOutline(letter.code);
            parts += partCount(curves);
            if (parts > CompositeCurve2::kMostPoints) break;
            curves.translate(letter.pen.x, letter.pen.y);
            std::move(curves.paths.begin(), curves.paths.end(),
                      std::back_inserter(outline().paths));
        }
        curvesBuilt_ = true;
    }
    return &outline();
}

const Mesh2* ProfileT::getShape(double tolerance, double hardAngle, std::uint32_t& stamp) {
    const Mesh2* const flat = OutlineProfile::getShape(tolerance, hardAngle, stamp);
    if (flat != nullptr) laidOut_ = true;  // flattening raised the revision, that is no change
    return flat;
}

// A letter that stands in the text many times is flattened once.
Result ProfileT::flatten(double tolerance, double hardAngle, Mesh2& shape) {
    struct Paths {
        int first = -1;
        int end = -1;
    };
    std::array<Paths, TextFont::kCodes> byCode;
    Mesh2 known;
    std::vector<int> corners;
    for (const Letter& letter : letters_) {
        Paths& paths = byCode[letter.code];
        if (paths.first < 0) {
            paths.first = known.faceCount();
            const Result result = sizedOutline(letter.code).emitAll(tolerance, hardAngle, known);
            if (result != kSuccess) return result;
            paths.end = known.faceCount();
        }
        for (int f = paths.first; f < paths.end; ++f) {
            // A flattened path has vertices, texture vertices and normals of its own, as many of
            // each.
            const FaceView path = known.face(f);
            if (static_cast<std::size_t>(shape.vertexCount()) + path.vertices.size() >
                CompositeCurve2::kMostPoints)
                return kFailure;
            corners.clear();
            for (std::size_t i = 0; i < path.vertices.size(); ++i) {
                corners.push_back(shape.addVertex(known.vertex(path.vertices[i]) + letter.pen));
                shape.addTexVertex(known.texVertex(path.texture[i]));
                shape.addNormal(known.normal(path.normals[i]));
            }
            shape.addFace(path.kind, path.material, corners, corners, corners);
        }
    }
    return kSuccess;
}

}  // namespace orvin
