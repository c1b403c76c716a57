#include "interchange/ObjReader.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <unordered_map>

#include "geometry/SmoothNormals.h"
#include "interchange/ModelFile.h"
#include "toolkit/Numbers.h"
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

    /// Index from 0; `count` are there. Negative or too large for an index out of range.
    std::int64_t index(int count) const {
        return given > 0 ? std::int64_t{given} - 1 : std::int64_t{given} + count;
    }
};

class ObjParser {
  public:
    ObjParser(std::string_view text, ImportedModel& model)
        : begin_(text.data()), cursor_(begin_), end_(begin_ + text.size()), model_(model) {
        const bool hasLineFeed = text.find('\n') != std::string_view::npos;
        lineEnd_ = hasLineFeed ? '\n' : '\r';
    }

    Result run() {
        for (int line = 1; cursor_ != end_; ++line) {
            if (line % kLinesPerTick == 0 && pollProgress(percent(), 100) != 0) return kFailure;
            parseLine();
            skipLine();
        }
        if (model_.groups.empty()) openGroup(kObjDefaultGroup);
        if (reports_ > kMaxReports)
            std::printf("OBJ Import: %lld more references out of range !\n",
                        static_cast<long long>(reports_ - kMaxReports));
        return kSuccess;
    }

  private:
    int percent() const {
        return static_cast<int>(100.0 * static_cast<double>(cursor_ - begin_) /
                                static_cast<double>(end_ - begin_));
    }

    // ---- characters

    bool atLineEnd() const { return cursor_ == end_ || *cursor_ == lineEnd_; }
    bool isBlank(char c) const {
        return c == ' ' || c == '\t' || ((c == '\r' || c == '\v' || c == '\f') && c != lineEnd_);
    }
    void skipBlanks() {
        while (cursor_ != end_ && isBlank(*cursor_))
            ++cursor_;
    }
    bool atTokenEnd() const { return atLineEnd() || isBlank(*cursor_); }
    std::string_view nextToken() {
        skipBlanks();
        const char* const start = cursor_;
        while (!atTokenEnd())
            ++cursor_;
        return {start, static_cast<std::size_t>(cursor_ - start)};
    }
    void skipLine() {
        if (cursor_ == end_) return;
        const auto* const next = static_cast<const char*>(
            std::memchr(cursor_, lineEnd_, static_cast<std::size_t>(end_ - cursor_)));
        cursor_ = next != nullptr ? next + 1 : end_;
    }

    // ---- lines

    void parseLine() {
        skipBlanks();
        if (atLineEnd() || *cursor_ == '#') return;
        const std::string_view keyword = nextToken();
        if (keyword == "v") {
            model_.mesh.addVertex(parsePoint());
        } else if (keyword == "f" || keyword == "fo") {
            parseElement(ElementKind::kPolygon);
        } else if (keyword == "vt") {
            model_.mesh.addTexVertex(parsePoint());
        } else if (keyword == "vn") {
            model_.mesh.addNormal(parsePoint());
        } else if (keyword == "l") {
            parseElement(ElementKind::kLine);
        } else if (keyword == "p") {
            parseElement(ElementKind::kPointList);
        } else if (keyword == "g") {
            for (auto name = nextToken(); !name.empty(); name = nextToken())
                openGroup(name);
        }
    }

    Vec3 parsePoint() {
        const double x = parseNumber();
        const double y = parseNumber();
        return {x, y, parseNumber()};
    }

    double parseNumber() {
        skipBlanks();
        double value = 0.0;
        const char* const after = scanDouble(cursor_, end_, value);
        if (after != nullptr) cursor_ = after;
        while (!atTokenEnd())
            ++cursor_;
        return std::isfinite(value) ? value : 0.0;
    }

    void openGroup(std::string_view name) {
        const auto known = groupNumbers_.find(name);
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
        vertices_.clear();
        texture_.clear();
        normals_.clear();
        while (findCorner())
            parseCorner();
        if (model_.mesh.addFace(kind, 0, vertices_, texture_, normals_) < 0) return;
        if (!hasGroup_) openGroup(kObjDefaultGroup);
        model_.faceGroups.push_back(group_);
    }

    /// Moves to the next corner, over the ends of continued lines. False at the element's end.
    bool findCorner() {
        for (;;) {
            skipBlanks();
            if (atLineEnd()) return false;
            if (*cursor_ != '\\') return true;
            const char* const backslash = cursor_++;
            skipBlanks();
            if (!atLineEnd()) {  // not the last token: a corner without a number
                cursor_ = backslash;
                return true;
            }
            if (cursor_ != end_) ++cursor_;
        }
    }

    void parseCorner() {
        const Reference vertex = parseReference();
        Reference texture;
        Reference normal;
        if (skipSlash()) {
            texture = parseReference();
            if (skipSlash()) normal = parseReference();
        }
        while (!atTokenEnd())
            ++cursor_;

        const Mesh3& mesh = model_.mesh;
        if (!add(vertex, mesh.vertexCount(), vertices_)) {
            report("vertex", vertex.given);
            return;
        }
        if (texture.present && !add(texture, mesh.texVertexCount(), texture_))
            report("texture vertex", texture.given);
        if (normal.present && !add(normal, mesh.normalCount(), normals_))
            report("normal", normal.given);
    }

    bool skipSlash() {
        if (cursor_ == end_ || *cursor_ != '/') return false;
        ++cursor_;
        return true;
    }

    Reference parseReference() {
        constexpr std::int64_t kLimit = std::numeric_limits<int>::max();
        const char* p = cursor_;
        const bool negative = p != end_ && *p == '-';
        if (p != end_ && (*p == '-' || *p == '+')) ++p;
        if (p == end_ || !isDigit(*p)) return {};
        std::int64_t value = 0;
        for (; p != end_ && isDigit(*p); ++p)
            if (value <= kLimit) value = value * 10 + (*p - '0');
        cursor_ = p;
        value = std::min(value, kLimit);
        return {static_cast<int>(negative ? -value : value), true};
    }

    static bool add(Reference reference, int count, std::vector<int>& list) {
        const std::int64_t index = reference.index(count);
        if (index < 0 || index >= count) return false;
        list.push_back(static_cast<int>(index));
        return true;
    }

    void report(const char* what, int reference) {
        if (++reports_ <= kMaxReports)
            std::printf("OBJ Import: %s reference %d out of range !\n", what, reference);
    }

    const char* begin_;
    const char* cursor_;
    const char* end_;
    char lineEnd_ = '\n';
    ImportedModel& model_;
    std::unordered_map<std::string_view, std::uint32_t> groupNumbers_;  // names lie in the text
    std::uint32_t group_ = 0;
    bool hasGroup_ = false;
    std::int64_t reports_ = 0;
    std::vector<int> vertices_;  // of the element being read
    std::vector<int> texture_;
    std::vector<int> normals_;
};

}  // namespace

Result parseObj(std::string_view text, ImportedModel& model) {
    return ObjParser(text, model).run();
}

Result readObj(const std::filesystem::path& path, ImportedModel& model) {
    const auto bytes = readModelFile(path);
    if (!bytes) return kFailure;
    const std::string_view text(reinterpret_cast<const char*>(bytes->data()), bytes->size());
    if (parseObj(text, model) != kSuccess) return kFailure;
    completeNormals(model.mesh, defaultHardShadingAngle());
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
