#include "orvinex/Authoring.h"

#include <string>

#include "geometry/ObjectX.h"
#include "orvinex/Commands.h"
#include "orvinex/Framing.h"
#include "setup/DefaultScene.h"
#include "toolkit/platform/Platform.h"

namespace orvin::orvinex {

namespace {

constexpr double kFarthest = 1e6;  // scene units

Vec3 vectorOption(const std::string& text, const char* what) {
    const std::size_t first = text.find(',');
    const std::size_t second = text.find(',', first + 1);
    if (first == std::string::npos || second == std::string::npos)
        throw apps::UsageError(std::string(what) + " takes X,Y,Z");
    const auto part = [&](std::size_t from, std::size_t to) {
        return apps::realOption(text.substr(from, to - from), what, -kFarthest, kFarthest);
    };
    return {part(0, first), part(first + 1, second), part(second + 1, text.size())};
}

/// worldFromPlaced: the scale, the turn, then the move.
Matrix4 placement(const apps::ParsedOptions& options) {
    Transform transform;
    if (options.has("--scale")) {
        const double scale = apps::realOption(options.value("--scale"), "--scale", 1e-6, kFarthest);
        transform.setScale({scale, scale, scale});
    }
    if (options.has("--rotate"))
        transform.setRotate(vectorOption(options.value("--rotate"), "--rotate"));
    if (options.has("--move"))
        transform.setTranslate(vectorOption(options.value("--move"), "--move"));
    return transform.matrix();
}

}  // namespace

std::vector<apps::OptionSpec> withProjectOptions(std::vector<apps::OptionSpec> own) {
    std::vector<apps::OptionSpec> options = {
        {"-o", "FILE", "where the project goes"},
        {"--into", "PROJECT.twp", "adds to this project, and saves it there if there is no -o"},
        {"--scale", "S", "all that comes in, about the origin, as a factor (1)"},
        {"--rotate", "X,Y,Z", "turns it about the axes, in degrees, after the scale (0,0,0)"},
        {"--move", "X,Y,Z", "where its origin comes to stand then (0,0,0)"},
        {"--set", "N", "the Set that it belongs to, 1 to 8 (none)"},
        {"--fit", "", "stands the camera so that all objects show, as in a new project"}};
    options.insert(options.end(), own.begin(), own.end());
    return options;
}

Authoring::Authoring(const apps::ParsedOptions& options)
    : options_(options), adds_(options.has("--into")) {
    if (!adds_) outputOption(options);  // asks for one
    if (options.has("--set"))
        static_cast<void>(apps::wholeOption(options.value("--set"), "--set", 1, gSetCount - 1));
    if (options.has("--flatness"))
        flatness_ = apps::realOption(options.value("--flatness"), "--flatness", 1e-4, 1000.0);
    static_cast<void>(placement(options));  // wrong ones are told before any work
    if (adds_) openProject(project_, platform::pathFromText(options.value("--into")));
    objectsBefore_ = scene().count(MemberKind::kObject);
    if (adds_) materialsBefore_ = materialNames(project_);
}

const ObjectXStyle& Authoring::usualStyle() {
    const auto find = [this] {
        return scene().memberAs<ObjectXStyle>(MemberKind::kStyle, kDefaultStyle);
    };
    if (find() == nullptr) {
        const auto fresh = buildDefaultScene("defaults", true);
        ImportPolicy policy;
        if (auto* const style = fresh->member(MemberKind::kStyle, kDefaultStyle))
            scene().importMember(*style, policy, true);
    }
    const ObjectXStyle* const style = find();
    if (style == nullptr) throw apps::Failure("the project has no style to start from");
    return *style;
}

void Authoring::place() {
    const Matrix4 worldFromPlaced = placement(options_);
    scene().clearSelection();
    for (SceneMember* const member : scene().members(MemberKind::kObject).subspan(objectsBefore_)) {
        if (auto* const outline = dynamic_cast<ObjectX*>(member); outline && flatness_ > 0.0)
            outline->setFlatRender(flatness_);
        auto* const object = dynamic_cast<TransformMember*>(member);
        if (object == nullptr) continue;
        if (options_.has("--scale") || options_.has("--rotate") || options_.has("--move"))
            object->transform().setMatrix(object->transform().matrix() * worldFromPlaced);
        scene().addSelect(object);
    }
    if (options_.has("--set")) {
        const int number = apps::wholeOption(options_.value("--set"), "--set", 1, gSetCount - 1);
        if (scene().memberByName(setName(number)) == nullptr) scene().make<Group>(setName(number));
        scene().moveToSet(number, nullptr, false);
    }
    scene().clearSelection();
}

void Authoring::finish() {
    place();
    turnCamera(scene(), options_);
    if (!adds_ || options_.has("--fit")) frameObjects(scene());
    saveProject(project_, platform::pathFromText(options_.value("-o", options_.value("--into"))));
    if (!options_.has("--quiet")) tellDropped(project_, materialsBefore_);
}

}  // namespace orvin::orvinex
