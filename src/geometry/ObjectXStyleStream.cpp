// The stream form of ObjectXStyle.
#include <string>

#include "geometry/ObjectXStyle.h"
#include "scene/SceneStream.h"

namespace orvin {

namespace {

constexpr std::string_view kPerimProperties = "perimProperties";
constexpr std::string_view kHoleProperties = "holeProperties";

/// The block of an edge's materials bears the edge's word, not the class's.
Result writeProperties(SceneStream& stream, std::string_view word, ProfileProperty& properties) {
    if (const Result result = stream.putWord("begin", word); result != kSuccess) return result;
    stream.push(properties);
    const Result body = properties.writeBody(stream);
    stream.pop();
    return body != kSuccess ? body : stream.putWord("end", word);
}

Result writeMaterial(SceneStream& stream, int slot, std::string_view name) {
    stream.line().clear().text("material ").whole(slot).character(' ').quotedName(name);
    return stream.putLine();
}

}  // namespace

Result ObjectXStyle::writeBody(SceneStream& stream) {
    if (const Result result = SceneMember::writeBody(stream); result != kSuccess) return result;
    const auto part = [&](std::string_view key, unsigned bit) {
        return stream.putInt(key, has(bit) ? 1 : 0);
    };
    const Recipe& r = recipe_;
    const bool failed =
        stream.putInt("trackProfile", r.trackProfile) != kSuccess ||
        stream.putInt("trackProperties", r.trackProperties) != kSuccess ||
        stream.putInt("trackXScale", r.trackXScale) != kSuccess ||
        stream.putName("perim", perimName()) != kSuccess ||
        (!r.trackProfile && stream.putName("hole", holeName()) != kSuccess) ||
        stream.putDouble("perimXScale", r.perimXScale) != kSuccess ||
        (!r.trackXScale && stream.putDouble("holeXScale", r.holeXScale) != kSuccess) ||
        stream.putDouble("frontFaceOffset", r.frontFaceOffset) != kSuccess ||
        stream.putDouble("spikeAngle", r.spikeAngle) != kSuccess ||
        stream.putDouble("pullBackDistance", r.pullBackDistance) != kSuccess ||
        stream.putDouble("depth", r.depth) != kSuccess || part("frontPart", kFront) != kSuccess ||
        part("backPart", kBack) != kSuccess || part("perimPart", kPerimEdge) != kSuccess ||
        part("holePart", kHoleEdge) != kSuccess ||
        stream.putInt("frontMtlidx", r.frontMtlidx) != kSuccess ||
        stream.putInt("backMtlidx", r.backMtlidx) != kSuccess ||
        writeProperties(stream, kPerimProperties, perimProperties_) != kSuccess ||
        (!r.trackProperties &&
         writeProperties(stream, kHoleProperties, holeProperties_) != kSuccess);
    if (failed) return kFailure;
    for (int slot = 0; slot < kMaterialCount; ++slot)
        if (writeMaterial(stream, slot, materialName(slot)) != kSuccess) return kFailure;
    return stream.putWord("mitreMethod", r.mitre == Mitre::kFast ? "fast" : "complex");
}

struct ObjectXStyle::Commands : CommandRegistry {
    static ObjectXStyle& style(Persistent& self) { return static_cast<ObjectXStyle&>(self); }

    template <void (ObjectXStyle::*Set)(double)>
    static Result number(SceneStream& stream, Persistent& self) {
        double value = 0.0;
        if (stream.readDouble(value) != kSuccess) return kFailure;
        (style(self).*Set)(value);
        return kSuccess;
    }
    template <void (ObjectXStyle::*Set)(bool)>
    static Result flag(SceneStream& stream, Persistent& self) {
        bool on = false;
        if (stream.readBool(on) != kSuccess) return kFailure;
        (style(self).*Set)(on);
        return kSuccess;
    }
    template <void (ObjectXStyle::*Set)(int)>
    static Result slot(SceneStream& stream, Persistent& self) {
        int value = 0;
        if (stream.readInt(value) != kSuccess) return kFailure;
        (style(self).*Set)(value);
        return kSuccess;
    }
    template <void (ObjectXStyle::*Set)(std::string_view)>
    static Result reference(SceneStream& stream, Persistent& self) {
        std::string name;
        if (stream.readText(name) != kSuccess) return kFailure;
        (style(self).*Set)(name);
        return kSuccess;
    }
    template <unsigned Part>
    static Result part(SceneStream& stream, Persistent& self) {
        bool on = false;
        if (stream.readBool(on) != kSuccess) return kFailure;
        style(self).setPart(on, Part);
        return kSuccess;
    }
    static Result material(SceneStream& stream, Persistent& self) {
        int index = 0;
        std::string name;
        if (stream.readInt(index) != kSuccess || stream.readText(name) != kSuccess) return kFailure;
        style(self).setMaterial(index, name);
        return kSuccess;
    }
    static Result mitreMethod(SceneStream& stream, Persistent& self) {
        std::string_view word;
        if (stream.nextToken(word) != kSuccess) return kFailure;
        style(self).setMitreMethod(word == "complex" ? Mitre::kComplex : Mitre::kFast);
        return kSuccess;
    }
    static Result begin(SceneStream& stream, Persistent& self) {
        std::string_view word;
        if (stream.nextToken(word) != kSuccess) return kFailure;
        const bool perim = word == kPerimProperties;
        if (!perim && word != kHoleProperties) return kFailure;
        style(self).edgeChanged();
        stream.push(perim ? style(self).perimProperties_ : style(self).holeProperties_);
        return kSuccess;
    }

    Commands() : CommandRegistry(64) {
        registerMemberCommands(*this);
        lookupOrInsert("trackProfile", flag<&ObjectXStyle::setTrackProfile>);
        lookupOrInsert("trackProperties", flag<&ObjectXStyle::setTrackProperties>);
        lookupOrInsert("trackXScale", flag<&ObjectXStyle::setTrackXScale>);
        lookupOrInsert("perim", reference<&ObjectXStyle::setPerim>);
        lookupOrInsert("hole", reference<&ObjectXStyle::setHole>);
        lookupOrInsert("perimXScale", number<&ObjectXStyle::setPerimXScale>);
        lookupOrInsert("holeXScale", number<&ObjectXStyle::setHoleXScale>);
        lookupOrInsert("frontFaceOffset", number<&ObjectXStyle::setFrontFaceOffset>);
        lookupOrInsert("spikeAngle", number<&ObjectXStyle::setSpikeAngle>);
        lookupOrInsert("pullBackDistance", number<&ObjectXStyle::setPullBackDistance>);
        lookupOrInsert("depth", number<&ObjectXStyle::setDepth>);
        lookupOrInsert("frontPart", part<kFront>);
        lookupOrInsert("backPart", part<kBack>);
        lookupOrInsert("perimPart", part<kPerimEdge>);
        lookupOrInsert("holePart", part<kHoleEdge>);
        lookupOrInsert("frontMtlidx", slot<&ObjectXStyle::setFrontMtl>);
        lookupOrInsert("backMtlidx", slot<&ObjectXStyle::setBackMtl>);
        lookupOrInsert("material", material);
        lookupOrInsert("mitreMethod", mitreMethod);
        lookupOrInsert("begin", begin);
    }
};

const CommandRegistry& ObjectXStyle::commandRegistry() const {
    static const Commands commands;
    return commands;
}

}  // namespace orvin
