#include "interchange/ObjReader.h"

#include <algorithm>
#include <cstdio>
#include <limits>
#include <unordered_map>

#include "geometry/SmoothNormals.h"
#include "interchange/ModelFile.h"
#include "interchange/TextScanner.h"
#include "toolkit/Progress.h"

namespace orvin {

namespace {

constexpr int kLinesPerTick = 2000;
constexpr int kMaxReports = 100;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// One part of a corner. `given` is the number in the file, limited to the range of int.
struct Reference {
    int given = 0;
    bool present = false;

    /// Index from 0; `count` are there. Out of the range of both for an index out of range.
    int index(int count) const {
        const std::int64_t index =
            given > 0 ? std::int64_t{given} - 1 : std::int64_t{given} + count;
        return index < count ? static_cast<int>(std::max<std::int64_t>(index, -1)) : -1;
    }
};

/// What the keywords of lines say.
enum class Line { kOther, kVertex, kTexture, kNormal, kPolygon, kLine, kPoint, kGroup };

Line lineOf(TextScanner& text) {
    text.skipBlanks();
    if (text.atLineEnd() || text.peek() == '#') return Line::kOther;
    const std::string_view keyword = text.token();
    if (keyword == "v") return Line::kVertex;
    if (keyword == "f" || keyword == "fo") return Line::kPolygon;
    if (keyword == "vt") return Line::kTexture;
    if (keyword == "vn") return Line::kNormal;
    if (keyword == "l") return Line::kLine;
    if (keyword == "p") return Line::kPoint;
    if (keyword == "g") return Line::kGroup;
    return Line::kOther;
}

/// Moves to the next corner of an element, over the ends of continued lines. False at the element's
/// end. `onBare` is called for a backslash between blanks that ends no line.
template <typename OnBare>
bool findCorner(TextScanner& text, OnBare&& onBare) {
    for (;;) {
        text.skipBlanks();
        if (text.atLineEnd()) return false;
        if (text.peek() != '\\' || text.isInToken(1)) return true;
        text.skip();
        text.skipBlanks();
        if (!text.atLineEnd())
            onBare();
        else if (!text.atEnd())
            text.skip();
    }
}

/// Counts what a file holds and makes room for it in `mesh`: nothing moves while it is read then.
Result reserve(TextScanner& text, Mesh3& mesh) {
    std::size_t vertices = 0;
    std::size_t textures = 0;
    std::size_t normals = 0;
    std::size_t faces = 0;
    std::size_t corners = 0;
    bool hasTexture = false;
    bool hasNormals = false;
    for (int line = 1; !text.atEnd(); ++line) {
        if (line % kLinesPerTick == 0 && pollProgress(0, 100) != 0) return kFailure;
        switch (lineOf(text)) {
            case Line::kVertex:
                ++vertices;
                break;
            case Line::kTexture:
                ++textures;
                break;
            case Line::kNormal:
                ++normals;
                break;
            case Line::kPolygon:
            case Line::kLine:
            case Line::kPoint:
                for (++faces; findCorner(text, [] {}); ++corners) {
                    const int slashes = text.countInToken('/');
                    hasTexture = hasTexture || slashes > 0;
                    hasNormals = hasNormals || slashes > 1;
                }
                break;
            default:
                break;
        }
        text.skipLine();
    }
    mesh.reserve(vertices, hasTexture ? textures : 0, hasNormals ? normals : 0, faces, corners);
    mesh.reserve(0, textures, normals, 0, 0);
    return kSuccess;
}

class ObjParser {
  public:
    ObjParser(ModelInput& input, ImportedModel& model) : text_(input), model_(model) {}

    Result run() {
        if (reserve(text_, model_.mesh) != kSuccess) return kFailure;
        text_.rewind();
        for (int line = 1; !text_.atEnd(); ++line) {
            if (line % kLinesPerTick == 0 && pollProgress(text_.percent(), 100) != 0)
                return kFailure;
            parseLine();
            text_.skipLine();
        }
        if (model_.groups.empty()) openGroup(kObjDefaultGroup);
        if (reports_ > kMaxReports)
            std::printf("OBJ Import: %lld more references out of range !\n",
                        static_cast<long long>(reports_ - kMaxReports));
        return kSuccess;
    }

  private:
    // ---- lines

