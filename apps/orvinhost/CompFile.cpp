// COMP.json into a Comp.
#include "orvinhost/Comp.h"

#include "common/Options.h"
#include "orvinhost/JsonValue.h"

#include <algorithm>
#include <array>

namespace orvin::stand_in {
namespace {

using nlohmann::json;

struct Field {
    const char* key;
    Track CompLayer::*track;
    std::size_t count;
};

constexpr std::array<Field, 6> kPose{{{"matrix", &CompLayer::matrix, 16},
                                      {"position", &CompLayer::position, 3},
                                      {"pointOfInterest", &CompLayer::interest, 3},
                                      {"orientation", &CompLayer::orientation, 3},
                                      {"rotation", &CompLayer::rotation, 3},
                                      {"active", &CompLayer::active, 1}}};
constexpr std::array<Field, 1> kCamera{{{"zoom", &CompLayer::zoom, 1}}};
constexpr std::array<Field, 7> kLight{{{"intensity", &CompLayer::intensity, 1},
                                       {"color", &CompLayer::color, 3},
                                       {"coneAngle", &CompLayer::coneAngle, 1},
                                       {"coneFeather", &CompLayer::coneFeather, 1},
                                       {"castsShadows", &CompLayer::castsShadows, 1},
                                       {"shadowDarkness", &CompLayer::shadowDarkness, 1},
                                       {"shadowDiffusion", &CompLayer::shadowDiffusion, 1}}};

struct LightName {
    const char* name;
    AEGP_LightType type;
};
constexpr std::array<LightName, 5> kLightNames{{{"parallel", AEGP_LightType_PARALLEL},
                                                {"spot", AEGP_LightType_SPOT},
                                                {"point", AEGP_LightType_POINT},
                                                {"ambient", AEGP_LightType_AMBIENT},
                                                {"environment", AEGP_LightType_ENVIRONMENT}}};

// Reads one layer's keys and refuses those that it doesn't know: a misspelt key that is silently
// left out costs hours.
class LayerReader {
  public:
    LayerReader(const json& source, std::string where, CompLayer& layer)
        : source_(source), where_(std::move(where)), layer_(layer) {
        if (!source.is_object()) throw apps::Failure(where_ + ": an object was expected");
    }

    template <std::size_t N>
    void read(const std::array<Field, N>& fields) {
        for (const Field& field : fields) {
            known_.push_back(field.key);
            const auto found = source_.find(field.key);
            if (found == source_.end() || found->is_null()) continue;
            layer_.*field.track = jsonTrack(*found, field.count, where_ + ": " + field.key);
        }
        layer_.active.holdKeys();
        layer_.castsShadows.holdKeys();
    }

    std::string text(const char* key, const std::string& fallback) {
        known_.push_back(key);
        const auto found = source_.find(key);
        if (found == source_.end()) return fallback;
        if (!found->is_string()) throw apps::Failure(where_ + ": " + key + ": a text was expected");
        return found->get<std::string>();
    }

    int whole(const char* key, int fallback, int min, int max) {
        known_.push_back(key);
        const auto found = source_.find(key);
        if (found == source_.end()) return fallback;
        if (!found->is_number_integer() || found->get<long long>() < min ||
            found->get<long long>() > max)
            throw apps::Failure(where_ + ": " + key + ": a whole number from " +
                                std::to_string(min) + " to " + std::to_string(max));
        return found->get<int>();
    }

    void finish() const {
        for (const auto& entry : source_.items())
            if (std::find(known_.begin(), known_.end(), entry.key()) == known_.end())
                throw apps::Failure(where_ + ": unknown key \"" + entry.key() + "\"");
    }

    const std::string& where() const { return where_; }

