#include "render/MaterialX.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "render/ImageFile.h"
#include "scene/SceneStream.h"
#include "scene/SceneX.h"

namespace orvin {

namespace {

MaterialX& material(Persistent& self) {
    return static_cast<MaterialX&>(self);
}

template <void (MaterialX::*Set)(const Rgba&), std::uint32_t Flag>
Result readMaterialColor(SceneStream& stream, Persistent& self) {
    Rgba color{0.0F, 0.0F, 0.0F, 1.0F};  // alpha isn't in the file
    if (stream.readColor(std::span(color).first(3)) != kSuccess) return kFailure;
    if (isFinite(color)) (material(self).*Set)(color);
    material(self).setFlag(Flag, true);
    return kSuccess;
}

template <void (MaterialX::*Set)(double), std::uint32_t Flag>
Result readNumber(SceneStream& stream, Persistent& self) {
    double value = 0.0;
    if (stream.readDouble(value) != kSuccess) return kFailure;
    if (std::isfinite(value)) (material(self).*Set)(value);
    if (Flag != 0) material(self).setFlag(Flag, true);
    return kSuccess;
}

Result readSpecular(SceneStream& stream, Persistent& self) {
    double exponent = 0.0;
    double amount = 0.0;
    if (stream.readDouble(exponent) != kSuccess || stream.readDouble(amount) != kSuccess)
        return kFailure;
    if (std::isfinite(exponent) && std::isfinite(amount))
        material(self).setSpecular(exponent, amount);
    material(self).setFlag(MaterialX::kSpecular, true);
    return kSuccess;
}

template <MapUse Use, std::uint32_t Flag>
Result readMap(SceneStream& stream, Persistent& self) {
    std::string name;
    if (stream.readText(name) != kSuccess) return kFailure;
    material(self).setMap(Use, name);
    material(self).setFlag(Flag, true);
    return kSuccess;
}

Result readBumpMap(SceneStream& stream, Persistent& self) {
    if (readMap<MapUse::kBump, MaterialX::kBumpMap>(stream, self) != kSuccess) return kFailure;
    return readNumber<&MaterialX::setBumpScale, 0>(stream, self);
}

template <std::uint32_t Flag>
Result readFlag(SceneStream& stream, Persistent& self) {
    bool on = false;
    if (stream.readBool(on) != kSuccess) return kFailure;
    material(self).setFlag(Flag, on);
    return kSuccess;
}

struct FlagKey {
    std::string_view key;
    std::uint32_t mask;
    CommandHandler read;
};

// In the order in which they are written.
constexpr std::array<FlagKey, 8> kFlagKeys{{
    {"ambientFlag", MaterialX::kAmbient, readFlag<MaterialX::kAmbient>},
    {"diffuseFlag", MaterialX::kDiffuse, readFlag<MaterialX::kDiffuse>},
    {"specularFlag", MaterialX::kSpecular, readFlag<MaterialX::kSpecular>},
    {"transparencyFlag", MaterialX::kTransparency, readFlag<MaterialX::kTransparency>},
    {"colorMapFlag", MaterialX::kColorMap, readFlag<MaterialX::kColorMap>},
    {"reflectionMapFlag", MaterialX::kReflectionMap, readFlag<MaterialX::kReflectionMap>},
    {"transparencyMapFlag", MaterialX::kTransparencyMap, readFlag<MaterialX::kTransparencyMap>},
    {"bumpMapFlag", MaterialX::kBumpMap, readFlag<MaterialX::kBumpMap>},
}};

Result putColor(SceneStream& stream, std::string_view key, const Rgba& color) {
    const std::array<double, 4> channels = asDoubles(color);
    return stream.putDoubles(key, std::span(channels).first(3));
}

}  // namespace

MaterialX::MaterialX(SceneX& scene, std::string_view name)
    : Surface(scene, MemberKind::kMaterial, name) {
    maps_.fill(NameRef(scene.registry(), kNoMember));
}

MaterialX::MaterialX(SceneX& scene, const MaterialX& source, std::string_view name)
    : Surface(scene, source, name), look_(source.look_) {
    for (std::size_t i = 0; i < kMapUses; ++i)
        setMap(static_cast<MapUse>(i), source.maps_[i].name());
}

ImageMap* MaterialX::map(MapUse use) const {
    return mapRef(use).as<ImageMap>();
}

void MaterialX::setMap(MapUse use, std::string_view name) {
    maps_[static_cast<std::size_t>(use)] = NameRef(scene().registry(), name);
}

bool MaterialX::mapIsSet(MapUse use) const {
    const std::string& name = mapRef(use).name();
    return !name.empty() && name != kNoMember;
}

std::vector<NameRef*> MaterialX::references() {
    std::vector<NameRef*> all;
    for (NameRef& map : maps_)
        all.push_back(&map);
    return all;
}

MaterialMaps MaterialX::resolveMaps() const {
    const auto resolved = [this](MapUse use, std::uint32_t flag) {
        const ImageMap* found = hasFlag(flag) ? map(use) : nullptr;
        return found != nullptr ? found->resolve() : ResolvedMap();
    };
    return {resolved(MapUse::kColor, kColorMap), resolved(MapUse::kReflection, kReflectionMap),
            resolved(MapUse::kTransparency, kTransparencyMap), resolved(MapUse::kBump, kBumpMap)};
}

bool MaterialX::usesExtMap(int number) {
    if (SceneMember::usesExtMap(number)) return true;
    const std::string wanted = extMapName(number);
    return std::any_of(maps_.begin(), maps_.end(), [&](const NameRef& ref) {
        const auto* const map = ref.as<ImageMap>();
        return map != nullptr && map->imagePath() == wanted;
    });
}

void MaterialX::releaseImages() {
    for (const NameRef& ref : maps_)
        if (auto* map = ref.as<ImageMap>()) map->releaseImage();
}

const CommandRegistry& MaterialX::commandRegistry() const {
    struct Commands : CommandRegistry {
        Commands() : CommandRegistry(64) {
            registerMemberCommands(*this);
            lookupOrInsert("ambient", readMaterialColor<&MaterialX::setAmbient, kAmbient>);
            lookupOrInsert("diffuse", readMaterialColor<&MaterialX::setDiffuse, kDiffuse>);
            lookupOrInsert("specular", readSpecular);
            lookupOrInsert("transparency", readNumber<&MaterialX::setTransparency, kTransparency>);
            lookupOrInsert("colorMap", readMap<MapUse::kColor, kColorMap>);
            lookupOrInsert("transparencyMap", readMap<MapUse::kTransparency, kTransparencyMap>);
            lookupOrInsert("reflectionMap", readMap<MapUse::kReflection, kReflectionMap>);
            lookupOrInsert("reflectivity", readNumber<&MaterialX::setReflectivity, 0>);
            lookupOrInsert("bumpMap", readBumpMap);
            for (const FlagKey& flag : kFlagKeys)
                lookupOrInsert(flag.key, flag.read);
        }
    };
    static const Commands commands;
    return commands;
}

Result MaterialX::writeBody(SceneStream& stream) {
    const auto putMap = [&](std::string_view key, MapUse use) {
        return mapIsSet(use) ? stream.putText(key, mapRef(use).name()) : kSuccess;
    };
    const std::array specular{look_.specularExponent, look_.specularAmount};
    bool failed =
        SceneMember::writeBody(stream) || putColor(stream, "ambient", look_.ambient) ||
        putColor(stream, "diffuse", look_.diffuse) || stream.putDoubles("specular", specular) ||
        stream.putDouble("transparency", look_.transparency) ||
        putMap("colorMap", MapUse::kColor) || putMap("transparencyMap", MapUse::kTransparency) ||
        putMap("reflectionMap", MapUse::kReflection) ||
        stream.putDouble("reflectivity", look_.reflectivity);
    if (!failed && mapIsSet(MapUse::kBump)) {
        stream.line().clear().text("bumpMap ").quoted(mapRef(MapUse::kBump).name());
        stream.line().character(' ').number(look_.bumpScale);
        failed = stream.putLine() != kSuccess;
    }
    for (const FlagKey& flag : kFlagKeys)
        failed = failed || stream.putInt(flag.key, hasFlag(flag.mask) ? 1 : 0);
    return failed ? kFailure : kSuccess;
}

}  // namespace orvin