    void parseLine() {
        switch (lineOf(text_)) {
            case Line::kVertex:
                model_.mesh.addVertex(parsePoint());
                break;
            case Line::kTexture:
                model_.mesh.addTexVertex(parsePoint());
                break;
            case Line::kNormal:
                model_.mesh.addNormal(parsePoint());
                break;
            case Line::kPolygon:
                parseElement(ElementKind::kPolygon);
                break;
            case Line::kLine:
                parseElement(ElementKind::kLine);
                break;
            case Line::kPoint:
                parseElement(ElementKind::kPointList);
                break;
            case Line::kGroup:
                for (auto name = text_.token(); !name.empty(); name = text_.token())
                    openGroup(name);
                break;
            case Line::kOther:
                break;
        }
    }

    Vec3 parsePoint() {
        const double x = text_.number();
        const double y = text_.number();
        return {x, y, text_.number()};
    }

    void openGroup(std::string_view name) {
        const auto known = groupNumbers_.find(std::string(name));
        if (known != groupNumbers_.end()) {
            group_ = known->second;
        } else if (model_.groups.size() < kObjMaxGroups) {
            group_ = static_cast<std::uint32_t>(model_.groups.size());
            groupNumbers_.emplace(name, group_);
            model_.groups.emplace_back(name);
        } else {
            group_ = static_cast<std::uint32_t>(model_.groups.size() - 1);
        }
        hasGroup_ = true;
    }

    // ---- elements

    void parseElement(ElementKind kind) {
        while (findCorner(text_, [this] { report("vertex", 0); }))
            parseCorner();
        const int face = model_.mesh.finishFace(kind, 0);
        if (face < 0) return;
        if (!hasGroup_) openGroup(kObjDefaultGroup);
        auto& starts = model_.groupStarts;
        if (starts.empty() || starts.back().group != group_)
            starts.push_back({static_cast<std::uint32_t>(face), group_});
    }

    void parseCorner() {
        const Reference vertex = parseReference();
        Reference texture;
        Reference normal;
        if (skipSlash()) {
            texture = parseReference();
            if (skipSlash()) normal = parseReference();
        }
        text_.skipToken();

        Mesh3& mesh = model_.mesh;
        if (!mesh.addCorner(vertex.index(mesh.vertexCount()))) {
            report("vertex", vertex.given);
            return;
        }
        if (texture.present && !mesh.addCornerTexture(texture.index(mesh.texVertexCount())))
            report("texture vertex", texture.given);
        if (normal.present && !mesh.addCornerNormal(normal.index(mesh.normalCount())))
            report("normal", normal.given);
    }

    bool skipSlash() {
        if (text_.peek() != '/') return false;
        text_.skip();
        return true;
    }

    Reference parseReference() {
        constexpr std::int64_t kLimit = std::numeric_limits<int>::max();
        const char sign = text_.peek();
        const bool isSigned = sign == '-' || sign == '+';
        if (!isDigit(text_.peek(isSigned ? 1 : 0))) return {};
        if (isSigned) text_.skip();
        std::int64_t value = 0;
        for (char c = text_.peek(); isDigit(c); c = text_.peek()) {
            if (value <= kLimit) value = value * 10 + (c - '0');
            text_.skip();
        }
        value = std::min(value, kLimit);
        return {static_cast<int>(sign == '-' ? -value : value), true};
    }

    void report(const char* what, int reference) {
        if (++reports_ <= kMaxReports)
            std::printf("OBJ Import: %s reference %d out of range !\n", what, reference);
    }

    TextScanner text_;
    ImportedModel& model_;
    std::unordered_map<std::string, std::uint32_t> groupNumbers_;
    std::uint32_t group_ = 0;
    bool hasGroup_ = false;
    std::int64_t reports_ = 0;
};

}  // namespace

Result parseObj(ModelInput& input, ImportedModel& model) {
    return ObjParser(input, model).run();
}

Result readObj(const std::filesystem::path& path, ImportedModel& model) {
    auto input = ModelInput::open(path);
    if (!input || parseObj(*input, model) != kSuccess) return kFailure;
    if (input->failed()) {
        reportUnopened(path);
        return kFailure;
    }
    input.reset();
    // A single group without normals gets them as an object, when they are asked for.
    if (model.groups.size() > 1 || model.mesh.normalCount() > 0)
        completeNormals(model, defaultHardShadingAngle());
    std::printf("OBJ import done.\n");
    return kSuccess;
}

Result importObj(SceneX& scene, const std::filesystem::path& path, std::vector<ObjectP*>* made) {
    ImportedModel model;
    if (readObj(path, model) != kSuccess) return kFailure;
    auto objects = addToScene(scene, std::move(model), path, ModelFileType::kObj);
    if (made != nullptr) *made = std::move(objects);
    return kSuccess;
}

}  // namespace orvin
