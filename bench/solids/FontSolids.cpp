// font_solids OUT.md FOLDER...: makes a solid of every printable character of every font in the
// folders, with three bevels of the library, and writes a table of how they come out.
//
// Clean: the surface is closed (every edge has its partner once points at one place are welded),
// the front covers the outline's area to a millionth, and the bevel is the outline moved sideways.
// Repaired: the same where runs of the bevel that met have collapsed. Folded: closed too, but the
// bevel's widest ring crosses itself. Open: the rest.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "geometry/ObjectX.h"
#include "geometry/outline/OutlinePreparation.h"
#include "setup/DefaultScene.h"
#include "setup/StartUp.h"
#include "toolkit/platform/Platform.h"
#include "vector/ProfileT.h"
#include "vector/edges/EdgeLibrary.h"
#include "vector/edges/ProfileL.h"
#include "vector/font/FontFile.h"

namespace orvin {
namespace {

constexpr std::array<const char*, 3> kBevels = {"Bevel, Small", "Bevel, Medium", "Bevel, Large"};

constexpr double kVisible = 1e-3;  // of a letter 100 high

enum class Outcome { kClean, kRepaired, kFolded, kOpen };

struct Counts {
    std::array<int, 4> of{};

    int& operator[](Outcome outcome) { return of[static_cast<std::size_t>(outcome)]; }
};

bool isPrintable(int code) {
    return (code > 32 && code < 127) || code > 160;
}

/// Edges without a partner in the other direction, points welded.
int openEdges(const Mesh3& mesh) {
    constexpr double kGrid = 1e4;
    struct Hash {
        std::size_t operator()(const std::array<long long, 3>& key) const {
            std::size_t h = 0;
            for (const long long k : key)
                h = h * 1000003 + static_cast<std::size_t>(k);
            return h;
        }
    };
    std::unordered_map<std::array<long long, 3>, int, Hash> places;
    std::vector<int> place(static_cast<std::size_t>(mesh.vertexCount()));
    for (int i = 0; i < mesh.vertexCount(); ++i) {
        const Vec3 p = mesh.vertex(i);
        const std::array key{std::llround(p.x * kGrid), std::llround(p.y * kGrid),
                             std::llround(p.z * kGrid)};
        place[static_cast<std::size_t>(i)] =
            places.emplace(key, static_cast<int>(places.size())).first->second;
    }
    std::map<std::pair<int, int>, int> edges;
    for (int f = 0; f < mesh.faceCount(); ++f) {
        const auto corners = mesh.face(f).vertices;
        for (std::size_t i = 0; i < corners.size(); ++i) {
            const int a = place[static_cast<std::size_t>(corners[i])];
            const int b = place[static_cast<std::size_t>(corners[(i + 1) % corners.size()])];
            if (a < b) ++edges[{a, b}];
            if (a > b) --edges[{b, a}];
        }
    }
    int open = 0;
    for (const auto& [edge, count] : edges)
        open += std::abs(count);
    return open;
}

double frontArea(const Mesh3& mesh) {
    double area = 0.0;
    for (int f = 0; f < mesh.faceCount(); ++f) {
        const FaceView face = mesh.face(f);
        if (mesh.normal(face.normals[0]).z != 1.0) continue;
        const Vec3 first = mesh.vertex(face.vertices[0]);
        for (std::size_t i = 1; i + 1 < face.vertices.size(); ++i)
            area += cross(mesh.vertex(face.vertices[i]) - first,
                          mesh.vertex(face.vertices[i + 1]) - first)
                        .z /
                    2.0;
    }
    return area;
}

std::vector<std::vector<Vec2>> loopsOf(const PolyShape2& shape) {
    std::vector<std::vector<Vec2>> loops;
    shape.collectLoops(loops);
    return loops;
}

double areaOf(const std::vector<std::vector<Vec2>>& loops) {
    double area = 0.0;
    for (const auto& loop : loops)
        for (std::size_t i = 0; i < loop.size(); ++i)
            area += cross(loop[i], loop[(i + 1) % loop.size()]) / 2.0;
    return area;
}

bool differ(const std::vector<Vec2>& a, const std::vector<Vec2>& b) {
    for (std::size_t i = 0; i < a.size(); ++i)
        if (length(a[i] - b[i]) > kVisible) return true;
    return false;
}

/// True where two edges cross, and not only touch.
bool crossesItself(const std::vector<Vec2>& ring) {
    const auto side = [](Vec2 a, Vec2 b, Vec2 p) {
        const double edge = length(b - a);
        const double away = edge > 0.0 ? cross(b - a, p - a) / edge : 0.0;
        return away > kVisible ? 1 : away < -kVisible ? -1 : 0;
    };
    const std::size_t n = ring.size();
    for (std::size_t i = 0; i < n; ++i) {
        const Vec2 a = ring[i];
        const Vec2 b = ring[(i + 1) % n];
        for (std::size_t k = i + 1; k < n; ++k) {
            const Vec2 c = ring[k];
            const Vec2 d = ring[(k + 1) % n];
            if (side(a, b, c) * side(a, b, d) < 0 && side(c, d, a) * side(c, d, b) < 0) return true;
        }
    }
    return false;
}

/// A scene with one text as a solid, whose letter and bevel change.
class Workshop {
    std::unique_ptr<SceneX> scene_ = buildDefaultScene("solids", true);

  public:
    Workshop() {
        object_.setFace(text.name());
        object_.setStyle(style_->name());
    }

    ProfileT& text = scene_->make<ProfileT>("letter");

