// The stream form of ObjectX.
#include <string>

#include "geometry/ObjectX.h"
#include "scene/SceneStream.h"

namespace orvin {

Result ObjectX::writeBody(SceneStream& stream) {
    if (const Result result = MeshObject::writeBody(stream); result != kSuccess) return result;
    const auto putVec2 = [&](std::string_view key, Vec2 value) {
        const double values[] = {value.x, value.y};
        return stream.putDoubles(key, values);
    };
    const bool failed =
        stream.putName("face", faceName()) != kSuccess ||
        stream.putName("style", styleName()) != kSuccess ||
        stream.putDouble("flatPreview", flatPreview_) != kSuccess ||
        stream.putDouble("flatRender", flatRender_) != kSuccess ||
        stream.putInt("selected", isSelected() ? 1 : 0) != kSuccess ||
        stream.putInt("meshingOn", meshing_.on ? 1 : 0) != kSuccess ||
        putVec2("draftTileResolution", meshing_.draftTileResolution) != kSuccess ||
        putVec2("bestTileResolution", meshing_.bestTileResolution) != kSuccess ||
        stream.putDouble("draftEdgeMeshing", meshing_.draftEdgeMeshing) != kSuccess ||
        stream.putDouble("bestEdgeMeshing", meshing_.bestEdgeMeshing) != kSuccess;
    return failed ? kFailure : kSuccess;
}

struct ObjectX::Commands : CommandRegistry {
    static ObjectX& object(Persistent& self) { return static_cast<ObjectX&>(self); }

    template <void (ObjectX::*Set)(std::string_view)>
    static Result reference(SceneStream& stream, Persistent& self) {
        std::string name;
        if (stream.readText(name) != kSuccess) return kFailure;
        (object(self).*Set)(name);
        return kSuccess;
    }
    template <void (ObjectX::*Set)(double)>
    static Result number(SceneStream& stream, Persistent& self) {
        double value = 0.0;
        if (stream.readDouble(value) != kSuccess) return kFailure;
        (object(self).*Set)(value);
        return kSuccess;
    }
    static Result read(SceneStream& stream, double& value) { return stream.readDouble(value); }
    static Result read(SceneStream& stream, Vec2& value) { return stream.readVector2(value); }
    static Result read(SceneStream& stream, bool& value) { return stream.readBool(value); }
    template <auto Meshing::*Value>
    static Result meshing(SceneStream& stream, Persistent& self) {
        Meshing wanted = object(self).meshing_;
        if (read(stream, wanted.*Value) != kSuccess) return kFailure;
        object(self).setMeshing(wanted);
        return kSuccess;
    }

    Commands() : CommandRegistry(64) {
        registerMeshCommands(*this);
        lookupOrInsert("face", reference<&ObjectX::setFace>);
        lookupOrInsert("style", reference<&ObjectX::setStyle>);
        lookupOrInsert("flatPreview", number<&ObjectX::setFlatPreview>);
        lookupOrInsert("flatRender", number<&ObjectX::setFlatRender>);
        lookupOrInsert("meshingOn", meshing<&Meshing::on>);
        lookupOrInsert("draftTileResolution", meshing<&Meshing::draftTileResolution>);
        lookupOrInsert("bestTileResolution", meshing<&Meshing::bestTileResolution>);
        lookupOrInsert("draftEdgeMeshing", meshing<&Meshing::draftEdgeMeshing>);
        lookupOrInsert("bestEdgeMeshing", meshing<&Meshing::bestEdgeMeshing>);
    }
};

const CommandRegistry& ObjectX::commandRegistry() const {
    static const Commands commands;
    return commands;
}

}  // namespace orvin
