// Small members of the kinds that live in higher folders, under names of classes of theirs: a box
// with a material, and things that refer to another one.
#pragma once

#include <memory>
#include <string>

#include "scene/SceneStream.h"
#include "scene/SceneX.h"

namespace orvin {

/// Kind, class name and one reference (key "use").
template <MemberKind Kind>
class Thing : public SceneMember {
  public:
    Thing(SceneX& scene, std::string_view name, std::string_view className)
        : SceneMember(scene, Kind, name), className_(className) {}
    Thing(SceneX& scene, const Thing& source, std::string_view name)
        : SceneMember(scene, source, name), className_(source.className_), note(source.note) {
        if (source.use.bound()) use = NameRef(scene.registry(), source.use.name());
    }

    Result writeBody(SceneStream& stream) override {
        SceneMember::writeBody(stream);
        return use.bound() ? stream.putName("use", use.name()) : kSuccess;
    }
    const CommandRegistry& commandRegistry() const override {
        static const auto kCommands = [] {
            auto commands = std::make_unique<CommandRegistry>();
            registerMemberCommands(*commands);
            commands->lookupOrInsert("use", [](SceneStream& stream, Persistent& self) {
                auto& thing = static_cast<Thing&>(self);
                std::string name;
                if (stream.readText(name) != kSuccess) return kFailure;
                thing.use = NameRef(thing.scene().registry(), name);
                return kSuccess;
            });
            return commands;
        }();
        return *kCommands;
    }
    std::string_view className() const override { return className_; }
    std::vector<NameRef*> references() override { return {&use}; }

  private:
    std::string className_;

  public:
    NameRef use;
    std::string note;
};

using Style = Thing<MemberKind::kStyle>;
using Material = Thing<MemberKind::kMaterial>;
using Map = Thing<MemberKind::kImageMap>;
using Profile = Thing<MemberKind::kProfile>;

/// A cube of side 2 about its own origin.
class Cube : public TransformMember {
  public:
    Cube(SceneX& scene, std::string_view name)
        : TransformMember(scene, MemberKind::kObject, name) {}
    Cube(SceneX& scene, const Cube& source, std::string_view name)
        : TransformMember(scene, source, name) {
        if (source.material.bound()) material = NameRef(scene.registry(), source.material.name());
    }
    const CommandRegistry& commandRegistry() const override {
        static const auto kCommands = [] {
            auto commands = std::make_unique<CommandRegistry>();
            registerTransformCommands(*commands);
            return commands;
        }();
        return *kCommands;
    }
    std::string_view className() const override { return "ObjectX"; }
    std::vector<NameRef*> references() override { return {&material}; }
    Box3 localBounds() override { return {{-1, -1, -1}, {1, 1, 1}}; }

    NameRef material;
};

template <typename T>
MemberClass thingClass(std::string_view className, std::string_view prefix,
                       std::unique_ptr<SceneMember> (*create)(SceneX&, std::string_view)) {
    return {className, prefix, create,
            [](SceneX& scene, const SceneMember& source,
               std::string_view name) -> std::unique_ptr<SceneMember> {
                return std::make_unique<T>(scene, static_cast<const T&>(source), name);
            }};
}

inline void registerTestClasses() {
    using Made = std::unique_ptr<SceneMember>;
    registerSceneClasses();
    registerMemberClass(thingClass<Cube>("ObjectX", "object", [](SceneX& s, std::string_view n) {
        return Made(std::make_unique<Cube>(s, n));
    }));
    registerMemberClass(
        thingClass<Style>("ObjectXStyle", "objectstyle", [](SceneX& s, std::string_view n) {
            return Made(std::make_unique<Style>(s, n, "ObjectXStyle"));
        }));
    registerMemberClass(
        thingClass<Material>("MaterialX", "material", [](SceneX& s, std::string_view n) {
            return Made(std::make_unique<Material>(s, n, "MaterialX"));
        }));
    registerMemberClass(thingClass<Map>("ImageMap", "imagemap", [](SceneX& s, std::string_view n) {
        return Made(std::make_unique<Map>(s, n, "ImageMap"));
    }));
    registerMemberClass(
        thingClass<Profile>("ProfileL", "profile", [](SceneX& s, std::string_view n) {
            return Made(std::make_unique<Profile>(s, n, "ProfileL"));
        }));
}

}  // namespace orvin