  private:
    const json& source_;
    std::string where_;
    CompLayer& layer_;
    std::vector<std::string> known_;
};

CompLayer readCamera(const json& source, const std::string& file, int width, int height) {
    CompLayer layer;
    layer.type = AEGP_ObjectType_CAMERA;
    LayerReader reader(source, file + ": camera", layer);
    layer.name = reader.text("name", "Camera 1");
    reader.read(kPose);
    reader.read(kCamera);
    reader.finish();
    // A new camera of the host: a 50 mm lens before a 36 mm film, in front of the middle.
    if (layer.zoom.empty()) layer.zoom = Track({width * 50.0 / 36.0});
    if (layer.position.empty())
        layer.position = Track({width / 2.0, height / 2.0, -layer.zoom.at(0.0)[0]});
    return layer;
}

CompLayer readLight(const json& source, const std::string& file, int number, int width,
                    int height) {
    CompLayer layer;
    layer.type = AEGP_ObjectType_LIGHT;
    LayerReader reader(source, file + ": light " + std::to_string(number), layer);
    layer.name = reader.text("name", "Light " + std::to_string(number));
    const std::string type = reader.text("type", "point");
    const auto known = std::find_if(kLightNames.begin(), kLightNames.end(),
                                    [&type](const LightName& light) { return type == light.name; });
    if (known == kLightNames.end())
        throw apps::Failure(reader.where() + ": type \"" + type +
                            "\" isn't parallel, spot, point, ambient or environment");
    layer.lightType = known->type;
    reader.read(kPose);
    reader.read(kLight);
    reader.finish();
    if (layer.position.empty()) layer.position = Track({width / 2.0, height / 2.0, -width / 2.0});
    return layer;
}

CompLayer readImage(const json& source, const std::filesystem::path& file, int number) {
    CompLayer layer;
    LayerReader reader(source, file.string() + ": layer " + std::to_string(number), layer);
    layer.name = reader.text("name", "Layer " + std::to_string(number));
    const std::string image = reader.text("image", "");
    if (image.empty()) throw apps::Failure(reader.where() + ": no image");
    layer.image = std::make_shared<ImageSource>((file.parent_path() / image).string());
    layer.layerMap = reader.whole("map", 0, 0, 1000);
    reader.read(kPose);
    reader.finish();
    return layer;
}

const json& listOf(const json& comp, const char* key, const std::string& file) {
    static const json none = json::array();
    const auto found = comp.find(key);
    if (found == comp.end()) return none;
    if (!found->is_array()) throw apps::Failure(file + ": " + key + ": a list was expected");
    return *found;
}

}  // namespace

Comp::Comp(const json& comp, const std::filesystem::path& file, int layerWidth, int layerHeight)
    : Comp(layerWidth, layerHeight) {
    const std::string name = file.string();
    if (!comp.is_object()) throw apps::Failure(name + ": an object was expected");
    for (const auto& entry : comp.items())
        if (entry.key() != "size" && entry.key() != "layerStart" && entry.key() != "camera" &&
            entry.key() != "lights" && entry.key() != "layers")
            throw apps::Failure(name + ": unknown key \"" + entry.key() + "\"");
    if (const auto size = comp.find("size"); size != comp.end()) {
        const Values sides = jsonValues(*size, 2, name + ": size");
        if (sides[0] < 1 || sides[0] > 30000 || sides[1] < 1 || sides[1] > 30000)
            throw apps::Failure(name + ": size: sides from 1 to 30000");
        width_ = static_cast<int>(sides[0]);
        height_ = static_cast<int>(sides[1]);
    }
    if (const auto start = comp.find("layerStart"); start != comp.end())
        layerStart_ = jsonValues(*start, 1, name + ": layerStart")[0];

    std::vector<CompLayer> layers;
    if (const auto camera = comp.find("camera"); camera != comp.end() && !camera->is_null())
        layers.push_back(readCamera(*camera, name, width_, height_));
    int number = 0;
    for (const json& light : listOf(comp, "lights", name))
        layers.push_back(readLight(light, name, ++number, width_, height_));
    effectLayer_ = static_cast<int>(layers.size());
    layers.push_back(std::move(layers_.front()));
    number = 0;
    for (const json& image : listOf(comp, "layers", name))
        layers.push_back(readImage(image, file, ++number));
    layers_ = std::move(layers);
}

}  // namespace orvin::stand_in
