#include "interchange/dxf/DxfReader.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstdio>
#include <utility>

#include "interchange/ModelFile.h"
#include "interchange/TextScanner.h"
#include "interchange/VertexWelder.h"
#include "interchange/dxf/DxfColors.h"
#include "toolkit/Numbers.h"
#include "toolkit/Progress.h"
#include "toolkit/platform/Platform.h"

namespace orvin {

namespace {

constexpr int kPairsPerTick = 5000;
constexpr std::string_view kDefaultLayer = "0";  // where entities are that name none

// Group codes. Coordinates of corner n are 10 + n, 20 + n and 30 + n.
constexpr int kEntity = 0;
constexpr int kName = 2;
constexpr int kLayer = 8;
constexpr int kFirstCoordinate = 10;
constexpr int kLastCoordinate = 33;
constexpr int kColor = 62;
constexpr int kNoCode = -1;  // a line that is no group code

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

int groupCode(std::string_view line) {
    while (!line.empty() && isBlank(line.front()))
        line.remove_prefix(1);
    int code = kNoCode;
    return readWhole(line, code) ? code : kNoCode;
}

double number(std::string_view line) {
    while (!line.empty() && isBlank(line.front()))
        line.remove_prefix(1);
    double value = 0.0;
    return readDouble(line, value) && std::isfinite(value) ? value : 0.0;
}

bool isCoordinate(int code) {
    return code >= kFirstCoordinate && code <= kLastCoordinate && code % 10 < 4;
}

/// Walks over the faces of a file: `faces` is told when one starts, what belongs to it, and that it
/// is finished.
template <typename Faces>
class DxfWalk {
  public:
    DxfWalk(TextScanner& text, Faces& faces) : text_(text), faces_(faces) {}

    Result run() {
        for (int pair = 1; !text_.atEnd(); ++pair) {
            if (pair % kPairsPerTick == 0 && pollProgress(faces_.percent(), 100) != 0)
                return kFailure;
            const int code = groupCode(text_.line());
            if (code == kEntity)
                entity(trimmed(text_.line()));
            else if (state_ == State::kSectionName && code == kName)
                state_ = trimmed(text_.line()) == "ENTITIES" ? State::kEntities : State::kOutside;
            else if (state_ == State::kFace && Faces::reads(code))
                faces_.value(code, text_.line());
            else
                text_.skipLine();
        }
        if (state_ == State::kFace) faces_.finish();
        return kSuccess;
    }

  private:
    enum class State {
        kOutside,      // of the wanted section
        kSectionName,  // the next name is a section's
        kEntities,     // in the section, in nothing that is read
        kFace,
    };

    void entity(std::string_view name) {
        if (state_ == State::kFace) {
            faces_.finish();
            state_ = State::kEntities;
        }
        if (name == "SECTION") {
            state_ = State::kSectionName;
        } else if (name == "ENDSEC") {
            state_ = State::kOutside;
        } else if (state_ == State::kEntities && name == "3DFACE") {
            faces_.start();
            state_ = State::kFace;
        }
    }

    TextScanner& text_;
    Faces& faces_;
    State state_ = State::kOutside;
};

/// Makes the layers of a file as groups, with room for their faces.
class DxfLayers {
  public:
    explicit DxfLayers(std::vector<ImportedGroup>& layers) : layers_(layers) {}

    std::size_t layerOf(std::string_view name) {
        name = name.substr(0, kDxfLayerNameLimit);
        if (last_ < layers_.size() && layers_[last_].name == name) return last_;
        for (last_ = 0; last_ < layers_.size(); ++last_)
            if (layers_[last_].name == name) return last_;
        if (layers_.size() == kDxfMaxLayers) return --last_;
        layers_.emplace_back().name = name;
        return last_;
    }

    static int percent() { return 0; }
    static bool reads(int code) { return isCoordinate(code) || code == kLayer; }

    void start() {
        given_ = 0;
        layer_ = kNoLayer;
    }
    void value(int code, std::string_view value) {
        if (code == kLayer)
            layer_ = layerOf(trimmed(value));
        else
            given_ |= 1U << code % 10;
    }
    void finish() {
        if (layer_ == kNoLayer) layer_ = layerOf(kDefaultLayer);
        counts_.resize(layers_.size());
        Counts& counts = counts_[layer_];
        ++counts.faces;
        counts.corners += given_ < 4 ? 3 : 4;  // the last two at the origin
        counts.points += static_cast<std::size_t>(std::popcount(given_));
    }

    void reserve() {
        for (std::size_t i = 0; i < counts_.size(); ++i)
            layers_[i].mesh.reserve(counts_[i].points + 1, 0, 0, counts_[i].faces,
                                    counts_[i].corners);
    }

    static constexpr std::size_t kNoLayer = static_cast<std::size_t>(-1);

