// The stream form of CameraX. A value that the camera refuses is passed over: an odd number in a
// file costs that number, not the file.
#include <array>

#include "render/CameraX.h"
#include "scene/SceneStream.h"

namespace orvin {

namespace {

CameraX& camera(Persistent& self) {
    return static_cast<CameraX&>(self);
}

template <Result (CameraX::*Set)(double)>
Result readNumber(SceneStream& stream, Persistent& self) {
    double value = 0.0;
    if (stream.readDouble(value) != kSuccess) return kFailure;
    (camera(self).*Set)(value);
    return kSuccess;
}

template <Result (CameraX::*Set)(Vec3)>
Result readPoint(SceneStream& stream, Persistent& self) {
    Vec3 value;
    if (stream.readVector3(value) != kSuccess) return kFailure;
    (camera(self).*Set)(value);
    return kSuccess;
}

Result readMode(SceneStream& stream, Persistent& self) {
    std::string word;
    if (stream.readText(word) != kSuccess) return kFailure;
    if (const auto mode = cameraModeNamed(word)) camera(self).setMode(*mode);
    return kSuccess;
}

Result readProjection(SceneStream& stream, Persistent& self) {
    std::string word;
    if (stream.readText(word) != kSuccess) return kFailure;
    if (word == "PERSPECTIVE") camera(self).setProjection(Projection::kPerspective);
    if (word == "ORTHOGRAPHIC") camera(self).setProjection(Projection::kOrthographic);
    return kSuccess;
}

Result readLensType(SceneStream& stream, Persistent& self) {
    std::string name;
    if (stream.readText(name) != kSuccess) return kFailure;
    camera(self).setLensType(name);
    return kSuccess;
}

Result readClip(SceneStream& stream, Persistent& self) {
    double nearDistance = 0.0;
    double farDistance = 0.0;
    if (stream.readDouble(nearDistance) != kSuccess || stream.readDouble(farDistance) != kSuccess)
        return kFailure;
    camera(self).setClip(nearDistance, farDistance);
    return kSuccess;
}

Result readScaleVertically(SceneStream& stream, Persistent& self) {
    bool on = false;
    if (stream.readBool(on) != kSuccess) return kFailure;
    camera(self).setScaleVertically(on);
    return kSuccess;
}

/// Transform keys may stand behind the camera's own: the mode has the last word.
Result endCamera(SceneStream& stream, Persistent& self) {
    CameraX& c = camera(self);
    c.setMode(c.mode());
    return endCommand(stream, self);
}

/// A name that the reader would not take as one plain word needs quotes.
Result putLensType(SceneStream& stream, std::string_view name) {
    const bool plain = !name.empty() && name.find_first_of(" \t\r\n\"") == std::string_view::npos &&
                       name.front() != '#';
    return plain ? stream.putWord("lens-type", name) : stream.putText("lens-type", name);
}

}  // namespace

void CameraX::registerCameraCommands(CommandRegistry& registry) {
    registerTransformCommands(registry);
    registry.lookupOrInsert("mode", readMode);
    registry.lookupOrInsert("lens-type", readLensType);
    registry.lookupOrInsert("projection", readProjection);
    registry.lookupOrInsert("aspect", readNumber<&CameraX::setAspect>);
    registry.lookupOrInsert("lens", readNumber<&CameraX::setLens>);
    registry.lookupOrInsert("aperture", readNumber<&CameraX::setAperture>);
    registry.lookupOrInsert("clip", readClip);
    registry.lookupOrInsert("eye", readPoint<&CameraX::setEye>);
    registry.lookupOrInsert("target", readPoint<&CameraX::setTarget>);
    registry.lookupOrInsert("distance", readNumber<&CameraX::setDistance>);
    registry.lookupOrInsert("tumble-left-right", readNumber<&CameraX::setTumbleLeftRight>);
    registry.lookupOrInsert("tumble-up-down", readNumber<&CameraX::setTumbleUpDown>);
    registry.lookupOrInsert("roll", readNumber<&CameraX::setRoll>);
    registry.lookupOrInsert("ortho-width", readNumber<&CameraX::setOrthoWidth>);
    registry.lookupOrInsert("under-scan", readNumber<&CameraX::setUnderScan>);
    registry.lookupOrInsert("scale-vertically", readScaleVertically);
    registry.lookupOrInsert("end", endCamera);
}

const CommandRegistry& CameraX::commandRegistry() const {
    struct Commands : CommandRegistry {
        Commands() : CommandRegistry(64) { registerCameraCommands(*this); }
    };
    static const Commands commands;
    return commands;
}

Result CameraX::writeBody(SceneStream& stream) {
    const std::array clip{near_, far_};
    const bool perspective = projection_ == Projection::kPerspective;
    const bool failed =
        TransformMember::writeBody(stream) || stream.putWord("mode", cameraModeName(mode_)) ||
        putLensType(stream, lensType_) ||
        stream.putWord("projection", perspective ? "PERSPECTIVE" : "ORTHOGRAPHIC") ||
        stream.putDouble("aspect", aspect_) || stream.putDouble("lens", lens_) ||
        stream.putDouble("aperture", aperture_) || stream.putDoubles("clip", clip) ||
        stream.putVector("eye", pose_.eye) || stream.putVector("target", pose_.target) ||
        stream.putDouble("distance", pose_.distance) ||
        stream.putDouble("tumble-left-right", pose_.tumbleLeftRight) ||
        stream.putDouble("tumble-up-down", pose_.tumbleUpDown) ||
        stream.putDouble("roll", pose_.roll) || stream.putDouble("ortho-width", orthoWidth_) ||
        stream.putDouble("under-scan", underScan_) ||
        stream.putInt("scale-vertically", scaleVertically_ ? 1 : 0);
    return failed ? kFailure : kSuccess;
}

}  // namespace orvin