    /// Returns how far it stands out.
    double chooseBevel(const char* name) {
        ProfileL* const edge = useLibraryEdge(*scene_, findEdge(name));
        style_->setPerim(edge->name());
        farthest_ = 0.0;
        for (const CompositeCurve2& path : edge->inputProfile()->paths)
            for (const Curve2& curve : path.curves)
                for (const Vec2 p : curve.points())
                    farthest_ = std::max(farthest_, p.x / 100.0 * style_->depth());
        return farthest_;
    }

    /// `reason` gets a word for what isn't clean.
    Outcome examine(std::string& reason) {
        std::uint32_t stamp = 0;
        const Mesh3* const mesh = object_.mesh(1, stamp);
        const Mesh2* const flat = text.getShape(object_.flatRender() * 0.5, 20.0, stamp);
        if (mesh == nullptr || flat == nullptr || mesh->faceCount() == 0) {
            reason = "no solid";
            return Outcome::kOpen;
        }
        PolyShape2 shape;
        loadLoops(*flat, shape);
        shape.normalizeOrientation();
        const std::vector<std::vector<Vec2>> loops = loopsOf(shape);
        const double area = areaOf(loops);
        const bool gap = std::abs(frontArea(*mesh) - area) > 1e-6 * std::abs(area);
        if (gap || openEdges(*mesh) > 0) {
            PolyShape2 resolved = shape;
            resolved.weld(0.001);
            resolved.resolveOverlaps();
            const bool crosses = std::abs(areaOf(loopsOf(resolved)) - area) > 1e-3 * area;
            reason = crosses ? "contours that overlap"
                     : gap   ? "front face with a gap"
                             : "surface not closed";
            return Outcome::kOpen;
        }
        Outcome outcome = Outcome::kClean;
        for (const std::vector<Vec2>& loop : loops) {
            const auto ring = offsetLoop(loop, farthest_, OffsetRepair::kFans);
            if (crossesItself(ring)) return Outcome::kFolded;
            if (differ(ring, offsetLoop(loop, farthest_, OffsetRepair::kNone)))
                outcome = Outcome::kRepaired;
        }
        return outcome;
    }

  private:
    ObjectX& object_ = scene_->make<ObjectX>("object");
    ObjectXStyle* style_ = scene_->memberAs<ObjectXStyle>(MemberKind::kStyle, kDefaultStyle);
    double farthest_ = 0.0;
};

std::vector<std::filesystem::path> fontsIn(int count, char** folders) {
    std::vector<std::filesystem::path> fonts;
    for (int i = 0; i < count; ++i)
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folders[i]))
            if (isFontFileName(platform::textFromPath(entry.path()))) fonts.push_back(entry.path());
    std::sort(fonts.begin(), fonts.end());
    return fonts;
}

int run(int argc, char** argv) {
    if (argc < 3) {
        std::fputs("usage: font_solids OUT.md FOLDER...\n", stderr);
        return 2;
    }
    std::fflush(stdout);
    const int nowhere = open("/dev/null", O_WRONLY);  // what the kernels print
    dup2(nowhere, STDOUT_FILENO);

    registerMemberClasses();
    Workshop workshop;
    std::ofstream out(argv[1]);
    out << "| Font | Glyphs |";
    for (const char* const bevel : kBevels)
        out << ' ' << bevel << " (" << workshop.chooseBevel(bevel) << " units) |";
    out << "\n|---|---|---|---|---|\n";
    std::array<Counts, kBevels.size()> all;
    int allGlyphs = 0;
    std::map<std::string, std::map<std::string, std::string>> open;  // reason, font: codes
    for (const std::filesystem::path& path : fontsIn(argc - 2, argv + 2)) {
        if (workshop.text.setFont(platform::textFromPath(path), -1) != kSuccess) continue;
        const std::string font = platform::textFromPath(path.stem());
        std::array<Counts, kBevels.size()> counts;
        int glyphs = 0;
        for (std::size_t b = 0; b < kBevels.size(); ++b) {
            workshop.chooseBevel(kBevels[b]);
            glyphs = 0;
            for (int code = 33; code < 256; ++code) {
                const auto& glyph = workshop.text.font().glyph(static_cast<unsigned char>(code));
                if (!isPrintable(code) || glyph.outline.paths.empty() || !(glyph.advance > 0.0F))
                    continue;
                ++glyphs;
                workshop.text.setText(std::string(1, static_cast<char>(code)));
                std::string reason;
                const Outcome outcome = workshop.examine(reason);
                ++counts[b][outcome];
                ++all[b][outcome];
                if (outcome != Outcome::kOpen) continue;
                std::string& codes = open[reason + ", " + kBevels[b]][font];
                codes += (codes.empty() ? "" : " ") + std::to_string(code);
            }
        }
        allGlyphs += glyphs;
        const auto row = [&out](const std::string& name, int n, auto& list) {
            out << "| " << name << " | " << n << " |";
            for (const Counts& c : list)
                out << ' ' << c.of[0] << ", " << c.of[1] << ", " << c.of[2] << ", " << c.of[3]
                    << " |";
            out << '\n';
        };
        row(font, glyphs, counts);
        out.flush();
    }
    out << "| All | " << allGlyphs << " |";
    for (const Counts& c : all)
        out << ' ' << c.of[0] << ", " << c.of[1] << ", " << c.of[2] << ", " << c.of[3] << " |";
    out << "\n\n";
    for (const auto& [reason, fonts] : open) {
        out << reason << ":\n\n";
        for (const auto& [font, codes] : fonts)
            out << "- " << font << ": " << codes << '\n';
        out << '\n';
    }
    return 0;
}

}  // namespace
}  // namespace orvin

int main(int argc, char** argv) {
    return orvin::run(argc, argv);
}
