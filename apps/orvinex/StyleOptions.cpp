#include "orvinex/StyleOptions.h"

#include <string>
#include <utility>

#include "orvinex/Commands.h"
#include "render/MaterialX.h"
#include "scene/SceneX.h"
#include "toolkit/platform/Platform.h"
#include "vector/edges/CustomEdges.h"
#include "vector/edges/EdgeLibrary.h"
#include "vector/edges/ProfileL.h"
#include "vector/illustrator/ProfileI.h"

namespace orvin::orvinex {

namespace {

constexpr double kLargest = 1e6;  // scene units

std::vector<std::string> splitAtCommas(const std::string& text) {
    std::vector<std::string> parts(1);
    for (const char c : text)
        if (c == ',')
            parts.emplace_back();
        else
            parts.back() += c;
    return parts;
}

/// The library's edge, else the custom one beside the program: a project keeps that with its
/// curves.
std::string edgeMember(SceneX& scene, const std::string& name) {
    if (const ProfileL* const edge = useLibraryEdge(scene, findEdge(name))) return edge->name();
    CustomEdges custom;
    custom.reload();
    ProfileI* const edge = custom.find(name);
    if (edge == nullptr)
        throw apps::Failure("no edge is named '" + name + "'; 'orvinex edges' lists them");
    if (!makesSolids(*edge))
        throw apps::Failure("no solid comes of the custom edge '" + name +
                            "': it has a straight path, or none");
    ImportPolicy asWell;
    return scene.importMember(*edge, asWell, false)->name();
}

unsigned partNamed(const std::string& name) {
    static constexpr std::pair<std::string_view, unsigned> kParts[] = {
        {"front", ObjectXStyle::kFront},
        {"back", ObjectXStyle::kBack},
        {"perim", ObjectXStyle::kPerimEdge},
        {"hole", ObjectXStyle::kHoleEdge},
    };
    for (const auto& [known, part] : kParts)
        if (name == known) return part;
    throw apps::UsageError("--parts takes front, back, perim and hole, with commas between, not '" +
                           name + "'");
}

void applyParts(const std::string& text, ObjectXStyle& style) {
    unsigned wanted = 0;
    for (const std::string& name : splitAtCommas(text))
        wanted |= partNamed(name);
    style.setPart(false, ObjectXStyle::kAllParts & ~wanted);
    style.setPart(true, wanted);
}

void applyMitre(const std::string& text, ObjectXStyle& style) {
    if (text != "fast" && text != "complex")
        throw apps::UsageError("--mitre takes fast or complex");
    style.setMitreMethod(text == "fast" ? ObjectXStyle::Mitre::kFast
                                        : ObjectXStyle::Mitre::kComplex);
}

/// Sees to it that the scene has the material of that name: its own, else the one of the project
/// of --looks, with its pictures.
void needMaterial(const apps::ParsedOptions& options, const std::string& name, SceneX& scene) {
    if (scene.memberAs<Surface>(MemberKind::kMaterial, name) == nullptr) {
        SceneMember* found = nullptr;
        Project looks;
        if (options.has("--looks")) {
            openProject(looks, platform::pathFromText(options.value("--looks")));
            found = looks.mainScene().memberAs<Surface>(MemberKind::kMaterial, name);
        }
        ImportPolicy sharing;
        sharing.answer = NameConflict::kIgnoreNew;
        if (found == nullptr || scene.importMember(*found, sharing, true) == nullptr)
            throw apps::Failure(
                "no material is named '" + name + "'" +
                (options.has("--looks") ? "" : "; --looks says where there is one"));
    }
}

void applyEdgeMaterial(const apps::ParsedOptions& options, ObjectXStyle& style) {
    constexpr int kEdgeSlot = 1;
    const std::string name = options.value("--edge-material");
    needMaterial(options, name, style.scene());
    style.setMaterial(kEdgeSlot, name);
    const MaterialIntervals all({{0.0, 1.0, kEdgeSlot}});
    style.setTrackProperties(true);
    style.ensurePerimEntries();
    style.setPerimIntervalMaterial(-1, all);
}

std::string makeColor(const std::string& text, SceneX& scene) {
    const std::array<float, 3> color = colorOption(text, "--color");
    auto& material = scene.make<MaterialX>(scene.uniqueName("Color"));
    material.setDiffuse({color[0], color[1], color[2], 1.0F});
    return material.name();
}

}  // namespace

std::vector<apps::OptionSpec> withMaterialOptions(std::vector<apps::OptionSpec> own) {
    own.insert(own.end(), {{"--color", "R,G,B", "one material for all, each from 0 to 1"},
                           {"--material", "NAME", "the material of that name for all"},
                           {"--looks", "PROJECT.twp",
                            "project to take materials from that aren't there yet"}});
    return own;
}

std::vector<apps::OptionSpec> withStyleOptions(std::vector<apps::OptionSpec> own) {
    static const std::vector<apps::OptionSpec> style = {
        {"--edge", "NAME", "edge of the library, by either name, or a custom one (Bevel, Medium)"},
        {"--hole-edge", "NAME", "another edge around holes"},
        {"--depth", "D", "from front to back, in units of the outline (30)"},
        {"--edge-scale", "S", "how far edges stand out, as a factor (1)"},
        {"--offset", "D", "moves the outline out by that distance, or in (0)"},
        {"--spike", "ANGLE", "cuts corners that are sharper, in degrees (0: none)"},
        {"--mitre", "fast|complex", "how edges meet at corners (fast)"},
        {"--flatness", "D", "how far lines may be from the curves they stand for, in units (0.5)"},
        {"--parts", "LIST", "of front, back, perim and hole, with commas between (all)"},
        {"--edge-material", "NAME", "another material for the edges"},
    };
    own.insert(own.end(), style.begin(), style.end());
    return withMaterialOptions(std::move(own));
}

bool materialIsGiven(const apps::ParsedOptions& options) {
    return options.has("--color") || options.has("--material");
}

std::array<float, 3> colorOption(const std::string& text, const char* what) {
    const std::vector<std::string> parts = splitAtCommas(text);
    std::array<float, 3> color{};
    if (parts.size() != color.size())
        throw apps::UsageError(std::string(what) + " takes R,G,B, each from 0 to 1");
    for (std::size_t i = 0; i < color.size(); ++i)
        color[i] = static_cast<float>(apps::realOption(parts[i], what, 0.0, 1.0));
    return color;
}

std::string materialOption(const apps::ParsedOptions& options, SceneX& scene) {
    if (options.has("--color") && options.has("--material"))
        throw apps::UsageError("only one of --color and --material goes");
    if (options.has("--color")) return makeColor(options.value("--color"), scene);
    if (options.has("--material")) needMaterial(options, options.value("--material"), scene);
    return options.value("--material");
}

void applyStyleOptions(const apps::ParsedOptions& options, ObjectXStyle& style) {
    const auto real = [&](const char* name, double min, double max, auto set) {
        if (options.has(name)) (style.*set)(apps::realOption(options.value(name), name, min, max));
    };
    if (options.has("--parts")) applyParts(options.value("--parts"), style);
    if (options.has("--mitre")) applyMitre(options.value("--mitre"), style);
    real("--depth", 0.0, kLargest, &ObjectXStyle::setDepth);
    real("--edge-scale", -1000.0, 1000.0, &ObjectXStyle::setPerimXScale);
    real("--offset", -kLargest, kLargest, &ObjectXStyle::setFrontFaceOffset);
    real("--spike", 0.0, 180.0, &ObjectXStyle::setSpikeAngle);
    if (options.has("--edge")) style.setPerim(edgeMember(style.scene(), options.value("--edge")));
    if (options.has("--hole-edge")) {
        style.setTrackProfile(false);
        style.setHole(edgeMember(style.scene(), options.value("--hole-edge")));
    }
    if (const std::string name = materialOption(options, style.scene()); !name.empty())
        style.setMaterial(0, name);
    if (options.has("--edge-material")) applyEdgeMaterial(options, style);
}

}  // namespace orvin::orvinex
