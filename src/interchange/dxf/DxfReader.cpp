#include "interchange/dxf/DxfReader.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <utility>

#include "interchange/ModelFile.h"
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

class DxfParser {
  public:
    DxfParser(std::string_view text, ImportedGroups& model)
        : begin_(text.data()), cursor_(begin_), end_(begin_ + text.size()), model_(model) {
        lineEnd_ = text.find('\n') != std::string_view::npos ? '\n' : '\r';
        materialOfIndex_.fill(ImportedGroup::kNoMaterial);
    }

    Result run() {
        for (int pair = 1; cursor_ != end_; ++pair) {
            if (pair % kPairsPerTick == 0 && pollProgress(percent(), 100) != 0) return kFailure;
            const int code = groupCode(nextLine());
            const std::string_view value = nextLine();
            if (code == kEntity)
                entity(trimmed(value));
            else if (state_ == State::kSectionName && code == kName)
                state_ = trimmed(value) == "ENTITIES" ? State::kEntities : State::kOutside;
            else if (state_ == State::kFace)
                faceValue(code, value);
        }
        if (state_ == State::kFace) finishFace();
        for (ImportedGroup& layer : model_.groups) {
            layer.mesh.shrinkToFit();
            if (layer.materials[0] == ImportedGroup::kNoMaterial)
                layer.materials[0] = addMaterial(ImportedMaterial{layer.name + " Material"});
        }
        return kSuccess;
    }

  private:
    enum class State {
        kOutside,      // of the wanted section
        kSectionName,  // the next name is a section's
        kEntities,     // in the section, in nothing that is read
        kFace,
    };

    struct Face {
        std::array<Vec3, 4> corners;
        std::size_t layer = kNoLayer;
        int color = 0;  // 0 while none is named
    };
    static constexpr std::size_t kNoLayer = static_cast<std::size_t>(-1);

    int percent() const {
        return static_cast<int>(100.0 * static_cast<double>(cursor_ - begin_) /
                                static_cast<double>(end_ - begin_));
    }

    std::string_view nextLine() {
        if (cursor_ == end_) return {};
        const char* const start = cursor_;
        const auto* const stop = static_cast<const char*>(
            std::memchr(cursor_, lineEnd_, static_cast<std::size_t>(end_ - cursor_)));
        cursor_ = stop != nullptr ? stop + 1 : end_;
        return {start, static_cast<std::size_t>((stop != nullptr ? stop : end_) - start)};
    }

    static int groupCode(std::string_view line) {
        while (!line.empty() && isBlank(line.front()))
            line.remove_prefix(1);
        int code = kNoCode;
        return readWhole(line, code) ? code : kNoCode;
    }

    static double number(std::string_view line) {
        while (!line.empty() && isBlank(line.front()))
            line.remove_prefix(1);
        double value = 0.0;
        return readDouble(line, value) && std::isfinite(value) ? value : 0.0;
    }

    void entity(std::string_view name) {
        if (state_ == State::kFace) {
            finishFace();
            state_ = State::kEntities;
        }
        if (name == "SECTION") {
            state_ = State::kSectionName;
        } else if (name == "ENDSEC") {
            state_ = State::kOutside;
        } else if (state_ == State::kEntities && name == "3DFACE") {
            face_ = {};
            state_ = State::kFace;
        }
    }

    void faceValue(int code, std::string_view value) {
        if (code >= kFirstCoordinate && code <= kLastCoordinate) {
            const int corner = code % 10;
            if (corner >= 4) return;
            Vec3& p = face_.corners[static_cast<std::size_t>(corner)];
            if (code / 10 == 1)
                p.x = number(value);
            else if (code / 10 == 2)
                p.z = -number(value);
            else
                p.y = number(value);
        } else if (code == kLayer) {
            face_.layer = layerOf(trimmed(value));
        } else if (code == kColor) {
            int index = 0;
            if (readWhole(trimmed(value), index) && index >= 1 && index <= kDxfColorCount)
                face_.color = index;
        }
    }

    std::size_t layerOf(std::string_view name) {
        name = name.substr(0, kDxfLayerNameLimit);
        std::vector<ImportedGroup>& layers = model_.groups;
        if (lastLayer_ < layers.size() && layers[lastLayer_].name == name) return lastLayer_;
        for (lastLayer_ = 0; lastLayer_ < layers.size(); ++lastLayer_)
            if (layers[lastLayer_].name == name) return lastLayer_;
        if (layers.size() == kDxfMaxLayers) return --lastLayer_;
        layers.emplace_back().name = name;
        welders_.emplace_back();
        return lastLayer_;
    }

    void finishFace() {
        if (face_.layer == kNoLayer) face_.layer = layerOf(kDefaultLayer);
        ImportedGroup& layer = model_.groups[face_.layer];
        if (face_.color != 0) layer.materials[0] = materialOf(face_.color);
        const std::size_t count = face_.corners[2] == face_.corners[3] ? 3 : 4;
        std::array<int, 4> vertices{};
        for (std::size_t i = 0; i < count; ++i)
            vertices[i] = welders_[face_.layer].vertexAt(layer.mesh, face_.corners[i]);
        layer.mesh.addFace(ElementKind::kPolygon, 0, std::span(vertices).first(count));
    }

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

    const char* begin_;
    const char* cursor_;
    const char* end_;
    char lineEnd_ = '\n';
    State state_ = State::kOutside;
    Face face_;  // being read
    std::size_t lastLayer_ = 0;
    ImportedGroups& model_;              // a group is a layer
    std::vector<VertexWelder> welders_;  // of each layer
    std::array<int, kDxfColorCount> materialOfIndex_{};
};

}  // namespace

Result parseDxf(std::string_view text, ImportedGroups& model) {
    return DxfParser(text, model).run();
}

Result readDxf(const std::filesystem::path& path, ImportedGroups& model) {
    const auto bytes = readModelFile(path);
    if (!bytes) return kFailure;
    const std::string_view text(reinterpret_cast<const char*>(bytes->data()), bytes->size());
    if (parseDxf(text, model) != kSuccess) return kFailure;
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