  private:
    struct Counts {
        std::size_t faces = 0;
        std::size_t corners = 0;
        std::size_t points = 0;  // at most, and one at the origin
    };

    std::vector<ImportedGroup>& layers_;
    std::vector<Counts> counts_;
    std::size_t last_ = 0;  // that was found
    unsigned given_ = 0;    // which corners the face has, a bit each
    std::size_t layer_ = 0;
};

class DxfParser {
  public:
    DxfParser(ModelInput& input, ImportedGroups& model)
        : text_(input), model_(model), layers_(model.groups) {
        materialOfIndex_.fill(ImportedGroup::kNoMaterial);
    }

    Result run() {
        if (DxfWalk(text_, layers_).run() != kSuccess) return kFailure;
        layers_.reserve();
        welders_.resize(model_.groups.size());
        text_.rewind();
        if (DxfWalk(text_, *this).run() != kSuccess) return kFailure;
        welders_.clear();
        for (ImportedGroup& layer : model_.groups) {
            layer.mesh.shrinkToFit();
            if (layer.materials[0] == ImportedGroup::kNoMaterial)
                layer.materials[0] = addMaterial(ImportedMaterial{layer.name + " Material"});
        }
        return kSuccess;
    }

    // ---- what the walk tells

    int percent() const { return text_.percent(); }
    static bool reads(int code) { return isCoordinate(code) || code == kLayer || code == kColor; }

    void start() { face_ = {}; }

    void value(int code, std::string_view value) {
        if (isCoordinate(code)) {
            Vec3& p = face_.corners[static_cast<std::size_t>(code % 10)];
            if (code / 10 == 1)
                p.x = number(value);
            else if (code / 10 == 2)
                p.z = -number(value);
            else
                p.y = number(value);
        } else if (code == kLayer) {
            face_.layer = layers_.layerOf(trimmed(value));
        } else {
            int index = 0;
            if (readWhole(trimmed(value), index) && index >= 1 && index <= kDxfColorCount)
                face_.color = index;
        }
    }

    void finish() {
        if (face_.layer == DxfLayers::kNoLayer) face_.layer = layers_.layerOf(kDefaultLayer);
        ImportedGroup& layer = model_.groups[face_.layer];
        if (face_.color != 0) layer.materials[0] = materialOf(face_.color);
        const std::size_t count = face_.corners[2] == face_.corners[3] ? 3 : 4;
        std::array<int, 4> vertices{};
        for (std::size_t i = 0; i < count; ++i)
            vertices[i] = welders_[face_.layer].vertexAt(layer.mesh, face_.corners[i]);
        layer.mesh.addFace(ElementKind::kPolygon, 0, std::span(vertices).first(count));
    }

  private:
    struct Face {
        std::array<Vec3, 4> corners;
        std::size_t layer = DxfLayers::kNoLayer;
        int color = 0;  // 0 while none is named
    };

    int materialOf(int index) {
        const auto row = static_cast<std::size_t>(index - 1);
        int& known = materialOfIndex_[row];
        if (known == ImportedGroup::kNoMaterial) {
            const DxfColor color = dxfColors()[row];
            ImportedMaterial material{"DXF color " + std::to_string(index)};
            material.color = {color.red, color.green, color.blue, 1.0F};
            material.shared = true;
            known = addMaterial(std::move(material));
        }
        return known;
    }

    int addMaterial(ImportedMaterial material) {
        model_.materials.push_back(std::move(material));
        return static_cast<int>(model_.materials.size()) - 1;
    }

    TextScanner text_;
    Face face_;              // being read
    ImportedGroups& model_;  // a group is a layer
    DxfLayers layers_;
    std::vector<VertexWelder> welders_;  // of each layer
    std::array<int, kDxfColorCount> materialOfIndex_{};
};

}  // namespace

Result parseDxf(ModelInput& input, ImportedGroups& model) {
    return DxfParser(input, model).run();
}

Result readDxf(const std::filesystem::path& path, ImportedGroups& model) {
    auto input = ModelInput::open(path);
    if (!input || parseDxf(*input, model) != kSuccess) return kFailure;
    if (input->failed()) {
        reportUnopened(path);
        return kFailure;
    }
    if (!model.groups.empty()) return kSuccess;
    std::fprintf(stderr, "read_dxf: no 3DFACE in '%s'.\n", platform::textFromPath(path).c_str());
    return kFailure;
}

Result importDxf(SceneX& scene, const std::filesystem::path& path, std::vector<ObjectP*>* made) {
    ImportedGroups model;
    if (readDxf(path, model) != kSuccess) return kFailure;
    auto objects = addToScene(scene, std::move(model), path, ModelFileType::kDxf);
    if (made != nullptr) *made = std::move(objects);
    return kSuccess;
}

}  // namespace orvin
