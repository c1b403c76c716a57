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

/// The scene's material of that name, else the one of the project of --looks, with its pictures.
void useMaterial(const apps::ParsedOptions& options, const std::string& name, ObjectXStyle& style,
                 int slot) {
    SceneX& scene = style.scene();
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
    style.setMaterial(slot, name);
}

void applyMaterials(const apps::ParsedOptions& options, ObjectXStyle& style) {
    constexpr int kEdgeSlot = 1;
    if (options.has("--material")) useMaterial(options, options.value("--material"), style, 0);
    if (!options.has("--edge-material")) return;
    useMaterial(options, options.value("--edge-material"), style, kEdgeSlot);
    const MaterialIntervals all({{0.0, 1.0, kEdgeSlot}});
    style.setTrackProperties(true);
    style.ensurePerimEntries();
    style.setPerimIntervalMaterial(-1, all);
}

void applyColor(const std::string& text, ObjectXStyle& style) {
    const std::vector<std::string> parts = splitAtCommas(text);
    if (parts.size() != 3) throw apps::UsageError("--color takes R,G,B, each from 0 to 1");
    Rgba color{0.0F, 0.0F, 0.0F, 1.0F};
    for (std::size_t i = 0; i < parts.size(); ++i)
        color[i] = static_cast<float>(apps::realOption(parts[i], "--color", 0.0, 1.0));
    auto& material = style.scene().make<MaterialX>(style.scene().uniqueName("Color"));
    material.setDiffuse(color);
    style.setMaterial(0, material.name());
}

}  // namespace

const std::vector<apps::OptionSpec>& styleOptions() {
    static const std::vector<apps::OptionSpec> options = {
        {"--edge", "NAME", "edge of the library, by either name, or a custom one (Bevel, Medium)"},
        {"--hole-edge", "NAME", "another edge around holes"},
        {"--depth", "D", "from front to back, in units of the outline (30)"},
        {"--edge-scale", "S", "how far edges stand out, as a factor (1)"},
        {"--offset", "D", "moves the outline out by that distance, or in (0)"},
        {"--spike", "ANGLE", "cuts corners that are sharper, in degrees (0: none)"},
        {"--mitre", "fast|complex", "how edges meet at corners (fast)"},
        {"--parts", "LIST", "of front, back, perim and hole, with commas between (all)"},
        {"--color", "R,G,B", "one material for all, each from 0 to 1"},
        {"--material", "NAME", "the material of that name for all"},
        {"--edge-material", "NAME", "another one for the edges"},
        {"--looks", "PROJECT.twp", "project to take materials from that aren't there yet"},
    };
    return options;
}

std::vector<apps::OptionSpec> withStyleOptions(std::vector<apps::OptionSpec> own) {
    own.insert(own.end(), styleOptions().begin(), styleOptions().end());
    return own;
}

bool materialIsGiven(const apps::ParsedOptions& options) {
    return options.has("--color") || options.has("--material");
}

void applyStyleOptions(const apps::ParsedOptions& options, ObjectXStyle& style) {
    if (options.has("--color") && options.has("--material"))
        throw apps::UsageError("only one of --color and --material goes");
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
    if (options.has("--color")) applyColor(options.value("--color"), style);
    applyMaterials(options, style);
}

}  // namespace orvin::orvinex
