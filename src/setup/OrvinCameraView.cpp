#include "setup/OrvinCameraView.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>

#include "render/CameraX.h"
#include "scene/SceneStream.h"
#include "scene/SceneX.h"

namespace orvin {

namespace {

constexpr std::string_view kOrthographicLens = "Orthographic";

OrvinCameraView& viewOf(Persistent& self) {
    return static_cast<OrvinCameraView&>(self);
}

template <std::string OrvinCameraView::*Field>
Result readString(SceneStream& stream, Persistent& self) {
    return stream.readText(viewOf(self).*Field);
}
template <Vec3 OrvinCameraView::*Field>
Result readPoint(SceneStream& stream, Persistent& self) {
    return stream.readVector3(viewOf(self).*Field);
}
template <double OrvinCameraView::*Field>
Result readValue(SceneStream& stream, Persistent& self) {
    return stream.readDouble(viewOf(self).*Field);
}

/// Focal length of a lens type: the number right before its "mm".
std::optional<double> focalLength(std::string_view lensType) {
    std::size_t end = lensType.rfind("mm");
    if (end == std::string_view::npos) return std::nullopt;
    while (end > 0 && lensType[end - 1] == ' ')
        --end;
    std::size_t start = end;
    while (start > 0 && lensType[start - 1] >= '0' && lensType[start - 1] <= '9')
        --start;
    int millimetres = 0;
    const auto result =
        std::from_chars(lensType.data() + start, lensType.data() + end, millimetres);
    if (result.ec != std::errc() || millimetres < 1) return std::nullopt;
    return millimetres;
}

CameraPose poseOf(const OrvinCameraView& view) {
    CameraPose pose;
    pose.eye = view.eye;
    pose.target = view.target;
    pose.distance = view.distance;
    pose.tumbleLeftRight = view.tumbleLeftRight;
    pose.tumbleUpDown = view.tumbleUpDown;
    pose.roll = view.roll;
    return pose;
}

void store(OrvinCameraView& view, const CameraX& camera, const CameraPose& pose) {
    view.lensType = camera.lensType();
    view.eye = pose.eye;
    view.target = pose.target;
    view.distance = pose.distance;
    view.tumbleLeftRight = pose.tumbleLeftRight;
    view.tumbleUpDown = pose.tumbleUpDown;
    view.roll = pose.roll;
    view.orthoWidth = camera.orthoWidth();
}

bool isFinite(const CameraPose& pose) {
    const Vec3 sum = pose.eye + pose.target;
    return std::isfinite(sum.x + sum.y + sum.z + pose.distance) &&
           std::isfinite(pose.tumbleLeftRight + pose.tumbleUpDown + pose.roll);
}

/// A camera with a place of its own takes the one that an orbiting camera would have.
bool applyPose(const CameraPose& pose, CameraX& camera) {
    if (!isFinite(pose)) return false;
    if (camera.mode() != CameraMode::kTransform) return camera.setPose(pose) == kSuccess;
    camera.setMode(CameraMode::kOrbit);
    camera.setPose(pose);
    return camera.switchMode(CameraMode::kTransform) == kSuccess;
}

/// True where both poses put a camera of that mode at the same place, but for rounding.
bool samePlace(const CameraPose& a, const CameraPose& b, CameraMode mode) {
    SceneX scratch;
    Matrix4 places[2];
    for (int i = 0; i < 2; ++i) {
        CameraX camera(scratch, "scratch");
        camera.setMode(mode == CameraMode::kTransform ? CameraMode::kOrbit : mode);
        if (camera.setPose(i == 0 ? a : b) != kSuccess) return false;
        places[i] = camera.transform().matrix();
    }
    constexpr double kTurn = 1e-6;  // of unit vectors; six decimals of a degree are far less
    const double reach = 1.0 + length(places[0].origin()) + std::abs(a.distance);
    for (int row = 0; row < 3; ++row)
        if (!(length(places[0].row(row) - places[1].row(row)) <= kTurn)) return false;
    return length(places[0].origin() - places[1].origin()) <= kTurn * reach;
}

CameraX* sceneCamera(SceneX& scene) {
    return scene.memberAs<CameraX>(MemberKind::kCamera, kDefaultCamera);
}

}  // namespace

OrvinCameraView::OrvinCameraView(std::string_view viewName)
    : name(viewName.substr(0, kNameCapacity - 1)) {}

const CommandRegistry& OrvinCameraView::commandRegistry() const {
    using View = OrvinCameraView;
    static const auto kCommands = [] {
        auto commands = std::make_unique<CommandRegistry>(16);
        commands->lookupOrInsert("Name", readString<&View::name>);
        commands->lookupOrInsert("Lens-type", readString<&View::lensType>);
        commands->lookupOrInsert("Eye", readPoint<&View::eye>);
        commands->lookupOrInsert("Target", readPoint<&View::target>);
        commands->lookupOrInsert("Distance", readValue<&View::distance>);
        commands->lookupOrInsert("Tumble-left-right", readValue<&View::tumbleLeftRight>);
        commands->lookupOrInsert("Tumble-up-down", readValue<&View::tumbleUpDown>);
        commands->lookupOrInsert("Roll", readValue<&View::roll>);
        commands->lookupOrInsert("OrthoWidth", readValue<&View::orthoWidth>);
        commands->lookupOrInsert("end", endCommand);
        return commands;
    }();
    return *kCommands;
}

Result OrvinCameraView::writeBody(SceneStream& stream) {
    Result result = stream.putName("Name", name);
    result |= stream.putName("Lens-type", lensType);
    result |= stream.putVector("Eye", eye);
    result |= stream.putVector("Target", target);
    result |= stream.putDouble("Distance", distance);
    result |= stream.putDouble("Tumble-left-right", tumbleLeftRight);
    result |= stream.putDouble("Tumble-up-down", tumbleUpDown);
    result |= stream.putDouble("Roll", roll);
    result |= stream.putDouble("OrthoWidth", orthoWidth);
    return result == kSuccess ? kSuccess : kFailure;
}

bool fillFromCamera(OrvinCameraView& view, const CameraX* camera) {
    if (camera == nullptr) return false;
    store(view, *camera, camera->pose());
    return true;
}

bool applyView(const OrvinCameraView& view, CameraX* camera) {
    if (camera == nullptr || !std::isfinite(view.orthoWidth)) return false;
    if (!applyPose(poseOf(view), *camera)) return false;
    camera->setOrthoWidth(view.orthoWidth);
    camera->setLensType(view.lensType);
    if (view.lensType == kOrthographicLens) {
        camera->setProjection(Projection::kOrthographic);
    } else if (const auto millimetres = focalLength(view.lensType)) {
        camera->setLens(*millimetres);
        camera->setProjection(Projection::kPerspective);
    }
    return true;
}

// ---- OrvinCameraViewList

OrvinCameraView& OrvinCameraViewList::add(std::string_view name) {
    return *views_.emplace_back(std::make_unique<OrvinCameraView>(name));
}

OrvinCameraView* OrvinCameraViewList::find(std::string_view name) const {
    for (const auto& view : views_)
        if (view->name == name) return view.get();
    return nullptr;
}

bool OrvinCameraViewList::remove(std::string_view name) {
    const auto found = std::find_if(views_.begin(), views_.end(),
                                    [name](const auto& view) { return view->name == name; });
    if (found == views_.end()) return false;
    views_.erase(found);
    return true;
}

std::vector<std::string> OrvinCameraViewList::menuNames() const {
    std::vector<std::string> names;
    for (const auto& view : views_)
        if (view->name != kCurrentCameraView) names.push_back(view->name);
    return names;
}

void OrvinCameraViewList::storeCurrent(SceneX& scene) {
    const CameraX* const camera = sceneCamera(scene);
    if (camera == nullptr) return;
    OrvinCameraView* view = find(kCurrentCameraView);
    if (view == nullptr)
        view = views_.insert(views_.begin(), std::make_unique<OrvinCameraView>(kCurrentCameraView))
                   ->get();
    store(*view, *camera, camera->pose());
}

bool OrvinCameraViewList::restoreCurrent(SceneX& scene) const {
    const OrvinCameraView* const view = find(kCurrentCameraView);
    CameraX* const camera = sceneCamera(scene);
    if (view == nullptr || camera == nullptr) return false;
    // The view is the camera's own pose, rounded by the file: where it says no more than the camera
    // does, the camera keeps its exact values.
    if (!samePlace(poseOf(*view), camera->pose(), camera->mode()) &&
        !applyPose(poseOf(*view), *camera))
        return false;
    camera->setOrthoWidth(view->orthoWidth);
    return true;
}

}  // namespace orvin
