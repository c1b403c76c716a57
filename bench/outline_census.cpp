// How many outlines of real fonts give clean solids. Each printable letter of some fonts is built
// with a round bevel at two qualities; the faces' area is compared with the outline's, and the
// edges of the solid are paired after welding by position. Prints a table and what stays open.
#include <array>
#include <cmath>
#include <cstdio>
#include <map>
#include <span>
#include <string>
#include <tuple>

#include "bench/OutlineShapes.h"
#include "bench/Word.h"
#include "geometry/outline/FacePeeler.h"
#include "geometry/outline/LoopOffset.h"

namespace orvin::benches {
namespace {

constexpr double kAreaError = 1e-9;
constexpr double kWeld = 1e4;  // places per unit

struct Font {
    const char* name;
    const char* path;
};
constexpr std::array<Font, 8> kFonts{{
    {"DejaVu Sans", kSans},
    {"DejaVu Serif Bold", "/usr/share/fonts/truetype/dejavu/DejaVuSerif-Bold.ttf"},
    {"Liberation Serif Italic", "/usr/share/fonts/truetype/liberation/LiberationSerif-Italic.ttf"},
    {"Liberation Sans Narrow",
     "/usr/share/fonts/truetype/liberation/LiberationSansNarrow-Regular.ttf"},
    {"Free Serif Bold Italic", "/usr/share/fonts/truetype/freefont/FreeSerifBoldItalic.ttf"},
    {"Free Mono", "/usr/share/fonts/truetype/freefont/FreeMono.ttf"},
    {"Vera Mono Bold", "/usr/share/fonts/truetype/ttf-bitstream-vera/VeraMoBd.ttf"},
    {"Noto Mono", "/usr/share/fonts/truetype/noto/NotoMono-Regular.ttf"},
}};

double signedArea(const Loop& loop) {
    double twice = 0.0;
    for (std::size_t i = 0; i < loop.size(); ++i)
        twice += cross(loop[i], loop[(i + 1) % loop.size()]);
    return twice / 2.0;
}

/// What else than a plain bevel an outline is put through.
struct Recipe {
    const char* name;
    void (*apply)(ObjectXStyle&);
};
constexpr std::array<Recipe, 6> kRecipes{{
    {"round bevel", [](ObjectXStyle&) {}},
    {"complex mitres", [](ObjectXStyle& s) { s.setMitreMethod(ObjectXStyle::Mitre::kComplex); }},
    {"bevel inwards", [](ObjectXStyle& s) { s.setPerimXScale(-1.0); }},
    {"face offset by 2", [](ObjectXStyle& s) { s.setFrontFaceOffset(2.0); }},
    {"face offset by -1.5", [](ObjectXStyle& s) { s.setFrontFaceOffset(-1.5); }},
    {"tips blunted at 30", [](ObjectXStyle& s) { s.setSpikeAngle(30.0); }},
}};

struct Faces {
    double areaError = 0.0;  // relative
    int pieces = 0;
    int concave = 0;
    bool whole = true;  // no piece was taken in another form than a convex one
};

Faces facesOf(const PolyShape2& shape) {
    double wanted = 0.0;
    for (const Loop& loop : loopsOf(shape))
        wanted += signedArea(loop);
    PolyShape2 welded = shape;
    welded.weld(0.001);
    FacePeeler peeler(std::move(welded));
    Faces faces;
    double area = 0.0;
    peeler.forEachPolygon([&](std::span<const int> ids) {
        Loop piece;
        for (const int id : ids)
            piece.push_back(peeler.shape().vertices[static_cast<std::size_t>(id)]);
        area += signedArea(piece);
        ++faces.pieces;
        bool convex = true;
        const std::size_t n = piece.size();
        for (std::size_t i = 0; i < n; ++i)
            convex = convex && cross(piece[(i + 1) % n] - piece[i],
                                     piece[(i + 2) % n] - piece[(i + 1) % n]) > -1e-9;
        faces.concave += convex ? 0 : 1;
    });
    faces.whole = !peeler.overgrown();
    faces.areaError = std::abs(area - wanted) / std::max(std::abs(wanted), 1e-9);
    return faces;
}

/// Edges that no other runs back along.
int openEdges(const Mesh3& mesh) {
    using Place = std::tuple<long long, long long, long long>;
    std::map<Place, int> places;
    const auto weld = [&](int vertex) {
        const Vec3 p = mesh.vertex(vertex);
        const Place place{std::llround(p.x * kWeld), std::llround(p.y * kWeld),
                          std::llround(p.z * kWeld)};
        return places.emplace(place, static_cast<int>(places.size())).first->second;
    };
    std::map<std::pair<int, int>, int> edges;
    for (int f = 0; f < mesh.faceCount(); ++f) {
        const auto vertices = mesh.face(f).vertices;
        for (std::size_t i = 0; i < vertices.size(); ++i) {
            const int a = weld(vertices[i]);
            const int b = weld(vertices[(i + 1) % vertices.size()]);
            if (a == b) continue;
            ++edges[{a, b}];
            --edges[{b, a}];
        }
    }
    int open = 0;
    for (const auto& [edge, count] : edges)
        open += count > 0 ? count : 0;
    return open;
}

/// Whether the bevel's widest ring had to be mended.
bool mended(const PolyShape2& shape, double distance) {
    for (const Loop& loop : loopsOf(shape))
        if (offsetLoop(loop, distance, OffsetRepair::kNone) !=
            offsetLoop(loop, distance, OffsetRepair::kFans))
            return true;
    return false;
}

struct Census {
    int outlines = 0;
    int clean = 0;
    int repaired = 0;
    int pieces = 0;
    int concave = 0;
    int withConcave = 0;
    std::string open;
};

/// The outline that the object fills.
PolyShape2 filled(const PolyShape2& outline, const ObjectXStyle& style) {
    PolyShape2 shape = outline;
    if (style.frontFaceOffset() != 0.0)
        offsetFrontFace(shape, style.frontFaceOffset(), OffsetRepair::kFans);
    if (style.spikeAngle() != 0.0)
        removeSpikes(shape, style.spikeAngle(), style.pullBackDistance());
    return shape;
}

void count(Census& census, const Font& font, const Recipe& recipe, char letter, double flatness) {
    Word word(font.path, std::string(1, letter), flatness);
    recipe.apply(word.style);
    std::uint32_t revision = 0;
    const Mesh3* const mesh = word.object.mesh(1, revision);
    if (mesh == nullptr || mesh->faceCount() == 0) return;  // the font lacks it
    const PolyShape2 shape =
        filled(textShape(std::string(1, letter), font.path, flatness * 0.5), word.style);
    const Faces faces = facesOf(shape);
    const int open = openEdges(*mesh);
    ++census.outlines;
    census.pieces += faces.pieces;
    census.concave += faces.concave;
    census.withConcave += faces.concave > 0 ? 1 : 0;
    if (faces.areaError > kAreaError || !faces.whole || open > 0) {
        char line[200];
        std::snprintf(line, sizeof line, "  %s '%c' at %g, %s: area off by %.2g, %d open edges\n",
                      font.name, letter, flatness, recipe.name, faces.areaError, open);
        census.open += line;
    } else {
        ++(mended(shape, kBevel * kDepth / 100.0 * word.style.perimXScale()) ? census.repaired
                                                                             : census.clean);
    }
}

void printRow(const char* name, const Census& c) {
    std::printf("%-26s %8d %6d %8d %5d %8d %4d in %d\n", name, c.outlines, c.clean, c.repaired,
                c.outlines - c.clean - c.repaired, c.pieces, c.concave, c.withConcave);
}

Census take(const Font& font, const Recipe& recipe) {
    const QuietOutput quiet;
    Census census;
    for (char letter = '!'; letter <= '~'; ++letter)
        for (const double flatness : {0.5, 0.1})
            count(census, font, recipe, letter, flatness);
    return census;
}

}  // namespace
}  // namespace orvin::benches

int main() {
    using namespace orvin::benches;
    std::printf("%-26s %8s %6s %8s %5s %8s %8s\n", "round bevel", "outlines", "clean", "repaired",
                "open", "pieces", "concave");
    std::string open;
    for (const Font& font : kFonts) {
        const Census census = take(font, kRecipes[0]);
        printRow(font.name, census);
        open += census.open;
    }
    std::printf("\n%s\n", kFonts[1].name);
    for (const Recipe& recipe : kRecipes) {
        const Census census = take(kFonts[1], recipe);
        printRow(recipe.name, census);
        if (&recipe != &kRecipes[0]) open += census.open;
    }
    std::printf("\nleft open:\n%s", open.empty() ? "  none\n" : open.c_str());
}
