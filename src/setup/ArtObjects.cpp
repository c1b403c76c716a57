#include "setup/ArtObjects.h"

#include <algorithm>
#include <map>

#include "render/MaterialX.h"
#include "scene/SceneX.h"

namespace orvin {

namespace {

constexpr double kFlatness = 0.5;  // fine enough to see whether anything is there

bool hasShape(const AIObjectRecord& record) {
    std::uint32_t stamp = 0;
    return record.profile->getShape(kFlatness, defaultHardShadingAngle(), stamp) != nullptr;
}

/// The scene's materials for the colours of one drawing.
class ArtMaterials {
  public:
    ArtMaterials(SceneX& scene, const std::vector<AIColorRecord>& list)
        : scene_(scene), next_(list.size() + 1) {
        for (const AIColorRecord& record : list)
            names_.emplace(record.color, record.name);
    }

    const std::string& nameOf(const AIColor& color) {
        const auto made = made_.find(color);
        if (made != made_.end()) return made->second;
        const auto listed = names_.find(color);
        const std::string wanted =
            listed != names_.end() ? listed->second : "AIColor " + std::to_string(next_++);
        return made_.emplace(color, find(wanted, color)).first->second;
    }

  private:
    /// A drawing that is read again finds its materials, unless they were changed.
    std::string find(const std::string& wanted, const AIColor& color) {
        Rgba diffuse = color;
        for (float& channel : diffuse)
            channel = std::clamp(channel, 0.0F, 1.0F);
        const auto* const old = scene_.memberAs<MaterialX>(MemberKind::kMaterial, wanted);
        if (old != nullptr && old->diffuse() == diffuse) return wanted;
        auto& material = scene_.make<MaterialX>(scene_.uniqueName(wanted));
        material.setDiffuse(diffuse);
        return material.name();
    }

    SceneX& scene_;
    std::size_t next_;  // number of a colour that isn't in the list
    std::map<AIColor, std::string> names_;
    std::map<AIColor, std::string> made_;
};

/// An object with a copy of the style, made for a record; its profile is the caller's to set.
ObjectX& makeObject(SceneX& scene, const AIObjectRecord& record, const ObjectXStyle& style,
                    std::string_view name, ArtMaterials* materials) {
    ObjectX& object = scene.make<ObjectX>(scene.uniqueName(name));
    auto& own = scene.make<ObjectXStyle>(style, scene.uniqueName(object.name() + " Style"));
    if (!record.profile->keepFaces) {
        own.setPart(false, ObjectXStyle::kFront | ObjectXStyle::kBack);
        own.setPart(true, ObjectXStyle::kPerimEdge | ObjectXStyle::kHoleEdge);
    }
    const AIColor& color = record.profile->keepFaces ? record.fill : record.stroke;
    if (materials != nullptr && color != kFirstAIColor)
        own.setMaterial(0, materials->nameOf(color));
    object.setStyle(own.name());
    return object;
}

}  // namespace

std::vector<ObjectX*> makeArtObjects(AIParser& art, const ObjectXStyle& style, ArtColors colors) {
    SceneX& scene = style.scene();
    ArtMaterials materials(scene, art.colorList());
    std::vector<ObjectX*> objects;
    std::vector<SceneMember*> shapeless;
    for (const AIObjectRecord& record : art.objectList()) {
        if (!hasShape(record)) {
            shapeless.push_back(record.profile);
            continue;
        }
        objects.push_back(&makeObject(scene, record, style, record.name,
                                      colors == ArtColors::kOfArt ? &materials : nullptr));
        objects.back()->setFace(record.profile->name());
    }
    scene.destroyAll(shapeless);
    art.objectList().clear();
    return objects;
}

ObjectX* makeCycleObject(AIParser& art, const ObjectXStyle& style, ArtColors colors,
                         std::string_view name, CycleOption option) {
    SceneX& scene = style.scene();
    std::vector<AIObjectRecord> records = std::move(art.objectList());
    art.objectList().clear();
    const auto first = std::find_if(records.begin(), records.end(), hasShape);
    if (first == records.end()) {
        for (const AIObjectRecord& record : records)
            scene.destroy(*record.profile);
        return nullptr;
    }
    auto& cycle = scene.make<ProfileM>(scene.uniqueName(std::string(name) + " Cycle"));
    cycle.setCycleOption(option);
    for (const AIObjectRecord& record : records)
        cycle.addFrame(*record.profile);
    ArtMaterials materials(scene, art.colorList());
    ObjectX& object =
        makeObject(scene, *first, style, name, colors == ArtColors::kOfArt ? &materials : nullptr);
    object.setFace(cycle.name());
    return &object;
}

}  // namespace orvin
